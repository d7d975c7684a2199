#pragma once

// Where a plot puts things: the fixed margins of a plot surface, the scale of a channel (its
// automatic "nice" range or its fixed screen range), the bands of a tiled folder, and which
// samples a trace draws.

#include <QString>
#include <functional>
#include <cstdint>

struct Workspace;

// Margins in twips: the data area runs from x = 750 to W - RightMargin and from y = 400 to
// H - 650.
inline constexpr double kPlotLeft = 750;
inline constexpr double kPlotTop = 400;
inline constexpr double kPlotBottom = 650;
inline constexpr int kMaxTracePoints = 2000;

// 750, or 150 when the folder in view is tiled.
double RightMargin(const Workspace& ws);
bool FolderTiled(const Workspace& ws);

// Twips per engineering unit of the channel on the time axis windows (`distance` false) or the
// distance window. An automatic channel first takes a nice range around what the view shows of
// the outing's current lap and stores it as its TimeMin/TimeMax (DistanceMin/DistanceMax); a
// fixed one takes its screen range. In a tiled folder with `tile` the scale shrinks to a band.
// 0 when the range is empty: the trace then lies on the band's floor.
double ComputeChannelScale(Workspace& ws, int slot, int channel, double height, bool tile, bool distance);

// The same scale from the range already stored, without looking at the samples again.
double StoredChannelScale(const Workspace& ws, int slot, int channel, double height, bool tile, bool distance);

// The base of the channel's band above the floor of the data area, in twips; 0 untiled.
double GetTileOffset(const Workspace& ws, int slot, int lap, int channel, double height);

// Gives every plotted channel of the folder its band: the same channel (by its short name) of
// all laps and outings shares one. Sets TileIndex of each and the band count.
void GetTileCount(Workspace& ws);

// The y of a value of the channel on a surface `h` twips high, clipped into the channel's band.
double ChannelValueToY(Workspace& ws, double h, int slot, int lap, int channel, double value);
double DistanceValueToY(Workspace& ws, double h, int slot, int lap, int channel, double value);

// The sample step of a trace over n samples: every sample below 2,000, else about 2,000 points
// (halves of the division rounded to even).
int64_t TraceStep(int64_t n);

// The palette colour (BGR) of the channel's trace in a lap: the lap's own colour when it has
// one, else the trace's own (LapChannelRec), else the channel's colour from CHANNEL.DSC moved
// along the palette by kLapColorStep for each lap compared before this one; never the
// background's colour.
inline constexpr int kLapColorStep = 3;
int GetChannelColor(const Workspace& ws, int slot, int lap, int channel);

// Every trace of the folder in view in the order of drawing: the loaded, visible outings, their
// shown laps that aren't hidden, and the channels shown in each.
void ForEachTrace(const Workspace& ws, const std::function<void(int slot, int lap, int channel)>& visit);

// The first channel of the outing whose short name, trimmed and upper-cased, equals the first 16
// characters of `name` trimmed and upper-cased; -1 when none.
int FindChannelByName(const Workspace& ws, int folder, int slot, const QString& name);
