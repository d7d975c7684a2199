#pragma once

// The histograms in a child window: the options above (bins, one set of bars for all laps, the
// time scale, the scale dialog), the bars, and the clicked bin's values beside them.

#include "core/plots/RecordingSurface.h"
#include "core/plots/frmHisto.h"
#include "ui/Dialogs.h"
#include "ui/PlotWindowBase.h"

class PlotCanvas;
class QCheckBox;
class QLabel;
class QSpinBox;

class HistoWindow : public PlotWindowBase {
 public:
  HistoWindow(DialogHost& host, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  frmHisto& Plot() { return plot_; }
  PlotCanvas* Canvas() { return canvas_; }
  // frmHistoScale over this window; true when it was confirmed.
  bool EditScale();

 private:
  void ShowLabels();
  void ShowOptions();

  DialogHost& host_;
  RecordingSurface idle_{1, 1};
  frmHisto plot_;
  PlotCanvas* canvas_;
  QLabel* labels_;
  QSpinBox* bins_;
  QCheckBox* total_;
  QCheckBox* time_scale_;
};
