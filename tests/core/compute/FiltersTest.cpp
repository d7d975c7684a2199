#include "core/compute/Filters.h"

#include <numeric>

#include "../TestOutings.h"

namespace {

using namespace test_outings;

ChannelRec Channel(int window, int kernel, float rate = 0.1f) {
  ChannelRec c;
  c.FilterWindow = static_cast<int16_t>(window);
  c.FilterKernel = static_cast<int16_t>(kernel);
  c.Rate = rate;
  return c;
}

// The filter of one channel of a fake outing, through the dispatch every fetch uses.
std::vector<float> Filter(const ChannelRec& c, std::vector<float> x) {
  BareWorkspace b;
  b.Outing().Channels = {c};
  return ApplyChannelFilter(b.ws, 0, 0, std::move(x));
}

std::vector<float> Sine(double hz, int count, double rate_per_ms = 0.1) {
  std::vector<float> x(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) x[static_cast<std::size_t>(i)] = static_cast<float>(std::sin(2 * M_PI * hz * i / (rate_per_ms * 1000)));
  return x;
}

// The largest magnitude away from the edges.
double BodyAmplitude(const std::vector<float>& y, int margin) {
  double a = 0;
  for (std::size_t i = static_cast<std::size_t>(margin); i + static_cast<std::size_t>(margin) < y.size(); ++i) a = std::max(a, std::fabs(double{y[i]}));
  return a;
}

TEST(Filters, WindowShapes) {
  const std::vector<float> rect = BuildWindowedKernel(Channel(3, 20), 1300);
  const std::vector<float> hamming = BuildWindowedKernel(Channel(0, 20), 1300);
  // Hamming: 0.08 at the ends, 1 in the middle.
  EXPECT_NEAR((hamming[0] / hamming[10]) / (rect[0] / rect[10]), 0.08, 1e-4);
  // Blackman as this program has always had it: one angle in both cosines, 0.42 - 0.42 c, which
  // is the raised cosine's shape.
  const std::vector<float> blackman = BuildWindowedKernel(Channel(1, 20), 1300);
  const std::vector<float> raised = BuildWindowedKernel(Channel(2, 20), 1300);
  for (std::size_t i = 0; i < blackman.size(); ++i) EXPECT_NEAR(blackman[i], raised[i], 1e-6) << i;
  EXPECT_NEAR(blackman[0], 0.0, 1e-7);
}

TEST(Filters, ConstantThroughKernelFilters) {
  const std::vector<float> x(400, 100.0f);
  ChannelRec c = Channel(0, 40);
  c.FilterKind = 2;
  c.FilterLowCut = 500;
  const std::vector<float> y = Filter(c, x);
  ASSERT_EQ(y.size(), x.size() - 1);
  for (std::size_t i = 20; i + 20 < y.size(); ++i) ASSERT_NEAR(y[i], 100.0, 1e-3) << i;
  // The edges cut the kernel short and do not normalise again: the ends sag.
  const std::vector<float> h = BuildWindowedKernel(c, 500);
  const double lead = 100.0 * std::accumulate(h.begin() + 20, h.end(), 0.0);     // y[0]: j from half
  const double trail = 100.0 * std::accumulate(h.begin(), h.begin() + 22, 0.0);  // y[U-1]: j to half + 1
  EXPECT_NEAR(y.front(), lead, 1e-3);
  EXPECT_NEAR(y.back(), trail, 1e-3);
  EXPECT_LT(y.front(), 90.0);
  EXPECT_LT(y.back(), 90.0);
  // Direct current passes the low-pass and the band-reject, and is stopped by the others.
  const std::pair<int, double> cases[] = {{2, 100}, {3, 0},   {4, 0},   {5, 100},
                                          {0, 100}, {6, 100}, {-1, 100}};  // other kinds: untouched
  for (const auto& [kind, body] : cases) {
    ChannelRec f = Channel(0, 40);
    f.FilterKind = static_cast<int16_t>(kind);
    f.FilterLowCut = 1000;
    f.FilterHighCut = 2500;
    const std::vector<float> out = Filter(f, x);
    ASSERT_EQ(out.size(), x.size() - (kind >= 2 && kind <= 5 ? 1 : 0)) << kind;
    EXPECT_NEAR(out[200], body, 1e-3) << kind;
  }
}

TEST(Filters, FrequencyResponseOfEachKind) {
  // 100 samples a second; the low cut-off at 10 Hz, the high one at 25 Hz.
  struct Case {
    int kind;
    int low, high;
    double hz;
    bool passes;
  } cases[] = {
      {2, 1000, 4500, 2, true},   {2, 1000, 4500, 30, false},  // low-pass reads the low box
      {3, 4500, 1000, 30, true},  {3, 4500, 1000, 2, false},   // high-pass reads the high box
      {4, 1000, 2500, 17, true},  {4, 1000, 2500, 2, false},  {4, 1000, 2500, 40, false},
      {5, 1000, 2500, 17, false}, {5, 1000, 2500, 2, true},   {5, 1000, 2500, 40, true},
  };
  for (const Case& k : cases) {
    ChannelRec c = Channel(0, 100);
    c.FilterKind = static_cast<int16_t>(k.kind);
    c.FilterLowCut = static_cast<int16_t>(k.low);
    c.FilterHighCut = static_cast<int16_t>(k.high);
    const double a = BodyAmplitude(Filter(c, Sine(k.hz, 1000)), 100);
    if (k.passes) {
      EXPECT_NEAR(a, 1.0, 0.05) << "kind " << k.kind << " at " << k.hz << " Hz";
    } else {
      EXPECT_LT(a, 0.05) << "kind " << k.kind << " at " << k.hz << " Hz";
    }
  }
}

TEST(Filters, SmoothLooksAheadAndHoldsTheLastSample) {
  // Worked by hand from the four steps: W = 2, the smoothed value leaves the sum, x[W] never
  // enters it, and at the end the last raw sample is held.
  ChannelRec c;
  c.FilterKind = 1;
  c.SmoothWidth = 1;
  EXPECT_EQ(Filter(c, {1, 2, 3, 4, 5, 6, 7, 8}), (std::vector<float>{1.5f, 2.75f, 3.875f, 4.9375f, 5.96875f, 8, 8, 8}));
  EXPECT_EQ(Filter(c, std::vector<float>(10, 4.0f)), std::vector<float>(10, 4.0f));
  // Too short for the window: unchanged.
  c.SmoothWidth = 2;
  EXPECT_EQ(Filter(c, {1, 9, 2, 8, 3}), (std::vector<float>{1, 9, 2, 8, 3}));
  EXPECT_EQ(Filter(c, {}), std::vector<float>{});
  // A stored width of 0 must not divide by zero.
  c.SmoothWidth = 0;
  for (float v : Filter(c, {1, 9, 2, 8, 3, 7})) EXPECT_TRUE(std::isfinite(v));
}

}  // namespace
