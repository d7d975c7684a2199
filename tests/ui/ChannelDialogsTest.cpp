// The dialogs of beacons, channel settings, colours and options, driven from their menus on the
// demo session: each change reaches the model, the files it belongs in and the next redraw;
// Cancel and a refused entry leave everything as it was.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

#include "UiSession.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotScale.h"
#include "render/QtSurface.h"
#include "ui/GraphWindow.h"
#include "ui/PlotCanvas.h"

namespace {

using ui_test::Session;
using ui_test::WhenModal;

using ui_test::Child;
using ui_test::Click;

// The demo installation and its session, made once for the tests of this file.
QString DemoHome() {
  static QTemporaryDir home;
  static const bool made = ui_test::InstallDemo(home.path(), 3, true);
  EXPECT_TRUE(made);
  return home.path();
}

// OK, which must close the dialog; a refusal fails the test and cancels, so nothing waits.
void Accept(QWidget* dialog) {
  Click(dialog, "cmdOK");
  if (!dialog->isVisible()) return;
  ADD_FAILURE() << dialog->objectName().toStdString() << " refused OK";
  Click(dialog, "cmdCancel");
}

QByteArray FileBytes(const QString& path) {
  QFile f(path);
  return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Pixels of the plot in the grid's colour.
int GridPixels(Session& s) {
  return ui_test::CountColour(s.window->OpenGraphWindow(false)->Plot()->Image, QtSurface::ToQColor(kGridColor));
}

TEST(ChannelDialogs, EditBeaconsInsertsALapByItsTimeAndCancelLeavesTheFile) {
  Session s(DemoHome());
  OutingRec& o = s.outing();
  const QString file = o.FileName;
  const int laps = o.LastLap;
  const QByteArray before = FileBytes(file);

  // Cancel after a delete: neither the laps nor the file change.
  WhenModal([](QWidget* d) {
    Click(d, "cmdDelete");
    Click(d, "cmdCancel");
  });
  s.action("Edit Beacons")->trigger();
  EXPECT_EQ(o.LastLap, laps);
  EXPECT_EQ(FileBytes(file), before);

  // A beacon 40 s into the current lap splits it; Save Changes writes the beacons.
  const int lap = o.CurLap;
  const int32_t start = o.Laps[static_cast<std::size_t>(lap)].StartTime;
  int rows_shown = 0;
  WhenModal([&](QWidget* d) {
    auto* list = Child<QListWidget>(d, "lstLaps");
    EXPECT_EQ(list->currentRow(), lap);
    WhenModal([](QWidget* insert) {
      EXPECT_EQ(insert->objectName(), "frmInsertLap");
      Child<QLineEdit>(insert, "txtLapTime")->setText("0:40.000");
      Accept(insert);
    });
    Click(d, "cmdInsert");
    rows_shown = list->count();
    Accept(d);
  });
  s.action("Edit Beacons")->trigger();
  EXPECT_EQ(rows_shown, laps + 1);
  ASSERT_EQ(o.LastLap, laps + 1);
  EXPECT_EQ(o.Laps[static_cast<std::size_t>(lap + 1)].StartTime, start + 40000);

  // Shift Beacons: a shift past a neighbour is refused and moves nothing; 1.5 s moves the beacons.
  const int32_t first = o.Laps[1].StartTime;
  WhenModal([&](QWidget* d) {
    Child<QLineEdit>(d, "txtShift")->setText("100000");
    Click(d, "cmdOK");
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(o.Laps[1].StartTime, first);
    Child<QLineEdit>(d, "txtShift")->setText("1.5");
    Accept(d);
  });
  s.action("Shift Beacons")->trigger();
  EXPECT_EQ(o.Laps[1].StartTime, first + 1500);
}

TEST(ChannelDialogs, EditBeaconsWithoutAnOutingSaysSo) {
  Session s(DemoHome());
  s.action("Delete Outing")->trigger();
  s.action("Delete Outing")->trigger();
  ASSERT_FALSE(AnyOutingLoaded(*s.ws, s.ws->CurFolder));
  s.action("Edit Beacons")->trigger();
  ASSERT_FALSE(s.messages.entries.empty());
  EXPECT_EQ(s.messages.entries.back().text, "No Outing Loaded");
  EXPECT_EQ(s.messages.entries.back().title, "Edit Beacons");
}

TEST(ChannelDialogs, ALowPassFiltersTheChannelInEveryOutingAndARefusedCutoffChangesNothing) {
  Session s(DemoHome());
  ASSERT_NE(s.window->OpenGraphWindow(false), nullptr);
  const int channel = s.folder().SelChannel;
  OutingRec& o = s.outing();
  const QString name = o.Channels[static_cast<std::size_t>(channel)].ShortName;
  const LapChannelRec& trace =
      o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(channel)];
  ASSERT_NE(trace.Loaded, 0);
  const std::vector<float> raw = trace.Samples;
  const int16_t kind = o.Channels[static_cast<std::size_t>(channel)].FilterKind;

  // 400 Hz doesn't fit the setting: its message, and the dialog stays until cancelled.
  WhenModal([&](QWidget* d) {
    Child<QComboBox>(d, "cboType")->setCurrentIndex(2);
    EXPECT_TRUE(Child<QLineEdit>(d, "txtLow")->isEnabled());
    EXPECT_FALSE(Child<QLineEdit>(d, "txtHigh")->isEnabled());
    Child<QLineEdit>(d, "txtLow")->setText("400");
    Click(d, "cmdOK");
    EXPECT_TRUE(d->isVisible());
    Click(d, "cmdCancel");
  });
  s.action("Filters")->trigger();
  ASSERT_FALSE(s.messages.entries.empty());
  EXPECT_EQ(s.messages.entries.back().text, "A cut-off above 327.67 Hz cannot be stored");
  EXPECT_EQ(s.messages.entries.back().title, "Digital Filters");
  EXPECT_EQ(o.Channels[static_cast<std::size_t>(channel)].FilterKind, kind);
  EXPECT_EQ(trace.Samples, raw);

  WhenModal([](QWidget* d) {
    Child<QComboBox>(d, "cboType")->setCurrentIndex(2);
    Child<QLineEdit>(d, "txtLow")->setText("2.5");
    Accept(d);
  });
  s.action("Filters")->trigger();
  int outings = 0;
  for (const OutingRec& each : s.folder().Outings) {
    if (each.Loaded == 0) continue;
    const int c = FindChannelByName(*s.ws, s.ws->CurFolder, static_cast<int>(&each - s.folder().Outings.data()), name);
    ASSERT_GE(c, 0);
    EXPECT_EQ(each.Channels[static_cast<std::size_t>(c)].FilterKind, 2);
    EXPECT_EQ(each.Channels[static_cast<std::size_t>(c)].FilterLowCut, 250);
    ++outings;
  }
  EXPECT_EQ(outings, 2);
  // The redraw fetched the channel again, through the kernel filter: one sample fewer.
  ASSERT_NE(trace.Loaded, 0);
  EXPECT_EQ(trace.Samples.size(), raw.size() - 1);
}

// The palette: a colour changed and cancelled, changed and kept, then the defaults back.
TEST(ChannelDialogs, ThePaletteChangesOnOkOnlyAndComesBackToItsDefaults) {
  Session s(DemoHome());
  const auto key = [&] { return s.ws->Settings.ReadInt(kAppAnalysis, "UserOptions\\Palette", "Color03", -1); };
  const int original = s.ws->Palette[3];
  const auto change = [](const char* close) {
    WhenModal([close](QWidget* d) {
      WhenModal([](QWidget* colours) {
        qobject_cast<QColorDialog*>(colours)->setCurrentColor(QColor(1, 2, 3));
        qobject_cast<QDialog*>(colours)->accept();
      });
      Click(d, "picColor3");
      Click(d, close);
    });
  };
  change("cmdCancel");
  s.action("Palette")->trigger();
  EXPECT_EQ(s.ws->Palette[3], original);
  change("cmdOK");
  s.action("Palette")->trigger();
  EXPECT_EQ(s.ws->Palette[3], 0x030201);  // BGR
  EXPECT_EQ(key(), 0x030201);
  WhenModal([](QWidget* d) {
    Click(d, "cmdDefault");
    Accept(d);
  });
  s.action("Palette")->trigger();
  EXPECT_EQ(s.ws->Palette[3], 255);
  EXPECT_EQ(key(), 255);
}

TEST(ChannelDialogs, OptionsTurnTheGridOffForTheRedrawAndTheNextStart) {
  const QString home = DemoHome();
  {
    Session s(home);
    ASSERT_NE(s.window->OpenGraphWindow(false), nullptr);
    const int grid_before = GridPixels(s);
    ASSERT_GT(grid_before, 1000);

    WhenModal([](QWidget* d) {
      Child<QCheckBox>(d, "chkVerticalGrid")->setChecked(false);
      Child<QCheckBox>(d, "chkHorizontalGrid")->setChecked(false);
      Accept(d);
    });
    s.action("Options")->trigger();
    EXPECT_FALSE(s.ws->Options.VerticalGrid);
    EXPECT_FALSE(s.ws->Options.HorizontalGrid);
    QApplication::processEvents();
    EXPECT_LT(GridPixels(s), grid_before / 10);
    s.window->close();
  }
  RecordingMessages messages;
  Workspace again(messages, home);
  ASSERT_TRUE(StartUp(again, false));
  EXPECT_FALSE(again.Options.VerticalGrid);
  EXPECT_FALSE(again.Options.HorizontalGrid);
}

}  // namespace
