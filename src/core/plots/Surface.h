#pragma once

// What the plots draw on. Coordinates are twips (1/1440 inch) from the top left; colours are BGR
// integers as the settings hold them. A trace goes to the device as one polyline in pixels.
// QtSurface (render/) paints with QPainter; RecordingSurface keeps the operations for tests.

#include <QString>
#include <cmath>
#include <vector>

struct PixelPoint {
  int x = 0;
  int y = 0;
};

enum class LineKind { Line, Box, FilledBox };

class Surface {
 public:
  virtual ~Surface() = default;

  virtual void Cls() = 0;
  // A line, or the box with these corners, in `color`.
  virtual void Line(double x1, double y1, double x2, double y2, int color, LineKind kind = LineKind::Line) = 0;
  virtual void Circle(double x, double y, double radius, int color) = 0;
  // Text at CurrentX, CurrentY (its top left) in ForeColor.
  virtual void Print(const QString& text) = 0;
  virtual double TextWidth(const QString& text) const = 0;
  virtual double TextHeight(const QString& text) const = 0;
  // A trace: points in pixels, in ForeColor, DrawWidth wide.
  virtual void Polyline(const std::vector<PixelPoint>& points) = 0;

  virtual double ScaleWidth() const = 0;   // twips
  virtual double ScaleHeight() const = 0;  // twips
  virtual double TwipsPerPixelX() const = 0;
  virtual double TwipsPerPixelY() const = 0;

  // A point in twips as the device takes it: x by integer division, y rounded first.
  PixelPoint ToPixels(double x, double y) const {
    return {static_cast<int>(x) / static_cast<int>(TwipsPerPixelX()),
            static_cast<int>(std::nearbyint(y)) / static_cast<int>(TwipsPerPixelY())};
  }

  double CurrentX = 0;
  double CurrentY = 0;
  int ForeColor = 0;
  int BackColor = 16777215;
  int DrawStyle = 0;   // 0 solid, 2 dotted
  int DrawWidth = 1;
  int DrawMode = 13;   // 13 copy, 7 exclusive-or
};

// Drawing modes and styles by name.
inline constexpr int kDrawCopy = 13;
inline constexpr int kDrawXor = 7;
inline constexpr int kSolid = 0;
inline constexpr int kDotted = 2;
