#include "core/compute/Frequency.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"

namespace {

// The twiddles and the output order of one size, made once for all the windows of a spectrogram.
struct FftPlan {
  explicit FftPlan(int n) : n(n), wr(static_cast<std::size_t>(n / 2)), wi(static_cast<std::size_t>(n / 2)) {
    for (int i = 0; i < n / 2; ++i) {
      // The angle in double, as the tables always were; the tables themselves are floats.
      wr[static_cast<std::size_t>(i)] = static_cast<float>(std::cos(6.2831854 * i / n));
      wi[static_cast<std::size_t>(i)] = static_cast<float>(-std::sin(6.2831854 * i / n));
    }
    int bits = 0;
    while ((1 << bits) < n) ++bits;
    reversed.resize(static_cast<std::size_t>(n / 2));
    for (int i = 0; i < n / 2; ++i) {
      int r = 0;
      for (int b = 0; b < bits; ++b) r |= ((i >> b) & 1) << (bits - 1 - b);
      reversed[static_cast<std::size_t>(i)] = r;
    }
  }
  int n;
  std::vector<float> wr, wi;
  std::vector<int> reversed;
};

// Decimation in frequency, in place: stage s pairs points h = n / 2^s apart, and the pair at j
// into its group takes twiddle j × 2^(s-1).
void Transform(const FftPlan& p, std::vector<float>& re, std::vector<float>& im) {
  const int n = p.n;
  int stride = 1;
  for (int h = n / 2; h >= 1; h /= 2, stride *= 2) {
    for (int group = 0; group < n; group += 2 * h) {
      float* ar = re.data() + group;
      float* ai = im.data() + group;
      float* br = ar + h;
      float* bi = ai + h;
      for (int j = 0; j < h; ++j) {
        const float wr = p.wr[static_cast<std::size_t>(j * stride)], wi = p.wi[static_cast<std::size_t>(j * stride)];
        const float dr = ar[j] - br[j], di = ai[j] - bi[j];
        ar[j] = ar[j] + br[j];
        ai[j] = ai[j] + bi[j];
        br[j] = dr * wr - di * wi;
        bi[j] = dr * wi + di * wr;
      }
    }
  }
}

void Magnitudes(const FftPlan& p, const std::vector<float>& re, const std::vector<float>& im, std::vector<float>& out) {
  const float n = static_cast<float>(p.n);
  out.resize(static_cast<std::size_t>(p.n / 2));
  for (int i = 0; i < p.n / 2; ++i) {
    const int k = p.reversed[static_cast<std::size_t>(i)];
    const double r = re[static_cast<std::size_t>(k)] / n, m = im[static_cast<std::size_t>(k)] / n;
    out[static_cast<std::size_t>(i)] = static_cast<float>(std::sqrt(r * r + m * m));
  }
}

void Load(const std::vector<float>& samples, int64_t start, int n, std::vector<float>& re, std::vector<float>& im) {
  re.assign(static_cast<std::size_t>(n), 0.0f);
  im.assign(static_cast<std::size_t>(n), 0.0f);
  const int64_t size = static_cast<int64_t>(samples.size());
  for (int i = 0; i < n; ++i) {
    const int64_t k = start + i;
    if (k >= 0 && k < size) re[static_cast<std::size_t>(i)] = samples[static_cast<std::size_t>(k)];
  }
}

}  // namespace

int FftPoints(int64_t span) {
  const int64_t n = std::min<int64_t>(span, kMaxFftPoints);
  for (int i = 1; i <= 14; ++i) {
    if ((int64_t{1} << (i + 1)) > n) return 1 << i;
  }
  return kMaxFftPoints;
}

std::vector<float> Spectrum(const std::vector<float>& samples, int64_t start, int n) {
  const FftPlan plan(n);
  std::vector<float> re, im, out;
  Load(samples, start, n, re, im);
  Transform(plan, re, im);
  Magnitudes(plan, re, im, out);
  return out;
}

FftSpan SpanSamples(int64_t upper, float rate, double start_ms, double end_ms) {
  if (!(rate > 0) || upper < 1) return {};
  const int64_t start = RoundHalfEven(start_ms * rate);
  const int64_t end = std::min(RoundHalfEven(end_ms * rate), upper);
  if (start < 0 || end - start < 1) return {};
  return {start, FftPoints(end - start)};
}

Spectrogram MakeSpectrogram(const std::vector<float>& samples, int64_t start, int64_t end, int points, int step) {
  Spectrogram g;
  g.Points = points;
  if (points < 2 || step < 1) return g;
  const FftPlan plan(points);
  std::vector<float> re, im, out;
  for (int64_t first = start; first + points <= end + 1; first += step) {
    Load(samples, first, points, re, im);
    Transform(plan, re, im);
    Magnitudes(plan, re, im, out);
    g.Columns.push_back(out);
    g.Starts.push_back(first);
  }
  return g;
}
