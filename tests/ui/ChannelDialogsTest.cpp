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
#include <QToolButton>

#include "UiSession.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/OpenOuting.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotScale.h"
#include "render/QtSurface.h"
#include "ui/GraphWindow.h"
#include "ui/PlotCanvas.h"

namespace {

using ui_test::Session;
using ui_test::WhenModal;

// The demo installation and its session, made once for the tests of this file.
QString DemoHome() {
  static QTemporaryDir home;
  static const bool made = [] {
    RecordingMessages messages;
    DemoResult result;
    QString error;
    return CreateDemoInstallation(home.path(), messages, result, &error, 3) && WriteDemoSession(home.path(), messages);
  }();
  EXPECT_TRUE(made);
  return home.path();
}

template <class T>
T* Child(QWidget* dialog, const char* name) {
  T* w = dialog->findChild<T*>(QString::fromLatin1(name));
  EXPECT_NE(w, nullptr) << name;
  return w;
}

void Click(QWidget* dialog, const char* name) { Child<QAbstractButton>(dialog, name)->click(); }

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

OutingRec& CurrentOuting(Session& s) { return s.folder().Outings[static_cast<std::size_t>(s.ws->CurOuting)]; }

// Pixels of the plot in the grid's colour.
int GridPixels(Session& s) {
  const QImage& image = s.window->OpenGraphWindow(false)->Plot()->Image;
  const QColor grid = QtSurface::ToQColor(kGridColor);
  int n = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) n += image.pixelColor(x, y) == grid;
  }
  return n;
}

TEST(ChannelDialogs, EditBeaconsInsertsALapByItsTimeAndCancelLeavesTheFile) {
  Session s(DemoHome());
  OutingRec& o = CurrentOuting(s);
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

  // The file opened anew has the lap too.
  RecordingMessages messages;
  Workspace again(messages, s.ws->Home);
  ASSERT_TRUE(StartUp(again, false));
  ASSERT_TRUE(OpenOuting(again, file));
  EXPECT_EQ(again.FolderTable[0].Outings[0].LastLap, laps + 1);
  EXPECT_EQ(again.FolderTable[0].Outings[0].Laps[static_cast<std::size_t>(lap + 1)].StartTime, start + 40000);

  // Shift Beacons: a shift past a neighbour is refused and moves nothing; 1.5 s moves the beacons.
  const int32_t first = o.Laps[1].StartTime;
  WhenModal([&](QWidget* d) {
    Child<QLineEdit>(d, "txtShift")->setText("100000");
    Click(d, "cmdOK");
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(s.messages.entries.back().text, "Error shifting beacons");
    EXPECT_EQ(s.messages.entries.back().title, "Shift Beacon");
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
  OutingRec& o = CurrentOuting(s);
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

TEST(ChannelDialogs, AnEventLimitThatIsNoNumberChangesNothing) {
  Session s(DemoHome());
  const ChannelRec& c = CurrentOuting(s).Channels[static_cast<std::size_t>(s.folder().SelChannel)];
  const ChannelRec before = c;
  WhenModal([](QWidget* d) {
    Child<QLineEdit>(d, "txtLimit")->setText("high");
    Child<QCheckBox>(d, "chkEnabled")->setChecked(true);
    Click(d, "cmdOK");
    EXPECT_TRUE(d->isVisible());
    Click(d, "cmdCancel");
  });
  s.action("Events")->trigger();
  EXPECT_EQ(s.messages.entries.back().text, "The event limit must be a number");
  EXPECT_EQ(s.messages.entries.back().title, "Channel Events");
  EXPECT_EQ(c.EventLimit, before.EventLimit);
  EXPECT_EQ(c.EventEnabled, before.EventEnabled);
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

TEST(ChannelDialogs, AChannelDefaultColourGoesToChannelDscAndTheTrace) {
  Session s(DemoHome());
  const int channel = s.folder().SelChannel;
  OutingRec& o = CurrentOuting(s);
  const int record = o.Channels[static_cast<std::size_t>(channel)].DscIndex;
  const QString dsc = ChannelDscPath(*s.ws);
  const QByteArray before = FileBytes(dsc);
  const int pick = o.Channels[static_cast<std::size_t>(channel)].Color == 7 ? 8 : 7;

  WhenModal([&](QWidget* d) {
    EXPECT_EQ(d->objectName(), "frmChlColor");
    Click(d, QStringLiteral("picColor%1").arg(pick).toLatin1().constData());
    Child<QCheckBox>(d, "chkDefault")->setChecked(true);
    Accept(d);
  });
  s.action("Channel Colour")->trigger();

  // Of the records, only the channel's Color field (offset 68 of its record) changed.
  const QByteArray after = FileBytes(dsc);
  ASSERT_EQ(after.size(), before.size());
  const qsizetype color_at = kChannelDscHeadSize + qsizetype{kChannelDscRecordSize} * record + 68;
  for (qsizetype i = kChannelDscHeadSize; i < after.size(); ++i) {
    if (i != color_at && i != color_at + 1 && after[i] != before[i]) FAIL() << "byte " << i << " changed";
  }
  ChannelDescriptorFile file;
  ASSERT_TRUE(ReadChannelDescriptorFile(dsc, file));
  EXPECT_EQ(file.Records[static_cast<std::size_t>(record)].Color, pick);
  EXPECT_EQ(o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(channel)].Color, pick);
  EXPECT_EQ(GetChannelColor(*s.ws, s.ws->CurOuting, o.CurLap, channel), s.ws->Palette[static_cast<std::size_t>(pick)]);
}

TEST(ChannelDialogs, OptionsTurnTheGridOffForTheRedrawAndTheNextStart) {
  const QString home = DemoHome();
  {
    Session s(home);
    ASSERT_NE(s.window->OpenGraphWindow(false), nullptr);
    const int grid_before = GridPixels(s);
    ASSERT_GT(grid_before, 1000);

    // A zoom of 100 percent is refused and changes nothing.
    WhenModal([](QWidget* d) {
      Child<QCheckBox>(d, "chkVerticalGrid")->setChecked(false);
      Child<QLineEdit>(d, "txtZoomPercent")->setText("100");
      Click(d, "cmdOK");
      Click(d, "cmdCancel");
    });
    s.action("Options")->trigger();
    EXPECT_EQ(s.messages.entries.back().text, "Zoom percent must be between 1 and 99");
    EXPECT_TRUE(s.ws->Options.VerticalGrid);
    EXPECT_EQ(s.ws->Options.ZoomPercent, 50);

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
