#include "core/track/TrackDrawing.h"

#include "../TestOutings.h"
#include "core/plots/RecordingSurface.h"

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

TEST(TrackDrawingTest, SplitsHighlightAndStretchMarkTheirPoints) {
  BareWorkspace b;
  FourPointMap(b.ws);
  RecordingSurface s(9000, 6000);
  DrawTrackMap(b.ws, s, {.ShowSplits = true, .Highlight = 1, .MarkFrom = 3, .MarkTo = 2});
  // Split 15 falls on the first point that reaches it (20), split 30 on the last point.
  const auto circles = s.Of(DrawOp::Kind::Circle);
  ASSERT_EQ(circles.size(), 2u);
  EXPECT_EQ(circles[0].x1, 1638);
  EXPECT_EQ(circles[0].y1, 2658);
  EXPECT_EQ(circles[1].x1, 8100);
  EXPECT_EQ(circles[1].y1, 1200);
  EXPECT_EQ(s.Texts(), (std::vector<QString>{"1", "2"}));
  // The highlight is centred on point 1; the stretch 2..3 goes under the map, wide.
  const auto boxes = s.Of(DrawOp::Kind::FilledBox);
  ASSERT_EQ(boxes.size(), 2u);  // the start, then the highlight
  EXPECT_EQ((boxes[1].x1 + boxes[1].x2) / 2, 2340);
  EXPECT_EQ((boxes[1].y1 + boxes[1].y2) / 2, 3000);
  EXPECT_EQ(boxes[1].color, kTrackMarkColor);
  const auto lines = s.Of(DrawOp::Kind::Line);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0].color, kTrackMarkColor);
  EXPECT_GT(lines[0].width, lines[1].width);
  EXPECT_EQ(lines[0].x1, 1638);
  EXPECT_EQ(lines[0].x2, 8100);
}

}  // namespace
