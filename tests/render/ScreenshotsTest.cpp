// `orlan gui --screenshots DIR` makes a picture of every window and dialog, each showing
// something, on a demo installation of its own.

#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

namespace {

// Enough different colours that the picture shows controls or traces, not an empty frame.
int Colours(const QImage& image) {
  QSet<QRgb> seen;
  for (int y = 0; y < image.height(); y += 3) {
    for (int x = 0; x < image.width(); x += 3) seen.insert(image.pixel(x, y));
  }
  return static_cast<int>(seen.size());
}

TEST(Screenshots, EveryWindowAndDialogHasAPicture) {
  QTemporaryDir out;
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY), {"gui", "--screenshots", out.path()});
  ASSERT_TRUE(p.waitForFinished(300000));
  ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
  const char* const names[] = {
      "frmMDIForm", "frmChlTree", "frmGraph", "frmDistance", "frmXYPlot", "frmHisto", "frmHistoScale",
      "frmLapSelect", "frmChlSelect", "frmDatumFile", "frmLapHide", "frmGroupLaps", "frmChlColor",
  };
  for (const char* name : names) {
    const QImage image(out.filePath(QString::fromLatin1(name) + ".png"));
    ASSERT_FALSE(image.isNull()) << name;
    EXPECT_GT(Colours(image), 3) << name;
  }
}

}  // namespace
