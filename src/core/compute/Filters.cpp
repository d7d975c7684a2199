#include "core/compute/Filters.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"

int KernelLength(const ChannelRec& c) { return std::clamp<int>(c.FilterKernel, 10, 200); }

namespace {

int Half(int m) { return static_cast<int>(RoundHalfEven(m / 2.0)); }

float WindowValue(int window, int i, int m) {
  const double c = std::cos(i * kTwoPi / m);
  switch (window) {
    case 0: return static_cast<float>(0.54 - 0.46 * c);
    case 1: return static_cast<float>(0.42 - 0.5 * c + 0.08 * c);  // one angle for both terms, as it always was
    case 2: return static_cast<float>(0.5 - 0.5 * c);
    default: return 1.0f;
  }
}

// Turns a kernel into its complement: negate, and add 1 at the centre.
void Invert(std::vector<float>& h) {
  for (float& v : h) v = -v;
  h[static_cast<std::size_t>(Half(static_cast<int>(h.size()) - 1))] += 1.0f;
}

// y[i] = sum over j of h[j] x[j - half + i], for j in [j0, j1], in ascending j.
float Tap(const std::vector<float>& h, const std::vector<float>& x, int i, int half, int j0, int j1) {
  const int u = static_cast<int>(x.size()) - 1;
  j0 = std::max(j0, half - i);      // keep the sample index inside the array, for short arrays
  j1 = std::min(j1, u + half - i);
  float s = 0;
  for (int j = j0; j <= j1; ++j) s += h[static_cast<std::size_t>(j)] * x[static_cast<std::size_t>(j - half + i)];
  return s;
}

}  // namespace

std::vector<float> BuildWindowedKernel(const ChannelRec& c, int cutoff, bool negate) {
  const int m = KernelLength(c);
  const float fc = static_cast<float>(std::clamp(cutoff / (static_cast<double>(c.Rate) * 100000.0), 0.0001, 0.5));
  std::vector<float> h(static_cast<std::size_t>(m) + 1);
  for (int i = 0; i <= m; ++i) {
    const double d = i - m / 2.0;
    const float v = static_cast<float>(d == 0 ? fc * kTwoPi : std::sin(d * fc * kTwoPi) / d);
    h[static_cast<std::size_t>(i)] = v * WindowValue(c.FilterWindow, i, m);
  }
  float sum = 0;
  for (float v : h) sum += v;
  for (float& v : h) v = negate ? -v / sum : v / sum;
  return h;
}

std::vector<float> ChannelKernel(const ChannelRec& c) {
  switch (c.FilterKind) {
    case 2:
      return BuildWindowedKernel(c, c.FilterLowCut);
    case 3: {
      std::vector<float> h = BuildWindowedKernel(c, c.FilterHighCut);
      Invert(h);
      return h;
    }
    case 4:
    case 5: {
      std::vector<float> a = BuildWindowedKernel(c, c.FilterLowCut);
      std::vector<float> b = BuildWindowedKernel(c, c.FilterHighCut, true);
      b[static_cast<std::size_t>(Half(static_cast<int>(b.size()) - 1))] += 1.0f;  // b is now a high-pass
      for (std::size_t i = 0; i < a.size(); ++i) a[i] += b[i];                   // band-reject
      if (c.FilterKind == 4) Invert(a);
      return a;
    }
    default:
      return {};
  }
}

std::vector<float> Convolve(const std::vector<float>& h, const std::vector<float>& x) {
  const int u = static_cast<int>(x.size()) - 1;
  if (u <= 0 || h.empty()) return {};
  const int m = static_cast<int>(h.size()) - 1;
  const int half = Half(m);
  std::vector<float> y(static_cast<std::size_t>(u), 0.0f);
  for (int i = 0; i < std::min(half, u); ++i) y[static_cast<std::size_t>(i)] = Tap(h, x, i, half, half - i, m);
  // The body, summed in ascending j for every output as the edges are, but with j outside so
  // that the inner loop runs over consecutive outputs and vectorises.
  const int body_end = u - half;  // exclusive
  constexpr int kBlock = 1024;
  alignas(64) float acc[kBlock];  // sums of one block, apart from the arrays so stores never stall loads
  for (int start = half; start < body_end; start += kBlock) {
    const int count = std::min(body_end - start, kBlock);
    std::fill(acc, acc + count, 0.0f);
    for (int j = 0; j <= m; ++j) {
      const float hj = h[static_cast<std::size_t>(j)];
      const float* in = x.data() + (start - half + j);
      for (int k = 0; k < count; ++k) acc[k] += hj * in[k];
    }
    std::copy(acc, acc + count, y.begin() + start);
  }
  for (int i = std::max(0, u - half); i < u; ++i) y[static_cast<std::size_t>(i)] = Tap(h, x, i, half, 0, u - i - half + m);
  return y;
}

void SmoothSamples(int smooth_width, std::vector<float>& x) {
  const int w = 2 * smooth_width;
  const int u = static_cast<int>(x.size()) - 1;
  if (w <= 0 || w >= u) return;  // too short, or no width: nothing to average (and no division by 0)
  const float wf = static_cast<float>(w);
  float s = 0;
  for (int i = 0; i < w; ++i) s += x[static_cast<std::size_t>(i)];
  x[0] = s / wf;
  // The window looks ahead; the value that leaves the sum is the smoothed one, and x[w] never enters.
  for (int i = 1; i <= u - w; ++i) {
    s = s + x[static_cast<std::size_t>(w + i)] - x[static_cast<std::size_t>(i - 1)];
    x[static_cast<std::size_t>(i)] = s / wf;
  }
  // At the end the last raw sample is held as the one that enters; i = u - w is worked again.
  for (int i = u - w, k = 0; i <= u; ++i, ++k) {
    s = s + x[static_cast<std::size_t>(w + i - k)] - x[static_cast<std::size_t>(i - 1)];
    x[static_cast<std::size_t>(i)] = s / wf;
  }
}

std::vector<float> SmoothChannelData(Workspace& ws, int slot, int channel, std::vector<float> samples) {
  SmoothSamples(OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)].SmoothWidth, samples);
  return samples;
}

std::vector<float> FilterLowHigh(Workspace& ws, int slot, int channel, const std::vector<float>& samples) {
  return Convolve(ChannelKernel(OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)]), samples);
}

std::vector<float> FilterBand(Workspace& ws, int slot, int channel, const std::vector<float>& samples) {
  return Convolve(ChannelKernel(OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)]), samples);
}

std::vector<float> ApplyChannelFilter(Workspace& ws, int slot, int channel, std::vector<float> samples) {
  switch (OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)].FilterKind) {
    case 1: return SmoothChannelData(ws, slot, channel, std::move(samples));
    case 2:
    case 3: return FilterLowHigh(ws, slot, channel, samples);
    case 4:
    case 5: return FilterBand(ws, slot, channel, samples);
    default: return samples;
  }
}

const char* FilterKindName(int kind) {
  static constexpr const char* kNames[] = {"None", "Smooth", "Low-pass", "High-pass", "Band-pass", "Band-rej."};
  return kind >= 0 && kind <= 5 ? kNames[kind] : kNames[0];
}

const char* FilterWindowName(int window) {
  static constexpr const char* kNames[] = {"Hamming", "Blackman", "Raised Cosine", "Rectangular"};
  return window >= 0 && window <= 2 ? kNames[window] : kNames[3];
}
