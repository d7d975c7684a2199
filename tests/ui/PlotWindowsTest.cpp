// The distance plot, the XY plot and the histograms as a person opens them from the tool bar on
// the demo session: each draws its traces, follows the options, and comes back with the session.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <map>

#include "UiSession.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
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
  ASSERT_TRUE(ui_test::InstallDemo(home.path(), 3, true));
  // Where each window is put before the session closes, by PlotWindow.
  std::map<PlotWindow, QRect> places = {{PlotWindow::Distance, QRect(300, 10, 640, 420)},
                                        {PlotWindow::XYPlot, QRect(320, 40, 660, 440)},
                                        {PlotWindow::Histo, QRect(340, 70, 600, 400)}};
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

    // The line fit of speed against throttle: a real pair, so neither 0 nor 1; its text shows
    // the 32-bit field.
    const int throttle = FindChannelByName(*s.ws, s.ws->CurFolder, 0, QStringLiteral("THROTTLE"));
    ASSERT_GE(throttle, 0);
    s.folder().ActiveChannel = static_cast<int16_t>(throttle);
    s.folder().Options.XYLineFit = s.folder().Options.XYCurveFit = s.folder().Options.XYConnected = true;
    xy->Redraw();
    EXPECT_GT(xy->Plot().Correlation, 0.1f);
    EXPECT_LT(xy->Plot().Correlation, 0.999f);
    EXPECT_TRUE(xy->Plot().LineText.endsWith("Correlation Coeff = " + GeneralNumber(xy->Plot().Correlation, 7)))
        << xy->Plot().LineText.toStdString();

    // The cursor links the windows: a click in the time graph moves the distance plot's and the
    // XY plot's, and one in the distance plot the time graph's.
    GraphWindow* graph = s.window->OpenGraphWindow(false);
    ASSERT_NE(graph, nullptr);
    const QString xy_cursor = xy->Plot().Labels[2].Value;  // "X - Cursor": speed at the cursor
    QTest::mouseClick(graph->Plot(), Qt::LeftButton, {}, QPoint(graph->Plot()->width() / 2, 100));
    EXPECT_EQ(distance->Graph().Numerics[0].Value, FormatAuto(s.folder().CursorDistance));
    EXPECT_NE(xy->Plot().Labels[2].Value, xy_cursor);
    QTest::mouseClick(distance->Plot(), Qt::LeftButton, {}, QPoint(distance->Plot()->width() / 4, 100));
    EXPECT_EQ(graph->Graph().Numerics[0].Value, FormatTime(s.folder().CursorTime));

    // The histogram's scale: a text that is no number keeps the dialog, a number is stored.
    ui_test::WhenModal([&](QWidget* d) {
      d->findChild<QLineEdit*>("txtDataIn")->setText("");
      d->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
      EXPECT_TRUE(d->isVisible());
      d->findChild<QLineEdit*>("txtDataIn")->setText("25");
      d->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    EXPECT_TRUE(histo->EditScale());
    EXPECT_EQ(s.folder().Options.HistoScale, 25);
    for (PlotWindowBase* w : std::initializer_list<PlotWindowBase*>{distance, xy, histo}) w->parentWidget()->setGeometry(places[w->Kind()]);
    s.window->close();
  }
  Session again(home.path());
  for (PlotWindow kind : {PlotWindow::Distance, PlotWindow::XYPlot, PlotWindow::Histo}) {
    PlotWindowBase* w = again.window->OpenPlotWindow(kind, false);
    ASSERT_NE(w, nullptr) << static_cast<int>(kind);
    EXPECT_EQ(w->parentWidget()->geometry(), places[kind]) << static_cast<int>(kind);
  }
  EXPECT_EQ(again.folder().Options.HistoScale, 25);
  EXPECT_TRUE(again.folder().Options.XYLineFit && again.folder().Options.XYCurveFit && again.folder().Options.XYConnected);
}

}  // namespace
