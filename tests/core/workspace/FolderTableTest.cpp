#include "core/workspace/FolderTable.h"

#include <gtest/gtest.h>

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

TEST(FolderTable, OutingColourOnlyWhenEveryLapHasOne) {
  struct Case {
    const char* name;
    std::vector<int16_t> colours;
    int expected;
  } cases[] = {
      {"all laps coloured", {4, 4, 4, 4}, 4},
      {"coloured lap by lap", {4, 9, 2}, 4},
      {"one of many without", {4, 4, -1, 4, 4, 4}, -1},
      {"the first without", {-1, 4, 4}, -1},
      {"none", {-1, -1}, -1},
  };
  for (const Case& k : cases) {
    BareWorkspace b;
    OutingRec& o = b.Outing(5);
    for (int16_t c : k.colours) {
      o.Laps.emplace_back();
      o.Laps.back().LapColor = c;
    }
    o.LastLap = static_cast<int16_t>(k.colours.size() - 1);
    EXPECT_EQ(OutingColorSet(b.ws, 5), k.expected) << k.name;
  }
}

TEST(FolderTable, OutingLoadedByFileName) {
  BareWorkspace b;
  b.ws.FolderTable[0].Outings[2] = OutingRec{};
  b.ws.FolderTable[0].Outings[2].FileName = "/data/A.DAT";
  b.ws.FolderTable[0].Outings[2].Loaded = -1;
  b.ws.FolderTable[0].Outings[4].FileName = "/data/B.DAT";  // freed slot: its name no longer counts
  b.ws.FolderTable[0].Outings[7].FileName = "/data/C.DAT";
  b.ws.FolderTable[0].Outings[7].Loaded = -1;
  b.ws.FolderTable[1].Outings[1].FileName = "/data/D.DAT";
  b.ws.FolderTable[1].Outings[1].Loaded = -1;
  struct Case {
    int16_t folder;
    const char* file;
    int slot;
  } cases[] = {{0, "/data/A.DAT", 2}, {0, "/data/C.DAT", 7}, {0, "/data/B.DAT", -1},
               {0, "/data/D.DAT", -1}, {1, "/data/D.DAT", 1}};
  for (const Case& k : cases) {
    b.ws.CurFolder = k.folder;
    EXPECT_EQ(OutingNotLoaded(b.ws, k.file), k.slot) << k.folder << " " << k.file;
  }
}

}  // namespace
