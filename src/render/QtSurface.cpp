#include "render/QtSurface.h"

#include <QFontMetricsF>
#include <QPolygon>

QtSurface::QtSurface(QPainter& painter, QSize pixels, double twips_per_pixel)
    : p_(painter), pixels_(pixels), tpp_(twips_per_pixel) {
  QFont font = p_.font();
  font.setPixelSize(10);  // scale labels fit the 500 twips left of the axis
  p_.setFont(font);
}

QColor QtSurface::ToQColor(int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

void QtSurface::Prepare(int color, bool fill) {
  // Exclusive-or draws the cursor so that drawing it again takes it away without a redraw.
  p_.setCompositionMode(DrawMode == kDrawXor ? QPainter::RasterOp_SourceXorDestination : QPainter::CompositionMode_SourceOver);
  QPen pen(ToQColor(color));
  pen.setWidth(std::max(1, DrawWidth));
  pen.setCosmetic(true);  // widths in pixels: the raster engine's fast path for thin lines
  pen.setStyle(DrawStyle == kDotted ? Qt::DotLine : Qt::SolidLine);
  p_.setPen(pen);
  p_.setBrush(fill ? QBrush(ToQColor(color)) : Qt::NoBrush);
}

void QtSurface::Cls() {
  p_.setCompositionMode(QPainter::CompositionMode_SourceOver);
  p_.fillRect(QRect(QPoint(0, 0), pixels_), ToQColor(BackColor));
}

void QtSurface::Line(double x1, double y1, double x2, double y2, int color, LineKind kind) {
  Prepare(color, kind == LineKind::FilledBox);
  const QPointF a(Px(x1), Px(y1)), b(Px(x2), Px(y2));
  if (kind == LineKind::Line) {
    p_.drawLine(a, b);
  } else if (kind == LineKind::FilledBox) {
    p_.fillRect(QRectF(a, b).normalized(), ToQColor(color));
  } else {
    p_.drawRect(QRectF(a, b).normalized());
  }
}

void QtSurface::Circle(double x, double y, double radius, int color) {
  Prepare(color, false);
  p_.drawEllipse(QPointF(Px(x), Px(y)), Px(radius), Px(radius));
}

void QtSurface::Print(const QString& text) {
  Prepare(ForeColor, false);
  const QFontMetricsF m(p_.font());
  p_.drawText(QPointF(Px(CurrentX), Px(CurrentY) + m.ascent()), text);
  CurrentY += TextHeight(text);
}

double QtSurface::TextWidth(const QString& text) const { return QFontMetricsF(p_.font()).horizontalAdvance(text) * tpp_; }

double QtSurface::TextHeight(const QString&) const { return QFontMetricsF(p_.font()).height() * tpp_; }

void QtSurface::Polyline(const std::vector<PixelPoint>& points) {
  Prepare(ForeColor, false);
  QPolygon polygon(static_cast<int>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) polygon.setPoint(static_cast<int>(i), points[i].x, points[i].y);
  p_.drawPolyline(polygon);
}
