// The track commands driven as a person would on the demo session: a map made from the lap and
// saved, loaded again, its data and splits edited.

#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "UiSession.h"
#include "core/app/Files.h"
#include "core/track/Laps.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackFile.h"
#include "core/track/frmTrackNew.h"
#include "render/QtSurface.h"
#include "ui/TrackPicture.h"

namespace {

using ui_test::Child;
using ui_test::Session;
using ui_test::WhenModal;

const QString& Home() {
  static QTemporaryDir* home = new QTemporaryDir;
  static const bool made = ui_test::InstallDemo(home->path(), 3, true);
  static const QString path = made ? home->path() : QString();
  return path;
}

// A map of the current lap written by the program itself, the folder without a map after it.
QString MapOfCurrentLap(Session& s, const QString& name) {
  frmTrackNew made(*s.ws, s.ws->CurOuting);
  EXPECT_TRUE(made.cmdSave(name, QString()));
  LoadFolderTrack(*s.ws);  // as the window does after a save
  s.folder().TrackFile.clear();
  LoadFolderTrack(*s.ws);
  return TrackPathFor(*s.ws, name);
}

TEST(TrackDialogs, ANewMapIsMadeFromTheLapSteppedAndSavedAndTheFolderLoadsIt) {
  Session s(Home());
  const OutingRec& o = s.outing();
  const int lap = o.CurLap;
  const auto title = [&](int l) { return QStringLiteral("Create Track : Lap (%1)").arg(LapNumberText(o, l)); };
  WhenModal([&](QWidget* d) {
    EXPECT_EQ(d->windowTitle(), title(lap));
    Child<QAction>(d, "mnuNextLap")->trigger();
    EXPECT_EQ(d->windowTitle(), title(lap + 1));
    Child<QAction>(d, "mnuPreviousLap")->trigger();
    EXPECT_EQ(d->windowTitle(), title(lap));
    QCheckBox* invert = Child<QCheckBox>(d, "chkInvertCalibration");
    EXPECT_TRUE(invert->isChecked());  // as the demo's map was made
    invert->click();                   // a mirror image, as good a test
    const QImage& map = static_cast<TrackPicture*>(Child<QWidget>(d, "picTrack"))->Image;
    EXPECT_GT(ui_test::CountColour(map, QtSurface::ToQColor(s.ws->Options.ColorOfTurns)), 100);
    EXPECT_GT(ui_test::CountColour(map, QtSurface::ToQColor(s.ws->Options.ColorOfStraights)), 100);
    WhenModal([&](QWidget* data) {
      EXPECT_EQ(data->windowTitle(), "Track Data");
      Child<QLineEdit>(data, "txtTrackName")->setText("Club Circuit");
      Child<QLineEdit>(data, "txtComment")->setText("from the fast lap");
      Child<QPushButton>(data, "cmdOK")->click();
    });
    Child<QPushButton>(d, "cmdSave")->click();
    EXPECT_EQ(Child<QPushButton>(d, "cmdCancel")->text(), "&Close");
    Child<QPushButton>(d, "cmdCancel")->click();
  });
  s.action("New Map")->trigger();

  const QString path = JoinPath(s.ws->Paths.TrackDirectory, "Club Circuit.MAP");
  EXPECT_TRUE(FileExists(path));
  EXPECT_EQ(s.folder().TrackFile, path);
  ASSERT_TRUE(s.ws->TrackLoaded);
  EXPECT_EQ(s.ws->Track.TrackName, "Club Circuit");
  EXPECT_EQ(s.ws->Track.TrackComment, "from the fast lap");
  EXPECT_FALSE(ReadTrackSettings(*s.ws).InvertCalibration);  // the window's settings are kept
}

TEST(TrackDialogs, ANewMapNotSavedLeavesTheFoldersMap) {
  Session s(Home());
  const QString path = MapOfCurrentLap(s, "KEEP");
  ASSERT_TRUE(SelectTrackFile(*s.ws, path));
  const float length = s.ws->TrackLength;
  const int32_t points = s.ws->Track.PointCount;
  int made_length = 0;
  WhenModal([&](QWidget* d) {
    Child<QAction>(d, "mnuNextLap")->trigger();  // another lap's map in memory
    made_length = static_cast<int>(s.ws->TrackLength);
    Child<QPushButton>(d, "cmdCancel")->click();
  });
  s.action("New Map")->trigger();
  EXPECT_NE(made_length, static_cast<int>(length));  // the window held another map meanwhile
  EXPECT_EQ(s.folder().TrackFile, path);
  EXPECT_EQ(s.ws->TrackLength, length);
  EXPECT_EQ(s.ws->Track.PointCount, points);
  EXPECT_EQ(s.ws->Track.TrackName, "KEEP");
}

TEST(TrackDialogs, LoadTrackThenTrackDataRefusesAnEmptyNameAndWritesTheHeader) {
  Session s(Home());
  const QString path = MapOfCurrentLap(s, "LOADME");
  ASSERT_FALSE(s.ws->TrackLoaded);
  WhenModal([&](QWidget* d) {
    auto* files = qobject_cast<QFileDialog*>(d);
    ASSERT_NE(files, nullptr);
    EXPECT_EQ(files->windowTitle(), "Load Track");
    files->selectFile(path);
    static_cast<QDialog*>(files)->accept();  // public on the base, the file dialog's own checks run
  });
  s.action("Load Track")->trigger();
  ASSERT_TRUE(s.ws->TrackLoaded);
  EXPECT_EQ(s.folder().TrackFile, path);
  EXPECT_EQ(s.ws->Track.TrackName, "LOADME");

  // Track Data: a refused name keeps the dialog; the correction goes to the folder.
  WhenModal([&](QWidget* d) {
    Child<QLineEdit>(d, "txtTrackName")->setText("  ");
    Child<QPushButton>(d, "cmdOK")->click();
    EXPECT_TRUE(d->isVisible());
    Child<QLineEdit>(d, "txtTrackName")->setText("Renamed");
    Child<QSpinBox>(d, "txtCorrection")->setValue(5);
    Child<QPushButton>(d, "cmdOK")->click();
  });
  s.action("Track Data")->trigger();
  EXPECT_EQ(s.folder().TrackCorrection, 5);
}

TEST(TrackDialogs, SplitsAreAddedOnTheMapSavedIntoTheFileOrPutBackOnCancel) {
  Session s(Home());
  const QString path = MapOfCurrentLap(s, "SPLITS");
  s.action("Edit Splits")->trigger();
  ASSERT_FALSE(s.messages.entries.empty());
  EXPECT_EQ(s.messages.entries.back().text, "No Current Track Selected");
  EXPECT_EQ(s.messages.entries.back().title, "Edit Splits");

  ASSERT_TRUE(SelectTrackFile(*s.ws, path));
  const std::vector<int32_t> before = s.ws->Track.SplitPoints;
  // A click on the map a third of the way round, its distance taken as offered.
  const auto click_map = [&](QWidget* d, std::size_t share) {
    auto* picture = static_cast<TrackPicture*>(Child<QWidget>(d, "picTrack"));
    const QPoint at = picture->PixelOf(static_cast<int>(s.ws->Track.TrackPoints.size() / share));
    const int point = picture->PointAt(at);
    WhenModal([](QWidget* entry) { qobject_cast<QInputDialog*>(entry)->accept(); });
    QTest::mouseClick(picture, Qt::LeftButton, {}, at);
    return s.ws->Track.TrackPoints[static_cast<std::size_t>(point)].Distance;
  };
  int32_t added = 0;
  WhenModal([&](QWidget* d) {
    added = click_map(d, 3);
    Child<QPushButton>(d, "cmdSave")->click();
  });
  s.action("Edit Splits")->trigger();
  ASSERT_TRUE(LoadTrackFile(*s.ws, path));
  EXPECT_EQ(s.ws->Track.SplitPoints.size(), before.size() + 1);
  EXPECT_NE(std::find(s.ws->Track.SplitPoints.begin(), s.ws->Track.SplitPoints.end(), added), s.ws->Track.SplitPoints.end());

  const std::vector<int32_t> saved = s.ws->Track.SplitPoints;
  WhenModal([&](QWidget* d) {
    click_map(d, 2);
    s.messages.answers.push_back(true);
    Child<QPushButton>(d, "cmdClear")->click();
    EXPECT_EQ(s.ws->Track.SplitCount, 1);
    Child<QPushButton>(d, "cmdCancel")->click();
  });
  s.action("Edit Splits")->trigger();
  EXPECT_EQ(s.ws->Track.SplitPoints, saved);
}

}  // namespace
