#pragma once

// The contour window: the map coloured by the active channel's value in the current lap, from
// blue at its lowest to red at its highest, with the scale beside it and the cursor's mark.

#include <QString>
#include <vector>

class Surface;
struct Workspace;

class frmContour {
 public:
  frmContour(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The whole window: the map in grey, then DrawCurrentPlot and the cursor.
  void DrawTrack();
  // The map's lines in the colours of the channel's values, and the colour scale.
  void DrawCurrentPlot();
  void DoTrackCursor();

  // "Contour Plot - SPEED - (012 Fast)", or "Distance Plot" when the outing has no distance.
  QString Caption;
  int CursorPoint = -1;
  float Min = 0, Max = 0;  // the range the colours span

 private:
  void DrawScale(const QString& units);

  Workspace& ws_;
  Surface* s_;
  bool warned_ = false;  // "No distance data" said once until the outing has distance again
};

// The colour of a share (0..1) of the range: blue, cyan, green, yellow, red. BGR.
int ContourColor(double share);
