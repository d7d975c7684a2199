#include "ui/Screenshots.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "core/app/Files.h"
#include "core/app/Paths.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "core/outing/ChannelDescriptors.h"
#include "ui/FrequencyWindow.h"
#include "ui/GraphWindow.h"
#include "ui/HistoWindow.h"
#include "ui/TreeWindow.h"
#include "ui/frmMDIForm.h"

namespace {

bool MakeDemo(const QString& home, Messages& messages) {
  DemoResult made;
  QString error;
  if (!CreateDemoInstallation(home, messages, made, &error)) {
    messages.Show(error, QStringLiteral("Demo"), MessageIcon::Exclamation);
    return false;
  }
  return WriteDemoSession(home, messages);
}

// The home whose demo session is shot: `home` when it holds the demo session, or no installation
// yet and gets the demo; otherwise a demo installation made in `scratch`. Empty on a failure.
QString DemoHome(const QString& home, const QString& scratch, Messages& messages) {
  if (!home.isEmpty()) {
    const bool installed = QFileInfo::exists(JoinPath(DefaultPaths(home).SetupDirectory, kChannelDscFileName));
    if (!installed || HoldsDemoSession(home, messages)) return MakeDemo(home, messages) ? home : QString();
    messages.Show(
        home + QStringLiteral(" holds a session of its own: the pictures show the demo in a home of their own"),
        QStringLiteral("Screenshots"), MessageIcon::Information);
  }
  return MakeDemo(scratch, messages) ? scratch : QString();
}

}  // namespace

void ShootModal(const Screenshot& shot, const QString& name, const std::function<void()>& open,
                const std::function<void(QWidget*)>& inside) {
  QWidget* before = QApplication::activeModalWidget();
  // The timer lives only while `open` runs: a command that showed nothing can't leave it to take
  // a later dialog under this name.
  QTimer timer;
  bool shown = false;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr || modal == before) return;
    timer.stop();
    shown = true;
    QApplication::processEvents();
    shot(modal, name);
    if (inside) inside(modal);
    if (auto* dialog = qobject_cast<QDialog*>(modal)) {
      dialog->reject();
    } else {
      modal->close();
    }
  });
  timer.start(25);
  open();
  timer.stop();
  if (!shown) shot(nullptr, name);
}

int RunScreenshots(const QString& home, const QString& dir) {
  // Messages go to stderr and every question is answered no: nothing waits for a person, and
  // nothing of the session changes.
  StderrMessages messages;
  QTemporaryDir scratch;
  const QString demo = DemoHome(home, scratch.path(), messages);
  if (demo.isEmpty() || !QDir().mkpath(dir)) return 1;
  Workspace ws(messages, demo);
  if (!StartUp(ws)) return 1;
  int failed = 0;
  // Each picture written is named on stdout, so a caller knows the whole set.
  const Screenshot shot = [&](QWidget* window, const QString& name) {
    QApplication::processEvents();
    const QString file = name + QStringLiteral(".png");
    if (window != nullptr && window->grab().save(QDir(dir).filePath(file))) {
      std::printf("%s\n", qUtf8Printable(file));
      return;
    }
    ++failed;
    messages.Show(QStringLiteral("No picture of ") + name, QStringLiteral("Screenshots"), MessageIcon::Exclamation);
  };
  {
    frmMDIForm window(ws);
    window.resize(1400, 900);
    window.show();
    window.ReadLastState();
    QApplication::processEvents();
    shot(&window, QStringLiteral("frmMDIForm"));
    shot(window.TreeView(), QStringLiteral("frmChlTree"));
    shot(window.OpenGraphWindow(false), QStringLiteral("frmGraph"));
    // Each further plot window over the whole area, one at a time.
    for (PlotWindow kind : {PlotWindow::Distance, PlotWindow::XYPlot, PlotWindow::Histo, PlotWindow::Frequency,
                            PlotWindow::Spectrogram, PlotWindow::Contour, PlotWindow::TrackReport, PlotWindow::ViewTrack}) {
      PlotWindowBase* p = kind == PlotWindow::Distance ? window.OpenDistanceWindow() : window.OpenPlotWindow(kind);
      if (auto* frame = qobject_cast<QMdiSubWindow*>(p->parentWidget())) frame->showMaximized();
      // The report as an engineer reads it: the map in the bands of the speed.
      ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Options.DoBanding = kind == PlotWindow::TrackReport;
      QApplication::processEvents();
      p->Redraw();
      shot(p, QString::fromLatin1(PlotWindowBase::ClassName(kind)));
      if (auto* h = dynamic_cast<HistoWindow*>(p)) ShootModal(shot, QStringLiteral("frmHistoScale"), [h] { h->EditScale(); });
      if (auto* f = dynamic_cast<FrequencyWindow*>(p)) ShootModal(shot, QStringLiteral("frmFFTEdit"), [f] { f->EditScale(); });
      if (kind == PlotWindow::TrackReport) {
        ShootModal(shot, QStringLiteral("frmEditBands"), [&] { window.Action(QStringLiteral("Band Colors"))->trigger(); });
      }
      if (auto* frame = qobject_cast<QMdiSubWindow*>(p->parentWidget())) frame->close();
    }

    // The tree's dialogs, opened from their commands.
    const struct {
      const char* command;
      const char* name;
    } tree_dialogs[] = {{"Add Lap(s)", "frmLapSelect"},          {"Add Channel(s)", "frmChlSelect"},
                        {"Select Datum Outing", "frmDatumFile"}, {"Hide Laps", "frmLapHide"},
                        {"Group Laps", "frmGroupLaps"},          {"Lap Colour", "frmChlColorLap"}};
    for (const auto& d : tree_dialogs) {
      ShootModal(shot, QString::fromLatin1(d.name), [&] {
        if (QAction* a = window.Action(QString::fromLatin1(d.command))) a->trigger();
      });
    }
    MathScreenshots(window.Dialogs(), shot);
    TrackScreenshots(window.Dialogs(), shot);
    ChannelScreenshots(window.Dialogs(), shot);
  }
  std::fflush(stdout);
  return failed == 0 ? 0 : 1;
}
