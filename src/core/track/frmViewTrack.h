#pragma once

// The track window: the map in memory fitted to the window, with a mark where the folder's
// cursor stands on it. The mark is drawn exclusive-or, so moving it redraws nothing else.

#include <QString>

class Surface;
struct Workspace;

class frmViewTrack {
 public:
  frmViewTrack(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The map, its splits, and the cursor's mark; Caption the map's name.
  void DrawTrack();
  // The mark follows the folder's cursor: off the old point, onto the new one.
  void DoTrackCursor();

  QString Caption;
  int CursorPoint = -1;  // the point the mark stands on; -1 none drawn

 private:
  void ToggleMark(int point);

  Workspace& ws_;
  Surface* s_;
};

// The map point of the folder's cursor (its distance into the lap); -1 without a map.
int CursorTrackPoint(Workspace& ws);
// Draws (or, drawn again, erases) the cursor's mark at a map point: a square in exclusive-or.
void ToggleTrackMark(Workspace& ws, Surface& s, int point);
