// The vectorised transform against the plain one, float for float: spectra compared with older
// results must not move by a bit, whatever the loops are rearranged into.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <random>

#include "core/compute/Frequency.h"

namespace {

// Radix-2 decimation in frequency as written down: float twiddles from double angles, stage by
// stage, then the first half in bit-reversed order, divided by n, the root in double.
std::vector<float> PlainSpectrum(const std::vector<float>& x, int64_t start, int n) {
  std::vector<float> re(static_cast<std::size_t>(n)), im(re.size()), wr(re.size() / 2), wi(re.size() / 2), out;
  for (int64_t i = 0; i < n; ++i) {
    if (start + i >= 0 && start + i < static_cast<int64_t>(x.size())) re[i] = x[static_cast<std::size_t>(start + i)];
  }
  for (int i = 0; i < n / 2; ++i) {
    wr[i] = static_cast<float>(std::cos(6.2831854 * i / n));
    wi[i] = static_cast<float>(-std::sin(6.2831854 * i / n));
  }
  for (int h = n / 2, t = 1; h >= 1; h /= 2, t *= 2) {
    for (int g = 0; g < n; g += 2 * h) {
      for (int j = 0; j < h; ++j) {
        const int a = g + j, b = a + h;
        const float dr = re[a] - re[b], di = im[a] - im[b];
        re[a] = re[a] + re[b];
        im[a] = im[a] + im[b];
        re[b] = dr * wr[j * t] - di * wi[j * t];
        im[b] = dr * wi[j * t] + di * wr[j * t];
      }
    }
  }
  const int bits = std::countr_zero(static_cast<unsigned>(n));
  for (int i = 0; i < n / 2; ++i) {
    int k = 0;
    for (int b = 0; b < bits; ++b) k |= ((i >> b) & 1) << (bits - 1 - b);
    const double r = re[k] / static_cast<float>(n), m = im[k] / static_cast<float>(n);
    out.push_back(static_cast<float>(std::sqrt(r * r + m * m)));
  }
  return out;
}

::testing::AssertionResult SameBits(const std::vector<float>& got, const std::vector<float>& want) {
  if (got.size() != want.size()) return ::testing::AssertionFailure() << got.size() << " bins, not " << want.size();
  for (std::size_t i = 0; i < got.size(); ++i) {
    if (std::memcmp(&got[i], &want[i], sizeof(float)) != 0) {
      return ::testing::AssertionFailure() << "bin " << i << ": " << got[i] << " against " << want[i];
    }
  }
  return ::testing::AssertionSuccess();
}

// Every size, spans reaching before and past the samples, and values from subnormal to huge.
TEST(FrequencyArithmetic, EverySizeIsThePlainTransformBitForBit) {
  std::mt19937 rng(11);
  std::normal_distribution<float> noise(0, 1);
  std::vector<float> x(20000);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = 50 + 20 * std::sin(0.03f * i) + noise(rng);
  x[100] = -0.0f;
  x[200] = 1e-41f;
  x[300] = 3e37f;
  for (int n = 2; n <= kMaxFftPoints; n *= 2) {
    for (int64_t start : {int64_t{0}, int64_t{-3}, int64_t{7}, int64_t{19999}}) {
      EXPECT_TRUE(SameBits(Spectrum(x, start, n), PlainSpectrum(x, start, n))) << "n " << n << " from " << start;
    }
  }
  const Spectrogram g = MakeSpectrogram(x, 5, 5000, 256, 100);
  ASSERT_EQ(g.Columns.size(), 48u);  // windows from 5 to 4705, the last ending at 4960
  for (std::size_t c = 0; c < g.Columns.size(); ++c) EXPECT_TRUE(SameBits(g.Columns[c], PlainSpectrum(x, g.Starts[c], 256)));
}

}  // namespace
