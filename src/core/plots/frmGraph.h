#pragma once

// The time graph: every shown channel of every shown lap of every visible outing of the folder,
// as traces against the time from the lap's start, so that laps overlay without alignment. Draws
// on any Surface; the window in ui/ forwards paint, resize, mouse and keys to it.

#include <QString>
#include <vector>

#include "core/plots/Surface.h"

struct Workspace;

class frmGraph {
 public:
  frmGraph(Workspace& ws, Surface& surface) : ws_(ws), s_(surface) {}

  // The full redraw: traces, axes, status line, cursor.
  void DrawLineGraphs();
  // One trace, thinned to about 2,000 points, clipped to the data area and the channel's band.
  void DoTimePlot(int slot, int lap, int channel);
  // The time axis in seconds with nice ticks, its grid and the starts of further laps.
  void DrawTimeAxis();
  // The value of the active channel at the cursor and the status line above the plot.
  void UpdateCursorValues();
  // Moves the exclusive-or cursor from the old x to the cursor's x; returns the new y.
  double DrawCursor(double old_x, double old_y);

  // With the measure cursor on: the mark at the cursor, a cross and a circle, from which the
  // status line measures dX and dY.
  void DrawDatumPoint();

  // The cursor's x in twips for the folder's CursorTime.
  double CursorX() const;

  // Captions of the traces (lblChannel), by band when tiled, in drawing order.
  std::vector<QString> ChannelLabels;
  QString Caption;     // the axis label above the plot
  QString StatusLine;  // the last line written above the plot

  // What DoTimePlot left for the event bars and the cursor.
  int64_t FirstIndex = 0, LastIndex = 0, IndexStep = 1;
  double FirstTime = 0, XScale = 0, YScale = 0;
  double CursorY = -1000;
  double MarkX = 0, MarkY = 0, MarkTime = 0, MarkValue = 0;

 private:
  double DataRight() const;
  int ActiveSlot() const;

  Workspace& ws_;
  Surface& s_;
  std::vector<PixelPoint> points_;  // one buffer for every trace
};
