#include "core/compute/Frequency.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/app/Numbers.h"

namespace {

// Four floats at a time. Each lane does exactly the scalar float operation, so the results are
// the scalar loop's bit for bit; written out because at -O2 the compiler won't vectorise a loop
// whose length it doesn't know.
typedef float Float4 __attribute__((vector_size(16)));

Float4 Load4(const float* p) {
  Float4 v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
void Store4(float* p, Float4 v) { std::memcpy(p, &v, sizeof v); }

// x + y with x as the first operand, as the scalar loop adds. Of two NaNs x86 keeps the first,
// and for vectors the compiler swaps the operands of a sum as it likes: a NaN sample would give
// bins of another sign bit than the scalar transform's.
Float4 AddInOrder(Float4 x, Float4 y) {
#if defined(__SSE__)
  asm("addps %1, %0" : "+x"(x) : "x"(y));
  return x;
#else
  return x + y;
#endif
}

// The twiddles and the output order of one size. Stage h (pairs h apart) takes the twiddle
// j × n/(2h) for the pair at j into its group; those h values are stored together at [h, 2h),
// so that a stage reads its twiddles in order.
struct FftPlan {
  explicit FftPlan(int n) : n(n), wr(static_cast<std::size_t>(n)), wi(static_cast<std::size_t>(n)) {
    std::vector<float> cr(static_cast<std::size_t>(n / 2)), ci(static_cast<std::size_t>(n / 2));
    for (int i = 0; i < n / 2; ++i) {
      // The angle in double, as the tables always were; the tables themselves are floats.
      cr[static_cast<std::size_t>(i)] = static_cast<float>(std::cos(6.2831854 * i / n));
      ci[static_cast<std::size_t>(i)] = static_cast<float>(-std::sin(6.2831854 * i / n));
    }
    for (int h = n / 2, stride = 1; h >= 1; h /= 2, stride *= 2) {
      for (int j = 0; j < h; ++j) {
        wr[static_cast<std::size_t>(h + j)] = cr[static_cast<std::size_t>(j * stride)];
        wi[static_cast<std::size_t>(h + j)] = ci[static_cast<std::size_t>(j * stride)];
      }
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

// n's plan, made on first use and kept: the tables cost more than a transform. Null unless n is a
// power of two from 2 up.
const FftPlan* PlanFor(int n) {
  if (n < 2 || (n & (n - 1)) != 0) return nullptr;
  static std::mutex guard;
  static std::unique_ptr<const FftPlan> plans[31];
  const int bits = std::countr_zero(static_cast<unsigned>(n));
  const std::lock_guard<std::mutex> lock(guard);
  if (!plans[bits]) plans[bits] = std::make_unique<const FftPlan>(n);
  return plans[bits].get();
}

// One butterfly on four pairs: a + b into a, (a - b) × w into b.
void Butterfly(Float4& xr, Float4& xi, Float4& yr, Float4& yi, Float4 cr, Float4 ci) {
  const Float4 dr = xr - yr, di = xi - yi;
  xr = AddInOrder(xr, yr);
  xi = AddInOrder(xi, yi);
  yr = dr * cr - di * ci;
  yi = AddInOrder(dr * ci, di * cr);
}

// The last two stages (pairs 2 apart, then 1 apart) over eight points at a time, two groups of
// four, without leaving the registers: the same butterflies in the same dependent order.
void LastTwoStages(const FftPlan& p, float* re, float* im, int n) {
  const Float4 c2r = {p.wr[2], p.wr[3], p.wr[2], p.wr[3]}, c2i = {p.wi[2], p.wi[3], p.wi[2], p.wi[3]};
  const Float4 c1r = {p.wr[1], p.wr[1], p.wr[1], p.wr[1]}, c1i = {p.wi[1], p.wi[1], p.wi[1], p.wi[1]};
  for (int g = 0; g < n; g += 8) {
    const Float4 lr = Load4(re + g), hr = Load4(re + g + 4), li = Load4(im + g), hi = Load4(im + g + 4);
    // Points 0, 1 of each group against points 2, 3.
    Float4 xr = __builtin_shufflevector(lr, hr, 0, 1, 4, 5), yr = __builtin_shufflevector(lr, hr, 2, 3, 6, 7);
    Float4 xi = __builtin_shufflevector(li, hi, 0, 1, 4, 5), yi = __builtin_shufflevector(li, hi, 2, 3, 6, 7);
    Butterfly(xr, xi, yr, yi, c2r, c2i);
    // Points 0 and 2 of each group against 1 and 3.
    Float4 ur = __builtin_shufflevector(xr, yr, 0, 4, 2, 6), vr = __builtin_shufflevector(xr, yr, 1, 5, 3, 7);
    Float4 ui = __builtin_shufflevector(xi, yi, 0, 4, 2, 6), vi = __builtin_shufflevector(xi, yi, 1, 5, 3, 7);
    Butterfly(ur, ui, vr, vi, c1r, c1i);
    Store4(re + g, __builtin_shufflevector(ur, vr, 0, 4, 1, 5));
    Store4(re + g + 4, __builtin_shufflevector(ur, vr, 2, 6, 3, 7));
    Store4(im + g, __builtin_shufflevector(ui, vi, 0, 4, 1, 5));
    Store4(im + g + 4, __builtin_shufflevector(ui, vi, 2, 6, 3, 7));
  }
}

// One stage: pairs h apart, the pair at j into its group taking the stage's twiddle j.
void Stage(const FftPlan& p, float* re, float* im, int h) {
  const float* wr = p.wr.data() + h;
  const float* wi = p.wi.data() + h;
  for (int group = 0; group < p.n; group += 2 * h) {
    float* ar = re + group;
    float* ai = im + group;
    float* br = ar + h;
    float* bi = ai + h;
    int j = 0;
    for (; j + 4 <= h; j += 4) {
      Float4 xr = Load4(ar + j), xi = Load4(ai + j), yr = Load4(br + j), yi = Load4(bi + j);
      Butterfly(xr, xi, yr, yi, Load4(wr + j), Load4(wi + j));
      Store4(ar + j, xr);
      Store4(ai + j, xi);
      Store4(br + j, yr);
      Store4(bi + j, yi);
    }
    for (; j < h; ++j) {  // h of 1 or 2, in transforms of 2 or 4 points
      const float dr = ar[j] - br[j], di = ai[j] - bi[j];
      ar[j] = ar[j] + br[j];
      ai[j] = ai[j] + bi[j];
      br[j] = dr * wr[j] - di * wi[j];
      bi[j] = dr * wi[j] + di * wr[j];
    }
  }
}

// Decimation in frequency, in place: stage s pairs points h = n / 2^s apart, and the pair at j
// into its group takes twiddle j × 2^(s-1). (Doing a group's later stages while it is still in
// the first-level cache gained nothing measurable at 16,384 points: the arrays fit the second.)
void Transform(const FftPlan& p, float* re, float* im) {
  const int n = p.n;
  const int last = n >= 8 ? 4 : 1;  // the stages below are LastTwoStages'
  for (int h = n / 2; h >= last; h /= 2) Stage(p, re, im, h);
  if (n >= 8) LastTwoStages(p, re, im, n);
}

// Bin i is point reversed(i), divided by n; the squares and the root in double. Where SSE2 has
// them, two bins at a time: each lane is the scalar expression's correctly rounded result, the
// sum of the squares taken in order as AddInOrder does for floats.
void Magnitudes(const FftPlan& p, const float* re, const float* im, float* out) {
  const float n = static_cast<float>(p.n);
  const int half = p.n / 2;
  const int* reversed = p.reversed.data();
  int i = 0;
#if defined(__SSE2__)
  for (; i + 2 <= half; i += 2) {
    const int k0 = reversed[i], k1 = reversed[i + 1];
    const __m128d r = _mm_set_pd(re[k1] / n, re[k0] / n), m = _mm_set_pd(im[k1] / n, im[k0] / n);
    __m128d sum = _mm_mul_pd(r, r);
    asm("addpd %1, %0" : "+x"(sum) : "x"(_mm_mul_pd(m, m)));
    _mm_storel_pi(reinterpret_cast<__m64*>(out + i), _mm_cvtpd_ps(_mm_sqrt_pd(sum)));
  }
#endif
  for (; i < half; ++i) {
    const int k = reversed[i];
    const double r = re[k] / n, m = im[k] / n;
    out[i] = static_cast<float>(std::sqrt(r * r + m * m));
  }
}

// Samples start..start+n-1 into re, zeros past the array; im all zeros. Both hold n floats.
void Load(const std::vector<float>& samples, int64_t start, int n, float* re, float* im) {
  const int64_t size = static_cast<int64_t>(samples.size());
  const int64_t first = std::clamp<int64_t>(start, 0, size), last = std::clamp<int64_t>(start + n, first, size);
  // Samples first..last-1 go to re[first - start] on; with none, re is all zeros.
  const int64_t head = last > first ? first - start : n, tail = last > first ? last - start : n;
  std::fill(re, re + head, 0.0f);
  std::copy(samples.begin() + first, samples.begin() + last, re + head);
  std::fill(re + tail, re + n, 0.0f);
  std::fill(im, im + n, 0.0f);
}

// Room for a transform's real and imaginary parts, not cleared: Load fills all of it.
std::unique_ptr<float[]> Work(int n) { return std::make_unique_for_overwrite<float[]>(2 * static_cast<std::size_t>(n)); }

}  // namespace

int FftPoints(int64_t span) {
  const int64_t n = std::min<int64_t>(span, kMaxFftPoints);
  for (int i = 1; i <= 14; ++i) {
    if ((int64_t{1} << (i + 1)) > n) return 1 << i;
  }
  return kMaxFftPoints;
}

std::vector<float> Spectrum(const std::vector<float>& samples, int64_t start, int n) {
  const FftPlan* plan = PlanFor(n);
  if (!plan) return {};
  const std::unique_ptr<float[]> work = Work(n);
  std::vector<float> out(static_cast<std::size_t>(n / 2));
  Load(samples, start, n, work.get(), work.get() + n);
  Transform(*plan, work.get(), work.get() + n);
  Magnitudes(*plan, work.get(), work.get() + n, out.data());
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
  const FftPlan* plan = PlanFor(points);
  if (!plan || step < 1 || end + 1 - start < points) return g;
  const int64_t columns = (end + 1 - start - points) / step + 1;
  g.Columns.reserve(static_cast<std::size_t>(columns));
  g.Starts.reserve(static_cast<std::size_t>(columns));
  const std::unique_ptr<float[]> work = Work(points);
  float *re = work.get(), *im = re + points;
  for (int64_t c = 0; c < columns; ++c) {
    const int64_t first = start + c * step;
    Load(samples, first, points, re, im);
    Transform(*plan, re, im);
    Magnitudes(*plan, re, im, g.Columns.emplace_back(static_cast<std::size_t>(points / 2)).data());
    g.Starts.push_back(first);
  }
  return g;
}
