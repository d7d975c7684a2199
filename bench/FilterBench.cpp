// A 200-point low-pass over 100,000 samples against a plain dot-product loop over the same data,
// which is the limit of a direct convolution.

#include <benchmark/benchmark.h>

#include <cmath>

#include "core/compute/Filters.h"
#include "core/workspace/OutingModel.h"

namespace {

constexpr int kSamples = 100000;

std::vector<float> Signal() {
  std::vector<float> x(kSamples);
  for (int i = 0; i < kSamples; ++i) x[static_cast<std::size_t>(i)] = static_cast<float>(std::sin(i * 0.01) + 0.1 * std::sin(i * 1.3));
  return x;
}

ChannelRec LowPass() {
  ChannelRec c;
  c.Rate = 1.0f;
  c.FilterKind = 2;
  c.FilterWindow = 0;
  c.FilterKernel = 200;
  c.FilterLowCut = 2000;  // 20 Hz at 1 kHz
  return c;
}

void BM_LowPass200(benchmark::State& state) {
  const std::vector<float> x = Signal();
  const std::vector<float> h = ChannelKernel(LowPass());
  for (auto _ : state) benchmark::DoNotOptimize(Convolve(h, x));
  state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_LowPass200)->Unit(benchmark::kMillisecond);

// The limit: one dot product per output, written as simply as it can be.
void BM_PlainDotProduct(benchmark::State& state) {
  const std::vector<float> x = Signal();
  const std::vector<float> h = ChannelKernel(LowPass());
  const int m = static_cast<int>(h.size());
  std::vector<float> y(static_cast<std::size_t>(kSamples - m));
  for (auto _ : state) {
    for (int i = 0; i < kSamples - m; ++i) {
      float s = 0;
      for (int j = 0; j < m; ++j) s += h[static_cast<std::size_t>(j)] * x[static_cast<std::size_t>(i + j)];
      y[static_cast<std::size_t>(i)] = s;
    }
    benchmark::DoNotOptimize(y.data());
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_PlainDotProduct)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
