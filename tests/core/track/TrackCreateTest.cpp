#include "core/track/TrackCreate.h"

#include "../TestOutings.h"
#include "core/track/TrackFile.h"
#include "core/track/TrackState.h"
#include "core/track/frmTrackNew.h"
#include "core/outing/HeaderProcessing.h"

using namespace test_outings;

namespace {

// Rows of `count` + 1 samples, each `step` units and `dt` ms apart, with the same sensor value.
void Rows(Workspace& ws, int count, int step, int dt, float sensor) {
  ws.Track.Samples.clear();
  for (int i = 0; i <= count; ++i) ws.Track.Samples.push_back({i * step, i * dt, sensor, 0, 0, 0});
  ws.Track.SampleLast = count;
}

double Gap(const TrackState& t) {
  const TrackPoint& a = t.TrackPoints.front();
  const TrackPoint& b = t.TrackPoints.back();
  return std::hypot(b.X - a.X, b.Y - a.Y);
}

TEST(TrackCreateTest, LengthBelow101IsRefused) {
  const std::pair<int, bool> cases[] = {{100, false}, {101, true}};
  for (const auto& [length, accepted] : cases) {
    BareWorkspace b;
    Rows(b.ws, 1, length, 1000, 0);
    b.Outing().LapNumberBase = 1;
    EXPECT_EQ(CalculateTrack(b.ws, 0, 2, TrackSettings{}), accepted) << length;
    if (!accepted) {
      EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("Insufficient distance data : Lap (3)"));
      EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("Track Map"));
    }
  }
}

// A circle of radius 100 driven by a gyro a little too fast: the closing passes bring the end
// back to the start, without them the lap overshoots.
TEST(TrackCreateTest, ClosingPassesCloseACircle) {
  const float rate_deg_s = static_cast<float>(10.0 / 100.0 * 180 / M_PI * 1.03);  // 3% over
  const std::tuple<bool, bool, double, double> cases[] = {
      {true, true, 1.5, 0}, {true, false, 1.5, 0}, {false, true, 1e9, 10}};
  for (const auto& [closed, invert, max_gap, min_gap] : cases) {
    BareWorkspace b;
    Rows(b.ws, 63, 10, 1000, invert ? rate_deg_s : -rate_deg_s);
    TrackSettings s;
    s.CreateMode = 1;
    s.Closed = closed;
    s.Invert = invert;
    ASSERT_TRUE(CalculateTrack(b.ws, 0, 1, s));
    EXPECT_LT(Gap(b.ws.Track), max_gap) << closed << invert;
    EXPECT_GT(Gap(b.ws.Track), min_gap) << closed << invert;
    // A circle of radius 100 spans 200 units whichever way it turns.
    EXPECT_NEAR(b.ws.Track.TrackMaxX - b.ws.Track.TrackMinX, 200, 8);
  }
}

TEST(TrackCreateTest, SameDistanceMovesNothingButUpdatesTheCornerFlag) {
  BareWorkspace b;
  b.ws.Track.Samples = {{0, 0, 2.0f}, {0, 100, 2.0f}, {101, 200, 0.1f}, {102, 300, 0.1f}, {203, 400, 0.1f}};
  b.ws.Track.SampleLast = 4;
  ASSERT_TRUE(CalculateTrack(b.ws, 0, 1, TrackSettings{}));
  ASSERT_EQ(b.ws.Track.PointCount, 203);
  EXPECT_EQ(b.ws.Track.TrackPoints[0].SampleIndex, 1);
  EXPECT_EQ(b.ws.Track.TrackPoints[0].Corner, -1);   // set by sample 0 that had no distance
  EXPECT_EQ(b.ws.Track.TrackPoints[102].Corner, 0);  // below the end limit
}

// Each row of the table takes the sensor sample nearest its distance sample, halves to even: a
// sensor at 1,250 samples a second against distance at 500 takes samples 0, 2 (2.5), 5, 8 (7.5), 10.
TEST(TrackCreateTest, EachRowTakesTheNearestSensorSample) {
  BareWorkspace b;
  OutingRec& o = b.Outing();
  o.Loaded = -1;
  o.Channels.resize(2);
  o.LastChannel = 1;
  o.Channels[0].Rate = 1.25f;
  o.Channels[1].Rate = 0.5f;
  o.ChanLatG = 0;
  o.ChanDistance = 1;
  o.Laps.resize(2);
  o.Laps[1].StartTime = 10;  // 10 ms: five rows
  o.LastLap = 1;
  o.Laps[0].LapChannels.resize(2);
  for (LapChannelRec& c : o.Laps[0].LapChannels) c.Loaded = -1;
  for (int i = 0; i <= 12; ++i) o.Laps[0].LapChannels[0].Samples.push_back(static_cast<float>(i));
  o.Laps[0].LapChannels[1].Samples = {0, 1, 2, 3, 4, 5};
  ASSERT_TRUE(BuildTrackSamples(b.ws, 0, 0, TrackSettings{}));
  std::vector<float> sensor;
  for (const SourceSample& r : b.ws.Track.Samples) sensor.push_back(r.Sensor);
  EXPECT_EQ(sensor, (std::vector<float>{0, 2, 5, 8, 10}));
}

TEST(TrackCreateTest, ChecksSayWhatIsMissing) {
  struct Case {
    int mode;
    int16_t latg, gyro, lat, dist;
    int16_t last_lap;
    const char* message;
  } cases[] = {
      {0, -1, 2, 3, 4, 5, "Lateral G channel not logged"}, {1, 1, -1, 3, 4, 5, "Gyro channel not logged"},
      {2, 1, 2, -1, 4, 5, "GPS channel(s) not logged"},    {0, 1, 2, 3, -1, 5, "Distance channel not logged"},
      {0, 1, 2, 3, 4, 1, "No Beacons detected"},
  };
  for (const Case& c : cases) {
    BareWorkspace b;
    OutingRec& o = b.Outing();
    o.ChanLatG = c.latg, o.ChanGyro = c.gyro, o.ChanGpsLat = c.lat, o.ChanGpsLong = c.lat, o.ChanDistance = c.dist;
    o.LastLap = c.last_lap;
    TrackSettings s;
    s.CreateMode = c.mode;
    EXPECT_FALSE(CreateTrack(b.ws, 0, 0, s));
    EXPECT_EQ(LastMessage(b.messages).text, QString::fromLatin1(c.message));
    EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("Track Map"));
  }
}

}  // namespace

namespace {

// The window on a demo outing: lap stepping stops at the ends, settings survive closing, and the
// map saved is the one on the screen.
TEST(frmTrackNewTest, StepsLapsAndSavesTheMapShown) {
  TestHome home;
  const DemoOuting& demo = SharedDemoOuting(QStringLiteral("SPIE0201.DAT"), 2);
  ASSERT_TRUE(home.Load(0, demo.path));
  Workspace& ws = home.ws();
  ws.Paths.TrackDirectory = home.Path(QStringLiteral("Track"));
  OutingAt(ws, 0).CurLap = 1;
  frmTrackNew form(ws, 0);
  ASSERT_TRUE(form.Created());
  const int last = OutingAt(ws, 0).LastLap - 1;
  EXPECT_TRUE(form.mnuSelectLap(last));
  EXPECT_FALSE(form.mnuNextLap());  // the in lap is the last
  EXPECT_TRUE(form.mnuSelectLap(1));
  TrackSettings typed = form.Settings;
  typed.GlobalAngle = 400;  // ignored
  typed.LatGIncrement = -0.4;
  EXPECT_TRUE(form.Recreate(typed));
  EXPECT_EQ(form.Settings.GlobalAngle, 180);
  EXPECT_EQ(form.Settings.LatGIncrement, 0.4);
  form.mnuCorner(0, 9);
  EXPECT_EQ(form.CursorText(5), QStringLiteral("Distance : 5 mtrs"));
  ASSERT_TRUE(form.cmdSave(QStringLiteral("Ring.bak"), QStringLiteral("test")));
  form.Close();
  EXPECT_EQ(ReadTrackSettings(ws).LatGIncrement, 0.4);
  const QString path = JoinPath(ws.Paths.TrackDirectory, QStringLiteral("Ring.MAP"));
  EXPECT_EQ(ws.FolderTable[0].TrackFile, path);
  BareWorkspace r;
  ASSERT_TRUE(LoadTrackFile(r.ws, path));
  EXPECT_EQ(r.ws.Track.FirstSegmentKind, 1);  // the lap starts on the corner marked above
  EXPECT_EQ(r.ws.Track.SplitPoints, r.ws.Track.SegmentStart);

  // Cancelled after the first pass, the next lap's map leaves this lap's in place.
  struct CancelAfterOnePass : Progress {
    void Begin(const QString&, int, bool) override {}
    bool Step(int done, const QString&) override { return done < 1; }
    void End() override {}
  } cancel;
  const float length = ws.TrackLength, x = ws.Track.TrackPoints.back().X;
  ws.progress = &cancel;
  EXPECT_FALSE(form.mnuNextLap());
  ws.progress = nullptr;
  EXPECT_EQ(form.Lap(), 1);
  EXPECT_EQ(ws.TrackLength, length);
  EXPECT_EQ(ws.Track.TrackPoints.back().X, x);
}

TEST(frmTrackNewTest, NewMapNeedsAnOuting) {
  BareWorkspace b;
  EXPECT_FALSE(CanMakeNewMap(b.ws));
  EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("No Outing Loaded"));
  EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("New Track"));
}

}  // namespace
