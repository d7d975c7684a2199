#include "core/compute/Frequency.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(Frequency, PointsOfASpan) {
  const std::pair<int64_t, int> cases[] = {{1, 2},    {2, 2},       {3, 2},         {4, 4},     {1023, 512},
                                           {1024, 1024}, {16383, 8192}, {20000, 16384}, {16384, 16384}};
  for (const auto& [span, n] : cases) EXPECT_EQ(FftPoints(span), n) << span;
  // Rounded ends, the end held at the last sample, a rate of 0 has no span.
  EXPECT_EQ(SpanSamples(5000, 0.25f, 1002, 1010).Start, 250);  // 250.5 and 252.5 to even
  EXPECT_EQ(SpanSamples(5000, 0.25f, 1002, 1010).N, 2);
  EXPECT_EQ(SpanSamples(300, 0.1f, 0, 9000).N, 256);
  EXPECT_EQ(SpanSamples(300, 0.0f, 0, 9000).N, 0);
  EXPECT_EQ(SpanSamples(300, 0.1f, 1000, 1004).N, 0);
}

// Magnitudes of the discrete transform worked by hand, divided by n; the upper half is dropped.
TEST(Frequency, SmallTransformsByHand) {
  const double s8 = 8.0;
  struct Case {
    std::vector<float> x;
    std::vector<double> bins;
  } cases[] = {
      {{3, 5}, {4}},
      {{1, 2, 3, 4}, {2.5, std::sqrt(8.0) / 4}},
      {{1, 2, 3, 4, 5, 6, 7, 8},
       {4.5, 4 / std::sin(M_PI / 8) / s8, 4 / std::sin(M_PI / 4) / s8, 4 / std::sin(3 * M_PI / 8) / s8}},
      {{0, 1, 0, -1, 0, 1, 0, -1}, {0, 0, 0.5, 0}},
  };
  for (const Case& c : cases) {
    const std::vector<float> got = Spectrum(c.x, 0, static_cast<int>(c.x.size()));
    ASSERT_EQ(got.size(), c.bins.size());
    for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], c.bins[i], 2e-6) << c.x.size() << " bin " << i;
  }
}

// 100 Hz over 1,024 samples: bins of 0.098 Hz; a 6.25 Hz sine of amplitude 2 on a level of 10
// shows as 1 at bin 64 and the level at bin 0. Samples past the array count as 0.
TEST(Frequency, SineFindsItsBin) {
  std::vector<float> x(1100);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>(10 + 2 * std::sin(2 * M_PI * 64 * i / 1024.0));
  const std::vector<float> s = Spectrum(x, 50, 1024);
  EXPECT_NEAR(s[0], 10, 1e-4);
  EXPECT_NEAR(s[64], 1, 1e-4);
  for (std::size_t i = 1; i < s.size(); ++i) EXPECT_LT(i == 64 ? 0 : s[i], 1e-4) << i;
  EXPECT_NEAR(Spectrum(x, 1099, 2)[0], x[1099] / 2, 1e-6);

  const Spectrogram g = MakeSpectrogram(x, 0, 1099, 256, 128);
  ASSERT_EQ(g.Columns.size(), 7u);  // windows from 0 to 768, the last one ending at 1023
  EXPECT_EQ(g.Starts.back(), 768);
  for (const auto& column : g.Columns) EXPECT_NEAR(column[16], 1, 1e-3);
}

}  // namespace
