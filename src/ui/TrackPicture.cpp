#include "ui/TrackPicture.h"

#include <QPainter>
#include <limits>

#include "core/app/Workspace.h"
#include "render/QtSurface.h"

namespace {
constexpr double kTwips = 15;      // twips a pixel
constexpr double kReach = 8 * kTwips;  // how near a click must come to the line
}  // namespace

TrackPicture::TrackPicture(Workspace& ws, QWidget* parent) : PlotCanvas(parent), ws_(ws) {
  setObjectName(QStringLiteral("picTrack"));
  setMinimumSize(480, 360);
  setMouseTracking(true);  // the point under the mouse shows without a button held
  Resized = [this] { Redraw(); };
}

void TrackPicture::Redraw() {
  FitImage();
  {
    QPainter painter(&Image);
    QtSurface surface(painter, Image.size(), kTwips);
    DrawTrackMap(ws_, surface, Options);
  }
  update();
}

int TrackPicture::PointAt(QPointF pixel, bool anywhere) const {
  const double reach = anywhere ? std::numeric_limits<double>::infinity() : kReach;
  return NearestTrackPoint(ws_, pixel.x() * kTwips, pixel.y() * kTwips, reach);
}

QPoint TrackPicture::PixelOf(int point) const {
  const TrackXY at = TrackPointPosition(ws_, point);
  return {static_cast<int>(at.x / kTwips), static_cast<int>(at.y / kTwips)};
}
