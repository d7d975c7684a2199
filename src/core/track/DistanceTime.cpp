#include "core/track/DistanceTime.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"

namespace {

// The start of the lap `laps` rows after `lap`, or of the closing row when that is past it.
float SpanEnd(const OutingRec& o, int lap, int laps) {
  const int end = lap + laps <= o.LastLap ? lap + laps : o.LastLap;
  return static_cast<float>(o.Laps[static_cast<std::size_t>(end)].StartTime);
}

}  // namespace

float GetLapDuration(Workspace& ws, int slot, int lap) {
  const OutingRec& o = OutingAt(ws, slot);
  if (lap < 0 || lap >= static_cast<int>(o.Laps.size())) return 0;
  const int laps = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].LapsDisplayed;
  return SpanEnd(o, lap, laps) - static_cast<float>(o.Laps[static_cast<std::size_t>(lap)].StartTime);
}

float GetMaxTime(Workspace& ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const int slot = folder.DatumOuting >= 0 ? folder.DatumOuting : ws.CurOuting;
  const int lap = folder.DatumOuting >= 0 ? folder.DatumLap : OutingAt(ws, slot).CurLap;
  return GetLapDuration(ws, slot, lap);
}

float TimeToDistance(Workspace& ws, int slot, int lap, float ms) {
  const OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance < 0) return 0;
  GetChannelData(ws, slot, lap, o.ChanDistance);
  const auto& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(o.ChanDistance)].Samples;
  if (s.empty()) return 0;
  const double x = ms * static_cast<double>(o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate);
  const int64_t i = std::clamp<int64_t>(Floor(x), 0, static_cast<int64_t>(s.size()) - 1);
  const double frac = x - static_cast<double>(i);
  const float next = i + 1 < static_cast<int64_t>(s.size()) ? s[static_cast<std::size_t>(i + 1)] : s[static_cast<std::size_t>(i)];
  const float at = s[static_cast<std::size_t>(i)];
  return static_cast<float>(at + (next - at) * frac - o.Laps[static_cast<std::size_t>(lap)].StartDistance);
}

namespace {

// The lap's distance samples and their rate, fetched; null without a distance channel, samples
// or a rate.
const std::vector<float>* DistanceSamples(Workspace& ws, int slot, int lap, float& rate) {
  const OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance < 0) return nullptr;
  GetChannelData(ws, slot, lap, o.ChanDistance);
  const auto& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(o.ChanDistance)].Samples;
  rate = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
  return s.empty() || !(rate > 0) ? nullptr : &s;
}

// From sample `from` to `to`, the first i whose successor is above the target, with the fraction
// of the way to it at which the target lies (0 when the two are equal): the sample position of
// the target. False when none is above it. Forward, not by halving, so that a distance that
// steps back cannot mislead it.
bool FirstPassing(const std::vector<float>& s, int64_t from, int64_t to, double target, double& position) {
  const int64_t upper = static_cast<int64_t>(s.size()) - 1;
  for (int64_t i = std::max<int64_t>(from, 0); i <= to && i < upper; ++i) {
    const double a = s[static_cast<std::size_t>(i)], b = s[static_cast<std::size_t>(i + 1)];
    if (!(b > target)) continue;
    position = static_cast<double>(i) + (b != a ? (target - a) / (b - a) : 0.0);
    return true;
  }
  return false;
}

// A sample position in ms, within the lap: at most its duration, at least 0.
float WithinLap(double position, float rate, float duration) {
  return static_cast<float>(std::clamp(position / rate, 0.0, static_cast<double>(std::max(duration, 0.0f))));
}

}  // namespace

float DistanceToTime(Workspace& ws, int slot, int lap, float distance) {
  float rate = 0;
  const std::vector<float>* samples = DistanceSamples(ws, slot, lap, rate);
  if (samples == nullptr) return 0;
  const std::vector<float>& s = *samples;
  const float target = distance + OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].StartDistance;
  const float span = GetMaxTime(ws);
  const int64_t upper = static_cast<int64_t>(s.size()) - 1;
  auto index_at = [&](float t) { return std::clamp<int64_t>(Floor(t * rate), 0, upper); };
  // Coarse: twenty strides over the Datum span's length to the first sample past the target.
  int64_t low = 0, high = index_at(span);
  const float stride = span / 20;
  for (int k = 1; k <= 20; ++k) {
    const int64_t i = index_at(stride * static_cast<float>(k));
    if (s[static_cast<std::size_t>(i)] > target) {
      high = i;
      break;
    }
    low = i;
  }
  // Fine, between the two strides. None passes: the lap never gets there in the span.
  const float duration = GetLapDuration(ws, slot, lap);
  double position = 0;
  return FirstPassing(s, low, high, target, position) ? WithinLap(position, rate, duration) : std::max(duration, 0.0f);
}

float TimeAtDistance(Workspace& ws, int slot, int lap, float distance) {
  float rate = 0;
  const std::vector<float>* samples = DistanceSamples(ws, slot, lap, rate);
  if (samples == nullptr) return 0;
  const double target = static_cast<double>(distance) + OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].StartDistance;
  const float duration = GetLapDuration(ws, slot, lap);
  double position = 0;
  // Over every sample the lap has, those past its end too: a lap may be longer than the axes.
  return FirstPassing(*samples, 0, static_cast<int64_t>(samples->size()) - 1, target, position) ? WithinLap(position, rate, duration)
                                                                                                : std::max(duration, 0.0f);
}
