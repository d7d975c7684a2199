#include "../TestOutings.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"

namespace {

using namespace test_outings;

TEST(PlotFormats, NumbersAsTheWindowsShowThem) {
  const std::pair<double, const char*> automatic[] = {
      {0, "0.000 "},        {5.5, "5.500 "},        {-5.5, "-5.500"},      {9.9999, "10.000 "},
      {9.99995, " "},       {10, "10.00 "},          {-12.5, "-12.50"},     {99.99995, " "},
      {150.26, "150.3 "},   {999.99995, " "},        {1234.4, "1234 "},     {99999, "99999 "},
      {99999.5, "99999.5 "}, {123456.7, "123456.7 "}, {NAN, " - "},
      // Ties of the exact binary value go to the even digit.
      {2.0625, "2.062 "},   {-2.0625, "-2.062"},     {10.125, "10.12 "},    {150.25, "150.2 "},
      {1234.5, "1234 "},    {1235.5, "1236 "},
  };
  for (const auto& [value, text] : automatic) EXPECT_EQ(FormatAuto(value), text) << value;

  const std::pair<double, const char*> times[] = {
      {60000, "    1:00.000"}, {0, "    0:00.000"}, {83456, "    1:23.456"}, {-83456, "    1:23.456"},
      {5, "    0:00.005"}, {3600000, "  60:00.000"},  {600000000, "10000:00.000"}, {NAN, " --- "},
  };
  for (const auto& [ms, text] : times) EXPECT_EQ(FormatTime(ms), text) << ms;

  ChannelRec c;
  const std::tuple<uint16_t, double, const char*> fixed[] = {
      {2, 3.14159, "3.14 "}, {0, -2.6, "-3"},     {3, 0, "0.000 "}, {7, 1, "1.0000 "}, {1, NAN, " - "},
      {2, 0.125, "0.12 "},   {2, 0.375, "0.38 "}, {0, 2.5, "2 "},   {1, -0.25, "-0.2"}};
  for (const auto& [decimals, value, text] : fixed) {
    c.Decimals = decimals;
    c.FftDecimals = decimals;
    EXPECT_EQ(FormatChannelValue(c, value), text) << value;
    EXPECT_EQ(FormatFftValue(c, value), text) << value;
  }
}

TEST(PlotFormats, LapTimesNamesAndLabels) {
  BareWorkspace b;
  EXPECT_EQ(FormatLapTime(b.ws, 83456), "1:23.456");
  b.ws.Plots.LapSpeedDisplay = true;
  EXPECT_EQ(FormatLapTime(b.ws, 83456), "1:23.456");  // no track: still a time
  b.ws.TrackLength = 5.891f;
  EXPECT_EQ(FormatLapTime(b.ws, 83456), "254.1 ");  // left-trimmed only: the sign's blank stays
  EXPECT_EQ(FormatLapTime(b.ws, 0.5), "");

  EXPECT_EQ(ColorName(8519755), "indigo");
  EXPECT_EQ(ColorName(1), "");
  ChannelRec c;
  c.Name = QStringLiteral(" SPEED  ");
  c.Units = QStringLiteral("km/h ");
  EXPECT_EQ(ChannelLabel(c), "SPEED (km/h}");
}

// One outing with a channel whose lap 0 holds `samples` at 1 kHz, the view over all of them.
struct ScaleFixture {
  BareWorkspace b;
  explicit ScaleFixture(const std::vector<float>& samples) {
    OutingRec& o = b.Outing();
    o.Loaded = -1;
    o.Channels.resize(2);
    o.LastChannel = 1;
    o.Channels[0].Rate = 1.0f;
    o.Channels[0].AutoScale = -1;
    o.Laps.resize(2);
    o.Laps[1].StartTime = 5000;
    o.LastLap = 1;
    for (LapRec& lap : o.Laps) lap.LapChannels.resize(2);
    LapChannelRec& cache = o.Laps[0].LapChannels[0];
    cache.Samples = samples;
    cache.Loaded = samples.empty() ? 0 : -1;
    FolderRec& f = b.ws.FolderTable[0];
    f.TimeStart = 0;
    f.TimeEnd = static_cast<int32_t>(samples.size());
  }
  ChannelRec& channel() { return b.Outing().Channels[0]; }
};

TEST(PlotScale, FixedEmptyAndTiledScales) {
  ScaleFixture f({1, 2, 3});
  f.channel().AutoScale = 0;
  f.channel().ScreenMin = f.channel().ScreenMax = 3;
  EXPECT_EQ(ComputeChannelScale(f.b.ws, 0, 0, 1000, false, false), 0);  // on the floor
  f.channel().ScreenMax = 13;
  EXPECT_EQ(ComputeChannelScale(f.b.ws, 0, 0, 1000, false, false), 100);
  EXPECT_EQ(f.channel().DistanceMax, 13);

  f.b.ws.FolderTable[0].Options.TileGraphs = true;
  f.b.ws.Plots.TileCount = 4;
  EXPECT_EQ(ComputeChannelScale(f.b.ws, 0, 0, 1000, true, false), 25);
  EXPECT_EQ(ComputeChannelScale(f.b.ws, 0, 0, 1000, false, false), 100);  // not for this window
  f.b.ws.Options.AutoTileMode = false;
  f.channel().TileBottom = 20;
  f.channel().TileTop = 60;
  EXPECT_EQ(ComputeChannelScale(f.b.ws, 0, 0, 1000, true, false), 40);
  EXPECT_EQ(GetTileOffset(f.b.ws, 0, 0, 0, 1000), 200);

  ScaleFixture empty({});
  EXPECT_EQ(ComputeChannelScale(empty.b.ws, 0, 0, 1000, false, false), 0);
}

TEST(PlotScale, BandsAndPositions) {
  ScaleFixture f({0, 10, 5});
  Workspace& ws = f.b.ws;
  ComputeChannelScale(ws, 0, 0, 1000, true, false);  // 0..10 over 1000 twips of a 2050 surface
  // Untiled: the floor of the data area at H - 650, the top at 400, clipped beyond.
  EXPECT_EQ(ChannelValueToY(ws, 2050, 0, 0, 0, 0), 1400);
  EXPECT_EQ(ChannelValueToY(ws, 2050, 0, 0, 0, 5), 900);
  EXPECT_EQ(ChannelValueToY(ws, 2050, 0, 0, 0, 50), 400);
  EXPECT_EQ(ChannelValueToY(ws, 2050, 0, 0, 0, -50), 1400);

  // Two outings plotting the same channel and another: two bands, shared by name.
  OutingRec& o = f.b.Outing();
  o.Channels[0].ShortName = QStringLiteral("speed ");
  o.Channels[1].ShortName = QStringLiteral("RPM");
  o.Laps[0].Shown = -1;
  o.Laps[0].LapChannels[0].Shown = o.Laps[0].LapChannels[1].Shown = -1;
  OutingRec& other = f.b.Outing(1);
  other = o;
  other.Channels[0].ShortName = QStringLiteral("RPM");
  other.Channels[1].ShortName = QStringLiteral("SPEED");
  OutingRec& hidden = f.b.Outing(2);  // a channel only in a hidden lap takes no band
  hidden = o;
  hidden.Channels[0].ShortName = QStringLiteral("GEAR");
  hidden.Laps[0].Hidden = -1;
  ws.FolderTable[0].Options.TileGraphs = true;
  GetTileCount(ws);
  EXPECT_EQ(ws.Plots.TileCount, 2);
  EXPECT_EQ(other.Laps[0].LapChannels[0].TileIndex, 1);
  EXPECT_EQ(other.Laps[0].LapChannels[1].TileIndex, 0);
  // Tile 0 is the band at the top: its base lies one band above the floor.
  EXPECT_EQ(GetTileOffset(ws, 0, 0, 0, 1000), 500);
  EXPECT_EQ(GetTileOffset(ws, 0, 0, 1, 1000), 0);
  EXPECT_EQ(RightMargin(ws), 150);
  EXPECT_EQ(FindChannelByName(ws, 0, 1, QStringLiteral(" speed")), 1);
  EXPECT_EQ(FindChannelByName(ws, 0, 1, QStringLiteral("GEAR")), -1);
}

TEST(PlotScale, TraceStepKeepsAbout2000Points) {
  const std::pair<int64_t, int64_t> cases[] = {{10, 1}, {1999, 1}, {2000, 1}, {2500, 1}, {3000, 2}, {5000, 2}, {7000, 4}, {90000, 45}};
  for (const auto& [n, step] : cases) EXPECT_EQ(TraceStep(n), step) << n;
}

// A folder whose axes are one lap of 5000 ms: the view commands on the time axis.
TEST(PlotView, ZoomScrollAndTheirHistory) {
  ScaleFixture f({1});
  Workspace& ws = f.b.ws;
  FolderRec& folder = ws.FolderTable[0];
  auto view = [&](int32_t start, int32_t end) {
    folder.TimeStart = start;
    folder.TimeEnd = end;
  };
  auto expect = [&](int32_t start, int32_t end, const char* what) {
    EXPECT_EQ(folder.TimeStart, start) << what;
    EXPECT_EQ(folder.TimeEnd, end) << what;
  };
  view(0, 1000), ZoomIn(ws), expect(250, 750, "zoom in: half the width about the centre");
  view(1000, 2000), ZoomOut(ws), expect(500, 2500, "zoom out: twice the width");
  view(200, 1200), ZoomOut(ws), expect(0, 2000, "zoom out stops at 0");
  view(0, 1000), folder.CursorTime = 0, ZoomCursor(ws), expect(0, 250, "zoom about a cursor at 0");
  view(1000, 2000), ScrollLeft(ws), expect(750, 1750, "scroll left by a quarter");
  view(1000, 2000), ScrollRight(ws), expect(1250, 2250, "scroll right by a quarter");
  view(4000, 4900), ScrollRight(ws), expect(4100, 5000, "scroll right stops at the end");
  view(1000, 2000), GotoStart(ws), expect(0, 1000, "go to start");
  view(1000, 2000), GotoEnd(ws), expect(4000, 5000, "go to end");
  view(333, 334), ZoomIn(ws), expect(333, 343, "rounded to whole ms, then widened to 10 ms");

  ZoomAll(ws);
  expect(0, 5000, "zoom all");
  EXPECT_EQ(folder.TimeZoomDepth, 0);
  // Eleven views pushed: the oldest is lost, the tenth undo brings back the second.
  for (int i = 1; i <= 11; ++i) view(i, 5000), PushView(ws);
  EXPECT_EQ(folder.TimeZoomDepth, 10);
  for (int i = 11; i >= 2; --i) UndoZoom(ws), expect(i, 5000, "undo");
  UndoZoom(ws);
  expect(2, 5000, "nothing left to undo");
}

}  // namespace
