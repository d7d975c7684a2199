// The spectrum window's transform against FFTW, and a spectrogram of a whole lap.
//
// Spectrum: 16,384 samples of the brake pressure (1 kHz) of lap 2 of the demo's Silverstone outing,
// against FFTW's real-input transform of the same samples with a plan made once, outside the timed
// loop (FFTW_MEASURE and FFTW_ESTIMATE); both loops copy the samples in and end with the same
// magnitudes, so they do the same job. x86-64 only, as the magnitudes are written with SSE2. Spectrogram: the lateral G (100 Hz) of the same lap, 256-point
// windows at 50 % overlap. With --samples FILE the lap's lateral G is written to FILE, one float
// a line, and the spectrogram to FILE.orlan, one column a line, for specgram_scipy.py.

#include <benchmark/benchmark.h>
#include <emmintrin.h>
#include <fftw3.h>

#include <QFile>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "BenchOutings.h"
#include "core/app/Numbers.h"
#include "core/compute/Frequency.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/plots/PlotScale.h"
#include "core/track/DistanceTime.h"

namespace {

constexpr int kPoints = 16384;
constexpr int kLap = 2;

// A channel's samples of lap 2, fetched as the windows fetch them, and the lap's last sample.
struct LapSamples {
  std::vector<float> samples;
  float rate = 0;
  int64_t end = 0;
};

LapSamples Fetch(const char* channel) {
  Workspace& ws = *TheBenchHome().ws;
  if (ws.FolderTable[0].Outings[0].Loaded == 0) {
    ws.CurFolder = 0;
    ws.CurOuting = 0;
    if (!OpenOuting(ws, TheBenchHome().outing)) std::abort();
  }
  const int c = FindChannelByName(ws, 0, 0, QString::fromLatin1(channel));
  if (c < 0) std::abort();
  GetChannelData(ws, 0, kLap, c);
  OutingRec& o = OutingAt(ws, 0);
  LapSamples s;
  s.samples = o.Laps[kLap].LapChannels[static_cast<std::size_t>(c)].Samples;
  s.rate = o.Channels[static_cast<std::size_t>(c)].Rate;
  s.end = RoundHalfEven(GetLapDuration(ws, 0, kLap) * static_cast<double>(s.rate));
  return s;
}

const std::vector<float>& Brake() {
  static const std::vector<float> s = Fetch("BRAKE PRESSURE").samples;
  return s;
}

const LapSamples& LateralG() {
  static const LapSamples s = Fetch("LATERAL G");
  return s;
}

void BM_Spectrum(benchmark::State& state) {
  const std::vector<float>& x = Brake();
  for (auto _ : state) benchmark::DoNotOptimize(Spectrum(x, 0, kPoints));
}
BENCHMARK(BM_Spectrum)->Unit(benchmark::kMicrosecond);

// FFTW's plan over its own arrays; the magnitudes as Spectrum makes them.
struct Fftw {
  explicit Fftw(unsigned flags)
      : in(fftwf_alloc_real(kPoints)),
        out(fftwf_alloc_complex(kPoints / 2 + 1)),
        plan(fftwf_plan_dft_r2c_1d(kPoints, in, out, flags)),
        magnitudes(kPoints / 2) {}
  ~Fftw() {
    fftwf_destroy_plan(plan);
    fftwf_free(in);
    fftwf_free(out);
  }
  // The magnitudes as Spectrum makes them, with the same two roots at a time.
  const std::vector<float>& Run(const std::vector<float>& x) {
    std::memcpy(in, x.data(), sizeof(float) * kPoints);  // a measuring plan wrote over the array
    fftwf_execute(plan);
    const float n = kPoints;
    for (int i = 0; i < kPoints / 2; i += 2) {
      const __m128d r = _mm_set_pd(out[i + 1][0] / n, out[i][0] / n), m = _mm_set_pd(out[i + 1][1] / n, out[i][1] / n);
      const __m128d sum = _mm_add_pd(_mm_mul_pd(r, r), _mm_mul_pd(m, m));
      _mm_storel_pi(reinterpret_cast<__m64*>(magnitudes.data() + i), _mm_cvtpd_ps(_mm_sqrt_pd(sum)));
    }
    return magnitudes;
  }
  float* in;
  fftwf_complex* out;
  fftwf_plan plan;
  std::vector<float> magnitudes;
};

void BM_Fftw(benchmark::State& state, unsigned flags) {
  const std::vector<float>& x = Brake();
  Fftw f(flags);
  for (auto _ : state) benchmark::DoNotOptimize(f.Run(x).data());
}
BENCHMARK_CAPTURE(BM_Fftw, Measure, FFTW_MEASURE)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Fftw, Estimate, FFTW_ESTIMATE)->Unit(benchmark::kMicrosecond);

// FFTW's transform alone, to see what the magnitudes cost.
void BM_FftwExecuteOnly(benchmark::State& state) {
  Fftw f(FFTW_MEASURE);
  std::memcpy(f.in, Brake().data(), sizeof(float) * kPoints);
  for (auto _ : state) {
    fftwf_execute(f.plan);
    benchmark::DoNotOptimize(f.out);
  }
}
BENCHMARK(BM_FftwExecuteOnly)->Unit(benchmark::kMicrosecond);

void BM_Spectrogram(benchmark::State& state) {
  const LapSamples& g = LateralG();
  for (auto _ : state) benchmark::DoNotOptimize(MakeSpectrogram(g.samples, 0, g.end, 256, 128));
  state.counters["columns"] = static_cast<double>(MakeSpectrogram(g.samples, 0, g.end, 256, 128).Columns.size());
}
BENCHMARK(BM_Spectrogram)->Unit(benchmark::kMicrosecond);

// How far apart the two transforms are, relative to the largest bin: float rounding, no more.
void PrintAgreement() {
  const std::vector<float> ours = Spectrum(Brake(), 0, kPoints);
  Fftw f(FFTW_ESTIMATE);
  const std::vector<float>& theirs = f.Run(Brake());
  double diff = 0, top = 0;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    diff = std::max(diff, std::fabs(static_cast<double>(ours[i]) - theirs[i]));
    top = std::max(top, static_cast<double>(theirs[i]));
  }
  std::fprintf(stderr, "Spectrum against FFTW: largest difference %.3g of the largest bin\n", diff / top);
}

std::string Text(float v) {
  char buf[32];
  return std::string(buf, std::to_chars(buf, buf + sizeof buf, v).ptr);
}

void WriteSamples(const char* path) {
  const LapSamples& g = LateralG();
  QFile samples(QString::fromLocal8Bit(path)), columns(QString::fromLocal8Bit(path) + ".orlan");
  if (!samples.open(QIODevice::WriteOnly) || !columns.open(QIODevice::WriteOnly)) std::abort();
  for (int64_t i = 0; i <= g.end; ++i) samples.write((Text(g.samples[static_cast<std::size_t>(i)]) + '\n').c_str());
  for (const auto& column : MakeSpectrogram(g.samples, 0, g.end, 256, 128).Columns) {
    std::string line;
    for (float v : column) line += Text(v) + ' ';
    line.back() = '\n';
    columns.write(line.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], "--samples") == 0) {
      WriteSamples(argv[i + 1]);
      return 0;
    }
  }
  PrintAgreement();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
