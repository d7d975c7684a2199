#include "core/track/Beacons.h"

#include "../TestOutings.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/DistanceTime.h"
#include "core/track/frmShiftBeacon.h"

using namespace test_outings;

namespace {

TEST(BeaconsTest, LapTimeTexts) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"1:39.871", 99871},  {"01:39.871", 99871},  {"99.5", 99500},      {"0:5", 5000},
      {"2:", std::nullopt}, {"abc", std::nullopt}, {"1:x", std::nullopt}};
  for (const auto& [text, ms] : cases) {
    const auto got = ParseLapTime(QString::fromLatin1(text));
    ASSERT_EQ(got.has_value(), ms.has_value()) << text;
    EXPECT_NEAR(got.value_or(0), ms.value_or(0), 1e-6) << text;
  }
}

// Gives the outing laps starting at these times; the last is the closing row.
void SetRows(OutingRec& o, const std::vector<int32_t>& starts) {
  o.Laps.clear();
  for (int32_t t : starts) o.Laps.emplace_back().StartTime = t;
  o.LastLap = static_cast<int16_t>(starts.size() - 1);
}

std::vector<int32_t> Rows(const OutingRec& o) {
  std::vector<int32_t> rows;
  for (const LapRec& l : o.Laps) rows.push_back(l.StartTime);
  return rows;
}

frmInsertBeacon Dialog(BareWorkspace& b, const std::vector<int32_t>& starts, int selected) {
  SetRows(b.Outing(), starts);
  frmInsertBeacon d(b.ws, 0);
  d.Selected = selected;
  return d;
}

TEST(BeaconsTest, DeleteMergesAndInsertSplitsALap) {
  struct Case {
    std::vector<int32_t> rows;
    int selected;
    enum { kDelete, kInsert } op;
    double ms;
    std::vector<int32_t> expected;
    int selected_after;
  } cases[] = {
      {{0, 100, 200, 300}, 1, Case::kDelete, 0, {0, 100, 300}, 0},     // lap 1 merges with lap 2
      {{0, 100, 200, 300}, 2, Case::kDelete, 0, {0, 100, 300}, 1},     // the last merges with the one before
      {{0, 100, 200, 300}, 0, Case::kDelete, 0, {0, 200, 300}, 0},
      {{0, 300}, 0, Case::kDelete, 0, {0, 300}, 0},                    // one lap: nothing
      {{0, 100, 200, 300}, 1, Case::kInsert, 40.4, {0, 100, 140, 200, 300}, 1},
      {{0, 100, 200, 300}, 1, Case::kInsert, 100, {0, 100, 200, 300}, 1},  // not inside the lap
      {{0, 100, 200, 300}, 1, Case::kInsert, 0, {0, 100, 200, 300}, 1},
  };
  for (const Case& c : cases) {
    BareWorkspace b;
    frmInsertBeacon d = Dialog(b, c.rows, c.selected);
    if (c.op == Case::kDelete) d.cmdDelete();
    else d.Insert(c.ms);
    EXPECT_EQ(d.Rows, c.expected);
    EXPECT_EQ(d.Count, static_cast<int>(c.expected.size()) - 1);
    EXPECT_EQ(d.Selected, c.selected_after);
  }
}

TEST(BeaconsTest, InsertByDistanceNeedsADistanceChannel) {
  BareWorkspace b;
  frmInsertBeacon d = Dialog(b, {0, 100, 200}, 0);
  EXPECT_FALSE(d.InsertByDistance(QStringLiteral("50")));
  EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("Error: No distance data for this function"));
  EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("Insert Beacon"));
}

// Shifting the beacons by time: the laps between the out lap and the in lap move, and a shift
// that would make laps overlap is refused.
TEST(frmShiftBeaconTest, ShiftsTheInnerBeaconsByTimeWithinTheirNeighbours) {
  const std::tuple<std::vector<int32_t>, const char*, std::vector<int32_t>, bool> cases[] = {
      {{0, 60000, 160000, 260000, 300000}, "1.5", {0, 61500, 161500, 260000, 300000}, false},
      {{0, 60000, 160000, 260000, 300000}, "-59.999", {0, 1, 100001, 260000, 300000}, false},
      {{0, 60000, 160000, 260000, 300000}, "0.0015", {0, 60002, 160002, 260000, 300000}, false},  // halves to even
      {{0, 60000, 160000, 260000, 300000}, "-60", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 160000, 260000, 300000}, "100", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 160000, 260000, 300000}, "1,5", {0, 60000, 160000, 260000, 300000}, true},
      {{0, 60000, 61000, 62000}, "0.5", {0, 60500, 61000, 62000}, false},  // one beacon between
      {{0, 60000, 300000}, "1", {0, 60000, 300000}, false},                // none between: nothing moves
  };
  for (const auto& [rows, shift, expected, refused] : cases) {
    BareWorkspace b;
    SetRows(b.Outing(), rows);
    frmShiftBeacon form(b.ws, 0);
    form.txtShift = QString::fromLatin1(shift);
    EXPECT_EQ(form.cmdOK(), !refused) << shift;
    EXPECT_EQ(Rows(b.Outing()), expected) << shift;
    if (refused) {
      EXPECT_EQ(LastMessage(b.messages).text, "Error shifting beacons") << shift;
      EXPECT_EQ(LastMessage(b.messages).title, "Shift Beacon") << shift;
    }
  }
}

class BeaconFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    demo = MakeDemoOuting(QStringLiteral("SILV0101.DAT"), home.Path(QString()), 3);
    ASSERT_TRUE(home.Load(0, demo.path));
    QFile f(demo.path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    before = f.readAll();
  }
  QByteArray Bytes() {
    QFile f(demo.path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  }
  TestHome home;
  DemoOuting demo;
  QByteArray before;
};

// The beacon table is the only thing that changes in the file, reopening gives the same laps,
// and laps that keep their start keep what the engineer chose for them.
TEST_F(BeaconFileTest, SavedBeaconsChangeOnlyTheBeaconFields) {
  Workspace& ws = home.ws();
  OutingRec& o = OutingAt(ws, 0);
  const int laps = o.LastLap;
  o.Laps[1].Shown = -1;
  o.Laps[1].Hidden = -1;
  o.Laps[1].LapColor = 5;
  o.Laps[3].LapColor = 7;
  frmInsertBeacon d(ws, 0);
  d.Selected = 2;
  const double half = (d.Rows[3] - d.Rows[2]) / 2.0;
  ASSERT_TRUE(d.InsertByTime(QString::number(half / 1000, 'f', 3)));
  ASSERT_TRUE(d.cmdOK());
  EXPECT_EQ(o.LastLap, laps + 1);
  EXPECT_EQ(o.Laps[1].Shown, -1);
  EXPECT_EQ(o.Laps[1].Hidden, -1);
  EXPECT_EQ(o.Laps[1].LapColor, 5);
  EXPECT_EQ(o.Laps[4].LapColor, 7);  // lap 3 behind the new beacon
  EXPECT_EQ(o.Laps[3].LapColor, -1);
  const QByteArray after = Bytes();
  ASSERT_EQ(after.size(), before.size());
  for (qsizetype i = 0; i < after.size(); ++i) {
    const bool beacon_field = (i >= 74 && i < 76) || (i >= 1280 && i < 1280 + 4 * kMaxBeacons);
    if (!beacon_field && after[i] != before[i]) {
      ADD_FAILURE() << "byte " << i << " changed";
      break;
    }
  }
  ASSERT_TRUE(home.Load(1, demo.path));
  EXPECT_EQ(Rows(OutingAt(ws, 1)), Rows(o));
}

TEST_F(BeaconFileTest, ShiftByDistanceMovesTheInnerBeacons) {
  Workspace& ws = home.ws();
  OutingRec& o = OutingAt(ws, 0);
  std::vector<LapRec> old = o.Laps;
  for (double shift : {50.0, -50.0}) {
    o.Laps = old;
    ASSERT_TRUE(ShiftDistance(ws, 0, shift));
    EXPECT_EQ(o.Laps[o.LastLap].StartTime, old[o.LastLap].StartTime);
    for (int i = 1; i <= o.LastLap - 2; ++i) {
      // About 50 m at racing speed is well under two seconds, and the right way round.
      const int moved = o.Laps[i].StartTime - old[i].StartTime;
      EXPECT_GT(moved * shift, 0) << i;
      EXPECT_LT(std::abs(moved), 2000) << i;
    }
  }
  o.Laps = old;
  GetChannelData(ws, 0, 1, o.ChanDistance);
  ShiftTime(ws, 0, 1.5);
  EXPECT_EQ(o.Laps[1].StartTime, old[1].StartTime + 1500);
  EXPECT_EQ(o.Laps[o.LastLap - 1].StartTime, old[o.LastLap - 1].StartTime);
  // The lap's samples and its start distance are those of its new start.
  EXPECT_EQ(o.Laps[1].LapChannels[o.ChanDistance].Loaded, 0);
  EXPECT_GT(o.Laps[1].StartDistance - old[1].StartDistance, 30);
}

TEST_F(BeaconFileTest, FailedWriteSaysSoAndKeepsTheFile) {
  Workspace& ws = home.ws();
  OutingAt(ws, 0).FileName = home.Path(QStringLiteral("missing/NONE.DAT"));
  EXPECT_FALSE(WriteBeacons(ws, 0));
  EXPECT_EQ(LastMessage(home.messages).text, QStringLiteral("Error updating beacon data"));
  EXPECT_EQ(LastMessage(home.messages).title, QStringLiteral("Insert Beacon"));
}

TEST_F(BeaconFileTest, KilledWriterLeavesOldOrNewFile) {
  OutingRec& o = OutingAt(home.ws(), 0);
  const std::vector<LapRec> a = o.Laps;
  std::vector<LapRec> b = a;
  for (std::size_t i = 1; i + 1 < b.size(); ++i) b[i].StartTime += 7;
  ExpectKilledWriterLeavesOldOrNew(demo.path, [&](int k) {
    o.Laps = k % 2 ? b : a;
    WriteBeacons(home.ws(), 0);
  });
}

}  // namespace
