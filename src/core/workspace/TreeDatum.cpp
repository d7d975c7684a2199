// The Datum lap of the folder in view: the lap every other lap is compared against. Every change
// drops the cached math channels that are differences to it.

#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/workspace/frmChlTree.h"
#include "core/workspace/frmDatumFile.h"
#include "core/workspace/frmLapSelect.h"

bool frmChlTree::SelectDatumOuting() {
  if (!AnyOutingLoaded(ws_, ws_.CurFolder)) {
    ws_.messages.Show(QStringLiteral("No Outing Loaded"), frmDatumFile::kTitle, MessageIcon::Exclamation);
    return false;
  }
  frmDatumFile form(ws_);
  if (!form.cmdOK(host_.ChooseDatumOuting(form))) return false;
  ResetDeltaMathChannels(ws_);
  Rebuild();
  return true;
}

bool frmChlTree::ReplaceDatumLap() {
  FolderRec& folder = Folder();
  const int datum = folder.DatumOuting;
  if (datum < 0 || datum >= kOutingsPerFolder || folder.Outings[static_cast<std::size_t>(datum)].Loaded == 0) {
    return SelectDatumOuting();
  }
  const int16_t keep_outing = ws_.CurOuting, keep_selected = folder.SelOuting;
  ws_.CurOuting = folder.SelOuting = static_cast<int16_t>(datum);
  frmLapSelect form(ws_, datum);
  const std::vector<int> laps = host_.ChooseLaps(QStringLiteral("Select Datum Lap"), form, false);
  ws_.CurOuting = keep_outing;
  folder.SelOuting = keep_selected;
  if (laps.empty() || !LapExists(folder.Outings[static_cast<std::size_t>(datum)], laps.front())) {
    Rebuild();  // the form's colour button may have changed a lap
    return false;
  }
  folder.DatumLap = static_cast<int16_t>(laps.front());
  ResetDeltaMathChannels(ws_);
  Rebuild();
  return true;
}

void frmChlTree::DeleteDatum() {
  Folder().DatumOuting = -1;
  Folder().DatumLap = 0;
  ResetDeltaMathChannels(ws_);
  Rebuild();
}
