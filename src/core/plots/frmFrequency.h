#pragma once

// The spectrum window: the magnitude of each displayed channel's spectrum over a span of its lap,
// against frequency from 0 to the highest rate shown. One trace per channel and lap, in the
// channel's colour, on the channel's FFT scale; tiled in bands like the time graph.

#include <QString>
#include <vector>

#include "core/plots/Surface.h"

struct Workspace;
struct FolderRec;

class frmFrequency {
 public:
  frmFrequency(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The full redraw: the spectra, the traces, the axes and the cursor.
  void DoFrequencyPlot();
  // The spectrum of every displayed channel and lap over the folder's span, into the lap caches.
  void CalcFreqData();
  // The highest rate of the channels shown, in hertz; the right end of the frequency axis.
  double FindMaxFrequency() const;
  // The right end of the frequency axis: the view kept in FreqPlotView (hertz) when it is set and
  // below FindMaxFrequency, else FindMaxFrequency.
  double AxisMax() const;

  void DrawTrace(int slot, int lap, int channel);
  void DrawLeftAxis();
  void DrawTileAxis(int slot, int lap, int channel);
  void DrawFreqAxis();
  // A click at x: the cursor moves there and the status line tells the active channel's value.
  void MoveFreqCursor(double x);
  void LoadDataLabels();

  // The span the spectra are taken over, in ms from the lap's start: the folder's, set from the
  // time graph, else its view.
  void Span(double& start_ms, double& end_ms) const;

  double XOfFrequency(double hz) const;
  double FrequencyOfX(double x) const;
  // The y of a magnitude on the channel's FFT scale, clipped into its band.
  double YOfValue(int slot, int lap, int channel, double value) const;

  QString Caption;     // "PSD vs Frequency", or "No Frequency"
  QString StatusLine;  // at the cursor: frequency, value, lap time, filter and rate
  double CursorHz = -1;

 private:
  FolderRec& Folder() const;
  // The channel's scale: its FFT range, or with auto scale the range of its spectra.
  void Scale(int slot, int channel, double& min, double& max) const;
  void DrawCursorLine(double hz);

  Workspace& ws_;
  Surface* s_;
};

// frmFFTEdit ("Edit FFT Scalings"): a channel's FFT scale, its auto-scale flag and its decimals;
// with "Make Global" the channel's descriptor in CHANNEL.DSC takes them too.
class frmFFTEdit {
 public:
  frmFFTEdit(Workspace& ws, int slot, int channel);
  QString txtChannel;
  QString txtFFTscaleMin, txtFFTscaleMax;
  bool chkFFTAuto = true;
  int cboFFTDec = 1;  // 0..4
  bool chkGlobal = false;
  // Stores the scale in the channel of every loaded outing of the folder with the same name, and
  // in CHANNEL.DSC with "Make Global"; false, after its message, for a scale that isn't one.
  bool cmdOK();

 private:
  Workspace& ws_;
  int slot_, channel_;
};
