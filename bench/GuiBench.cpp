// The window's answers, offscreen on a 1600 x 900 main window: from the click on "Time Plot" to
// the drawn graph of 8 channels over 4 whole laps, and "Add New Outing(s)" of a 30 MB outing
// until the tree and the open graph show it. Each is timed over repeated runs (median printed).

#include <QApplication>
#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "BenchOutings.h"
#include "ui/GraphWindow.h"
#include "ui/frmMDIForm.h"

namespace {

class FileHost : public QtTreeHost {
 public:
  using QtTreeHost::QtTreeHost;
  QStringList files;
  QStringList ChooseOutingFiles(const QString&, bool) override { return files; }
};

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  Workspace& ws = *TheBenchHome().ws;
  ShowBenchGraph(ws);
  auto host = std::make_unique<FileHost>(ws);
  FileHost* files = host.get();
  frmMDIForm window(ws, std::move(host));
  window.resize(1600, 900);
  window.show();
  QApplication::processEvents();

  std::vector<double> plot_ms;
  for (int run = 0; run < 15; ++run) {
    for (QMdiSubWindow* w : window.Area()->subWindowList()) {
      if (dynamic_cast<GraphWindow*>(w->widget()) != nullptr) delete w;
    }
    QApplication::processEvents();
    QElapsedTimer t;
    t.start();
    window.Action(QStringLiteral("Time Plot"))->trigger();
    QApplication::processEvents();  // the window's first paint
    plot_ms.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
  }
  std::printf("Time Plot, 8 channels x 4 laps, click to drawn graph: %.1f ms (median of %zu)\n", Median(plot_ms), plot_ms.size());

  files->files = {WideBenchOuting()};
  std::vector<double> open_ms;
  for (int run = 0; run < 9; ++run) {
    QElapsedTimer t;
    t.start();
    window.Action(QStringLiteral("Add New Outing(s)"))->trigger();
    QApplication::processEvents();
    open_ms.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
    ws.CurOuting = 1;
    window.Tree().DeleteCurrentOuting(1);
  }
  std::printf("Add New Outing(s) of a 30 MB outing, to the redrawn tree and graph: %.1f ms (median of %zu)\n", Median(open_ms),
              open_ms.size());
  return 0;
}
