#include "core/workspace/frmGroupLaps.h"

#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/workspace/LapSelection.h"

namespace {

// One unit per outing: lap 0 onwards, with the channels the outing's current lap carries.
void ReduceToOneUnit(OutingRec& o) {
  const std::vector<int> on = ChannelsOnLap(o, o.CurLap);
  for (int lap = 0; lap < static_cast<int>(o.Laps.size()); ++lap) ClearLap(o, lap);
  if (o.Laps.empty()) return;
  o.Laps[0].Shown = -1;
  for (int c : on) SetChannelOn(o, 0, c, true);
  o.CurLap = o.PrevLap = 0;
}

}  // namespace

frmGroupLaps::frmGroupLaps(Workspace& ws) : ws_(ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  txtLaps = QString::number(folder.GroupCount);
  chkEntireOuting = folder.LapsDisplayed == kEntireOuting;
}

int16_t frmGroupLaps::ClampGroupCount(const QString& typed) {
  bool ok = false;
  const double v = typed.trimmed().toDouble(&ok);
  if (!ok || std::isnan(v)) return 1;
  return static_cast<int16_t>(std::clamp(v, 1.0, static_cast<double>(kEntireOuting)));
}

void frmGroupLaps::cmdOK() {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  folder.GroupCount = ClampGroupCount(txtLaps);
  const bool entire = chkEntireOuting || folder.GroupCount == kEntireOuting;
  folder.LapsDisplayed = entire ? kEntireOuting : folder.GroupCount;
  if (!entire) return;
  for (OutingRec& o : folder.Outings) {
    if (o.Loaded != 0) ReduceToOneUnit(o);
  }
}
