// CreateTrack of one Silverstone lap (5.8 km, 5,800 points in each of four passes), as an
// engineer waits for it, against the floor of its work: the same number of sine and cosine
// pairs in a plain loop.

#include <benchmark/benchmark.h>

#include <cmath>

#include "BenchOutings.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/track/TrackCreate.h"

namespace {

Workspace& Loaded() {
  BenchHome& h = TheBenchHome();
  static bool loaded = [&] {
    h.ws->CurFolder = 0;
    h.ws->CurOuting = 0;
    return OpenOuting(*h.ws, h.outing);
  }();
  if (!loaded) std::abort();
  return *h.ws;
}

TrackSettings LapSettings(int mode) {
  TrackSettings s;
  s.CreateMode = mode;
  s.InvertCalibration = true;  // the demo logs left-hand corners as positive
  return s;
}

// Whole CreateTrack from a cold cache: fetch, sample table, four passes.
void CreateTrackCold(benchmark::State& state) {
  Workspace& ws = Loaded();
  const TrackSettings s = LapSettings(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    ClearOutingCache(ws, 0);
    benchmark::DoNotOptimize(CreateTrack(ws, 0, 2, s));
  }
  state.counters["points"] = ws.Track.PointCount;
}
BENCHMARK(CreateTrackCold)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// The four integration passes alone, the sample table made.
void CalculateTrackPasses(benchmark::State& state) {
  Workspace& ws = Loaded();
  const TrackSettings s = LapSettings(0);
  CreateTrack(ws, 0, 2, s);
  for (auto _ : state) benchmark::DoNotOptimize(CalculateTrack(ws, 0, 2, s));
  state.counters["points"] = ws.Track.PointCount;
}
BENCHMARK(CalculateTrackPasses)->Unit(benchmark::kMillisecond);

// The floor: a sine and a cosine in double for every point of four passes.
void TrigFloor(benchmark::State& state) {
  Workspace& ws = Loaded();
  CreateTrack(ws, 0, 2, LapSettings(0));
  const int n = 4 * ws.Track.PointCount;
  for (auto _ : state) {
    float x = 0, y = 0, h = 0.1f;
    for (int i = 0; i < n; ++i) {
      x += static_cast<float>(std::sin(static_cast<double>(h)));
      y += static_cast<float>(std::cos(static_cast<double>(h)));
      h += 0.0001f;
    }
    benchmark::DoNotOptimize(x + y);
  }
}
BENCHMARK(TrigFloor)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
