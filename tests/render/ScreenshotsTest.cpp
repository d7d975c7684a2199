// `orlan gui --screenshots DIR` makes a picture of every window and dialog, each showing
// something of its own, on a demo installation of its own.

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QMap>
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

TEST(Screenshots, EveryWindowAndDialogHasAPictureOfItsOwn) {
  QTemporaryDir out;
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY), {"gui", "--screenshots", out.path()});
  ASSERT_TRUE(p.waitForFinished(600000));
  ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
  // The command names each picture it wrote; those are all the folder holds.
  const QStringList written = QString::fromUtf8(p.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
  EXPECT_EQ(QDir(out.path()).entryList({"*.png"}).size(), written.size());
  EXPECT_GE(written.size(), 44);  // as many as there were when this was written
  for (const char* must : {"frmMDIForm.png", "frmTrackNew.png", "frmTrackSplits.png", "frmChlColorLap.png", "frmSpectrogram.png", "frmTrackReport.png"}) {
    EXPECT_TRUE(written.contains(QString::fromLatin1(must))) << must;
  }
  // No two alike: a dialog taken under another's name would be a copy.
  QMap<QByteArray, QString> seen;
  for (const QString& name : written) {
    const QImage image(out.filePath(name));
    ASSERT_FALSE(image.isNull()) << name.toStdString();
    EXPECT_GT(Colours(image), 3) << name.toStdString();
    const QByteArray bits(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    EXPECT_FALSE(seen.contains(bits)) << name.toStdString() << " is " << seen.value(bits).toStdString();
    seen.insert(bits, name);
  }
}

}  // namespace
