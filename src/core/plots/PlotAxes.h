#pragma once

// The vertical axes of the plots (one scale at the left, or one per band of a tiled folder) and
// the colours of the window theme.

#include <QString>

class Surface;
struct Workspace;

// The grid's colour: the dotted lines stay quiet behind the traces.
inline constexpr int kGridColor = 8421504;

// Colours of the windows by the theme: white on black, black on white, or the custom pair.
int BackgroundColor(const Workspace& ws);
int ForegroundColor(const Workspace& ws);

enum class AxisKind { Time = 0, Distance = 1, XY = 2 };

// The 50-step scale of the channel at the left of the data area, in the trace's colour, with
// labels every fifth tick, the units above and a dotted grid across. Nothing in a tiled folder
// that tiles itself. Returns the caption of the plot: the name and " vs Time" or " vs Distance".
QString DrawAxisSingle(Workspace& ws, Surface& s, AxisKind kind, int slot, int lap, int channel);

// The side panels beside the time and distance plots carry the scales of further channels: two
// columns of kPanelColumn twips in the left panel, one in the right.
inline constexpr double kPanelColumn = 850;
inline constexpr int kPanelScales = 3;  // left column 0, left column 1, right

// One such scale, as tall as the plot beside it (the panel is the plot's height).
void DrawAxisPanel(Workspace& ws, Surface& panel, int side, int column, AxisKind kind, int slot, int lap, int channel);

// The scales of the folder's AxisPanelChannels on the side panels (either may be null), each only
// for a channel drawn in the current lap of the outing on the axis; the panels are cleared first.
void DrawAxisPanels(Workspace& ws, Surface* left, Surface* right, AxisKind kind);

// The 25-step scale of one band of an automatically tiled folder, the channel's name at the top
// of the band and a line closing it; on the scale of the time or of the distance axis.
void DrawAxisTile(Workspace& ws, Surface& s, int slot, int lap, int channel, AxisKind kind = AxisKind::Time);
