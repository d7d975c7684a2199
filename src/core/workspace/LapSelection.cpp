#include "core/workspace/LapSelection.h"

namespace {

bool ValidLapRow(const OutingRec& o, int lap) { return lap >= 0 && lap < static_cast<int>(o.Laps.size()); }

QString NameKey(const QString& name) { return name.trimmed().toUpper(); }

}  // namespace

ChannelRef ChannelRefOf(const OutingRec& o, int channel) {
  if (channel < 0 || channel >= static_cast<int>(o.Channels.size())) return {-1, QString()};
  const ChannelRec& ch = o.Channels[static_cast<std::size_t>(channel)];
  return {ch.Key, ch.ShortName};
}

std::vector<int> ChannelsOnLap(const OutingRec& o, int lap) {
  std::vector<int> on;
  if (!ValidLapRow(o, lap)) return on;
  const auto& chosen = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  for (int c = 0; c < static_cast<int>(chosen.size()) && c < static_cast<int>(o.Channels.size()); ++c) {
    if (chosen[static_cast<std::size_t>(c)].Shown != 0) on.push_back(c);
  }
  return on;
}

std::vector<ChannelRef> ChannelRefsOnLap(const OutingRec& o, int lap) {
  std::vector<ChannelRef> refs;
  for (int c : ChannelsOnLap(o, lap)) refs.push_back(ChannelRefOf(o, c));
  return refs;
}

int MatchChannel(const OutingRec& o, const ChannelRef& ref) {
  const int count = static_cast<int>(o.Channels.size());
  for (int c = 0; c < count; ++c) {
    if (o.Channels[static_cast<std::size_t>(c)].Key == ref.Key) return c;
  }
  const QString name = NameKey(ref.ShortName);
  if (name.isEmpty()) return -1;
  for (int c = 0; c < count; ++c) {
    if (NameKey(o.Channels[static_cast<std::size_t>(c)].ShortName) == name) return c;
  }
  return -1;
}

void ClearLap(OutingRec& o, int lap) {
  if (!ValidLapRow(o, lap)) return;
  LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
  row.Shown = 0;
  for (LapChannelRec& c : row.LapChannels) c.Shown = 0;
}

void ShowLapLike(OutingRec& o, int lap, int from) {
  if (!ValidLapRow(o, lap)) return;
  const std::vector<int> on = ChannelsOnLap(o, from);
  o.Laps[static_cast<std::size_t>(lap)].Shown = -1;
  for (int c : on) SetChannelOn(o, lap, c, true);
}

void SetChannelOn(OutingRec& o, int lap, int channel, bool on) {
  if (!ValidLapRow(o, lap)) return;
  auto& chosen = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  if (channel < 0 || channel >= static_cast<int>(chosen.size())) return;
  chosen[static_cast<std::size_t>(channel)].Shown = on ? -1 : 0;
}

bool LapExists(const OutingRec& o, int lap) {
  return lap >= 0 && lap < o.LastLap && lap + 1 < static_cast<int>(o.Laps.size());
}
