#include "core/track/TrackDrawing.h"

#include "../TestOutings.h"
#include "core/plots/RecordingSurface.h"
#include "core/track/TrackBands.h"

using namespace test_outings;

namespace {

constexpr int kTurns = 111, kStraights = 222;

// A map whose bounds are x -10..90 and y -20..30; point i has distance 10 i.
void FourPointMap(Workspace& ws) {
  TrackState& t = ws.Track;
  t.TrackMinX = -10, t.TrackMaxX = 90, t.TrackMinY = -20, t.TrackMaxY = 30;
  t.TrackPoints = {{-10, 30, 0, 0, 0}, {10, 5, 0, -1, 10}, {0.25f, 0.25f, 0, -1, 20}, {90, -20, 0, 0, 30}};
  t.PointCount = 4;
  t.SplitCount = 2;
  t.SplitPoints = {0, 15, 30};
  ws.Options.ColorOfTurns = kTurns;
  ws.Options.ColorOfStraights = kStraights;
}

TEST(TrackDrawingTest, PointsLieWhereTheFitPutsThemInTheColourOfTheirStretch) {
  struct Case {
    double w, h;
    TrackXY expected[4];
  } cases[] = {
      // margin 1800, scale min(7200/100, 4200/50) = 72, centre (900, 1200), offsets (1620, 2640)
      {9000, 6000, {{900, 4800}, {2340, 3000}, {1638, 2658}, {8100, 1200}}},
      // a small window keeps the margin of 500: scale 10, centre (250, 500), offsets (350, 700);
      // 2.5 + 350 and 2.5 + 700 round to the even neighbour
      {1500, 1500, {{250, 1000}, {450, 750}, {352, 702}, {1250, 500}}},
  };
  for (const Case& c : cases) {
    BareWorkspace b;
    FourPointMap(b.ws);
    RecordingSurface s(c.w, c.h);
    DrawTrackMap(b.ws, s, {.ShowSplits = false});
    const auto lines = s.Of(DrawOp::Kind::Line);
    ASSERT_EQ(lines.size(), 3u) << c.w;
    const int colours[] = {kTurns, kTurns, kStraights};  // by the flag of the point each line reaches
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_EQ(lines[i].x1, c.expected[i].x) << c.w << " line " << i;
      EXPECT_EQ(lines[i].y1, c.expected[i].y) << c.w << " line " << i;
      EXPECT_EQ(lines[i].x2, c.expected[i + 1].x) << c.w << " line " << i;
      EXPECT_EQ(lines[i].y2, c.expected[i + 1].y) << c.w << " line " << i;
      EXPECT_EQ(lines[i].color, colours[i]) << c.w << " line " << i;
    }
    EXPECT_TRUE(s.Of(DrawOp::Kind::Circle).empty());
    EXPECT_EQ(s.ops.front().kind, DrawOp::Kind::Cls);
  }
}

// Limits 0, 50, 100, 150, 200, 250: a value on a limit takes the lower band.
TEST(TrackBands, ValueOnALimitTakesTheLowerBand) {
  const TrackReportOptions bands;
  const std::pair<float, int> cases[] = {
      {-0.5f, kButtonShadowColor}, {0, bands.BandColor[0]},   {50, bands.BandColor[0]},
      {50.5f, bands.BandColor[1]}, {100, bands.BandColor[1]}, {199.9f, bands.BandColor[3]},
      {250, bands.BandColor[4]},   {250.1f, kButtonShadowColor}};
  for (const auto& [value, colour] : cases) EXPECT_EQ(GetBandColor(bands, value), colour) << value;
}

}  // namespace
