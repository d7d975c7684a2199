#pragma once

// What the window tests share: a session of the main window on a home, its tree dialogs answered
// from a script, and a way to act on the next modal dialog a command opens.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>

#include "core/app/Messages.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"
#include "ui/QtTreeHost.h"
#include "ui/frmMDIForm.h"

namespace ui_test {

// The dialogs answered from a script.
class ScriptedHost : public QtTreeHost {
 public:
  using QtTreeHost::QtTreeHost;
  QStringList files;
  std::vector<int> channels;
  QStringList ChooseOutingFiles(const QString&, bool) override { return files; }
  std::vector<int> ChooseChannels(const QString&, int, bool) override { return channels; }
  std::optional<QString> AskText(const QString&, const QString&, const QString&) override { return text; }
  QString text;
};

struct Session {
  RecordingMessages messages;
  std::unique_ptr<Workspace> ws;
  ScriptedHost* host = nullptr;
  std::unique_ptr<frmMDIForm> window;

  explicit Session(const QString& home) {
    ws = std::make_unique<Workspace>(messages, home);
    EXPECT_TRUE(StartUp(*ws));
    auto scripted = std::make_unique<ScriptedHost>(*ws);
    host = scripted.get();
    window = std::make_unique<frmMDIForm>(*ws, std::move(scripted));
    window->resize(1400, 900);
    window->show();
    window->ReadLastState();
    QApplication::processEvents();
  }
  FolderRec& folder() { return ws->FolderTable[static_cast<std::size_t>(ws->CurFolder)]; }
  OutingRec& outing() { return folder().Outings[static_cast<std::size_t>(ws->CurOuting)]; }
  QAction* action(const char* name) {
    QAction* a = window->Action(QString::fromLatin1(name));
    EXPECT_NE(a, nullptr) << name;
    return a;
  }
};

// A demo installation in `home` with `laps` timed laps, and its session when asked for.
inline bool InstallDemo(const QString& home, int laps, bool session) {
  RecordingMessages messages;
  DemoResult made;
  QString error;
  const bool ok =
      CreateDemoInstallation(home, messages, made, &error, laps) && (!session || WriteDemoSession(home, messages));
  EXPECT_TRUE(ok) << error.toStdString();
  return ok;
}

// The child of a dialog by its name; a test fails when there is none.
template <class T>
T* Child(QWidget* dialog, const char* name) {
  T* w = dialog->findChild<T*>(QString::fromLatin1(name));
  EXPECT_NE(w, nullptr) << name;
  return w;
}

inline void Click(QWidget* dialog, const char* name) { Child<QAbstractButton>(dialog, name)->click(); }

inline int CountColour(const QImage& image, QColor colour) {
  int n = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) n += image.pixelColor(x, y) == colour;
  }
  return n;
}

// Acts on the next modal window that shows (a dialog a command opens) once it is up; `act` finds
// its controls, changes them and accepts or rejects it. Call before the command that opens it.
// A dialog that `act` leaves open (a failed assertion inside it) is rejected, so a test fails
// instead of hanging; a slow machine gets a minute for the dialog to show.
inline void WhenModal(std::function<void(QWidget*)> act) {
  QWidget* before = QApplication::activeModalWidget();
  auto* timer = new QTimer;
  auto waited = std::make_shared<QElapsedTimer>();
  waited->start();
  QObject::connect(timer, &QTimer::timeout, [=] {
    QWidget* modal = QApplication::activeModalWidget();
    if ((modal == nullptr || modal == before) && waited->elapsed() < 60000) return;
    timer->stop();
    timer->deleteLater();
    if (modal == nullptr || modal == before) return;
    QPointer<QWidget> shown(modal);
    act(modal);
    if (auto* dialog = qobject_cast<QDialog*>(shown.data()); dialog && dialog->isVisible()) dialog->reject();
  });
  timer->start(10);
}

}  // namespace ui_test
