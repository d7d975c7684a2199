// OpenOuting of an outing with 128 channels (64 analogue inputs by name, 64 keyed channels),
// 40 beacons and a 20-minute recording.

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include "BenchOutings.h"
#include "core/app/Files.h"
#include "core/outing/DescriptorCopy.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/outing/OutingWriter.h"
#include "core/track/Laps.h"

namespace {

QString WideOuting() {
  BenchHome& h = TheBenchHome();
  const QString path = JoinPath(JoinPath(h.home, "Data"), "WIDE.DAT");
  OutingHeader header;
  header.Version = QStringLiteral("8.2.1");
  header.SystemName = QStringLiteral("ORLAN LOGGER");
  header.EndTime = 20 * 60 * 1000;
  header.BeaconCount = 40;
  for (int b = 0; b < 40; ++b) header.BeaconTimes[static_cast<std::size_t>(b)] = 30000 + b * 29000;
  std::vector<ChannelBlockData> blocks;
  for (int i = 0; i < 128; ++i) {
    ChannelBlockData b;
    b.Key = static_cast<uint16_t>(i < 64 ? i : (i == 64 ? 70 : 64 + i));
    b.RateCode = 3;  // 100 Hz
    b.WordSize = b.Key == 70 ? 4 : 2;
    if (i < 64) header.InputNames[static_cast<std::size_t>(i)] = QStringLiteral("SENSOR %1").arg(i);
    const std::vector<double> raw(static_cast<std::size_t>(header.EndTime / 10 + 1), 1000.0);
    b.Samples = EncodeSamples(b.WordSize == 4 ? SampleType::I32 : SampleType::I16, raw);
    blocks.push_back(b);
  }
  WriteOutingFile(path, header, blocks);
  return path;
}

void BM_OpenOuting128(benchmark::State& state) {
  BenchHome& h = TheBenchHome();
  Workspace& ws = *h.ws;
  const QString path = WideOuting();
  ws.CurFolder = 0;
  ws.CurOuting = 1;
  OpenOuting(ws, path);  // the first open appends the 64 input names to CHANNEL.DSC
  for (auto _ : state) benchmark::DoNotOptimize(OpenOuting(ws, path));
}
BENCHMARK(BM_OpenOuting128)->Unit(benchmark::kMillisecond);

// The parts of an open, one at a time, to see what dominates.
void BM_OpenOuting128_ReadDescriptors(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  for (auto _ : state) benchmark::DoNotOptimize(ReadChannelDescriptors(ws));
}
BENCHMARK(BM_OpenOuting128_ReadDescriptors)->Unit(benchmark::kMillisecond);

void BM_OpenOuting128_ReadHeader(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  const QString path = WideOuting();
  for (auto _ : state) benchmark::DoNotOptimize(ReadOutingHeader(path, ws.OutingHdr));
}
BENCHMARK(BM_OpenOuting128_ReadHeader)->Unit(benchmark::kMillisecond);

void BM_OpenOuting128_CopyDescriptors(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  const QString path = WideOuting();
  ws.CurOuting = 1;
  OpenOuting(ws, path);
  for (auto _ : state) benchmark::DoNotOptimize(CopyDescriptors(ws, 1, 0, 128));
}
BENCHMARK(BM_OpenOuting128_CopyDescriptors)->Unit(benchmark::kMillisecond);

void BM_OpenOuting128_LapDistances(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  const QString path = WideOuting();
  ws.CurOuting = 1;
  OpenOuting(ws, path);
  for (auto _ : state) ComputeLapDistances(ws, 1);
}
BENCHMARK(BM_OpenOuting128_LapDistances)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
