#pragma once

// The time graph: every shown channel of every shown lap of every visible outing of the folder,
// as traces against the time from the lap's start, so that laps overlay without alignment; with
// the event bars along the time axis. What it shares with the distance plot is LinePlot's.

#include "core/plots/LinePlot.h"

class frmGraph : public LinePlot {
 public:
  using LinePlot::LinePlot;

  void DrawXAxis() override { DrawTimeAxis(); }
  // One trace, thinned to about 2,000 points, clipped to the data area and the channel's band.
  void DoTimePlot(int slot, int lap, int channel);
  // Bars along the time axis where the channel's event condition holds, and its minimum and
  // maximum labelled when asked; over the span and scale DoTimePlot left.
  void DoEventPlot(int slot, int lap, int channel);
  // The time axis in seconds with nice ticks, its grid and the starts of further laps.
  void DrawTimeAxis();

 protected:
  AxisKind Kind() const override { return AxisKind::Time; }
  void DoPlot(int slot, int lap, int channel) override { DoTimePlot(slot, lap, channel); }
  double ViewStart() const override;
  double ViewEnd() const override;
  double Cursor() const override;
  void SetCursor(double position) override;
  double CursorTimeIn(int, int) override { return Cursor(); }
  double PositionOfTime(int, int, double ms) override { return ms; }
  double MinimumZoom() const override { return 10; }  // ms
  QString PositionCaption() const override { return QStringLiteral("Time :"); }
  QString PositionText(double ms) const override;
};
