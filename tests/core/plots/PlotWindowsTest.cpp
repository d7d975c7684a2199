// The distance plot, the XY plot and the histogram: their arithmetic on small known laps, on a
// recording surface.

#include <gtest/gtest.h>

#include "GraphFixture.h"
#include "core/plots/Regression.h"
#include "core/plots/frmDistance.h"
#include "core/plots/frmHisto.h"
#include "core/plots/frmXYPlot.h"

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

TEST(Regression, FitsAgainstSumsWorkedByHand) {
  const struct {
    std::vector<XYPoint> points;
    bool line_valid;
    double slope, intercept, correlation;
    double a, b, c, curve_correlation;
  } cases[] = {
      // Three points: the line by the sums, the parabola through all three.
      {{{1, 2}, {2, 4}, {3, 6.5}}, true, 2.25, -1.0 / 3, std::sqrt(1 - (1.0 / 24) / (61.0 / 6)), 0.25, 1.25, 0.5, 1},
      {{{0, 1}, {1, 3}, {2, 5}, {3, 7}}, true, 2, 1, 1, 0, 2, 1, 1},  // a perfect line
      {{{0, 4}, {1, 4}, {5, 4}}, true, 0, 4, 0, 0, 0, 4, 0},          // identical y: correlation 0
      {{{2, 1}, {2, 5}}, false, 0, 0, 0, 0, 0, 0, 0},                 // one x: no fit
  };
  for (const auto& k : cases) {
    const LineFit line = LinearRegression(k.points);
    ASSERT_EQ(line.Valid, k.line_valid);
    if (!k.line_valid) continue;
    EXPECT_NEAR(line.Slope, k.slope, 1e-12);
    EXPECT_NEAR(line.Intercept, k.intercept, 1e-12);
    EXPECT_NEAR(line.Correlation, k.correlation, 1e-12);
    const ParabolaFit curve = PolynomialRegression(k.points);
    ASSERT_TRUE(curve.Valid);
    EXPECT_NEAR(curve.PolyA, k.a, 1e-9);
    EXPECT_NEAR(curve.PolyB, k.b, 1e-9);
    EXPECT_NEAR(curve.PolyC, k.c, 1e-9);
    EXPECT_NEAR(curve.Correlation, k.curve_correlation, 1e-6);
  }
  EXPECT_LT(FitCorrelation(2, 1), 0);  // worse than the mean
}

// The x channel read at each sample's time, by interpolation at its own rate.
TEST(frmXYPlot, PointsPairTheChannelWithTheXChannelAtTheSameTime) {
  GraphFixture f;
  OutingRec& o = f.b.Outing();
  ChannelRec& x = o.Channels[1];
  x.Name = x.ShortName = QStringLiteral("SYSTEM SPEED");
  x.Rate = 0.1f;  // 100 Hz against the ramp's 1 kHz
  LapChannelRec& xs = o.Laps[0].LapChannels[1];
  xs.Loaded = -1;
  for (int i = 0; i <= 1000; ++i) xs.Samples.push_back(static_cast<float>(i * 10));
  f.folder().TimeEnd = 1000;
  frmXYPlot plot(f.b.ws, f.surface);
  const std::vector<XYPoint> points = plot.TracePoints(0, 0, 0);
  ASSERT_EQ(points.size(), 1001u);
  for (std::size_t i : {0u, 1u, 7u, 999u}) {
    EXPECT_NEAR(points[i].x, static_cast<double>(i), 1e-4) << i;  // x at 0.1 i samples of 10 each
    EXPECT_EQ(points[i].y, static_cast<double>(i));
  }
}

// Bins of a tenth of the fixed scale: a value on a High falls into the next bin, one on
// ScreenMax into none; a long view takes 2,000 samples at a fractional step.
TEST(frmHisto, BinsOfTheFixedScale) {
  const struct {
    int32_t view_ms;
    float value;
    int32_t samples;
    int bin;  // -1: counted nowhere
  } cases[] = {{1999, 1.0f, 1999, 1}, {3000, 1.0f, 2000, 1}, {2500, 9.99f, 2000, 9}, {3000, 10.0f, 2000, -1}, {500, -0.5f, 500, -1}};
  for (const auto& k : cases) {
    GraphFixture f;
    OutingRec& o = f.b.Outing();
    o.Channels[0].ScreenMax = 10;
    f.folder().Options.HistoBins = 10;
    f.folder().TimeEnd = k.view_ms;
    std::fill(o.Laps[0].LapChannels[0].Samples.begin(), o.Laps[0].LapChannels[0].Samples.end(), k.value);
    frmHisto histo(f.b.ws, f.surface);
    histo.CalcHistogram(0, 0, 0);
    const LapChannelRec& cache = o.Laps[0].LapChannels[0];
    EXPECT_EQ(cache.BinSamples, k.samples) << k.view_ms;
    ASSERT_EQ(cache.Bins.size(), 11u);
    for (int b = 0; b < 10; ++b) {
      EXPECT_EQ(cache.Bins[static_cast<std::size_t>(b)].Count, b == k.bin ? k.samples : 0) << k.value << " bin " << b;
    }
    EXPECT_EQ(f.folder().HistoPeak, k.bin >= 0 ? 1.0f : 0.0f);
  }
}

}  // namespace
