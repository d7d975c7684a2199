#pragma once

// A Surface that paints with QPainter: on a widget during its paint event, or on a QImage for a
// picture. Twips become pixels at a fixed 15 twips a pixel (96 dots an inch).

#include <QFont>
#include <QPainter>
#include <QSize>

#include "core/plots/Surface.h"

class QtSurface : public Surface {
 public:
  // `painter` is active on a device of `pixels`; the surface only borrows it.
  QtSurface(QPainter& painter, QSize pixels, double twips_per_pixel = 15);

  void Cls() override;
  void Line(double x1, double y1, double x2, double y2, int color, LineKind kind) override;
  void Circle(double x, double y, double radius, int color) override;
  void Print(const QString& text) override;
  double TextWidth(const QString& text) const override;
  double TextHeight(const QString& text) const override;
  void Polyline(const std::vector<PixelPoint>& points) override;
  double ScaleWidth() const override { return pixels_.width() * tpp_; }
  double ScaleHeight() const override { return pixels_.height() * tpp_; }
  double TwipsPerPixelX() const override { return tpp_; }
  double TwipsPerPixelY() const override { return tpp_; }

  // A BGR integer of the settings as a Qt colour.
  static QColor ToQColor(int bgr);

 private:
  void Prepare(int color, bool fill);  // pen, brush and raster mode from the surface's state
  double Px(double twips) const { return twips / tpp_; }

  QPainter& p_;
  QSize pixels_;
  double tpp_;
};
