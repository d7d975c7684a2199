#pragma once

// The distance plot: the traces of the time graph laid out against the distance along the lap,
// so that laps of different speed compare corner by corner. Each lap is placed by its own
// distance channel; the corners of the loaded map are marked along the axis.

#include "core/plots/LinePlot.h"

class frmDistance : public LinePlot {
 public:
  using LinePlot::LinePlot;

  // "No distance data" alone when the Datum's outing has no distance channel.
  void DrawLineGraphs() override;
  void DrawXAxis() override;
  // One trace: each sample at its lap's distance, a held distance advanced by the last step so
  // the trace never stands still, and never drawn backwards.
  void DoDistancePlot(int slot, int lap, int channel);
  // The distance axis with its unit, and the starts of further laps.
  void DistanceAxis();
  // The corners of the loaded map along the axis, named T1, T2, ... and repeated for each lap of
  // the Datum span.
  void ShowCorners();

 protected:
  AxisKind Kind() const override { return AxisKind::Distance; }
  void DoPlot(int slot, int lap, int channel) override { DoDistancePlot(slot, lap, channel); }
  double ViewStart() const override;
  double ViewEnd() const override;
  double Cursor() const override;
  void SetCursor(double position) override;
  double CursorTimeIn(int slot, int lap) override;
  double PositionOfTime(int slot, int lap, double ms) override;
  double MinimumZoom() const override { return 10; }  // distance units
  QString PositionCaption() const override { return QStringLiteral("Distance :"); }
  QString PositionText(double distance) const override;

 private:
  // The outing the axes are measured on: the Datum's, or the selected one.
  int SpanSlot() const;
};
