#pragma once

// What the time graph and the distance plot share: every shown channel of every shown lap of
// every visible outing of the folder as traces against an axis (time or distance from the lap's
// start), with the status line, the cursor, the measure mark, the numeric panel, the side-panel
// scales, the mouse and the keys. Each window gives its trace, its axis and its view; the rest
// is drawn here on any Surface. The windows in ui/ forward paint, resize, mouse and keys.

#include <QString>
#include <functional>
#include <vector>

#include "core/plots/PlotAxes.h"
#include "core/plots/Surface.h"

struct Workspace;
struct FolderRec;
struct ChannelStats;
struct LapChannelRec;

class LinePlot {
 public:
  LinePlot(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  virtual ~LinePlot() = default;
  // A window paints on a new surface for each event; the plot draws on the last one given.
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The full redraw: traces, axes, status line, cursor.
  virtual void DrawLineGraphs();
  // The axis along the bottom, its grid and the starts of further laps.
  virtual void DrawXAxis() = 0;
  // The value of the active channel at the cursor and the status line above the plot.
  void UpdateCursorValues();
  // Moves the exclusive-or cursor from the old x to the cursor's x; returns the new y.
  double DrawCursor(double old_x, double old_y);
  // The folder's cursor moved in another window: the values at it, and the cursor moved here
  // too, without drawing the traces again.
  void FollowCursor();
  // Called after the mouse, a key or a go-to moved the cursor here, so that the window can tell
  // the folder's other windows.
  std::function<void()> CursorMoved;

  // With the measure cursor on: the mark at the cursor, a cross and a circle, from which the
  // status line measures dX and dY.
  void DrawDatumPoint();

  // The mouse on the plot, in twips. A press of the left button in the data area puts the cursor
  // there; a drag shows a band and, released over a wider span than W / 100 and the axis's
  // smallest view, zooms to it; a release left or right of the area scrolls that way.
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

  // The numeric panel: a row for the axis position and one for each trace, in the order of
  // drawing, with the values at the cursor.
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

  // Goes to the active channel's minimum or maximum in the view, or to a position on the axis:
  // the cursor moves there and so does the mouse pointer, through MovePointer (x in twips).
  void ManualMinMaxMove(bool is_maximum);
  void ManualMove(double position);
  std::function<void(double x)> MovePointer;

  // The cursor's x in twips for the folder's cursor on this axis.
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

  // What the last trace left for the event bars and the cursor.
  int64_t FirstIndex = 0, LastIndex = 0, IndexStep = 1;
  double FirstTime = 0, XScale = 0, YScale = 0;
  double CursorY = -1000;
  double MarkX = 0, MarkY = 0, MarkTime = 0, MarkValue = 0;  // MarkTime: the mark's axis position
  double DownX = -1000, DownY = -1000, LastX = -1000, LastY = -1000;  // -1000: no drag

 protected:
  // --- What each window gives ---
  virtual AxisKind Kind() const = 0;
  // One trace, thinned to about 2,000 points, clipped to the data area and the channel's band.
  virtual void DoPlot(int slot, int lap, int channel) = 0;
  // The view on this axis, and the folder's cursor on it.
  virtual double ViewStart() const = 0;
  virtual double ViewEnd() const = 0;
  virtual double Cursor() const = 0;
  // Puts the cursor at a position on this axis, and the other axis's cursor where it falls.
  virtual void SetCursor(double position) = 0;
  // The time into a lap at which the cursor stands (the distance plot asks each lap's distance).
  virtual double CursorTimeIn(int slot, int lap) = 0;
  // The axis position of a time into a lap.
  virtual double PositionOfTime(int slot, int lap, double ms) = 0;
  // The smallest span a drag zooms to.
  virtual double MinimumZoom() const = 0;
  // The first row of the numeric panel and the measure's dX.
  virtual QString PositionCaption() const = 0;
  virtual QString PositionText(double position) const = 0;
  // The statistics of the view on this axis.
  void ComputeViewStats(int slot, int lap, int channel);
  const ChannelStats& ViewStats(const LapChannelRec& cache) const;

  // --- Shared by the windows ---
  FolderRec& Folder() const;
  double DataRight() const;
  double PositionAt(double x) const;
  int ActiveSlot() const;
  // y of a value of the channel on this axis's scale, in its band.
  double ValueY(int slot, int lap, int channel, double value) const;
  // The axis's label for a tick at `value` and the axis line with its unit at the right end;
  // ticks by the steps of a round range, as the time and distance axes both lay them out. A
  // label is left out beyond the data area's right edge less `label_width` and 250.
  void DrawTicks(double view, double start, double end, const std::function<QString(double)>& label,
                 double label_width, const QString& unit);
  // Lines at the starts of the Datum span's further laps, at these axis positions.
  void DrawLapStarts(const std::vector<double>& positions);

  Workspace& ws_;
  Surface* s_;
  Surface* panels_[2] = {nullptr, nullptr};
  std::vector<PixelPoint> points_;  // one buffer for every trace

 private:
  // The spectra's span (FftStart, FftEnd) from the measure mark to the cursor of the time graph.
  void SetSpectrumSpan();
  void MoveCursor(double position);
  double drawn_x_ = 0;  // where DrawCursor last drew the cursor; 0: not drawn
  void DrawBand(double x1, double x2);
  void NextChannel(int direction);
};

// The channel's value at a time by linear interpolation between its neighbouring samples; the
// last sample has no neighbour and stands. False past the lap's end.
bool ValueAt(const std::vector<float>& v, double rate, double time, float& value);
