#pragma once

// The XY plot in a child window: the options above the plot (the x channel, points joined or
// marked, the fits, a line by hand), the plot between the side panels of further scales, and the
// cursor's and the Datum's values beside it.

#include "core/plots/RecordingSurface.h"
#include "core/plots/frmXYPlot.h"
#include "ui/AxisPanels.h"
#include "ui/Dialogs.h"
#include "ui/PlotWindowBase.h"

class PlotCanvas;
class QCheckBox;
class QLabel;
class QPushButton;

class XYWindow : public PlotWindowBase {
 public:
  XYWindow(DialogHost& host, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  // The cursor moved in another window of the folder: its point on the active trace.
  void FollowCursor() override;
  frmXYPlot& Plot() { return plot_; }
  PlotCanvas* Panel(int side) { return panels_.Panel(side); }
  PlotCanvas* Canvas() { return canvas_; }
  QPushButton* ManualFit() { return manual_; }

 private:
  void ShowLabels();
  void ShowOptions();

  DialogHost& host_;
  RecordingSurface idle_{1, 1};
  frmXYPlot plot_;
  AxisPanels panels_;
  PlotCanvas* canvas_;
  QLabel* labels_;
  QPushButton* axis_;
  QCheckBox* connected_;
  QCheckBox* line_fit_;
  QCheckBox* curve_fit_;
  QPushButton* manual_;
};
