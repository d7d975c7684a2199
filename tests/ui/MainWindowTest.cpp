// The window driven as a person would: open two demo outings into a folder, add a lap and two
// channels, open the time graph, click, step with the keys, drag to zoom, undo, close, and
// find the same outings on the next start.

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QLabel>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QtTest/QTest>

#include "UiSession.h"
#include "core/app/Files.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/plots/PlotScale.h"
#include "core/plots/frmChlXYAxis.h"
#include "core/track/TrackFile.h"
#include "render/QtSurface.h"
#include "ui/GraphWindow.h"
#include "ui/PlotCanvas.h"
#include "ui/TreeWindow.h"
#include "ui/frmMDIForm.h"

namespace {

using ui_test::CountColour;
using ui_test::Session;
using ui_test::WhenModal;

TEST(MainWindow, APersonComparesTwoOutingsAndFindsThemAgain) {
  QTemporaryDir home;
  ASSERT_TRUE(ui_test::InstallDemo(home.path(), 3, false));
  const QString data = JoinPath(home.path(), "Data");
  const QStringList files = {JoinPath(data, "SILV0101.DAT"), JoinPath(data, "SILV0102.DAT")};
  {
    Session s(home.path());
    EXPECT_EQ(s.window->windowTitle(), s.ws->Title);

    s.host->files = files;
    s.action("Add New Outing(s)")->trigger();
    ASSERT_NE(s.folder().Outings[0].Loaded, 0);
    ASSERT_NE(s.folder().Outings[1].Loaded, 0);
    EXPECT_EQ(s.folder().Outings[1].FileName, files[1]);

    // A second lap of the first outing, and the speed and the throttle on the laps.
    s.ws->CurOuting = 0;
    s.folder().SelOuting = 0;
    OutingRec& first = s.folder().Outings[0];
    const int lap = first.CurLap;
    // Another lap resets a narrowed view to the whole span, in time and in distance.
    s.folder().TimeStart = 1000;
    s.folder().TimeEnd = 1010;
    s.folder().DistanceEnd = 5;
    s.action("Add Next Lap")->trigger();
    EXPECT_EQ(s.folder().TimeStart, 0);
    EXPECT_GT(s.folder().TimeEnd, 60000);
    EXPECT_GT(s.folder().DistanceEnd, 1000);
    EXPECT_NE(first.Laps[static_cast<std::size_t>(lap + 1)].Shown, 0);
    const int speed = FindChannelByName(*s.ws, 0, 0, "SYSTEM SPEED"), throttle = FindChannelByName(*s.ws, 0, 0, "THROTTLE");
    ASSERT_GE(speed, 0);
    ASSERT_GE(throttle, 0);
    s.host->channels = {speed, throttle};
    s.action("Add Channel(s)")->trigger();
    EXPECT_NE(first.Laps[static_cast<std::size_t>(first.CurLap)].LapChannels[static_cast<std::size_t>(speed)].Shown, 0);
    EXPECT_NE(first.Laps[static_cast<std::size_t>(first.CurLap)].LapChannels[static_cast<std::size_t>(throttle)].Shown, 0);

    // The time graph: traces on the picture.
    s.action("Time Plot")->trigger();
    QApplication::processEvents();
    GraphWindow* g = s.window->OpenGraphWindow(false);
    ASSERT_NE(g, nullptr);
    PlotCanvas* plot = g->Plot();
    ASSERT_GT(plot->width(), 300);
    int traced = 0;
    for (int colour : s.ws->Palette) traced += CountColour(plot->Image, QtSurface::ToQColor(colour));
    EXPECT_GT(traced, 500);

    // A click puts the cursor where it was made.
    const double w = plot->width() * 15.0, data_right = w - RightMargin(*s.ws);
    const auto time_at = [&](int px) {
      return s.folder().TimeStart + (s.folder().TimeEnd - s.folder().TimeStart) * (px * 15.0 - 750) / (data_right - 750);
    };
    const int click = plot->width() / 3;
    QTest::mouseClick(plot, Qt::LeftButton, {}, QPoint(click, plot->height() / 2));
    EXPECT_NEAR(s.folder().CursorTime, time_at(click), 1.0);

    // Ctrl+Left steps back by ten samples: the graph's key, not a menu shortcut.
    const ChannelRec& active = s.folder().Outings[static_cast<std::size_t>(s.folder().SelOuting)].Channels[static_cast<std::size_t>(s.folder().ActiveChannel)];
    QTest::keyClick(g, Qt::Key_Right);  // onto a sample
    const float on_sample = s.folder().CursorTime;
    QTest::keyClick(g, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_NEAR(s.folder().CursorTime, on_sample - 10 * std::nearbyint(1 / active.Rate), 0.01);

    // A drag zooms to the span; undo brings the whole lap back.
    const int32_t start = s.folder().TimeStart, end = s.folder().TimeEnd;
    const int x1 = plot->width() / 4, x2 = plot->width() / 2;
    const double t1 = time_at(x1), t2 = time_at(x2);
    QTest::mousePress(plot, Qt::LeftButton, {}, QPoint(x1, 200));
    QMouseEvent move(QEvent::MouseMove, QPointF(x2, 200), plot->mapToGlobal(QPointF(x2, 200)), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(plot, &move);
    QTest::mouseRelease(plot, Qt::LeftButton, {}, QPoint(x2, 200));
    EXPECT_NEAR(s.folder().TimeStart, t1, 1.0);
    EXPECT_NEAR(s.folder().TimeEnd, t2, 1.0);
    s.action("Undo Zoom")->trigger();
    EXPECT_EQ(s.folder().TimeStart, start);
    EXPECT_EQ(s.folder().TimeEnd, end);

    // The folder's map, half a percent shorter than the lap.
    const LapRec& shown = first.Laps[static_cast<std::size_t>(first.CurLap)];
    s.ws->TrackLength = (first.Laps[static_cast<std::size_t>(first.CurLap + 1)].StartDistance - shown.StartDistance) * 0.995f;
    s.ws->Track.TrackPoints.resize(50);
    ASSERT_TRUE(WriteFileAtomically(JoinPath(home.path(), "Track/SILV.MAP"), TrackFileBytes(*s.ws, "SILV0101")));
    s.folder().TrackFile = JoinPath(home.path(), "Track/SILV.MAP");
    s.window->close();
  }
  {
    Session again(home.path());
    EXPECT_EQ(again.folder().Outings[0].FileName, files[0]);
    EXPECT_EQ(again.folder().Outings[1].FileName, files[1]);
    const OutingRec& first = again.folder().Outings[0];
    int shown = 0;
    for (const LapRec& l : first.Laps) shown += l.Shown != 0;
    EXPECT_EQ(shown, 2);
    EXPECT_NE(again.window->OpenGraphWindow(false), nullptr);  // the graph is open again
    // The folder's map is in memory, and its laps are stretched to it.
    EXPECT_TRUE(again.ws->TrackLoaded);
    EXPECT_NEAR(first.Laps[static_cast<std::size_t>(first.CurLap)].DistanceScale, 0.995f, 1e-3);  // whole metres in the map
  }
}

// The demo's session, its graph with a scale beside it, the tree's support nodes, its map
// unloaded, and the guide.
TEST(MainWindow, TheDemoOpensOnTwoOutingsAndTheirTimeGraph) {
  QTemporaryDir home;
  ASSERT_TRUE(ui_test::InstallDemo(home.path(), 3, true));
  Session s(home.path());
  EXPECT_NE(s.folder().Outings[0].Loaded, 0);
  EXPECT_NE(s.folder().Outings[1].Loaded, 0);
  GraphWindow* g = s.window->OpenGraphWindow(false);
  ASSERT_NE(g, nullptr);
  // The whole fast lap is in view, the cursor a third of the way in.
  EXPECT_EQ(s.folder().TimeStart, 0);
  EXPECT_GT(s.folder().TimeEnd, 60000);
  EXPECT_NEAR(s.folder().CursorTime, s.folder().TimeEnd / 3.0, 1.0);
  // Tiled: each band names its channel, the caption row shows them all, the title no axis.
  EXPECT_EQ(g->windowTitle(), "Time Plot");
  EXPECT_TRUE(g->Captions()->text().contains("SYSTEM SPEED (km/h}")) << g->Captions()->text().toStdString();

  // RPM's scale in the left side panel: the channel is drawn, and the panel shows (in a folder
  // that isn't tiled: the demo's is).
  s.action("Tile Graphs")->trigger();
  EXPECT_FALSE(g->Panel(0)->isVisible());
  const int rpm = FindChannelByName(*s.ws, 0, 0, "RPM");
  WhenModal([&](QWidget* d) {
    EXPECT_EQ(d->objectName(), "frmChlXYAxis");
    d->findChild<QListWidget*>("lstChannels")->setCurrentRow(frmChlXYAxis(*s.ws, 0).Find("RPM"));
    d->findChild<QPushButton*>("cmdOK")->click();
  });
  s.window->ChooseAxisPanelChannel(0);
  QApplication::processEvents();
  EXPECT_EQ(s.folder().AxisPanelChannels[0], "RPM");
  const OutingRec& first = s.folder().Outings[0];
  EXPECT_NE(first.Laps[static_cast<std::size_t>(first.CurLap)].LapChannels[static_cast<std::size_t>(rpm)].Shown, 0);
  EXPECT_TRUE(g->Panel(0)->isVisible());
  EXPECT_FALSE(g->Panel(1)->isVisible());
  const QImage& panel = g->Panel(0)->Image;  // the scale's ticks and labels drawn on it
  EXPECT_GT(panel.width() * panel.height() - CountColour(panel, QColor(Qt::white)), 200);

  // The tree's support nodes open their editors.
  TreeWindow* tree = s.window->TreeView();
  for (const auto& [node, editor] :
       {std::pair{"Math Channels", "frmEditMath"}, std::pair{"Constants", "frmConstants"}}) {
    const QList<QTreeWidgetItem*> found =
        tree->findItems(QString::fromLatin1(node), Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1) << node;
    QString opened;
    WhenModal([&](QWidget* d) { opened = d->objectName(); });
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(found[0]).center());
    EXPECT_EQ(opened, QString::fromLatin1(editor));
  }

  // The demo's map is the folder's; Unload Track takes it out and greys itself.
  EXPECT_TRUE(s.ws->TrackLoaded);
  QAction* unload = s.window->findChild<QAction*>("mnuUnloadTrack");
  unload->trigger();
  EXPECT_FALSE(s.ws->TrackLoaded);
  EXPECT_TRUE(s.folder().TrackFile.isEmpty());
  EXPECT_FALSE(unload->isEnabled());

  // F1 asks the desktop to show the guide start-up installed.
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("file", &browser, "setSource");
  s.window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(s.window.get()));  // the closed dialogs had the focus
  QTest::keyClick(s.window.get(), Qt::Key_F1);
  QDesktopServices::unsetUrlHandler("file");
  ASSERT_FALSE(s.ws->HelpFilePath.isEmpty());
  EXPECT_EQ(browser.source(), QUrl::fromLocalFile(s.ws->HelpFilePath));
}

TEST(MainWindow, NewDataFromTheDownloaderAndClosingTheTree) {
  QTemporaryDir home;
  ASSERT_TRUE(ui_test::InstallDemo(home.path(), 2, false));
  const QString data = JoinPath(home.path(), "Data");
  Session s(home.path());
  s.host->files = {JoinPath(data, "SILV0101.DAT")};
  s.action("Add New Outing(s)")->trigger();
  ASSERT_NE(s.folder().Outings[0].Loaded, 0);

  // The downloader announces a file: a folder that asks for new data gets it in its current
  // slot, and the flag goes back to False.
  s.folder().Options.UpdateOnNewData = true;
  s.ws->Settings.WriteBool(kAppUsb, "Download", "New", true);
  s.ws->Settings.Write(kAppUsb, "Download", "File", JoinPath(data, "SILV0102.DAT"));
  s.window->PollNewData();
  EXPECT_EQ(s.folder().Outings[0].FileName, JoinPath(data, "SILV0102.DAT"));
  EXPECT_EQ(s.folder().Outings[1].Loaded, 0);
  EXPECT_FALSE(s.ws->Settings.ReadBool(kAppUsb, "Download", "New", true));

  // Closing the tree asks first; no keeps the outings and the window.
  auto* tree = qobject_cast<QMdiSubWindow*>(s.window->TreeView()->parentWidget());
  ASSERT_NE(tree, nullptr);
  s.messages.answers = {false};
  tree->close();
  EXPECT_EQ(s.messages.entries.back().text, "Unload all Outings");
  EXPECT_NE(s.folder().Outings[0].Loaded, 0);
  EXPECT_TRUE(tree->isVisible());
  s.messages.answers = {true};
  tree->close();
  EXPECT_EQ(s.folder().Outings[0].Loaded, 0);
  EXPECT_FALSE(tree->isVisible());

  // The only folder can't go; a second one can, and the tab in view follows the folder the
  // workspace moves to.
  s.action("Delete Folder")->trigger();
  EXPECT_EQ(s.messages.entries.back().text, "Cannot delete the only Folder");
  s.host->text = QStringLiteral("Second");
  s.host->files = {JoinPath(data, "SILV0101.DAT")};
  s.action("Add New Folder")->trigger();
  ASSERT_EQ(s.window->Tabs()->count(), 2);
  EXPECT_EQ(s.ws->CurFolder, 1);
  EXPECT_EQ(s.window->Tabs()->tabText(s.window->Tabs()->currentIndex()), "Second");
  s.action("Delete Folder")->trigger();
  ASSERT_EQ(s.window->Tabs()->count(), 1);
  EXPECT_EQ(s.window->Tabs()->tabData(s.window->Tabs()->currentIndex()).toInt(), s.ws->CurFolder);
}

}  // namespace
