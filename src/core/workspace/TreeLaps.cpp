// The lap commands of the tree. A folder that compares whole outings has one unit per outing,
// so all of them refuse there.

#include "core/app/Workspace.h"
#include "core/workspace/frmChlTree.h"
#include "core/workspace/frmLapSelect.h"

namespace {

const QString kAddLaps = QStringLiteral("Add Laps");
const QString kReplaceLap = QStringLiteral("Replace Lap");
const QString kDeleteLap = QStringLiteral("Delete Lap");
constexpr char kCannotAdd[] = "Cannot add lap when 'Entire Outing' is selected";
constexpr char kCannotAddALap[] = "Cannot add a lap when 'Entire Outing' is selected";
constexpr char kCannotReplace[] = "Cannot replace lap when 'Entire Outing' is selected";
constexpr char kCannotDelete[] = "Cannot delete lap when 'Entire Outing' is selected";

}  // namespace

bool frmChlTree::AddAnotherLap() {
  if (RefusedUnderEntireOuting(kCannotAddALap, kAddLaps) || !NeedOuting(kAddLaps)) return false;
  frmLapSelect form(ws_, ws_.CurOuting);
  const std::vector<int> laps = host_.ChooseLaps(QStringLiteral("Add Lap(s) To Outing"), form, true);
  OutingRec& o = Current();
  const int from = o.CurLap;
  bool any = false;
  for (int lap : laps) {
    if (!LapExists(o, lap)) continue;
    ShowLapLike(o, lap, from);
    o.CurLap = static_cast<int16_t>(lap);
    any = true;
  }
  Rebuild();  // also after a cancel: the form's colour button may have changed a lap
  return any;
}

bool frmChlTree::StepLap(int step, bool replace) {
  OutingRec& o = Current();
  const int from = o.CurLap, to = from + step;
  if (!LapExists(o, to)) return false;
  ShowLapLike(o, to, from);
  if (replace) ClearLap(o, from);
  o.CurLap = static_cast<int16_t>(to);
  Rebuild();
  return true;
}

bool frmChlTree::AddNextLap() {
  if (RefusedUnderEntireOuting(kCannotAdd, kAddLaps) || !NeedOuting(kAddLaps)) return false;
  return StepLap(1, false);
}

bool frmChlTree::AddPreviousLap() {
  if (RefusedUnderEntireOuting(kCannotAdd, kAddLaps) || !NeedOuting(kAddLaps)) return false;
  return StepLap(-1, false);
}

bool frmChlTree::ReplaceWithNextLap() {
  if (RefusedUnderEntireOuting(kCannotReplace, kReplaceLap) || !NeedOuting(kReplaceLap)) return false;
  return StepLap(1, true);
}

bool frmChlTree::ReplaceWithPrevious() {
  if (RefusedUnderEntireOuting(kCannotReplace, kReplaceLap) || !NeedOuting(kReplaceLap)) return false;
  return StepLap(-1, true);
}

bool frmChlTree::ReplaceCurrentLap() {
  if (RefusedUnderEntireOuting(kCannotReplace, kReplaceLap) || !NeedOuting(kReplaceLap)) return false;
  frmLapSelect form(ws_, ws_.CurOuting);
  const std::vector<int> laps = host_.ChooseLaps(QStringLiteral("Replace Lap in Outing"), form, false);
  OutingRec& o = Current();
  const int from = o.CurLap;
  if (laps.empty() || laps.front() == from || !LapExists(o, laps.front())) {
    Rebuild();
    return false;
  }
  return StepLap(laps.front() - from, true);
}

bool frmChlTree::DeleteCurrentLap() {
  if (RefusedUnderEntireOuting(kCannotDelete, kDeleteLap) || !NeedOuting(kDeleteLap)) return false;
  RemoveCurrentLap();
  return true;
}

// The lap leaves the tree; the outing goes with its last lap.
void frmChlTree::RemoveCurrentLap() {
  ClearLap(Current(), Current().CurLap);
  if (!FindCurrentLap(ws_, ws_.CurOuting)) {
    DeleteCurrentOuting(ws_.CurOuting);
    return;
  }
  FindCurrentChannel(ws_, ws_.CurOuting, Current().CurLap);
  Folder().ActiveChannel = Folder().SelChannel;
  Rebuild();
}
