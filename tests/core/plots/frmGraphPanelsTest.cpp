// The time graph's companions: the numeric panel, the scales of the side panels, and the moves
// to the minimum and maximum.

#include <gtest/gtest.h>

#include <algorithm>

#include "GraphFixture.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"

namespace {

using namespace test_outings;

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
  const char* captions[] = {"Time :", "RAMP (m}  001", "SHORT (bar}  001"};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(f.graph.Numerics[i].Caption, captions[i]);
    EXPECT_EQ(f.graph.Numerics[i].Top, 100 + 260.0 * static_cast<double>(i));
  }
  EXPECT_EQ(f.graph.NumericHeight, 200 + 3 * 260);

  const struct {
    float cursor;
    const char *time, *ramp, *short_value;
  } cases[] = {
      {1240.5f, "    0:01.240", "1240.5 ", "17.405 "},  // between samples: interpolated at each rate
      {3000, "    0:03.000", "3000.0 ", "35.000 "},      // the short channel's last sample stands
      {3150, "    0:03.150", "3150.0 ", ""},             // past the end of its lap: no value
  };
  for (const auto& c : cases) {
    f.folder().CursorTime = c.cursor;
    f.graph.DrawNumerics();
    EXPECT_EQ(f.graph.Numerics[0].Value, c.time) << c.cursor;
    EXPECT_EQ(f.graph.Numerics[1].Value, c.ramp) << c.cursor;
    EXPECT_EQ(f.graph.Numerics[2].Value, c.short_value) << c.cursor;
  }

  // With the numeric cursor off the panel keeps what it showed.
  f.b.ws.Options.NumericCursor = false;
  f.folder().CursorTime = 10;
  f.graph.DrawNumerics();
  EXPECT_EQ(f.graph.Numerics[1].Value, "3150.0 ");

  // A hidden lap has no row.
  f.b.Outing().Laps[0].Hidden = -1;
  f.graph.LoadDataLabels();
  EXPECT_EQ(f.graph.Numerics.size(), 1u);
}

TEST(frmGraphNumerics, PanelShowsCaptionsAndRightAlignedValues) {
  GraphFixture f;
  f.folder().CursorTime = 500;
  f.graph.LoadDataLabels();
  f.graph.DrawNumerics();
  RecordingSurface panel(3000, 1000);
  f.graph.PaintNumerics(panel);
  const auto prints = panel.Of(DrawOp::Kind::Print);
  ASSERT_EQ(prints.size(), 4u);
  EXPECT_EQ(prints[2].text, "RAMP (m}  000");
  EXPECT_EQ(prints[2].x1, 100);
  EXPECT_EQ(prints[3].text, "500.0 ");  // the sign's blank keeps the digits where a minus would put them
  EXPECT_EQ(prints[3].x1 + 600, 3000 - 100);  // six characters of 100 twips end at the margin
  EXPECT_EQ(prints[3].y1, 360);
}

TEST(frmGraph, MinMaxMovesTheCursorAndThePointer) {
  const struct {
    int32_t start, end;
    bool maximum;
    float time;
    double x;
  } cases[] = {
      {0, 10000, true, 10000, 14250},  // the ramp's maximum ends the view: the right edge
      {0, 10000, false, 0, 750},
      {2000, 4000, true, 4000, 14250},  // statistics over the view only
      {2000, 4000, false, 2000, 750},
  };
  for (const auto& c : cases) {
    GraphFixture f;
    f.folder().TimeStart = c.start;
    f.folder().TimeEnd = c.end;
    double pointer = -1;
    f.graph.MovePointer = [&](double x) { pointer = x; };
    f.graph.ManualMinMaxMove(c.maximum);
    EXPECT_EQ(f.folder().CursorTime, c.time) << c.start << c.maximum;
    EXPECT_EQ(pointer, c.x) << c.start << c.maximum;
    EXPECT_EQ(f.folder().CursorValue, c.time);  // the ramp's value is its sample number
  }
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

}  // namespace
