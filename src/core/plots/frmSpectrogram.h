#pragma once

// The spectrogram window: the spectrum of the active channel of the current lap taken over a
// window that slides along the time view, drawn as time across and frequency up, the level in
// colour (decibels below the loudest cell). It spans the folder's time view, so zooming the
// time graph zooms it, and shows the folder's cursor; a click moves the cursor.

#include <QString>

#include "core/compute/Frequency.h"

class Surface;
struct Workspace;

class frmSpectrogram {
 public:
  frmSpectrogram(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  // The folder's SpectrogramPoints (a power of two from 16 to 4,096) and SpectrogramOverlap
  // (0 to 90 %), as they are valid.
  int WindowPoints() const;
  int OverlapPercent() const;
  static constexpr double kRangeDb = 60;  // the colours span the loudest cell down to this far below

  void DrawSpectrogram();
  // A click at x inside the plot moves the folder's cursor there; true when it moved.
  bool MouseDown(double x);
  // The cursor line follows the folder's cursor.
  void FollowCursor();

  // The window's step in samples: the window less its overlap, at least one sample.
  int StepSamples() const;

  QString Caption;     // "Spectrogram - SPEED - (003 Fast)", or "No Frequency"
  QString StatusLine;  // the window, the step and the bin width
  Spectrogram Data;
  double Rate = 0;      // samples a ms of the channel drawn
  double PeakDb = 0;    // the loudest cell, bin 0 left out

 private:
  double XOfTime(double ms) const;
  double TimeOfX(double x) const;
  void DrawCells();
  void DrawAxes();
  bool DrawCursorLine(double ms);

  Workspace& ws_;
  Surface* s_;
  double cursor_drawn_ = -1;  // ms where the cursor line stands; -1 none
};
