#include "core/plots/RefreshPlots.h"

#include "core/app/Workspace.h"

void RefreshPlots(Workspace& ws) {
  FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (folder.TimeEnd - folder.TimeStart < 10) {
    folder.TimeEnd = folder.TimeStart + 10;
    return;
  }
  if (!AnyOutingLoaded(ws, ws.CurFolder)) return;
  for (const auto& redraw : folder.Redraw) {
    if (redraw) redraw();
  }
}
