#include "core/plots/frmGraph.h"

#include "GraphFixture.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RecordingSurface.h"
#include "core/plots/RefreshPlots.h"

namespace {

using namespace test_outings;

TEST(frmGraph, TraceIsThinnedToAbout2000Points) {
  const std::pair<int32_t, std::size_t> cases[] = {
      {1500, 2501},   // the view and the second past it, 2,500 samples: step Round(1.25) = 1
      {2000, 1501},   // 3,000 samples: step Round(1.5) = 2
  };
  for (const auto& [end, points] : cases) {
    GraphFixture f;
    f.folder().TimeEnd = end;
    f.graph.DoTimePlot(0, 0, 0);
    const int64_t n = f.graph.LastIndex - f.graph.FirstIndex;
    EXPECT_EQ(n, end + 1000);
    const auto lines = f.surface.Of(DrawOp::Kind::Polyline);
    ASSERT_EQ(lines.size(), 1u);  // one call to the device per trace
    EXPECT_EQ(lines[0].points.size(), points) << end;
    EXPECT_EQ(lines[0].color, 255);
  }
}

TEST(frmGraph, TraceGeometryAndClipping) {
  GraphFixture f;
  f.folder().TimeStart = 1000;
  f.folder().TimeEnd = 2000;
  f.graph.DoTimePlot(0, 0, 0);
  const DrawOp line = f.surface.Of(DrawOp::Kind::Polyline).at(0);
  // x: (i - 1000) x 13.5 twips + 750; y: floor 6400 less 0.6 twips a metre; 15 twips a pixel.
  EXPECT_EQ(line.points.front().x, 750 / 15);
  EXPECT_EQ(line.points.front().y, static_cast<int>(std::nearbyint(6400 - 1000 * 0.6)) / 15);
  EXPECT_EQ(line.points[500].x, static_cast<int>(500 * 13.5 + 750) / 15);
  // The second past the view runs into the right margin and stays on it.
  EXPECT_EQ(line.points.back().x, 14250 / 15);

  // A value above the scale is flattened at the top of the area.
  f.b.Outing().Channels[0].ScreenMax = 100;
  f.surface.ops.clear();
  f.graph.DoTimePlot(0, 0, 0);
  const auto points = f.surface.Of(DrawOp::Kind::Polyline).at(0).points;
  for (std::size_t i = 0; i < points.size(); ++i) ASSERT_EQ(points[i].y, 400 / 15) << i << " of " << points.size();
}

TEST(frmGraph, TimeAxisTicksAndLabels) {
  const std::tuple<int32_t, int32_t, std::vector<QString>, std::size_t> cases[] = {
      {0, 10000, {"0.00", "1.00", "2.00"}, 51},  // 10 s: ticks of 200 ms, labels each second
      {0, 5000, {"0.00", "0.50", "1.00"}, 51},   // 5 s: 100 ms, labels each half second
      {250, 750, {"0.250", "0.300"}, 51},        // 0.5 s: 10 ms, labels every 50 ms, finer
      {0, 30000, {"0.0", "2.5", "5.0"}, 61},     // 30 s: half seconds, labels every 2.5 s
  };
  for (const auto& [start, end, first_labels, tick_count] : cases) {
    GraphFixture f;
    f.folder().TimeStart = start;
    f.folder().TimeEnd = end;
    f.graph.DrawTimeAxis();
    std::vector<QString> texts = f.surface.Texts();
    ASSERT_GE(texts.size(), first_labels.size() + 1) << end;
    for (std::size_t i = 0; i < first_labels.size(); ++i) EXPECT_EQ(texts[i], first_labels[i]) << end;
    EXPECT_EQ(texts.back(), "secs");
    std::size_t ticks = 0;
    for (const DrawOp& op : f.surface.Of(DrawOp::Kind::Line)) ticks += op.y1 == 6400 && op.x1 == op.x2 && op.y2 > 6400;
    EXPECT_EQ(ticks, tick_count) << start << ".." << end;
  }
  GraphFixture empty;
  empty.folder().TimeEnd = 0;
  empty.graph.DrawTimeAxis();
  EXPECT_EQ(empty.surface.Texts(), std::vector<QString>{"No time"});
}

TEST(frmGraph, CursorValueStatusLineAndCursor) {
  GraphFixture f;
  f.folder().CursorTime = 2500.5f;
  f.graph.UpdateCursorValues();
  EXPECT_FLOAT_EQ(f.folder().CursorValue, 2500.5f);  // between two samples: interpolated
  EXPECT_TRUE(f.graph.StatusLine.startsWith("Lap Time : 0:10.000    Min : 0.0     Max : 10000.0     Avg : 5000.0 "))
      << f.graph.StatusLine.toStdString();
  EXPECT_TRUE(f.graph.StatusLine.endsWith("Rate : 1000 Hz")) << f.graph.StatusLine.toStdString();
  f.folder().CursorTime = 10000;
  f.graph.UpdateCursorValues();
  EXPECT_EQ(f.folder().CursorValue, 10000.0f);  // the last sample stands
  f.folder().CursorTime = 20000;
  f.graph.UpdateCursorValues();
  EXPECT_TRUE(f.graph.StatusLine.isEmpty());

  // The cursor: exclusive-or lines at the old x (erasing) and at the new one, on the scale the
  // trace was drawn with.
  f.graph.DoTimePlot(0, 0, 0);
  f.folder().CursorTime = 5000;
  f.folder().CursorValue = 5000;
  f.surface.ops.clear();
  const double y = f.graph.DrawCursor(3000, 4000);
  EXPECT_EQ(y, 6400 - 5000 * 0.6);
  const auto lines = f.surface.Of(DrawOp::Kind::Line);
  ASSERT_EQ(lines.size(), 4u);
  for (const DrawOp& op : lines) EXPECT_EQ(op.mode, kDrawXor);
  EXPECT_EQ(lines[0].x1, 3000);
  EXPECT_EQ(lines[1].x1, 750 + 0.5 * 13500);
  EXPECT_EQ(lines[3].y1, y);
  EXPECT_EQ(f.surface.DrawMode, kDrawCopy);

  f.b.ws.Plots.MeasureCursor = true;
  f.graph.DrawDatumPoint();
  f.folder().CursorTime = 6000;
  f.graph.UpdateCursorValues();
  EXPECT_TRUE(f.graph.StatusLine.endsWith("(dX : 0:01.000    dY : 1000.0 )")) << f.graph.StatusLine.toStdString();
}

TEST(frmGraph, FullRedrawDrawsTracesAxesAndLabels) {
  GraphFixture f;
  f.graph.DrawLineGraphs();
  EXPECT_EQ(f.surface.ops.front().kind, DrawOp::Kind::Cls);
  EXPECT_EQ(f.surface.Of(DrawOp::Kind::Polyline).size(), 1u);
  ASSERT_EQ(f.graph.ChannelLabels.size(), 1u);
  EXPECT_EQ(f.graph.ChannelLabels[0].Text, "RAMP (m}");
  EXPECT_EQ(f.graph.Caption, "RAMP vs Time");
  const std::vector<QString> texts = f.surface.Texts();
  // The vertical scale: 0 to 10000 in 50 steps, a tick of 75 twips left of the axis between
  // floor and top (49 of them), labels every fifth (1000, 2000, ...).
  const auto lines = f.surface.Of(DrawOp::Kind::Line);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const DrawOp& op) { return op.x1 == 750 && op.x2 == 675; }), 49);
  EXPECT_NE(std::find(texts.begin(), texts.end(), QStringLiteral("1000 ")), texts.end());
  EXPECT_NE(std::find(texts.begin(), texts.end(), QStringLiteral("9000 ")), texts.end());
  // Hiding the lap leaves the axes and no trace.
  f.b.Outing().Laps[0].Hidden = -1;
  f.surface.ops.clear();
  f.graph.DrawLineGraphs();
  EXPECT_TRUE(f.surface.Of(DrawOp::Kind::Polyline).empty());
}

TEST(frmGraph, MouseSetsTheCursorAndDragZooms) {
  GraphFixture f;
  int redraws = 0;
  f.folder().Redraw[static_cast<std::size_t>(PlotWindow::Graph)] = [&] { ++redraws; };
  f.graph.MouseDown(1, 14250, 3000);
  EXPECT_EQ(f.folder().CursorTime, 10000);
  f.graph.MouseUp(1, 14250, 3000);
  EXPECT_EQ(redraws, 0);

  // A drag of 2,700 twips (2,000 ms) zooms to it, either way; the band goes with the release.
  f.graph.MouseDown(1, 4800, 3000);
  f.graph.MouseMove(1, 6000, 3000);
  f.graph.MouseMove(1, 7500, 3000);
  f.graph.MouseUp(1, 7500, 3000);
  EXPECT_EQ(f.folder().TimeStart, 3000);
  EXPECT_EQ(f.folder().TimeEnd, 5000);
  EXPECT_EQ(f.folder().TimeZoomDepth, 1);
  EXPECT_EQ(redraws, 1);

  // Shorter than W / 100 (150 twips): no zoom. Released left of the area: a scroll.
  f.graph.MouseDown(1, 5000, 3000);
  f.graph.MouseUp(1, 5100, 3000);
  EXPECT_EQ(f.folder().TimeZoomDepth, 1);
  f.graph.MouseDown(1, 5000, 3000);
  f.graph.MouseUp(1, 100, 3000);
  EXPECT_EQ(f.folder().TimeStart, 2500);
  EXPECT_EQ(f.folder().TimeZoomDepth, 2);
}

TEST(frmGraph, KeysMoveTheCursorBySamples) {
  GraphFixture f;
  f.folder().CursorTime = 5000;
  using K = frmGraph::Key;
  f.graph.KeyDown(K::Right, false, false, false);
  EXPECT_EQ(f.folder().CursorTime, 5001);
  f.graph.KeyDown(K::Right, true, false, false);  // Shift: a hundred samples
  EXPECT_EQ(f.folder().CursorTime, 5101);
  f.graph.KeyDown(K::Left, false, true, false);  // Ctrl: ten
  EXPECT_EQ(f.folder().CursorTime, 5091);
  f.folder().CursorTime = 5000.4f;  // between two samples: onto the neighbour first
  f.graph.KeyDown(K::Left, true, false, false);
  EXPECT_EQ(f.folder().CursorTime, 5000);

  // At 100 Hz the rate (0.1 a ms) is not exact in binary: a cursor on a sample must still count
  // as on it, or every press would only go onto the next sample.
  f.b.Outing().Channels[0].Rate = 0.1f;
  f.folder().CursorTime = 3010;
  f.graph.KeyDown(K::Right, true, false, false);
  EXPECT_EQ(f.folder().CursorTime, 4010);
  f.graph.KeyDown(K::Left, false, false, false);
  EXPECT_EQ(f.folder().CursorTime, 4000);
  f.b.Outing().Channels[0].Rate = 1;

  // Down: the next channel shown in the lap becomes the axis; Enter zooms about the cursor.
  OutingRec& o = f.b.Outing();
  o.Laps[0].LapChannels[1].Shown = -1;
  o.Channels[1].Rate = 1;
  f.graph.KeyDown(K::Down, false, false, false);
  EXPECT_EQ(f.folder().ActiveChannel, 1);
  f.graph.KeyDown(K::Down, false, false, false);
  EXPECT_EQ(f.folder().ActiveChannel, 0);
  f.folder().CursorTime = 4000;
  f.graph.KeyDown(K::Enter, false, false, false);
  EXPECT_EQ(f.folder().TimeStart, 1500);
  EXPECT_EQ(f.folder().TimeEnd, 6500);
}

TEST(frmGraph, EventBarsWhereTheConditionHolds) {
  // A view of 500 ms: every sample is looked at, 27 twips apart.
  const struct {
    uint16_t flags;
    float limit;
    std::size_t bars;
    double from, to;
  } cases[] = {
      {1, 250, 1, 750 + 251 * 27, 14250},    // above 250 to the end: the bar is closed after the loop
      {2, 100, 1, 750, 750 + 100 * 27},      // below 100 from the first sample
      {16, 0.5f, 1, 750 + 27, 14250},        // "True" from sample 1 on
      {4, 300, 1, 750 + 300 * 27, 750 + 301 * 27},  // equal at one sample
      {3, 0, 0, 0, 0},                       // not one of the six conditions: no bar
  };
  for (const auto& c : cases) {
    GraphFixture f;
    f.folder().TimeEnd = 500;
    f.b.ws.Options.EventMarkers = true;
    ChannelRec& ch = f.b.Outing().Channels[0];
    ch.EventEnabled = 1;
    ch.EventFlags = c.flags;
    ch.EventLimit = c.limit;
    f.graph.DoTimePlot(0, 0, 0);
    EXPECT_EQ(f.graph.IndexStep, 1);
    const auto bars = f.surface.Of(DrawOp::Kind::FilledBox);
    ASSERT_EQ(bars.size(), c.bars) << c.flags;
    if (c.bars == 0) continue;
    EXPECT_NEAR(bars[0].x1, c.from, 1e-6) << c.flags;
    EXPECT_NEAR(bars[0].x2, c.to, 1e-6) << c.flags;
    EXPECT_EQ(bars[0].y1, 7050 - 650 - 200);
    EXPECT_EQ(bars[0].y2, 7050 - 650 - 200 + 45);
  }
  // Minimum and maximum labelled: the maximum at the right edge moves left of its point.
  GraphFixture f;
  f.folder().TimeEnd = 500;
  f.b.ws.Options.EventMarkers = true;
  ChannelRec& ch = f.b.Outing().Channels[0];
  ch.EventEnabled = 1;
  ch.EventFlags = 0x300;
  f.graph.DoTimePlot(0, 0, 0);
  const std::vector<QString> texts = f.surface.Texts();
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0], "0.000 ");
  EXPECT_EQ(texts[1], "500.0 ");
  EXPECT_EQ(f.surface.Of(DrawOp::Kind::Print)[1].x1, 14250 - 100.0 * 6);
}

TEST(RefreshPlots, RedrawsOpenWindowsInOrderAndMendsANarrowView) {
  GraphFixture f;
  std::vector<int> order;
  f.folder().Redraw[static_cast<std::size_t>(PlotWindow::Histo)] = [&] { order.push_back(3); };
  f.folder().Redraw[static_cast<std::size_t>(PlotWindow::Graph)] = [&] { order.push_back(0); };
  f.folder().TimeStart = 100;
  f.folder().TimeEnd = 105;
  RefreshPlots(f.b.ws);
  EXPECT_EQ(f.folder().TimeEnd, 110);
  EXPECT_TRUE(order.empty());
  RefreshPlots(f.b.ws);
  EXPECT_EQ(order, (std::vector<int>{0, 3}));
  f.b.Outing().Loaded = 0;  // nothing to draw
  RefreshPlots(f.b.ws);
  EXPECT_EQ(order.size(), 2u);
}

// Adds a second trace: channel 1 at 10 Hz, three seconds long, value 5 + sample.
void AddShortChannel(GraphFixture& f) {
  OutingRec& o = f.b.Outing();
  ChannelRec& c = o.Channels[1];
  c.Name = c.ShortName = QStringLiteral("SHORT");
  c.Units = QStringLiteral("bar");
  c.Rate = 0.01f;
  c.Decimals = 3;
  LapChannelRec& cache = o.Laps[0].LapChannels[1];
  cache.Shown = cache.Loaded = -1;
  for (int i = 0; i <= 30; ++i) cache.Samples.push_back(5.0f + static_cast<float>(i));
}

TEST(frmGraphNumerics, RowsFollowTheTracesAndTheCursor) {
  GraphFixture f;
  AddShortChannel(f);
  f.b.Outing().LapNumberBase = 1;
  f.graph.LoadDataLabels();
  ASSERT_EQ(f.graph.Numerics.size(), 3u);
  EXPECT_EQ(f.graph.Numerics[2].Caption, "SHORT (bar}  001");
  EXPECT_EQ(f.graph.Numerics[2].Top, 100 + 2 * 260);

  const std::tuple<float, const char*, const char*, const char*> cases[] = {  // cursor, time, ramp, short
      {1240.5f, "    0:01.240", "1240.5 ", "17.405 "},  // between samples: interpolated at each rate
      {3000, "    0:03.000", "3000.0 ", "35.000 "},      // the short channel's last sample stands
      {3150, "    0:03.150", "3150.0 ", ""},             // past the end of its lap: no value
  };
  for (const auto& [cursor, time, ramp, short_value] : cases) {
    f.folder().CursorTime = cursor;
    f.graph.DrawNumerics();
    EXPECT_EQ(f.graph.Numerics[0].Value, time) << cursor;
    EXPECT_EQ(f.graph.Numerics[1].Value, ramp) << cursor;
    EXPECT_EQ(f.graph.Numerics[2].Value, short_value) << cursor;
  }

  // A hidden lap has no row.
  f.b.Outing().Laps[0].Hidden = -1;
  f.graph.LoadDataLabels();
  EXPECT_EQ(f.graph.Numerics.size(), 1u);
}

TEST(frmGraph, SidePanelsCarryTheChosenScales) {
  GraphFixture f;
  AddShortChannel(f);
  RecordingSurface left(2 * kPanelColumn, 7050), right(kPanelColumn, 7050);
  f.graph.SetAxisPanels(&left, &right);
  f.folder().AxisPanelChannels = {QStringLiteral("short"), QString(), QStringLiteral("RAMP")};
  f.graph.DrawLineGraphs();

  // The left panel's first column: the line at its right edge, ticks to the left, labels from 75.
  const auto is_axis = [](const DrawOp& op, double x) { return op.x1 == x && op.x2 == x && op.y1 == 400 && op.y2 == 6400; };
  const auto left_lines = left.Of(DrawOp::Kind::Line);
  EXPECT_EQ(std::count_if(left_lines.begin(), left_lines.end(), [&](const DrawOp& op) { return is_axis(op, 750); }), 1);
  EXPECT_EQ(std::count_if(left_lines.begin(), left_lines.end(), [&](const DrawOp& op) { return is_axis(op, 1600); }), 0);
  const auto left_prints = left.Of(DrawOp::Kind::Print);
  ASSERT_EQ(left_prints.size(), 10u);  // nine labels and the units
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(left_prints[i].x1, 75);
  EXPECT_EQ(left_prints.back().text, "bar");
  EXPECT_EQ(left_prints.front().color, left_lines.front().color);

  // The right panel: the line next to the plot, labels ending at its right margin.
  const auto right_lines = right.Of(DrawOp::Kind::Line);
  EXPECT_EQ(std::count_if(right_lines.begin(), right_lines.end(), [&](const DrawOp& op) { return is_axis(op, 100); }), 1);
  const auto right_prints = right.Of(DrawOp::Kind::Print);
  ASSERT_EQ(right_prints.size(), 10u);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(right_prints[i].x1 + 100.0 * right_prints[i].text.size(), kPanelColumn - 75);
  EXPECT_EQ(right_prints[4].text, FormatAuto(5000));  // the middle label of the ramp's 0..10000

  // A channel not drawn in the lap on the axis, or a tiled folder, leaves the panels empty.
  f.b.Outing().Laps[0].LapChannels[1].Shown = 0;
  f.folder().AxisPanelChannels = {QStringLiteral("SHORT"), QString(), QString()};
  left.ops.clear();
  f.graph.DrawLineGraphs();
  EXPECT_TRUE(left.Of(DrawOp::Kind::Line).empty());
}

// The automatic scale: the spread of the samples in view grown by a quarter, brought to a nice
// step of its decade (a boundary value takes the lower step), the bottom on a tenth of it.
TEST(ChannelScale, NiceRangeOfTheSamplesInView) {
  const std::tuple<float, float, float, float> cases[] = {
      {0, 1.4375f, 0, 2},         {0, 0.625f, 0, 1},        // 1.797 -> 2; 0.781 -> 1
      {0, 7.2f, 0, 10},           {10, 15.5f, 9.75f, 17.25f},  // 9 -> 10; 6.875 -> 7.5
      {2, 5, 2, 4.5f},            {-5, 0, -5, 0},           // exactly 3.75 -> 2.5; 6.25 -> 5
      {100, 107, 99.75f, 107.25f}, {0, 18, 0, 20},          // 8.75 -> 7.5; 22.5 -> 2.25 -> 2 x 10
      {0, 14, 0, 10},             {0, 0.59375f, 0, 0.5f},   // 17.5 -> 1.75 -> 1 x 10; 0.742 -> 0.5
      {0.5f, 0.6875f, 0.5f, 0.625f}, {-2.2f, 1, -2.5f, 2.5f},  // 0.234 -> 0.125; 4 -> 5, floor below 0
      {1000, 1400, 1000, 1500}, {5, 5, 5, 5.125f},          // 500 -> 5 x 100; no spread: 0.125 around it
  };
  for (const auto& [min, max, bottom, top] : cases) {
    GraphFixture f;
    ChannelRec& channel = f.b.Outing().Channels[0];
    channel.AutoScale = -1;
    // Only samples 1 and 2 lie in the view: the ones around them must not widen the scale.
    f.b.Outing().Laps[0].LapChannels[0].Samples = {-1e6f, min, max, 1e6f};
    f.folder().TimeStart = 1;
    f.folder().TimeEnd = 2;
    const double scale = ComputeChannelScale(f.b.ws, 0, 0, 6000, false, false);
    EXPECT_EQ(channel.TimeMin, bottom) << min << ".." << max;
    EXPECT_EQ(channel.TimeMax, top) << min << ".." << max;
    EXPECT_DOUBLE_EQ(scale, 6000 / (static_cast<double>(top) - bottom)) << min << ".." << max;
  }
}

}  // namespace
