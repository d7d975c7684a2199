#include "ui/Screenshots.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QTimer>

#include "core/app/Files.h"
#include "core/app/Paths.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "core/outing/ChannelDescriptors.h"
#include "ui/GraphWindow.h"
#include "ui/HistoWindow.h"
#include "ui/TreeWindow.h"
#include "ui/frmMDIForm.h"

namespace {

// A home that can open the demo session: made when it holds no CHANNEL.DSC yet.
bool EnsureDemo(const QString& home, Messages& messages) {
  if (QFileInfo::exists(JoinPath(DefaultPaths(home).SetupDirectory, kChannelDscFileName))) return true;
  DemoResult made;
  QString error;
  if (!CreateDemoInstallation(home, messages, made, &error)) {
    messages.Show(error, QStringLiteral("Demo"), MessageIcon::Exclamation);
    return false;
  }
  return WriteDemoSession(home, messages);
}

}  // namespace

void ShootModal(const Screenshot& shot, const QString& name, const std::function<void()>& open) {
  QWidget* before = QApplication::activeModalWidget();
  auto* timer = new QTimer;
  int tries = 0;
  QObject::connect(timer, &QTimer::timeout, [=]() mutable {
    QWidget* modal = QApplication::activeModalWidget();
    if ((modal == nullptr || modal == before) && ++tries < 200) return;
    timer->stop();
    timer->deleteLater();
    if (modal == nullptr || modal == before) return;
    QApplication::processEvents();
    shot(modal, name);
    if (auto* dialog = qobject_cast<QDialog*>(modal)) {
      dialog->reject();
    } else {
      modal->close();
    }
  });
  timer->start(25);
  open();
}

int RunScreenshots(const QString& home, const QString& dir) {
  // Messages go to stderr and every question is answered no: nothing waits for a person, and
  // nothing of the session changes.
  StderrMessages messages;
  if (!EnsureDemo(home, messages) || !QDir().mkpath(dir)) return 1;
  Workspace ws(messages, home);
  if (!StartUp(ws)) return 1;
  int failed = 0;
  const Screenshot shot = [&](QWidget* window, const QString& name) {
    QApplication::processEvents();
    if (!window->grab().save(QDir(dir).filePath(name + QStringLiteral(".png")))) ++failed;
  };
  {
    frmMDIForm window(ws);
    window.resize(1400, 900);
    window.show();
    window.ReadLastState();
    QApplication::processEvents();
    shot(&window, QStringLiteral("frmMDIForm"));
    shot(window.TreeView(), QStringLiteral("frmChlTree"));
    if (GraphWindow* g = window.OpenGraphWindow(false)) shot(g, QStringLiteral("frmGraph"));
    // Each further plot window over the whole area, one at a time.
    for (PlotWindow kind : {PlotWindow::Distance, PlotWindow::XYPlot, PlotWindow::Histo}) {
      PlotWindowBase* p = kind == PlotWindow::Distance ? window.OpenDistanceWindow() : window.OpenPlotWindow(kind);
      if (auto* frame = qobject_cast<QMdiSubWindow*>(p->parentWidget())) frame->showMaximized();
      QApplication::processEvents();
      p->Redraw();
      shot(p, QString::fromLatin1(PlotWindowBase::ClassName(kind)));
      if (auto* h = dynamic_cast<HistoWindow*>(p)) ShootModal(shot, QStringLiteral("frmHistoScale"), [h] { h->EditScale(); });
      if (auto* frame = qobject_cast<QMdiSubWindow*>(p->parentWidget())) frame->close();
    }

    // The tree's dialogs, opened from their commands.
    const struct {
      const char* command;
      const char* name;
    } tree_dialogs[] = {{"Add Lap(s)", "frmLapSelect"},     {"Add Channel(s)", "frmChlSelect"},
                        {"Select Datum Outing", "frmDatumFile"}, {"Hide Laps", "frmLapHide"},
                        {"Group Laps", "frmGroupLaps"},     {"Lap Colour", "frmChlColor"}};
    for (const auto& d : tree_dialogs) {
      ShootModal(shot, QString::fromLatin1(d.name), [&] { window.Action(QString::fromLatin1(d.command))->trigger(); });
    }
    MathScreenshots(window.Dialogs(), shot);
    TrackScreenshots(window.Dialogs(), shot);
    ChannelScreenshots(window.Dialogs(), shot);
  }
  return failed == 0 ? 0 : 1;
}
