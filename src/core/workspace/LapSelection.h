#pragma once

// Which laps of an outing are compared and which channels each compared lap carries: the flags
// that the tree commands move between laps and carry from one outing to another.

#include <QString>
#include <cstdint>
#include <vector>

#include "core/workspace/OutingModel.h"

// A channel as it is known across outings: by its number first, by its name second.
struct ChannelRef {
  int Key = 0;
  QString ShortName;
};

// Channel `channel` of the outing as other outings know it.
ChannelRef ChannelRefOf(const OutingRec& o, int channel);
// Channel indexes that lap `lap` carries, in channel order.
std::vector<int> ChannelsOnLap(const OutingRec& o, int lap);
// The same channels as they are known across outings.
std::vector<ChannelRef> ChannelRefsOnLap(const OutingRec& o, int lap);

// The index in `o` of a channel of another outing. The same channel number is the same
// measurement whatever the outing, so it wins; an outing logged with another channel table may
// still have it under another number, so the name (ShortName, trimmed, case ignored) comes
// next. -1 when neither matches.
int MatchChannel(const OutingRec& o, const ChannelRef& ref);

// Takes a lap out of the comparison: it and every channel on it off.
void ClearLap(OutingRec& o, int lap);
// Puts lap `lap` into the comparison with the channels lap `from` carries.
void ShowLapLike(OutingRec& o, int lap, int from);
// Puts channel `channel` on or off lap `lap`; out-of-range indexes are ignored.
void SetChannelOn(OutingRec& o, int lap, int channel, bool on);
// True for a lap index of a lap (0..LastLap-1) that the outing holds.
bool LapExists(const OutingRec& o, int lap);
