// The picture the command line draws of a demo outing's fast lap: traces, axes, grid and status
// line where a person would look for them.

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/demo/DemoInstall.h"
#include "render/QtSurface.h"

namespace {

int CountColour(const QImage& image, QRect area, QColor colour) {
  int n = 0;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) n += image.pixelColor(x, y) == colour;
  }
  return n;
}

TEST(PlotPicture, FastLapWithTwoChannels) {
  QTemporaryDir home;
  RecordingMessages messages;
  DemoResult made;
  QString error;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, made, &error, 2)) << error.toStdString();
  const QString png = home.filePath("graph.png");
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY),
          {"plot", "--home", home.path(), JoinPath(JoinPath(home.path(), "Data"), "SILV0101.DAT"), "--channels",
           "SYSTEM SPEED,THROTTLE", "--laps", "fast", "--width", "1600", "--height", "900", "--out", png});
  ASSERT_TRUE(p.waitForFinished(60000));
  ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
  QImage image(png);
  ASSERT_EQ(image.size(), QSize(1600, 900));
  // 15 twips a pixel: the data area is 50..1550 x 27..857.
  const QRect area(51, 28, 1498, 828);
  const QColor first = QtSurface::ToQColor(8388736), second = QtSurface::ToQColor(16711680);
  EXPECT_GT(CountColour(image, area, first), 1500);   // a trace across the whole width
  EXPECT_GT(CountColour(image, area, second), 1500);
  EXPECT_GT(CountColour(image, area, QtSurface::ToQColor(8421504)), 2000);  // the dotted grid
  // The axis lines, and something written in the status strip above the area.
  EXPECT_EQ(image.pixelColor(50, 400), first);  // the speed's scale on the left
  EXPECT_GT(CountColour(image, QRect(800, 855, 1, 4), QColor(0, 0, 0)), 0);  // the time axis at H - 650
  const QRect status(80, 3, 600, 18);
  EXPECT_LT(CountColour(image, status, QColor(255, 255, 255)), status.width() * status.height() - 300);
}

}  // namespace
