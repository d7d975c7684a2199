#pragma once

// The spectrum and the spectrogram in child windows. The spectrum window has the FFT scale
// dialog, the highest frequency shown and the way to the spectrogram; the spectrogram window
// chooses its window length and overlap.

#include <functional>

#include "core/plots/RecordingSurface.h"
#include "core/plots/frmFrequency.h"
#include "core/plots/frmSpectrogram.h"
#include "ui/Dialogs.h"
#include "ui/PlotWindowBase.h"

class PlotCanvas;
class QComboBox;
class QLabel;
class QSpinBox;

class FrequencyWindow : public PlotWindowBase {
 public:
  FrequencyWindow(DialogHost& host, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  // The span follows the time graph's cursor and measure mark: the spectra are taken again.
  void FollowCursor() override { Redraw(); }
  frmFrequency& Plot() { return plot_; }
  PlotCanvas* Canvas() { return canvas_; }
  // frmFFTEdit over the active channel; true when confirmed.
  bool EditScale();
  std::function<void()> OpenSpectrogram;

 private:
  DialogHost& host_;
  RecordingSurface idle_{1, 1};
  frmFrequency plot_;
  PlotCanvas* canvas_;
  QLabel* status_;
  QSpinBox* max_hz_;
};

class SpectrogramWindow : public PlotWindowBase {
 public:
  SpectrogramWindow(DialogHost& host, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  void FollowCursor() override;
  frmSpectrogram& Plot() { return plot_; }
  PlotCanvas* Canvas() { return canvas_; }

 private:
  void ShowOptions();

  RecordingSurface idle_{1, 1};
  frmSpectrogram plot_;
  PlotCanvas* canvas_;
  QLabel* status_;
  QComboBox* points_;
  QComboBox* overlap_;
};
