// The spectrum, spectrogram and map windows opened as a person opens them on the demo session:
// a click in the time graph moves the maps' marks and, with the measure cursor, the spectra's
// span; the windows come back with the session.

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "UiSession.h"
#include "core/compute/Frequency.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "ui/FrequencyWindow.h"
#include "ui/GraphWindow.h"
#include "ui/PlotCanvas.h"
#include "ui/TrackWindows.h"

namespace {

using ui_test::Session;

constexpr PlotWindow kKinds[] = {PlotWindow::Frequency, PlotWindow::Spectrogram, PlotWindow::Contour,
                                 PlotWindow::ViewTrack, PlotWindow::TrackReport};

TEST(MapWindows, FollowTheTimeGraphAndComeBackWithTheSession) {
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
    ASSERT_FALSE(s.ws->Track.TrackPoints.empty());  // the demo session's map
    for (const char* command : {"Button Frequency", "Button Contour", "Show Track", "Graphic Report"}) s.action(command)->trigger();
    auto* frequency = static_cast<FrequencyWindow*>(s.window->OpenPlotWindow(PlotWindow::Frequency, false));
    ASSERT_NE(frequency, nullptr);
    frequency->findChild<QPushButton*>("cmdSpectrogram")->click();
    for (PlotWindow kind : kKinds) ASSERT_NE(s.window->OpenPlotWindow(kind, false), nullptr) << static_cast<int>(kind);
    auto* track = static_cast<TrackViewWindow*>(s.window->OpenPlotWindow(PlotWindow::ViewTrack, false));
    auto* contour = static_cast<ContourWindow*>(s.window->OpenPlotWindow(PlotWindow::Contour, false));

    // Measure from a quarter of the view to the middle: the marks follow, the spectra take the span.
    GraphWindow* graph = s.window->OpenGraphWindow(false);
    const int width = graph->Plot()->width();
    QTest::mouseClick(graph->Plot(), Qt::LeftButton, {}, QPoint(width / 4, 100));
    const int first = track->Plot().CursorPoint;
    s.action("Measure Cursor")->trigger();
    QTest::mouseClick(graph->Plot(), Qt::LeftButton, {}, QPoint(width / 2, 100));
    EXPECT_GT(track->Plot().CursorPoint, first);
    EXPECT_EQ(track->Plot().CursorPoint, CursorTrackPoint(*s.ws));
    EXPECT_EQ(contour->Plot().CursorPoint, CursorTrackPoint(*s.ws));
    ASSERT_GT(s.folder().FftEnd, s.folder().FftStart);
    const OutingRec& o = s.folder().Outings[static_cast<std::size_t>(s.folder().SelOuting)];
    const ChannelRec& c = o.Channels[static_cast<std::size_t>(s.folder().ActiveChannel)];
    const FftSpan span = SpanSamples(1 << 30, c.Rate, s.folder().FftStart, s.folder().FftEnd);
    EXPECT_EQ(o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(s.folder().ActiveChannel)].SpectrumPoints,
              span.N);
    s.window->close();
  }
  Session again(home.path());
  for (PlotWindow kind : kKinds) EXPECT_NE(again.window->OpenPlotWindow(kind, false), nullptr) << static_cast<int>(kind);
}

}  // namespace
