// The outing commands of the tree: load, add, replace and unload.

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/outing/OpenOuting.h"
#include "core/workspace/frmChlTree.h"
#include "core/workspace/frmGroupLaps.h"

namespace {

const QString kAddTitle = QStringLiteral("Add New Outing(s)");
const QString kAddGlobalTitle = QStringLiteral("Add Outing(s) to all Folders");
const QString kReplaceTitle = QStringLiteral("Replace Outing");
const QString kReplaceAllTitle = QStringLiteral("Replace All Outings");
const QString kReplaceGlobalTitle = QStringLiteral("Replace Outing in All Folders");

}  // namespace

std::vector<ChannelRef> frmChlTree::SelectionInForce() {
  const int slot = Folder().SelOuting;
  if (slot < 0 || slot >= kOutingsPerFolder) return {};
  const OutingRec& o = Folder().Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0) return {};
  return ChannelRefsOnLap(o, o.CurLap);
}

bool frmChlTree::LoadNewOuting(const QString& file) { return LoadNewOuting(file, SelectionInForce()); }

bool frmChlTree::LoadNewOuting(const QString& file, const std::vector<ChannelRef>& selection) {
  if (!OpenOuting(ws_, file)) return false;
  OutingRec& o = Current();
  const int lap = Folder().LapsDisplayed == frmGroupLaps::kEntireOuting ? 0 : o.FastLap;
  o.CurLap = o.PrevLap = static_cast<int16_t>(lap);
  if (lap >= static_cast<int>(o.Laps.size())) return true;
  o.Laps[static_cast<std::size_t>(lap)].Shown = -1;
  bool any = false;
  for (const ChannelRef& ref : selection) {
    const int c = MatchChannel(o, ref);
    SetChannelOn(o, lap, c, true);
    any = any || c >= 0;
  }
  // An outing that shows nothing could not be made current, nor be seen in the tree.
  if (!any) SetChannelOn(o, lap, 0, true);
  Folder().SelOuting = ws_.CurOuting;
  FindCurrentChannel(ws_, ws_.CurOuting, lap);
  Folder().ActiveChannel = Folder().SelChannel;
  return true;
}

// The same file twice in one folder would only draw the same traces twice, so it is skipped.
bool frmChlTree::LoadIntoFreeSlot(const QString& file, const QString& title) {
  if (OutingNotLoaded(ws_, file) >= 0) return false;
  const int slot = NextAvailableCID(ws_, ws_.CurFolder);
  if (Folder().Outings[static_cast<std::size_t>(slot)].Loaded != 0) {
    ws_.messages.Show(QStringLiteral("Maximum number of Outings loaded"), title, MessageIcon::Exclamation);
    return false;
  }
  const std::vector<ChannelRef> selection = SelectionInForce();
  const int16_t keep = ws_.CurOuting;
  ws_.CurOuting = static_cast<int16_t>(slot);
  if (LoadNewOuting(file, selection)) return true;
  ws_.CurOuting = keep;
  return false;
}

void frmChlTree::ReleaseOuting(int outing) {
  FolderRec& folder = Folder();
  OutingRec& o = folder.Outings[static_cast<std::size_t>(outing)];
  for (int lap = 0; lap < static_cast<int>(o.Laps.size()); ++lap) ClearLap(o, lap);
  o = OutingRec{};
  folder.Changed = -1;
  if (folder.DatumOuting == outing) {
    folder.DatumOuting = -1;
    folder.DatumLap = 0;
    ResetDeltaMathChannels(ws_);
  }
}

bool frmChlTree::AddAnotherOuting() {
  const QStringList files = host_.ChooseOutingFiles(kAddTitle, true);
  bool any = false;
  // A cancel falls between two outings: each is loaded whole or not at all.
  ProgressScope progress(ws_, kAddTitle, static_cast<int>(files.size()), true);
  for (int i = 0; i < static_cast<int>(files.size()) && progress.Step(i, BaseName(files[i])); ++i) {
    any = LoadIntoFreeSlot(files[i], kAddTitle) || any;
  }
  if (any) Rebuild();
  return any;
}

bool frmChlTree::AddGlobalOuting() {
  const QStringList files = host_.ChooseOutingFiles(kAddGlobalTitle, true);
  if (files.isEmpty()) return false;
  const int16_t keep_folder = ws_.CurFolder, keep_outing = ws_.CurOuting;
  bool any = false;
  ProgressScope progress(ws_, kAddGlobalTitle, kFolderCount, true);
  for (int f = 0; f < kFolderCount && progress.Step(f); ++f) {
    if (ws_.FolderTable[static_cast<std::size_t>(f)].InUse == 0) continue;
    ws_.CurFolder = static_cast<int16_t>(f);
    for (const QString& file : files) any = LoadIntoFreeSlot(file, kAddGlobalTitle) || any;
  }
  ws_.CurFolder = keep_folder;
  ws_.CurOuting = keep_outing;
  if (!HasCurrentOuting()) FindCurrentOuting(ws_);
  if (any) Rebuild();
  return any;
}

bool frmChlTree::ReplaceCurrentOuting() {
  if (!AnyOutingLoaded(ws_, ws_.CurFolder) || !HasCurrentOuting()) {
    ws_.messages.Show(QStringLiteral("No Outings to replace"), kReplaceTitle, MessageIcon::Exclamation);
    return false;
  }
  const QStringList files = host_.ChooseOutingFiles(kReplaceTitle, false);
  if (files.isEmpty()) return false;
  // A missing file must not cost the outing it was to replace: the load refuses it first.
  if (!FileExists(files.front())) return LoadNewOuting(files.front(), {});
  const std::vector<ChannelRef> selection = ChannelRefsOnLap(Current(), Current().CurLap);
  ReleaseOuting(ws_.CurOuting);
  const bool loaded = LoadNewOuting(files.front(), selection);
  if (!loaded) FindCurrentOuting(ws_);
  Rebuild();
  return loaded;
}

bool frmChlTree::ReplaceAllOutings() {
  if (!AnyOutingLoaded(ws_, ws_.CurFolder)) {
    ws_.messages.Show(QStringLiteral("No Outings to replace"), kReplaceAllTitle, MessageIcon::Exclamation);
    return false;
  }
  const QStringList files = host_.ChooseOutingFiles(kReplaceAllTitle, true);
  if (files.isEmpty()) return false;
  const std::vector<ChannelRef> selection = SelectionInForce();
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    if (Folder().Outings[static_cast<std::size_t>(slot)].Loaded != 0) ReleaseOuting(slot);
  }
  bool any = false;
  // A cancel falls between two outings: the folder keeps the new ones loaded so far, each whole.
  ProgressScope progress(ws_, kReplaceAllTitle, static_cast<int>(files.size()), true);
  for (int i = 0; i < static_cast<int>(files.size()) && progress.Step(i, BaseName(files[i])); ++i) {
    ws_.CurOuting = static_cast<int16_t>(NextAvailableCID(ws_, ws_.CurFolder));
    if (Current().Loaded != 0) break;
    any = LoadNewOuting(files[i], selection) || any;
  }
  FindCurrentOuting(ws_);
  Rebuild();
  return any;
}

bool frmChlTree::ReplaceGlobalOuting() {
  const QStringList files = host_.ChooseOutingFiles(kReplaceGlobalTitle, false);
  if (files.isEmpty()) return false;
  if (!FileExists(files.front())) return LoadNewOuting(files.front(), {});
  const int16_t keep_folder = ws_.CurFolder, keep_outing = ws_.CurOuting;
  bool any = false;
  // A cancel falls between two folders: each holds either its outing or the new one.
  ProgressScope progress(ws_, kReplaceGlobalTitle, kFolderCount, true);
  bool stopped = false;
  for (int f = 0; f < kFolderCount && !stopped; ++f) {
    const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(f)];
    stopped = !progress.Step(f);
    if (stopped || folder.InUse == 0 || !AnyOutingLoaded(ws_, f)) continue;
    ws_.CurFolder = static_cast<int16_t>(f);
    ws_.CurOuting = folder.SelOuting;
    if (!HasCurrentOuting() && !FindCurrentOuting(ws_)) continue;
    const std::vector<ChannelRef> selection = ChannelRefsOnLap(Current(), Current().CurLap);
    ReleaseOuting(ws_.CurOuting);
    any = LoadNewOuting(files.front(), selection) || any;
  }
  ws_.CurFolder = keep_folder;
  ws_.CurOuting = keep_outing;
  if (!any && !stopped)
    ws_.messages.Show(QStringLiteral("No Outings to replace"), kReplaceGlobalTitle, MessageIcon::Exclamation);
  if (!HasCurrentOuting()) FindCurrentOuting(ws_);
  Rebuild();
  return any;
}

void frmChlTree::DeleteCurrentOuting(int outing) {
  if (outing < 0 || outing >= kOutingsPerFolder || Folder().Outings[static_cast<std::size_t>(outing)].Loaded == 0) return;
  ReleaseOuting(outing);
  FindCurrentOuting(ws_);
  host_.CloseOpenWindows();
  Rebuild();
}

bool frmChlTree::QueryUnload() {
  if (!ws_.messages.Ask(QStringLiteral("Unload all Outings"), QStringLiteral("Unload All"))) return false;
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    if (Folder().Outings[static_cast<std::size_t>(slot)].Loaded != 0) ReleaseOuting(slot);
  }
  host_.CloseOpenWindows();
  LoadTreeData();
  return true;
}
