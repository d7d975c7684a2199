#include "core/workspace/frmLapHide.h"

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/Laps.h"

frmLapHide::frmLapHide(Workspace& ws, int outing) : ws_(ws), outing_(outing) {
  const OutingRec& o = OutingAt(ws, outing);
  for (int lap = 0; lap < o.LastLap && lap + 1 < static_cast<int>(o.Laps.size()); ++lap) {
    const QString text = LapNumberText(o, lap) + QStringLiteral(" - (") + LapTimeText(LapTimeMs(o, lap)) + ')';
    rows_.push_back({lap, text, o.Laps[static_cast<std::size_t>(lap)].Hidden != 0});
  }
}

void frmLapHide::cmdOK() {
  OutingRec& o = OutingAt(ws_, outing_);
  for (const Row& r : rows_) o.Laps[static_cast<std::size_t>(r.Lap)].Hidden = r.Selected ? -1 : 0;
  RefreshPlots(ws_);
}
