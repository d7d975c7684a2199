#pragma once

// The one way to channel values: GetChannelData fetches a channel for a lap on first demand
// (read, scale, filter) and caches it in the lap's LapChannels. Callers then read Samples.

#include <cstdint>

struct Workspace;

inline constexpr int kFetchMarginMs = 5000;  // a lap is fetched this much past its end
// No fetch spans more: an outing is never this long, and a header whose times say otherwise must
// not make arrays of gigabytes.
inline constexpr double kMaxFetchSpanMs = 4 * 3600 * 1000.0;

// Fills ws…Laps[lap].LapChannels[channel] of outing `slot` in the folder in view. A channel
// index outside 0..LastChannel does nothing.
void GetChannelData(Workspace& ws, int slot, int lap, int channel);

void FetchLoggedChannel(Workspace& ws, int slot, int lap, int channel);
void FetchDerivedChannel(Workspace& ws, int slot, int lap, int channel);
void FetchMathChannel(Workspace& ws, int slot, int lap, int channel);

// The upper index of the samples a fetch of this channel and lap makes: the laps' span by the
// header's times, and the margin, whatever the file holds. Samples past the file are zeros.
int64_t FetchUpperBound(Workspace& ws, int slot, int lap, int channel);

// While one lasts, fetches of the same outing share one open file instead of opening it once
// per channel and lap: for a redraw, an export, a report. Scopes nest.
class FetchScope {
 public:
  explicit FetchScope(Workspace& ws);
  ~FetchScope();
  FetchScope(const FetchScope&) = delete;
  FetchScope& operator=(const FetchScope&) = delete;

 private:
  Workspace& ws_;
};

// Forgets the cached samples of one channel in every lap, or of every channel of the outing,
// after a change of calibration, filter or definition.
void ClearChannelCache(Workspace& ws, int slot, int channel);
void ClearOutingCache(Workspace& ws, int slot);

// Minimum, maximum (with their samples), mean and deviation over the folder's time window, and
// over its distance window. Nothing happens unless the samples are loaded.
void ComputeTimeStats(Workspace& ws, int slot, int lap, int channel);
void ComputeDistanceStats(Workspace& ws, int slot, int lap, int channel);
