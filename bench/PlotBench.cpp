// A full redraw of each plot window, 8 channels over 4 whole laps of the demo's Silverstone
// outing, onto a 1600 x 900 picture, and a cursor move, which must not redraw the traces. With
// --polylines FILE it writes the time graph's thinned traces in pixels, one line of "x y x y ..."
// each, and with --scatter FILE the XY plot's points (speed against each of the 8 channels, speed
// itself included as the window draws it, 4 laps) as "x y" lines, for scatter_matplotlib.py to
// draw the same with matplotlib's Agg backend.

#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstring>

#include "BenchOutings.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RecordingSurface.h"
#include "core/plots/frmDistance.h"
#include "core/plots/frmGraph.h"
#include "core/plots/frmHisto.h"
#include "core/plots/frmXYPlot.h"
#include "render/QtSurface.h"

namespace {

// The graph the window benchmarks draw, set up once.
Workspace& GraphWorkspace() {
  static Workspace* ws = [] {
    Workspace& w = *TheBenchHome().ws;
    ShowBenchGraph(w);
    return &w;
  }();
  return *ws;
}

void BM_DrawLineGraphs(benchmark::State& state) {
  Workspace& ws = GraphWorkspace();
  QImage image(1600, 900, QImage::Format_RGB32);
  QPainter painter(&image);
  QtSurface surface(painter, image.size());
  frmGraph graph(ws, surface);
  graph.DrawLineGraphs();  // the samples come into the cache once
  for (auto _ : state) graph.DrawLineGraphs();
}
BENCHMARK(BM_DrawLineGraphs)->Unit(benchmark::kMillisecond);

// The other windows over the same traces: their redraw next to the time graph's.
template <class Plot>
void BM_Redraw(benchmark::State& state, void (Plot::*draw)()) {
  Workspace& ws = GraphWorkspace();
  QImage image(1600, 900, QImage::Format_RGB32);
  QPainter painter(&image);
  QtSurface surface(painter, image.size());
  Plot plot(ws, surface);
  (plot.*draw)();
  for (auto _ : state) (plot.*draw)();
}
BENCHMARK_CAPTURE(BM_Redraw, Distance, &frmDistance::DrawLineGraphs)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Redraw, XYPlot, &frmXYPlot::DrawXYPlots)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Redraw, Histogram, &frmHisto::DrawHistograms)->Unit(benchmark::kMillisecond);

// The same without the dotted grid, to see what the grid costs.
void BM_DrawLineGraphsNoGrid(benchmark::State& state) {
  Workspace& ws = GraphWorkspace();
  ws.Options.HorizontalGrid = ws.Options.VerticalGrid = false;
  QImage image(1600, 900, QImage::Format_RGB32);
  QPainter painter(&image);
  QtSurface surface(painter, image.size());
  frmGraph graph(ws, surface);
  for (auto _ : state) graph.DrawLineGraphs();
  ws.Options.HorizontalGrid = ws.Options.VerticalGrid = true;
}
BENCHMARK(BM_DrawLineGraphsNoGrid)->Unit(benchmark::kMillisecond);

// A cursor move: the old cursor drawn again (taking it away), the new one drawn, the status
// line written.
void BM_CursorMove(benchmark::State& state) {
  Workspace& ws = GraphWorkspace();
  QImage image(1600, 900, QImage::Format_RGB32);
  QPainter painter(&image);
  QtSurface surface(painter, image.size());
  frmGraph graph(ws, surface);
  graph.DrawLineGraphs();
  FolderRec& f = ws.FolderTable[0];
  double old_x = graph.CursorX(), old_y = graph.CursorY;
  for (auto _ : state) {
    // Within the view: past the lap's end there is no value and no statistics to compute.
    f.CursorTime = f.CursorTime + 10 > f.TimeEnd ? static_cast<float>(f.TimeStart) : f.CursorTime + 10;
    graph.UpdateCursorValues();
    old_y = graph.DrawCursor(old_x, old_y);
    old_x = graph.CursorX();
  }
}
BENCHMARK(BM_CursorMove)->Unit(benchmark::kMicrosecond);

void WritePolylines(const char* path) {
  Workspace& ws = GraphWorkspace();
  RecordingSurface surface(1600 * 15, 900 * 15);
  frmGraph graph(ws, surface);
  graph.DrawLineGraphs();
  QFile out(QString::fromLocal8Bit(path));
  if (!out.open(QIODevice::WriteOnly)) std::abort();
  for (const DrawOp& op : surface.Of(DrawOp::Kind::Polyline)) {
    QByteArray line;
    for (const PixelPoint& p : op.points) line += QByteArray::number(p.x) + ' ' + QByteArray::number(p.y) + ' ';
    out.write(line.trimmed() + '\n');
  }
}

void WriteScatter(const char* path) {
  Workspace& ws = GraphWorkspace();
  RecordingSurface surface(1600 * 15, 900 * 15);
  frmXYPlot plot(ws, surface);
  QFile out(QString::fromLocal8Bit(path));
  if (!out.open(QIODevice::WriteOnly)) std::abort();
  plot.FindXChannels();
  ForEachTrace(ws, [&](int slot, int lap, int c) {
    for (const XYPoint& p : plot.TracePoints(slot, lap, c)) out.write(QByteArray::number(p.x) + ' ' + QByteArray::number(p.y) + '\n');
    out.write("\n");  // a blank line between traces
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  for (int i = 1; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], "--polylines") == 0) {
      WritePolylines(argv[i + 1]);
      return 0;
    }
    if (std::strcmp(argv[i], "--scatter") == 0) {
      WriteScatter(argv[i + 1]);
      return 0;
    }
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
