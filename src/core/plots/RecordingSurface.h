#pragma once

// A surface that keeps what is drawn on it, for tests: every operation with its coordinates,
// colour, style and mode. Text is measured as a fixed-pitch font of 100 by 195 twips a character,
// 15 twips a pixel.

#include <QString>
#include <vector>

#include "core/plots/Surface.h"

struct DrawOp {
  enum class Kind { Cls, Line, Box, FilledBox, Circle, Print, Polyline } kind = Kind::Cls;
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  int color = 0;
  int style = 0;
  int mode = 13;
  int width = 1;
  QString text;
  std::vector<PixelPoint> points;
};

class RecordingSurface : public Surface {
 public:
  RecordingSurface(double width_twips, double height_twips) : width_(width_twips), height_(height_twips) {}

  void Cls() override;
  void Line(double x1, double y1, double x2, double y2, int color, LineKind kind) override;
  void Circle(double x, double y, double radius, int color) override;
  void Print(const QString& text) override;
  double TextWidth(const QString& text) const override { return 100.0 * static_cast<double>(text.size()); }
  double TextHeight(const QString&) const override { return 195; }
  void Polyline(const std::vector<PixelPoint>& points) override;
  double ScaleWidth() const override { return width_; }
  double ScaleHeight() const override { return height_; }
  double TwipsPerPixelX() const override { return 15; }
  double TwipsPerPixelY() const override { return 15; }

  std::vector<DrawOp> ops;

  // The operations of one kind, in order.
  std::vector<DrawOp> Of(DrawOp::Kind kind) const;
  // The texts printed, in order.
  std::vector<QString> Texts() const;

 private:
  DrawOp Op(DrawOp::Kind kind) const;
  double width_, height_;
};
