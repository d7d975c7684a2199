#include "render/QtSurface.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

struct Canvas {
  QImage image{300, 200, QImage::Format_RGB32};
  QPainter painter{&image};
  QtSurface s{painter, image.size()};
  QRgb At(int x, int y) const { return image.pixel(x, y) & 0xFFFFFF; }
};

TEST(QtSurface, ColoursAndLinesInPixels) {
  Canvas c;
  EXPECT_EQ(c.s.ScaleWidth(), 4500);
  EXPECT_EQ(c.s.ScaleHeight(), 3000);
  EXPECT_EQ(QtSurface::ToQColor(255), QColor(255, 0, 0));        // settings hold BGR
  EXPECT_EQ(QtSurface::ToQColor(16711680), QColor(0, 0, 255));
  c.s.BackColor = 16777215;
  c.s.Cls();
  EXPECT_EQ(c.At(10, 10), 0xFFFFFFu);
  c.s.Line(0, 1500, 4500, 1500, 255, LineKind::Line);  // y 1500 twips is pixel row 100
  EXPECT_EQ(c.At(150, 100), 0xFF0000u);
  c.s.Line(300, 300, 600, 600, 32768, LineKind::FilledBox);
  EXPECT_EQ(c.At(30, 30), 0x008000u);
  c.s.ForeColor = 16711680;
  c.s.Polyline({{0, 150}, {299, 150}});
  EXPECT_EQ(c.At(200, 150), 0x0000FFu);
}

// The cursor is drawn twice to be taken away: exclusive-or leaves the picture as it was.
TEST(QtSurface, ExclusiveOrTwiceRestores) {
  Canvas c;
  c.s.Cls();
  c.s.Line(0, 1500, 4500, 1500, 255, LineKind::Line);
  const QImage before = c.image.copy();
  c.s.DrawMode = kDrawXor;
  for (int i = 0; i < 2; ++i) c.s.Line(1500, 0, 1500, 3000, 16777215, LineKind::Line);
  EXPECT_EQ(c.image, before);
  c.s.Line(1500, 0, 1500, 3000, 16777215, LineKind::Line);
  EXPECT_EQ(c.At(100, 50), 0x000000u);  // white on white
  EXPECT_EQ(c.At(100, 100), 0x00FFFFu);  // white on red
}

}  // namespace
