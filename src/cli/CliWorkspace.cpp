#include "cli/CliWorkspace.h"

#include "core/app/Startup.h"
#include "core/outing/OpenOuting.h"

std::unique_ptr<Workspace> StartCliWorkspace(const CliContext& context, Messages& messages) {
  auto ws = std::make_unique<Workspace>(messages, ResolveHome(QString::fromStdString(context.home)));
  if (!StartUp(*ws, false)) return nullptr;
  return ws;
}

bool LoadCliOuting(Workspace& ws, const QString& path) {
  ws.CurFolder = 0;
  ws.CurOuting = 0;
  return OpenOuting(ws, path);
}
