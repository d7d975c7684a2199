#pragma once

// The map in ws.Track drawn on a surface: fitted to it, corners and straights in the colours of
// the options, the split points marked, a point and a stretch of points picked out. The windows
// that show a map (creation, splits, the track views) all draw through here.

#include <QString>

class Surface;
struct Workspace;

struct TrackDrawOptions {
  bool ShowSplits = true;
  int Highlight = -1;              // the point picked out (under the mouse, the cursor); -1 none
  int MarkFrom = -1, MarkTo = -1;  // a stretch of points drawn wide (either order); -1 none
  double RightMargin = 0;          // twips kept free at the right (a colour scale, labels)
};

// The stretch colour: an orange that stands apart from the default red and blue of the map.
inline constexpr int kTrackMarkColor = 33023;

struct TrackXY {
  double x = 0;
  double y = 0;
};

// Clears the surface, fits the map to it (FitTrackToArea) and draws it: each point joined to the
// one before in ColorOfTurns where the point is in a corner, ColorOfStraights elsewhere.
void DrawTrackMap(Workspace& ws, Surface& s, const TrackDrawOptions& o = {});

// Where a point lies under the last fit, in twips, rounded as drawn.
TrackXY TrackPointPosition(const Workspace& ws, int point);
// The point drawn nearest (x, y), if it lies within `reach` twips; -1 otherwise.
int NearestTrackPoint(const Workspace& ws, double x, double y, double reach);
// The point a distance from the lap's start falls on: the first whose distance reaches it, or
// the last point; -1 without points.
int TrackPointAtDistance(const Workspace& ws, double distance);
