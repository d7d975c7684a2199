#include "core/track/Splits.h"

#include "../TestOutings.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackFile.h"

using namespace test_outings;

namespace {

void Splits(Workspace& ws, std::vector<int32_t> points) {
  ws.Track.SplitPoints = points;
  ws.Track.SplitCount = static_cast<int16_t>(points.size() - 1);
}

TEST(SplitsTest, EditingTheTable) {
  BareWorkspace b;
  b.ws.TrackLength = 1000;
  b.ws.TrackLoaded = true;
  b.ws.Track.SegmentCount = 2;
  b.ws.Track.SegmentStart = {0, 300, 600};
  Splits(b.ws, {0, 500});
  frmTrackSplits d(b.ws);
  const std::tuple<int, double, bool> cases[] = {
      {10, 1000, true}, {10, 1000.4, false}, {10, 0, false}, {0, 200, false}, {5, 199.6, true}};
  for (const auto& [point, value, accepted] : cases) EXPECT_EQ(d.AddNewSplit(point, value), accepted) << value;
  EXPECT_EQ(b.ws.Track.SplitPoints, (std::vector<int32_t>{0, 200, 500, 1000}));

  b.messages.answers = {false, true};
  EXPECT_FALSE(d.ClearAllSplits());
  EXPECT_EQ(b.ws.Track.SplitCount, 3);
  EXPECT_TRUE(d.ClearAllSplits());
  EXPECT_EQ(b.ws.Track.SplitCount, 1);
  EXPECT_EQ(b.ws.Track.SplitPoints.size(), 2u);  // two entries, not none
  EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("Delete all currently defined Splits"));

  b.messages.answers = {true};
  EXPECT_TRUE(d.RestoreAllSplits());
  EXPECT_EQ(b.ws.Track.SplitPoints, (std::vector<int32_t>{0, 300, 600}));
  d.ReloadTempSplits();
  EXPECT_EQ(b.ws.Track.SplitPoints, (std::vector<int32_t>{0, 500}));
}

TEST(SplitsTest, SavingWritesOnlyAFullTableIntoTheMap) {
  BareWorkspace b;
  const QString path = b.dir.filePath("S.MAP");
  b.ws.Track.TrackPoints.resize(40);
  b.ws.TrackLength = 40;
  Splits(b.ws, {0, 20});
  ASSERT_TRUE(WriteFileAtomically(path, TrackFileBytes(b.ws, QStringLiteral("X"))));
  b.ws.FolderTable[0].TrackFile = path;
  QFile f(path);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray before = f.readAll();
  f.close();
  frmTrackSplits d(b.ws);
  Splits(b.ws, {0});  // SplitCount 0: nothing written, the table comes back
  EXPECT_FALSE(d.SaveNewSplits());
  EXPECT_EQ(b.ws.Track.SplitPoints, (std::vector<int32_t>{0, 20}));
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  EXPECT_EQ(f.readAll(), before);
  f.close();
  Splits(b.ws, {0, 30, 10});
  d.SaveAllSplits();  // sorts all but the last, as the window always did
  BareWorkspace r;
  ASSERT_TRUE(LoadTrackFile(r.ws, path));
  EXPECT_EQ(r.ws.Track.SplitPoints, (std::vector<int32_t>{0, 30, 10}));
  Splits(b.ws, {0, 30, 10, 5});
  d.SaveAllSplits();
  ASSERT_TRUE(LoadTrackFile(r.ws, path));
  EXPECT_EQ(r.ws.Track.SplitPoints, (std::vector<int32_t>{0, 10, 30, 5}));
  EXPECT_EQ(r.ws.Track.PointCount, 40);
}

TEST(SplitsTest, UserDistances) {
  BareWorkspace b;
  b.Outing().Laps.resize(3);
  b.Outing().Laps[1].StartDistance = 4000;
  frmUserSplits d(b.ws, 0);
  EXPECT_EQ(d.Head(), QStringLiteral("Lap Distance :  4000  (mtrs)"));
  EXPECT_FALSE(d.LeaveBox(0, 0.4));
  EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("D1 split distance cannot be a zero."));
  EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("User Splits"));
  const std::pair<std::array<double, 8>, std::vector<float>> cases[] = {
      {{1000, 2000, 3000, 5000, 0, 0, 0, 0}, {1000, 2000, 3000, 4000, 4000}},  // 5000 capped, then 0 ends it
      {{1000, 800, 3000, 0, 0, 0, 0, 0}, {1000, 4000}},
      {{500.5, 1000, 1500, 2000, 2500, 3000, 3500, 3999.6}, {500, 1000, 1500, 2000, 2500, 3000, 3500, 4000}},
  };
  for (const auto& [boxes, expected] : cases) {
    for (int k = 0; k < 8; ++k) ASSERT_TRUE(d.LeaveBox(k, boxes[static_cast<std::size_t>(k)]));
    EXPECT_EQ(d.cmdOK(), expected);
    EXPECT_EQ(b.Outing().UserSplits, expected);
  }
}

// Split times on the demo: at the map's splits, running from the lap's start, the last one the
// lap's true time; against the simulator's own clock at those distances. The map is 1 % shorter
// than the lap, so the lap is stretched by 0.99 and reaches a split later than its raw distance.
TEST(SplitsTest, SplitTimesOfAStretchedDemoLap) {
  TestHome home;
  const DemoOuting& demo = SharedDemoOuting(QStringLiteral("SPIE0201.DAT"), 2);
  ASSERT_TRUE(home.Load(0, demo.path));
  Workspace& ws = home.ws();
  const OutingRec& o = OutingAt(ws, 0);
  const int lap = 1;
  const float stretch = 0.99f;
  ws.TrackLoaded = true;
  ws.TrackLength = (o.Laps[lap + 1].StartDistance - o.Laps[lap].StartDistance) * stretch;
  ws.FolderTable[0].TrackCorrection = 2;
  ComputeLapScales(ws, 0);
  ClearOutingCache(ws, 0);
  ASSERT_NEAR(o.Laps[lap].DistanceScale, stretch, 1e-6);
  Splits(ws, {0, 1000, 2000, 3000});
  const auto splits = CalcSoftSplits(ws, 0, lap);
  ASSERT_EQ(splits.size(), 4u);
  EXPECT_FLOAT_EQ(splits.back().Seconds, LapTimeMs(o, lap) / 1000.0f);
  const int start = o.Laps[lap].StartTime;
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(splits[k].Distance, 1000.0f * (k + 1));
    // The simulator's time at which the lap's distance passed the split.
    const float target = demo.sim.DistanceM[static_cast<std::size_t>(start)] + 1000.0f * (k + 1) / stretch;
    const auto it = std::lower_bound(demo.sim.DistanceM.begin(), demo.sim.DistanceM.end(), target);
    const double truth = static_cast<double>(it - demo.sim.DistanceM.begin() - start) / 1000.0;
    // Distance in whole metres at 10 Hz, interpolated (about 15 ms at these speeds), and the
    // stretch to the true lap time, which moves a split by up to half a sample of the lap end.
    EXPECT_NEAR(splits[k].Seconds, truth, 0.08) << k;
  }
  OutingAt(ws, 0).ChanDistance = -1;
  EXPECT_TRUE(CalcSoftSplits(ws, 0, lap).empty());
}

TEST(SplitsTest, KilledMapWriterLeavesOldOrNewFile) {
  BareWorkspace b;
  const QString path = b.dir.filePath("K.MAP");
  b.ws.Track.TrackPoints.resize(200000);  // a long file widens the window for the kill
  b.ws.FolderTable[0].TrackFile = path;
  ASSERT_TRUE(WriteFileAtomically(path, TrackFileBytes(b.ws, QStringLiteral("A"))));
  frmTrackSplits d(b.ws);
  ExpectKilledWriterLeavesOldOrNew(path, [&](int k) {
    Splits(b.ws, {0, k % 2 ? 10 : 20});
    d.SaveNewSplits();
  });
}

}  // namespace
