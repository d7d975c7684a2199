#pragma once

// Digital filters of a channel, run on its engineering values when a lap is fetched: a moving
// average (Smooth) and windowed-sinc kernels for low-pass, high-pass, band-pass and band-reject.
// Sums run in float, in ascending order, as the samples are stored.

#include <vector>

struct Workspace;
struct ChannelRec;

inline constexpr double kTwoPi = 6.2831854;  // this value, not a closer one: results depend on it

// The kernel length M a channel's filter runs with: FilterKernel clamped to 10..200.
int KernelLength(const ChannelRec& channel);

// The kernel of one cut-off (hundredths of a hertz) for the channel's window and length, with
// gain 1 at DC. `negate` turns the normalising step into -h/sum (the high-pass half of a band).
std::vector<float> BuildWindowedKernel(const ChannelRec& channel, int cutoff, bool negate = false);

// The kernel a channel's FilterKind 2..5 asks for; empty for other kinds.
std::vector<float> ChannelKernel(const ChannelRec& channel);

// Direct convolution with a centred kernel; the result has one element fewer than `x`.
std::vector<float> Convolve(const std::vector<float>& h, const std::vector<float>& x);

// The moving average over 2 x SmoothWidth samples ahead of each sample, in place. A width of
// 0 leaves the samples as they are.
void SmoothSamples(int smooth_width, std::vector<float>& x);

std::vector<float> SmoothChannelData(Workspace& ws, int slot, int channel, std::vector<float> samples);
std::vector<float> FilterLowHigh(Workspace& ws, int slot, int channel, const std::vector<float>& samples);
std::vector<float> FilterBand(Workspace& ws, int slot, int channel, const std::vector<float>& samples);

// By FilterKind: 1 Smooth, 2 and 3 low/high-pass, 4 and 5 band; anything else untouched.
std::vector<float> ApplyChannelFilter(Workspace& ws, int slot, int channel, std::vector<float> samples);

// The filter's name as the windows show it: "None", "Smooth", "Low-pass", …
const char* FilterKindName(int kind);
const char* FilterWindowName(int window);
