// Fetching every channel of every lap of the largest demo outing from a cold cache, against the
// machine's limit: one read of the same data section and a plain conversion of it to float.

#include <benchmark/benchmark.h>

#include <QFile>
#include <cstring>

#include "BenchOutings.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/outing/OutingFormat.h"

namespace {

template <class T>
void ToFloat(const char* p, int64_t n, float* out) {
  for (int64_t i = 0; i < n; ++i) {
    T v;
    std::memcpy(&v, p + i * static_cast<int64_t>(sizeof(T)), sizeof(T));
    out[i] = static_cast<float>(v);
  }
}

// `fresh`: each channel into an array of its own, as a cache must keep them (first-touch page
// faults included); otherwise one reused array.
void ReadAndConvert(benchmark::State& state, bool fresh) {
  BenchHome& h = TheBenchHome();
  OutingHeader header;
  ReadOutingHeader(h.outing, header);
  const std::vector<int64_t> offsets = ChannelBlockOffsets(header);
  std::vector<float> out;
  int64_t bytes = 0;
  for (auto _ : state) {
    QFile f(h.outing);
    f.open(QIODevice::ReadOnly);
    f.seek(offsets.front());
    const QByteArray data = f.read(offsets.back() - offsets.front());
    bytes = data.size();
    for (int i = 0; i < header.LoggedChannels; ++i) {
      const ChannelTableEntry& e = header.ChannelTable[static_cast<std::size_t>(i)];
      const int64_t n = ChannelBlockLength(header, i) / e.WordSize;
      if (fresh) out = std::vector<float>();
      out.resize(static_cast<std::size_t>(n));
      const char* p = data.constData() + (offsets[static_cast<std::size_t>(i)] - offsets.front());
      switch (SampleTypeFor(e.WordSize, e.Key, header.LcuSerial)) {
        case SampleType::U8: ToFloat<uint8_t>(p, n, out.data()); break;
        case SampleType::I16: ToFloat<int16_t>(p, n, out.data()); break;
        case SampleType::I32: ToFloat<int32_t>(p, n, out.data()); break;
        case SampleType::F32: ToFloat<float>(p, n, out.data()); break;
        case SampleType::F64: ToFloat<double>(p, n, out.data()); break;
        case SampleType::None: break;
      }
      benchmark::DoNotOptimize(out.data());
    }
  }
  state.SetBytesProcessed(state.iterations() * bytes);
}
void BM_ReadAndConvert(benchmark::State& state) { ReadAndConvert(state, false); }
void BM_ReadAndConvertToArrays(benchmark::State& state) { ReadAndConvert(state, true); }
BENCHMARK(BM_ReadAndConvert)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadAndConvertToArrays)->Unit(benchmark::kMillisecond);

void BM_FetchEveryLapAndChannel(benchmark::State& state) {
  BenchHome& h = TheBenchHome();
  Workspace& ws = *h.ws;
  ws.CurFolder = 0;
  ws.CurOuting = 0;
  OpenOuting(ws, h.outing);
  const OutingRec& o = OutingAt(ws, 0);
  const int channels = o.LoggedCount + 3;
  int64_t samples = 0;
  for (auto _ : state) {
    ClearOutingCache(ws, 0);
    FetchScope scope(ws);  // as a redraw fetches
    samples = 0;
    for (int lap = 0; lap < o.LastLap; ++lap) {
      for (int c = 0; c < channels; ++c) {
        GetChannelData(ws, 0, lap, c);
        samples += static_cast<int64_t>(o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples.size());
      }
    }
  }
  state.counters["samples"] = static_cast<double>(samples);
}
BENCHMARK(BM_FetchEveryLapAndChannel)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
