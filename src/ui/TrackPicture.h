#pragma once

// The picture of the map in ws.Track inside a dialog: drawn to fit the widget, redrawn when it
// is resized, and asked which point lies under the mouse.

#include <QPoint>

#include "core/track/TrackDrawing.h"
#include "ui/PlotCanvas.h"

struct Workspace;

class TrackPicture : public PlotCanvas {
 public:
  explicit TrackPicture(Workspace& ws, QWidget* parent = nullptr);

  TrackDrawOptions Options;
  void Redraw();
  // The point drawn within a few pixels of `pixel`, or with `anywhere` the nearest one; -1 when
  // there is none.
  int PointAt(QPointF pixel, bool anywhere = false) const;
  // Where a point is drawn, in pixels of the widget.
  QPoint PixelOf(int point) const;

 private:
  Workspace& ws_;
};
