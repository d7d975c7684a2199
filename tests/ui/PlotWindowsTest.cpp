// The distance plot, the XY plot and the histograms as a person opens them from the tool bar on
// the demo session: each draws its traces, follows the options, and comes back with the session.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTemporaryDir>

#include "UiSession.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "ui/GraphWindow.h"
#include "ui/HistoWindow.h"
#include "ui/PlotCanvas.h"
#include "ui/XYWindow.h"

namespace {

using ui_test::Session;

// Pixels of the picture that are neither the background nor the grid.
int Drawn(const QImage& image) {
  int n = 0;
  for (int y = 0; y < image.height(); y += 2) {
    for (int x = 0; x < image.width(); x += 2) {
      const QColor c = image.pixelColor(x, y);
      n += c != QColor(Qt::white) && c != QColor(128, 128, 128) && c != QColor(Qt::black);
    }
  }
  return n;
}

TEST(PlotWindows, EachWindowDrawsTheFoldersTracesAndReturnsWithTheSession) {
  QTemporaryDir home;
  {
    RecordingMessages messages;
    DemoResult result;
    QString error;
    ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, result, &error, 3)) << error.toStdString();
    ASSERT_TRUE(WriteDemoSession(home.path(), messages));
  }
  {
    Session s(home.path());
    for (const char* button : {"Button Distance", "Button XY Plot", "Button Histogram"}) s.action(button)->trigger();
    QApplication::processEvents();
    auto* distance = static_cast<GraphWindow*>(s.window->OpenPlotWindow(PlotWindow::Distance, false));
    auto* xy = static_cast<XYWindow*>(s.window->OpenPlotWindow(PlotWindow::XYPlot, false));
    auto* histo = static_cast<HistoWindow*>(s.window->OpenPlotWindow(PlotWindow::Histo, false));
    ASSERT_TRUE(distance && xy && histo);
    EXPECT_GT(s.folder().DistanceEnd, 4000);  // a lap of the circuit in view
    EXPECT_GT(Drawn(distance->Plot()->Image), 1000);
    EXPECT_GT(Drawn(xy->Canvas()->Image), 200);
    EXPECT_GT(Drawn(histo->Canvas()->Image), 200);

    // The line fit of the XY plot: its text at the top, the fit in the model.
    s.folder().Options.XYLineFit = true;
    xy->Redraw();
    EXPECT_TRUE(xy->Plot().LineText.startsWith("Y = (")) << xy->Plot().LineText.toStdString();
    EXPECT_NE(xy->Plot().Correlation, 0.0f);

    // The histogram's scale: a bad value keeps the dialog with its message, a good one is stored.
    ui_test::WhenModal([&](QWidget* d) {
      d->findChild<QLineEdit*>("txtDataIn")->setText("0");
      d->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
      EXPECT_EQ(s.messages.entries.back().title, "Histogram Scales");
      d->findChild<QLineEdit*>("txtDataIn")->setText("25");
      d->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    EXPECT_TRUE(histo->EditScale());
    EXPECT_EQ(s.folder().Options.HistoScale, 25);
    s.window->close();
  }
  Session again(home.path());
  for (PlotWindow kind : {PlotWindow::Distance, PlotWindow::XYPlot, PlotWindow::Histo}) {
    EXPECT_NE(again.window->OpenPlotWindow(kind, false), nullptr) << static_cast<int>(kind);
  }
  EXPECT_EQ(again.folder().Options.HistoScale, 25);
  EXPECT_TRUE(again.folder().Options.XYLineFit);
}

}  // namespace
