#include "core/track/MapValues.h"

#include <cmath>
#include <limits>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

}  // namespace

bool MapLap(Workspace& ws, int& slot, int& lap) {
  const FolderRec& f = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  slot = f.SelOuting;
  const OutingRec& o = f.Outings[static_cast<std::size_t>(slot)];
  lap = o.CurLap;
  return o.Loaded != 0 && lap >= 0 && lap < o.LastLap && lap + 1 < static_cast<int>(o.Laps.size());
}

std::vector<float> TimesAlongMap(Workspace& ws, int slot, int lap) {
  const OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance < 0) return {};
  const std::size_t chan = static_cast<std::size_t>(o.ChanDistance);
  GetChannelData(ws, slot, lap, o.ChanDistance);
  const std::vector<float>& d = o.Laps[static_cast<std::size_t>(lap)].LapChannels[chan].Samples;
  const float rate = o.Channels[chan].Rate, start = o.Laps[static_cast<std::size_t>(lap)].StartDistance;
  std::vector<float> times(ws.Track.TrackPoints.size(), kNone);
  if (d.empty() || !(rate > 0)) return times;
  // The map's distances ascend: one walk along the lap's samples serves every point.
  std::size_t j = 0;
  for (std::size_t i = 0; i < times.size(); ++i) {
    const double target = ws.Track.TrackPoints[i].Distance;
    while (j < d.size() && d[j] - start < target) ++j;
    if (j == d.size()) break;
    times[i] = static_cast<float>(static_cast<double>(j) / rate);
  }
  return times;
}

std::vector<float> ValuesAlongMap(Workspace& ws, int slot, int lap, int channel, const std::vector<float>& times) {
  const OutingRec& o = OutingAt(ws, slot);
  std::vector<float> values(times.size(), kNone);
  if (channel < 0 || channel >= static_cast<int>(o.Channels.size())) return values;
  GetChannelData(ws, slot, lap, channel);
  const std::vector<float>& s = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
  const double rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  for (std::size_t i = 0; i < times.size(); ++i) {
    if (std::isnan(times[i])) continue;
    const int64_t k = RoundHalfEven(times[i] * rate);
    if (k >= 0 && k < static_cast<int64_t>(s.size())) values[i] = s[static_cast<std::size_t>(k)];
  }
  return values;
}

bool HasDistance(Workspace& ws, const OutingRec& outing, const QString& title, bool& warned) {
  const bool has = outing.ChanDistance >= 0;
  if (!has && !warned) ws.messages.Show(QStringLiteral("No distance data"), title, MessageIcon::Exclamation);
  warned = !has;
  return has;
}
