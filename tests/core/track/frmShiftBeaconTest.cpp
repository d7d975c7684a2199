// Shifting the beacons by time: the laps between the out lap and the in lap move, and a shift
// that would make laps overlap is refused.

#include <gtest/gtest.h>

#include "../TestOutings.h"
#include "core/track/frmShiftBeacon.h"

using namespace test_outings;

namespace {

TEST(frmShiftBeaconTest, ShiftsTheInnerBeaconsByTimeWithinTheirNeighbours) {
  const struct {
    std::vector<int32_t> rows;
    const char* shift;
    std::vector<int32_t> expected;
    bool refused;
  } cases[] = {
      {{0, 60000, 160000, 260000, 300000}, "1.5", {0, 61500, 161500, 260000, 300000}, false},
      {{0, 60000, 160000, 260000, 300000}, "-59.999", {0, 1, 100001, 260000, 300000}, false},
      {{0, 60000, 160000, 260000, 300000}, "-60", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 160000, 260000, 300000}, "100", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 160000, 260000, 300000}, "1,5", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 61000, 62000}, "0.5", {0, 60500, 61000, 62000}, false},  // one beacon between
      {{0, 60000, 300000}, "1", {0, 60000, 300000}, false},                // none between: nothing moves
  };
  for (const auto& c : cases) {
    BareWorkspace b;
    OutingRec& o = b.Outing();
    o.Laps.resize(c.rows.size());
    for (std::size_t i = 0; i < c.rows.size(); ++i) o.Laps[i].StartTime = c.rows[i];
    o.LastLap = static_cast<int16_t>(c.rows.size() - 1);
    frmShiftBeacon form(b.ws, 0);
    form.txtShift = QString::fromLatin1(c.shift);
    EXPECT_EQ(form.cmdOK(), !c.refused) << c.shift;
    std::vector<int32_t> rows;
    for (const LapRec& l : o.Laps) rows.push_back(l.StartTime);
    EXPECT_EQ(rows, c.expected) << c.shift;
    if (c.refused) {
      EXPECT_EQ(LastMessage(b.messages).text, "Error shifting beacons") << c.shift;
      EXPECT_EQ(LastMessage(b.messages).title, "Shift Beacon") << c.shift;
    }
  }
}

}  // namespace
