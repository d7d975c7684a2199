// OpenOuting of an outing with 128 channels (64 analogue inputs by name, 64 keyed channels),
// 40 beacons and a 20-minute recording.

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include "BenchOutings.h"
#include "core/app/Files.h"
#include "core/outing/DescriptorCopy.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/track/Laps.h"

namespace {

void BM_OpenOuting128(benchmark::State& state) {
  BenchHome& h = TheBenchHome();
  Workspace& ws = *h.ws;
  const QString path = WideBenchOuting();
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
  const QString path = WideBenchOuting();
  for (auto _ : state) benchmark::DoNotOptimize(ReadOutingHeader(path, ws.OutingHdr));
}
BENCHMARK(BM_OpenOuting128_ReadHeader)->Unit(benchmark::kMillisecond);

void BM_OpenOuting128_CopyDescriptors(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  const QString path = WideBenchOuting();
  ws.CurOuting = 1;
  OpenOuting(ws, path);
  for (auto _ : state) benchmark::DoNotOptimize(CopyDescriptors(ws, 1, 0, 128));
}
BENCHMARK(BM_OpenOuting128_CopyDescriptors)->Unit(benchmark::kMillisecond);

void BM_OpenOuting128_LapDistances(benchmark::State& state) {
  Workspace& ws = *TheBenchHome().ws;
  const QString path = WideBenchOuting();
  ws.CurOuting = 1;
  OpenOuting(ws, path);
  for (auto _ : state) ComputeLapDistances(ws, 1);
}
BENCHMARK(BM_OpenOuting128_LapDistances)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
