#pragma once

// Spectra of a channel over a span of a lap: a radix-2 transform of at most 16,384 samples,
// in 32-bit floats, no window and no removal of the mean (a steady level shows at bin 0).

#include <cstdint>
#include <vector>

inline constexpr int kMaxFftPoints = 16384;

// The points a span of `span` samples is transformed over: at most 16,384, then down to a
// power of two (the first of 2, 4, … 16,384 whose double exceeds it), the rest of the span
// dropped. A span of 3 gives 2.
int FftPoints(int64_t span);

// The magnitudes of bins 0..n/2-1 of samples start..start+n-1 (zeros past the array), each
// divided by n; n a power of two from 2 to 16,384 (any other n gives no bins). Bin i is
// i × rate × 1000 / n hertz.
std::vector<float> Spectrum(const std::vector<float>& samples, int64_t start, int n);

// The samples of a span in ms from the lap's start, at `rate` samples a ms, as a transform
// takes them: the first sample and the point count; n 0 when the span holds no samples.
struct FftSpan {
  int64_t Start = 0;
  int N = 0;
};
FftSpan SpanSamples(int64_t upper, float rate, double start_ms, double end_ms);

// A spectrogram: the same transform over windows of `points` samples (a power of two) that
// step `step` samples along start..end, one spectrum a column; none unless `points` is a power
// of two from 2 up.
struct Spectrogram {
  std::vector<std::vector<float>> Columns;  // each points/2 magnitudes
  std::vector<int64_t> Starts;              // first sample of each column's window
  int Points = 0;
};
Spectrogram MakeSpectrogram(const std::vector<float>& samples, int64_t start, int64_t end, int points, int step);
