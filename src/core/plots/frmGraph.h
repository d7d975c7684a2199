#pragma once

// The time graph: every shown channel of every shown lap of every visible outing of the folder,
// as traces against the time from the lap's start, so that laps overlay without alignment. Draws
// on any Surface; the window in ui/ forwards paint, resize, mouse and keys to it.

#include <QString>
#include <functional>
#include <vector>

#include "core/plots/Surface.h"

struct Workspace;

class frmGraph {
 public:
  frmGraph(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  // A window paints on a new surface for each event; the graph draws on the last one given.
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The full redraw: traces, axes, status line, cursor.
  void DrawLineGraphs();
  // One trace, thinned to about 2,000 points, clipped to the data area and the channel's band.
  void DoTimePlot(int slot, int lap, int channel);
  // Bars along the time axis where the channel's event condition holds, and its minimum and
  // maximum labelled when asked; over the span and scale DoTimePlot left.
  void DoEventPlot(int slot, int lap, int channel);
  // The time axis in seconds with nice ticks, its grid and the starts of further laps.
  void DrawTimeAxis();
  // The value of the active channel at the cursor and the status line above the plot.
  void UpdateCursorValues();
  // Moves the exclusive-or cursor from the old x to the cursor's x; returns the new y.
  double DrawCursor(double old_x, double old_y);

  // With the measure cursor on: the mark at the cursor, a cross and a circle, from which the
  // status line measures dX and dY.
  void DrawDatumPoint();

  // The mouse on the plot, in twips. A press of the left button in the data area puts the cursor
  // there; a drag shows a band and, released over a wider span than W / 100 and 10 ms, zooms to
  // it; a release left or right of the area scrolls that way.
  void MouseDown(int button, double x, double y);
  void MouseMove(int button, double x, double y);
  void MouseUp(int button, double x, double y);

  enum class Key { Left, Right, Up, Down, Enter, Home, End };
  // The cursor by one sample of the active channel (Ctrl 10, Shift 100), the next or previous
  // channel on the axis, zoom about the cursor (with a modifier out), go to start or end.
  void KeyDown(Key key, bool shift, bool ctrl, bool alt);

  // The side panels beside the plot (either may be null): DrawLineGraphs draws the scales of the
  // folder's AxisPanelChannels on them when the folder is not tiled.
  void SetAxisPanels(Surface* left, Surface* right);
  void DrawAxisPanels();

  // The numeric panel: a row for the time and one for each trace, in the order of drawing, with
  // the values at the cursor.
  struct NumericRow {
    QString Caption;  // lblChannel
    QString Value;    // lblData
    int Color = 0;
    double Top = 0;   // twips from the panel's top
  };
  std::vector<NumericRow> Numerics;
  double NumericHeight = 0;  // what the panel needs for its rows, with AutoSizeNumeric
  // Makes the rows match the traces drawn, 260 twips apart.
  void LoadDataLabels();
  // Fills the values at the cursor; a trace whose lap ends before it gets none.
  void DrawNumerics();
  // Paints the rows onto the panel: captions at the left, values right-aligned.
  void PaintNumerics(Surface& panel) const;

  // Goes to the active channel's minimum or maximum in the view, or to a time: the cursor moves
  // there and so does the mouse pointer, through MovePointer (x in twips on the plot).
  void ManualMinMaxMove(bool is_maximum);
  void ManualMove(double time);
  std::function<void(double x)> MovePointer;

  // The cursor's x in twips for the folder's CursorTime.
  double CursorX() const;

  // Captions of the channels drawn (lblChannel), one per band (by TileIndex), each in the
  // colour of its first trace.
  struct ChannelCaption {
    QString Text;
    int Color = 0;
  };
  std::vector<ChannelCaption> ChannelLabels;
  QString Caption;     // the axis label above the plot
  QString StatusLine;  // the last line written above the plot

  // What DoTimePlot left for the event bars and the cursor.
  int64_t FirstIndex = 0, LastIndex = 0, IndexStep = 1;
  double FirstTime = 0, XScale = 0, YScale = 0;
  double CursorY = -1000;
  double MarkX = 0, MarkY = 0, MarkTime = 0, MarkValue = 0;
  double DownX = -1000, DownY = -1000, LastX = -1000, LastY = -1000;  // -1000: no drag

 private:
  double DataRight() const;
  double TimeAt(double x) const;
  void MoveCursor(double time);
  void DrawBand(double x1, double x2);
  void NextChannel(int direction);
  int ActiveSlot() const;

  Workspace& ws_;
  Surface* s_;
  Surface* panels_[2] = {nullptr, nullptr};
  std::vector<PixelPoint> points_;  // one buffer for every trace
};
