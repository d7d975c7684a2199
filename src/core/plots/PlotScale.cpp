#include "core/plots/PlotScale.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"

namespace {

const FolderRec& Folder(const Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

const OutingRec& Outing(const Workspace& ws, int slot) { return Folder(ws).Outings[static_cast<std::size_t>(slot)]; }

// Round of the plots: halves to the even neighbour.
double Round(double v) { return std::nearbyint(v); }

// The nice range of the automatic scale: the range grown by a quarter, brought to one of a few
// round steps of its decade.
double NiceRange(double range) {
  if (range < 0) return 0;  // no data
  int exponent = 0;
  while (range >= 10) {
    range /= 10;
    ++exponent;
  }
  static const double kSteps[][2] = {{0.25, 0.125}, {0.75, 0.5}, {1.75, 1}, {2.25, 2}, {3.75, 2.5}, {6.25, 5}, {8.75, 7.5}};
  double nice = 10;
  for (const auto& step : kSteps) {
    if (range <= step[0]) {
      nice = step[1];
      break;
    }
  }
  return nice * std::pow(10.0, exponent);
}

double ValueToY(Workspace& ws, double h, int slot, int lap, int channel, double value, bool distance) {
  const ChannelRec& c = Outing(ws, slot).Channels[static_cast<std::size_t>(channel)];
  const double height = h - kPlotTop - kPlotBottom;
  const double scale = StoredChannelScale(ws, slot, channel, height, true, distance);
  const double offset = GetTileOffset(ws, slot, lap, channel, height);
  const double min = distance ? c.DistanceMin : c.TimeMin;
  const double floor = h - kPlotBottom - (FolderTiled(ws) ? offset : 0);
  const double y = h - kPlotBottom - offset - (value - min) * scale;
  return std::max(kPlotTop, std::min(floor, y));
}

}  // namespace

bool FolderTiled(const Workspace& ws) { return Folder(ws).Options.TileGraphs; }

double RightMargin(const Workspace& ws) { return FolderTiled(ws) ? 150 : 750; }

double ComputeChannelScale(Workspace& ws, int slot, int channel, double height, bool tile, bool distance) {
  OutingRec& o = OutingAt(ws, slot);
  ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  if (!c.AutoScale) {
    c.TimeMax = c.DistanceMax = c.ScreenMax;
    c.TimeMin = c.DistanceMin = c.ScreenMin;
    return StoredChannelScale(ws, slot, channel, height, tile, distance);
  }
  // The view of the outing's current lap decides, not the whole outing nor the other laps.
  double min = 4294967296.0, max = -4294967296.0;
  const int lap = o.CurLap;
  if (lap >= 0 && lap < static_cast<int>(o.Laps.size()) && channel < static_cast<int>(o.Laps[static_cast<std::size_t>(lap)].LapChannels.size())) {
    if (distance) {
      ComputeDistanceStats(ws, slot, lap, channel);
    } else {
      ComputeTimeStats(ws, slot, lap, channel);
    }
    const LapChannelRec& cache = OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
    const ChannelStats& st = distance ? cache.DistanceStats : cache.TimeStats;
    if (st.Valid != 0) min = st.Min, max = st.Max;
  }
  const double nice = NiceRange((max - min) * 1.25);
  if (nice == 0) return 0;  // no samples: nothing to scale
  const double bottom = std::floor(min / (nice / 10)) * (nice / 10);
  ChannelRec& scaled = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)];
  (distance ? scaled.DistanceMin : scaled.TimeMin) = static_cast<float>(bottom);
  (distance ? scaled.DistanceMax : scaled.TimeMax) = static_cast<float>(bottom + nice);
  return StoredChannelScale(ws, slot, channel, height, tile, distance);
}

double StoredChannelScale(const Workspace& ws, int slot, int channel, double height, bool tile, bool distance) {
  const ChannelRec& c = Outing(ws, slot).Channels[static_cast<std::size_t>(channel)];
  const double min = distance ? c.DistanceMin : c.TimeMin;
  const double max = distance ? c.DistanceMax : c.TimeMax;
  double scale = max == min ? 0 : height / (max - min);
  if (FolderTiled(ws) && tile) {
    if (ws.Options.AutoTileMode) {
      scale = ws.Plots.TileCount > 0 ? scale / ws.Plots.TileCount : scale;
    } else {
      scale = (c.TileTop - c.TileBottom) * scale / 100;
    }
  }
  return scale;
}

double GetTileOffset(const Workspace& ws, int slot, int lap, int channel, double height) {
  if (!FolderTiled(ws)) return 0;
  const OutingRec& o = Outing(ws, slot);
  if (!ws.Options.AutoTileMode) return Round(o.Channels[static_cast<std::size_t>(channel)].TileBottom * height / 100);
  const int count = ws.Plots.TileCount;
  if (count <= 0) return 0;
  const int index = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].TileIndex;
  return Round((count - index - 1) * height / count);  // tile 0 is the band at the top
}

void GetTileCount(Workspace& ws) {
  FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  QStringList keys;
  for (OutingRec& o : folder.Outings) {
    if (o.Loaded == 0 || o.OutingHidden != 0) continue;
    for (LapRec& lap : o.Laps) {
      if (lap.Shown == 0 || lap.Hidden != 0) continue;  // a hidden lap draws nothing: no band
      for (std::size_t c = 0; c < lap.LapChannels.size() && c < o.Channels.size(); ++c) {
        LapChannelRec& cache = lap.LapChannels[c];
        if (cache.Shown == 0) continue;
        QString key = o.Channels[c].ShortName;
        while (key.endsWith(QLatin1Char(' '))) key.chop(1);
        key = key.toUpper().left(16);
        qsizetype index = keys.indexOf(key);
        if (index < 0 && keys.size() < 1024) {
          keys << key;
          index = keys.size() - 1;
        }
        cache.TileIndex = static_cast<int16_t>(std::max<qsizetype>(index, 0));
      }
    }
  }
  ws.Plots.TileCount = static_cast<int16_t>(keys.size());
}

double ChannelValueToY(Workspace& ws, double h, int slot, int lap, int channel, double value) {
  return ValueToY(ws, h, slot, lap, channel, value, false);
}

double DistanceValueToY(Workspace& ws, double h, int slot, int lap, int channel, double value) {
  return ValueToY(ws, h, slot, lap, channel, value, true);
}

int64_t TraceStep(int64_t n) { return n < kMaxTracePoints ? 1 : std::max<int64_t>(1, RoundHalfEven(static_cast<double>(n) / kMaxTracePoints)); }

namespace {

// The place of a lap among those the folder compares, in the order of drawing.
int DisplayedLapRank(const Workspace& ws, int slot, int lap) {
  int rank = 0;
  const FolderRec& folder = Folder(ws);
  for (int s = 0; s < kOutingsPerFolder; ++s) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(s)];
    if (o.Loaded == 0 || o.OutingHidden != 0) continue;
    for (int l = 0; l < static_cast<int>(o.Laps.size()); ++l) {
      if (s == slot && l == lap) return rank;
      rank += o.Laps[static_cast<std::size_t>(l)].Shown != 0 && o.Laps[static_cast<std::size_t>(l)].Hidden == 0;
    }
  }
  return rank;
}

}  // namespace

int GetChannelColor(const Workspace& ws, int slot, int lap, int channel) {
  const OutingRec& o = Outing(ws, slot);
  const LapRec& l = o.Laps[static_cast<std::size_t>(lap)];
  int index = l.LapColor;
  if (index == -1) index = l.LapChannels[static_cast<std::size_t>(channel)].Color;
  if (index == -1) {
    // Neither the lap nor the trace has a colour of its own: the channel's own colour, moved
    // along the palette by the lap's place among the laps compared. Channels differ by their
    // colours, and the laps of one channel differ too (a step prime to the palette's size goes
    // through all of it before it repeats).
    const int own = o.Channels[static_cast<std::size_t>(channel)].Color;
    index = (own + kLapColorStep * DisplayedLapRank(ws, slot, lap)) % kPaletteSize;
  }
  index = std::clamp(index, 0, kPaletteSize - 1);
  // A colour that is the background's would be invisible: the next one of the palette.
  int color = ws.Palette[static_cast<std::size_t>(index)];
  if (color == BackgroundColor(ws)) color = ws.Palette[static_cast<std::size_t>((index + 1) % kPaletteSize)];
  return color;
}

void ForEachTrace(const Workspace& ws, const std::function<void(int, int, int)>& visit) {
  const FolderRec& folder = Folder(ws);
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0 || o.OutingHidden != 0) continue;
    for (int lap = 0; lap < static_cast<int>(o.Laps.size()); ++lap) {
      const LapRec& l = o.Laps[static_cast<std::size_t>(lap)];
      if (l.Shown == 0 || l.Hidden != 0) continue;
      for (int c = 0; c < static_cast<int>(l.LapChannels.size()); ++c) {
        if (l.LapChannels[static_cast<std::size_t>(c)].Shown != 0) visit(slot, lap, c);
      }
    }
  }
}

int FindChannelByName(const Workspace& ws, int folder, int slot, const QString& name) {
  const QString wanted = name.trimmed().toUpper().left(16);
  const OutingRec& o = ws.FolderTable[static_cast<std::size_t>(folder)].Outings[static_cast<std::size_t>(slot)];
  const int last = std::min<int>(o.LastChannel, static_cast<int>(o.Channels.size()) - 1);
  for (int c = 0; c <= last; ++c) {
    if (o.Channels[static_cast<std::size_t>(c)].ShortName.trimmed().toUpper() == wanted) return c;
  }
  return -1;
}
