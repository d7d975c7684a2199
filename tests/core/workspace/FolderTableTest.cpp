#include "core/workspace/FolderTable.h"

#include "../TestOutings.h"

namespace {

using namespace test_outings;

TEST(FolderTable, NextAvailableSlot) {
  struct Case {
    const char* name;
    std::vector<int> loaded;
    int expected;
  } cases[] = {
      {"empty folder", {}, 0},
      {"first two taken", {0, 1}, 2},
      {"a gap", {0, 1, 3}, 2},
      {"only the last free", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}, 15},
      {"all 16 taken: a slot that is loaded", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, 0},
  };
  for (const Case& k : cases) {
    BareWorkspace b;
    for (int s : k.loaded) b.ws.FolderTable[3].Outings[static_cast<std::size_t>(s)].Loaded = -1;
    EXPECT_EQ(NextAvailableCID(b.ws, 3), k.expected) << k.name;
    EXPECT_EQ(NextAvailableCID(b.ws, 2), 0) << "another folder";
    EXPECT_EQ(AnyOutingLoaded(b.ws, 3), !k.loaded.empty()) << k.name;
  }
}

}  // namespace
