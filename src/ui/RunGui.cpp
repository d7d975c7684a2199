#include "ui/RunGui.h"

#include <QApplication>

#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "ui/QtMessages.h"
#include "ui/frmMDIForm.h"

int RunGui(const QString& home) {
  QtMessages messages;
  Workspace ws(messages, home);
  if (!StartUp(ws)) return 1;
  frmMDIForm window(ws);
  messages.Parent = &window;
  window.show();
  window.ReadLastState();
  return QApplication::exec();
}
