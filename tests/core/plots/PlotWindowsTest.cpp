// The distance plot, the XY plot and the histogram: their arithmetic on small known laps, on a
// recording surface.

#include "GraphFixture.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/Regression.h"
#include "core/plots/frmDistance.h"
#include "core/plots/frmHisto.h"
#include "core/plots/frmXYPlot.h"
#include "core/track/DistanceTime.h"

namespace {

using namespace test_outings;

// Channel 1 of the graph fixture becomes a distance count at 250 Hz beside the 1 kHz ramp: four
// ramp samples to a count, rates that binary floats hold exactly.
void AddDistance(GraphFixture& f, const std::vector<float>& counts) {
  OutingRec& o = f.b.Outing();
  ChannelRec& d = o.Channels[1];
  d.Name = d.ShortName = QStringLiteral("DISTANCE");
  d.Rate = 0.25f;
  o.ChanDistance = 1;
  o.Laps[1].StartTime = 1000;
  LapChannelRec& cache = o.Laps[0].LapChannels[1];
  cache.Loaded = -1;
  cache.Samples = counts;
}

// A count that steps back, then holds its value: a backward stretch stands at the furthest
// point, a hold advances by the last forward step (0.25 x 6 x 1 x 20 = 30 a sample) and the
// trace waits there until the count passes it.
TEST(frmDistance, HeldAndBackwardDistancesNeverRunTheTraceBack) {
  GraphFixture f;
  AddDistance(f, {0, 4, 8, 6, 12, 12, 150, 154, 158, 162, 166});
  f.folder().DistanceStart = 0;
  f.folder().DistanceEnd = 270;  // 13500 twips of data area: 50 twips a unit
  frmDistance plot(f.b.ws, f.surface);
  plot.DoDistancePlot(0, 0, 0);
  const auto lines = f.surface.Of(DrawOp::Kind::Polyline);
  ASSERT_EQ(lines.size(), 1u);
  const std::vector<PixelPoint>& p = lines[0].points;
  const std::pair<int, double> expected[] = {{0, 0},    {3, 3},     {7, 7},     {8, 8},     {11, 8},    {13, 8},  {14, 9},
                                            {16, 12}, {17, 42},  {19, 102}, {20, 132}, {23, 132}, {24, 150}, {25, 151}};
  for (const auto& [i, position] : expected) {
    ASSERT_LT(static_cast<std::size_t>(i), p.size());
    EXPECT_EQ(p[static_cast<std::size_t>(i)].x, static_cast<int>(position * 50 + 750) / 15) << "sample " << i;
  }
}

TEST(frmDistance, WithoutADistanceChannelItSaysSo) {
  GraphFixture f;
  frmDistance plot(f.b.ws, f.surface);
  plot.DrawLineGraphs();
  EXPECT_EQ(f.surface.Texts(), std::vector<QString>{"No distance data"});
  EXPECT_EQ(plot.Caption, "Distance Plot");
}

// Labels are as wide as "00000" (500 twips) for the right margin: "200.0 " at x = 13,440 stands
// before 14,250 - 500 - 250.
TEST(frmDistance, AxisLabelsUpToTheRightMargin) {
  GraphFixture f;
  f.folder().DistanceStart = 106;
  f.folder().DistanceEnd = 206;
  frmDistance plot(f.b.ws, f.surface);
  plot.DistanceAxis();
  const std::vector<QString> texts = f.surface.Texts();
  EXPECT_NE(std::find(texts.begin(), texts.end(), "200.0 "), texts.end());
}

// The search of the time at which a lap reaches a distance: 250 Hz counts over a lap of 40 ms
// (lap end at sample 10), with a held sample, a stretch that steps back (16, 6, 7) and samples
// past the lap's end.
TEST(DistanceToTime, SearchesForwardFromTheLapsStart) {
  GraphFixture f;
  AddDistance(f, {0, 4, 8, 8, 12, 16, 6, 7, 28, 32, 40, 44, 48, 52});
  f.b.Outing().Laps[1].StartTime = 40;
  const std::pair<float, float> cases[] = {
      {6, 6},     // between samples 1 and 2
      {8, 12},    // held: the last sample still on it
      {10, 14},   // before the backward stretch, never inside it
      {30, 34},   // past it
      {40, 40},   // the lap's length: its last sample
      {46, 40},   // beyond the lap's end: the lap's duration
      {-2, 0},    // before the start
  };
  for (const auto& [distance, ms] : cases) EXPECT_FLOAT_EQ(DistanceToTime(f.b.ws, 0, 0, distance), ms) << distance;
  // A view from 0 to the lap's length covers all its samples: 41 of the 1 kHz ramp.
  f.folder().DistanceEnd = 40;
  frmDistance plot(f.b.ws, f.surface);
  plot.DoDistancePlot(0, 0, 0);
  EXPECT_EQ(plot.LastIndex, 40);
}

TEST(Regression, FitsAgainstSumsWorkedByHand) {
  const struct {
    std::vector<XYPoint> points;
    bool line_valid;
    float slope, intercept, correlation;  // 32-bit, as the window keeps them
    double a, b, c, curve_correlation;
  } cases[] = {
      // Three points: the line by the sums (r = 1/24, s = 61/6), the parabola through all three.
      {{{1, 2}, {2, 4}, {3, 6.5}}, true, 2.25f, -0.33333334f, 0.9979487f, 0.25, 1.25, 0.5, 1},
      {{{0, 1}, {1, 3}, {2, 5}, {3, 7}}, true, 2, 1, 1, 0, 2, 1, 1},  // a perfect line
      {{{0, 4}, {1, 4}, {5, 4}}, true, 0, 4, 0, 0, 0, 4, 0},          // identical y: correlation 0
      {{{2, 1}, {2, 5}}, false, 0, 0, 0, 0, 0, 0, 0},                 // one x: no fit
  };
  for (const auto& k : cases) {
    const LineFit line = LinearRegression(k.points);
    ASSERT_EQ(line.Valid, k.line_valid);
    if (!k.line_valid) continue;
    EXPECT_EQ(line.Slope, k.slope);
    EXPECT_EQ(line.Intercept, k.intercept);
    EXPECT_EQ(line.Correlation, k.correlation);
    const ParabolaFit curve = PolynomialRegression(k.points);
    ASSERT_TRUE(curve.Valid);
    EXPECT_NEAR(curve.PolyA, k.a, 1e-9);
    EXPECT_NEAR(curve.PolyB, k.b, 1e-9);
    EXPECT_NEAR(curve.PolyC, k.c, 1e-9);
    EXPECT_NEAR(curve.Correlation, k.curve_correlation, 1e-6);
  }
  EXPECT_LT(FitCorrelation(2, 1), 0);  // worse than the mean
  // The intercept comes from the slope as stored, 0.1f: from the exact slope it would be 0.5.
  const LineFit rounded = LinearRegression({{999, 0.1 * 999 + 0.5}, {1000, 100.5}, {1001, 0.1 * 1001 + 0.5}});
  EXPECT_EQ(rounded.Slope, 0.1f);
  EXPECT_EQ(rounded.Intercept, 0.49999851f);
}

// Channel 1 becomes the x channel, "SYSTEM SPEED" at 100 Hz on a fixed scale of 0 to 100,
// rising by `per_sample` a sample.
void AddSpeed(GraphFixture& f, float per_sample) {
  OutingRec& o = f.b.Outing();
  ChannelRec& x = o.Channels[1];
  x.Name = x.ShortName = QStringLiteral("SYSTEM SPEED");
  x.Rate = 0.1f;
  x.AutoScale = 0;
  x.ScreenMax = 100;
  LapChannelRec& xs = o.Laps[0].LapChannels[1];
  xs.Loaded = -1;
  for (int i = 0; i <= 1000; ++i) xs.Samples.push_back(static_cast<float>(i) * per_sample);
}

// Speed 5 a ms on 135 twips a unit, the ramp 1 a ms on 600 twips a unit: each sample a mark of
// two pixels each way (a polyline through the same points when connected, below).
TEST(frmXYPlot, MarksInTwips) {
  GraphFixture f;
  AddSpeed(f, 50);
  f.b.Outing().Channels[0].ScreenMax = 10;
  f.folder().TimeEnd = 10;
  frmXYPlot plot(f.b.ws, f.surface);
  plot.FindXChannels();
  plot.DrawOneXY(0, 0, 0);
  const auto lines = f.surface.Of(DrawOp::Kind::Line);
  ASSERT_EQ(lines.size(), 22u);
  const std::tuple<std::size_t, double, double> points[] = {
      {0, 750, 6400}, {1, 1425, 5800}, {4, 3450, 4000}, {10, 7500, 400}};
  for (const auto& [sample, x, y] : points) {
    const DrawOp &up = lines[2 * sample], &across = lines[2 * sample + 1];
    EXPECT_NEAR(up.x1, x, 1e-3) << sample;
    EXPECT_EQ(up.y1, y - 30);
    EXPECT_NEAR(across.x1, x - 30, 1e-3);
    EXPECT_EQ(across.y1, y);
  }
}

// y = 0.2 x over the points above: the 32-bit slope gives the intercept of the text; the line
// runs across the x scale; a line by hand through two clicks the same. The x channel is drawn
// against itself too; the measure mark stands at the cursor's time; a side panel has a scale.
TEST(frmXYPlot, FitsFromThe32BitSlope) {
  GraphFixture f;
  AddSpeed(f, 50);
  OutingRec& o = f.b.Outing();
  o.Channels[0].ScreenMax = 10;
  o.Laps[0].LapChannels[1].Shown = -1;
  f.folder().TimeEnd = 10;
  f.folder().CursorTime = 4;
  f.folder().DatumOuting = 0;
  f.folder().Options.XYConnected = f.folder().Options.XYLineFit = true;
  frmXYPlot plot(f.b.ws, f.surface);
  RecordingSurface panel(kPanelColumn, 7050);
  plot.SetAxisPanels(nullptr, &panel);
  f.folder().AxisPanelChannels[2] = QStringLiteral("RAMP");
  plot.DrawXYPlots();
  EXPECT_EQ(panel.Of(DrawOp::Kind::Print).size(), 10u);  // the ramp's scale beside the plot
  EXPECT_EQ(plot.Slope, 0.2f);
  EXPECT_EQ(plot.LineText, "Y = (0.2)X  + -1.490116E-07     Correlation Coeff = 1");
  const auto lines = f.surface.Of(DrawOp::Kind::Line);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const DrawOp& l) { return l.x1 == 750 && l.y1 == 6400 && l.x2 == 14250 && l.y2 == 400; }),
            1);
  const auto traces = f.surface.Of(DrawOp::Kind::Polyline);
  ASSERT_EQ(traces.size(), 2u);
  EXPECT_EQ(traces[0].points[4].x, 3450 / 15);
  EXPECT_EQ(traces[0].points[4].y, 4000 / 15);
  EXPECT_TRUE(f.surface.Of(DrawOp::Kind::Circle).empty());  // no measure mark without the measure
  EXPECT_EQ(plot.Labels[2].Value, "20.00 ");                // "X - Cursor": speed at 4 ms

  f.b.ws.Plots.MeasureCursor = true;
  f.surface.ops.clear();
  plot.DrawXYPlots();
  const auto marks = f.surface.Of(DrawOp::Kind::Circle);
  ASSERT_EQ(marks.size(), 1u);
  EXPECT_NEAR(marks[0].x1, 3450, 1e-3);
  EXPECT_EQ(marks[0].y1, 4000);

  plot.MouseDown(1, 1425, 5800, true);
  plot.MouseDown(1, 7500, 400, true);
  EXPECT_EQ(plot.LineText, "Y = (0.2)X  + -1.490116E-08");
  EXPECT_FALSE(plot.Manual[0].Set || plot.Manual[1].Set);

  // An x channel the outing lacks: nothing drawn, not even a word, and the index stays.
  f.folder().Options.AxisXYChannel = QStringLiteral("NONE");
  f.surface.ops.clear();
  plot.DrawXYPlots();
  EXPECT_EQ(f.surface.ops.size(), 1u);  // the clear
  EXPECT_EQ(plot.XAxisChannel[0], 1);
}

// Bins of a tenth of the fixed scale: a value on a High falls into the next bin, one on
// ScreenMax into none; a long view takes 2,000 samples at a fractional step added up along the
// walk (a marker of 5.5 at one index shows whether it was taken).
TEST(frmHisto, BinsOfTheFixedScale) {
  const struct {
    int32_t view_ms;
    float value;
    int marker;  // -1: none
    int32_t samples;
    int bin;     // -1: counted nowhere
    int32_t marked;
  } cases[] = {
      {1999, 1.0f, -1, 1999, 1, 0},
      {3000, 1.0f, 2, 2000, 1, 0},     // step 1.5: 0, 1, 3, 4, ...
      {3000, 1.0f, 3, 2000, 1, 1},
      {2004, 1.0f, 1002, 2000, 1, 0},  // 1000 steps of 1.002 add up to 1001.99999999998
      {2500, 9.99f, -1, 2000, 9, 0},
      {3000, 10.0f, -1, 2000, -1, 0},
      {500, -0.5f, -1, 500, -1, 0},
  };
  for (const auto& k : cases) {
    GraphFixture f;
    OutingRec& o = f.b.Outing();
    o.Channels[0].ScreenMax = 10;
    f.folder().Options.HistoBins = 10;
    f.folder().TimeEnd = k.view_ms;
    std::vector<float>& samples = o.Laps[0].LapChannels[0].Samples;
    std::fill(samples.begin(), samples.end(), k.value);
    if (k.marker >= 0) samples[static_cast<std::size_t>(k.marker)] = 5.5f;
    frmHisto histo(f.b.ws, f.surface);
    histo.CalcHistogram(0, 0, 0);
    const LapChannelRec& cache = o.Laps[0].LapChannels[0];
    EXPECT_EQ(cache.BinSamples, k.samples) << k.view_ms;
    ASSERT_EQ(cache.Bins.size(), 11u);
    for (int b = 0; b < 10; ++b) {
      const int32_t expected = b == k.bin ? k.samples - k.marked : b == 5 ? k.marked : 0;
      EXPECT_EQ(cache.Bins[static_cast<std::size_t>(b)].Count, expected) << k.view_ms << " marker " << k.marker << " bin " << b;
    }
  }
}

// Bars of 1,395 twips over a floor at 6,400 and 6,000 twips of height: a quarter of the view in
// bin 0 and three quarters in bin 2, by the three vertical scales; a second lap all in bin 0,
// summed into one set of bars with "HistoTotal", or drawn over the first with a peak of 1.
TEST(frmHisto, BarsByTheVerticalScale) {
  const struct {
    bool time_scale, auto_scale, total, second_lap;
    std::size_t bars;
    double top0, top2;
  } cases[] = {
      {true, false, false, false, 10, 4900, 1900},  // 6 twips a count: the whole view is the height
      {false, true, false, false, 10, 4400, 400},   // 8: the peak of 0.75 touches the top
      {false, false, false, false, 10, 3400, 400},  // 12: 50 % at the top, bin 2 clipped
      {false, true, true, true, 10, 400, 2800},     // 1,250 and 750 of 2,000, peak 0.625: 4.8
      {false, true, false, true, 20, 4900, 1900},   // each lap its own bars, the peak of 1 for both
  };
  for (const auto& k : cases) {
    GraphFixture f;
    OutingRec& o = f.b.Outing();
    o.Channels[0].ScreenMax = 10;
    f.folder().Options.HistoBins = 10;
    f.folder().TimeEnd = 1000;
    f.b.ws.Options.HistoTimeScale = k.time_scale;
    f.b.ws.Options.HistoAutoScale = k.auto_scale;
    f.b.ws.Options.HistoTotal = k.total;
    std::vector<float>& first = o.Laps[0].LapChannels[0].Samples;
    std::fill(first.begin(), first.begin() + 250, 0.5f);
    std::fill(first.begin() + 250, first.end(), 2.5f);
    if (k.second_lap) {
      LapChannelRec& second = o.Laps[1].LapChannels[0];
      o.Laps[1].Shown = second.Shown = second.Loaded = -1;
      second.Samples.assign(1001, 0.5f);
    }
    frmHisto histo(f.b.ws, f.surface);
    histo.DrawHistograms();
    const auto bars = f.surface.Of(DrawOp::Kind::Box);
    ASSERT_EQ(bars.size(), k.bars);
    EXPECT_EQ(bars[2].x1, 750 + 2 * 1395);
    EXPECT_EQ(bars[2].x2, 750 + 3 * 1395);
    EXPECT_EQ(bars[0].y2, 6400);
    EXPECT_DOUBLE_EQ(bars[0].y1, k.top0);
    EXPECT_DOUBLE_EQ(bars[2].y1, k.top2);
    // A click on a bar moves the numeric cursor onto it: an exclusive-or line down its middle.
    histo.MouseDown(1, 750 + 2.5 * 1395, 3000);
    EXPECT_EQ(histo.CursorBin, 2);
    EXPECT_EQ(f.surface.ops.back().x1, 750 + 2.5 * 1395);
    EXPECT_EQ(f.surface.ops.back().mode, kDrawXor);
  }
}

}  // namespace
