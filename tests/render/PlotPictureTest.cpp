// The picture the command line draws of a demo outing's fast lap: traces, axes, grid and status
// line where a person would look for them.

#include <gtest/gtest.h>

#include <QFile>
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

// The demo's fast lap of SILV0101 with the speed and the throttle, drawn by `orlan plot` with
// the extra options given, as a 1600 x 900 picture.
QImage PlotFastLap(const QStringList& options) {
  static QTemporaryDir home;  // one demo installation for the whole file
  static bool made_demo = false;
  if (!made_demo) {
    RecordingMessages messages;
    DemoResult made;
    QString error;
    made_demo = CreateDemoInstallation(home.path(), messages, made, &error, 2);
    if (!made_demo) ADD_FAILURE() << error.toStdString();
  }
  const QString png = home.filePath("graph.png");
  QFile::remove(png);
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY),
          QStringList{"plot", "--home", home.path(), JoinPath(JoinPath(home.path(), "Data"), "SILV0101.DAT"), "--channels",
                      "SYSTEM SPEED,THROTTLE", "--laps", "fast", "--width", "1600", "--height", "900", "--out", png} +
              options);
  if (!p.waitForFinished(60000) || p.exitCode() != 0) ADD_FAILURE() << p.readAllStandardError().toStdString();
  return QImage(png);
}

// The channels' own colours from the factory CHANNEL.DSC: palette entries 10 and 5.
const QColor kSpeedColour = QtSurface::ToQColor(65280), kThrottleColour = QtSurface::ToQColor(33023);

TEST(PlotPicture, FastLapWithTwoChannels) {
  const QImage image = PlotFastLap({});
  ASSERT_EQ(image.size(), QSize(1600, 900));
  // 15 twips a pixel: the data area is 50..1550 x 27..857.
  const QRect area(51, 28, 1498, 828);
  const QColor first = kSpeedColour, second = kThrottleColour;
  EXPECT_GT(CountColour(image, area, first), 1500);   // a trace across the whole width
  EXPECT_GT(CountColour(image, area, second), 1500);
  EXPECT_GT(CountColour(image, area, QtSurface::ToQColor(8421504)), 2000);  // the dotted grid
  // The axis lines, and something written in the status strip above the area.
  EXPECT_EQ(image.pixelColor(50, 400), first);  // the speed's scale on the left
  EXPECT_GT(CountColour(image, QRect(800, 855, 1, 4), QColor(0, 0, 0)), 0);  // the time axis at H - 650
  const QRect status(80, 3, 600, 18);
  EXPECT_LT(CountColour(image, status, QColor(255, 255, 255)), status.width() * status.height() - 300);
}

TEST(PlotPicture, TiledBandsAndTheDarkTheme) {
  const QImage image = PlotFastLap({"--tile", "--theme", "dark"});
  ASSERT_EQ(image.size(), QSize(1600, 900));
  // Tiled, the right margin is 150 twips: the data area is 50..1590 x 27..857, two bands of 415
  // pixels. Bands go by the outing's channel order, where the throttle comes first: it takes the
  // upper band and the speed the lower.
  const QRect upper(51, 28, 1538, 410), lower(51, 445, 1538, 410);
  EXPECT_GT(CountColour(image, upper, kThrottleColour), 1500);
  EXPECT_EQ(CountColour(image, lower, kThrottleColour), 0);
  EXPECT_GT(CountColour(image, lower, kSpeedColour), 1500);
  EXPECT_EQ(CountColour(image, upper, kSpeedColour), 0);
  // White on black: the background, and the time axis in the foreground colour.
  EXPECT_EQ(image.pixelColor(5, 890), QColor(0, 0, 0));
  EXPECT_GT(CountColour(image, QRect(800, 855, 1, 4), QColor(255, 255, 255)), 0);
  EXPECT_GT(CountColour(image, QRect(51, 28, 1538, 828), QtSurface::ToQColor(8421504)), 1000);  // the grid
}

}  // namespace
