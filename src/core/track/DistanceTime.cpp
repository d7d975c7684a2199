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

float DistanceToTime(Workspace& ws, int slot, int lap, float distance) {
  const OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance < 0) return 0;
  GetChannelData(ws, slot, lap, o.ChanDistance);
  const auto& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(o.ChanDistance)].Samples;
  if (s.size() < 2) return 0;
  const double rate = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
  if (!(rate > 0)) return 0;
  const double target = static_cast<double>(distance) + o.Laps[static_cast<std::size_t>(lap)].StartDistance;
  // Distance never falls, so the first sample past the target is found by halving, over all the
  // lap's samples: a span taken from another lap may be shorter than this one.
  const auto past = std::upper_bound(s.begin(), s.end(), target,
                                     [](double t, float v) { return t < static_cast<double>(v); });
  if (past == s.begin()) return 0;
  // A distance the lap never reaches: its whole duration, where its trace stops.
  if (past == s.end()) return GetLapDuration(ws, slot, lap);
  const int64_t i = (past - s.begin()) - 1;
  const double a = s[static_cast<std::size_t>(i)], b = *past;
  const double result = (static_cast<double>(i) + (b != a ? (target - a) / (b - a) : 0.0)) / rate;
  return static_cast<float>(std::clamp(result, 0.0, static_cast<double>(GetLapDuration(ws, slot, lap))));
}
