#pragma once

// The XY plot: the displayed channels on the y axis against one chosen channel on the x axis,
// sample by sample over the time view, with fits by a straight line, by a parabola, or by hand.
// Draws on any Surface; the window in ui/ forwards paint, resize and the mouse.

#include <QString>
#include <array>
#include <functional>
#include <vector>

#include "core/plots/Regression.h"
#include "core/plots/Surface.h"

struct Workspace;
struct FolderRec;

class frmXYPlot {
 public:
  frmXYPlot(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) { XAxisChannel.fill(-1); }
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The full redraw: the points of every trace, the axes, the fits that are on, the measure mark
  // and the cursor's point.
  void DrawXYPlots();
  // One trace: each sample of the channel against the x channel read at the same time.
  void DrawOneXY(int slot, int lap, int channel);
  // The x axis: fifty steps of the x channel's scale, a label every fifth, its name and unit.
  void DrawBottomAxis();
  // The fits over every point drawn of the active channel, each with its line and text.
  void LinearRegression();
  void PolynomialRegression();
  // The line through the two points set with the mouse (SetManualPoint), then both are cleared.
  void ManualRegression();
  // With the measure cursor on: the mark at the cursor's time on the active trace, a cross and a
  // circle, its values in the "Datum" labels.
  void DrawDatumPoint();
  // The rows of the numeric panel.
  void LoadDataLabels();

  // The side panels beside the plot (either may be null): the scales of the folder's
  // AxisPanelChannels, drawn when the folder is not tiled.
  void SetAxisPanels(Surface* left, Surface* right);
  void DrawAxisPanels();

  // Looks up the folder's AxisXYChannel in each loaded outing. An outing without it keeps its
  // earlier index in XAxisChannel but has no x channel for this drawing: nothing of it is drawn.
  void FindXChannels();
  // The x channel of an outing as FindXChannels left it; -1 when it has none.
  int XChannel(int slot) const;
  std::array<int, 16> XAxisChannel;  // per outing slot, -1 before any was found

  // The samples of a trace as (x, y) values: the channel's samples over the time view, each
  // against the x channel interpolated at its time, thinned to about 2,000 points.
  std::vector<XYPoint> TracePoints(int slot, int lap, int channel);
  // The points of the active channel in every displayed lap of every visible outing.
  std::vector<XYPoint> ActivePoints();

  // A click in the data area: the values under it go to the cursor's labels, with the fitted y
  // at that x. With `manual` the click sets the next point of the hand-made line.
  void MouseDown(int button, double x, double y, bool manual);
  // The folder's cursor moved in another window: the active trace's point at the cursor's time
  // is marked by exclusive-or and its values go to the cursor's labels.
  void FollowCursor();

  // The fits as the last drawing left them; the line's fields are 32-bit, as its text shows them.
  float Slope = 0, Intercept = 0, Correlation = 0;
  double PolyA = 0, PolyB = 0, PolyC = 0;
  float PolyCorrelation = 0;
  struct ManualPoint {
    bool Set = false;
    double X = 0, Y = 0;  // twips
  };
  std::array<ManualPoint, 2> Manual;
  QString LineText, CurveText;  // the fits' texts at the top of the plot

  // The numeric panel: "X - Datum", "Y - Datum", "X - Cursor", "Y - Cursor", "X - Polynomial",
  // "Y - Polynomial", and their values.
  struct DataLabel {
    QString Caption;
    QString Value;
  };
  std::vector<DataLabel> Labels;
  QString Caption;  // the window's caption: the y channel against the x channel

 private:
  FolderRec& Folder() const;
  double DataRight() const;
  // The x and y of a value pair on the scales of the active trace.
  double XOf(int slot, double value) const;
  double YOf(int slot, int lap, int channel, double value) const;
  double ValueOfX(int slot, double x) const;
  double ValueOfY(int slot, int lap, int channel, double y) const;
  // The straight pieces of a fitted curve in the active channel's colour, clipped to the area.
  void DrawCurve(int slot, int lap, int channel, const std::function<double(double)>& f, int pieces);
  void PrintFit(const QString& text, double y);
  bool ActiveTrace(int& slot, int& lap, int& channel) const;
  // The active trace's x and y at a time into its lap; false past its end.
  bool ActivePairAt(double ms, float& x, float& y);
  void SetLabel(const QString& caption, const QString& value);
  void SetCursorLabels(double x, double y);

  Workspace& ws_;
  Surface* s_;
  Surface* panels_[2] = {nullptr, nullptr};
  std::array<bool, 16> x_found_{};
  std::vector<PixelPoint> points_;
  double cursor_x_ = -1, cursor_y_ = -1;  // the cursor's point as drawn; -1: none
};
