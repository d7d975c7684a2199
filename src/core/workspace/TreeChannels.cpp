// The channel commands of the tree. The "all Outings" variants reach every compared lap of every
// folder, finding each channel in each outing by MatchChannel.

#include "core/app/Workspace.h"
#include "core/workspace/frmChlTree.h"

namespace {

const QString kAddTitle = QStringLiteral("Add Channel(s) to Lap");
const QString kAddGlobalTitle = QStringLiteral("Add Channel(s) to all Outings");
const QString kReplaceTitle = QStringLiteral("Replace Channel in Lap");
const QString kReplaceGlobalTitle = QStringLiteral("Replace Channel in all Outings");
const QString kReplaceAllTitle = QStringLiteral("Replace All Channel(s) in Outings");

bool ChannelOn(const OutingRec& o, int lap, int channel) {
  const auto& chosen = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  return channel >= 0 && channel < static_cast<int>(chosen.size()) && chosen[static_cast<std::size_t>(channel)].Shown != 0;
}

}  // namespace

template <typename Fn>
void frmChlTree::ForEachShownLap(Fn fn) {
  for (FolderRec& folder : ws_.FolderTable) {
    if (folder.InUse == 0) continue;
    for (OutingRec& o : folder.Outings) {
      if (o.Loaded == 0) continue;
      for (int lap = 0; LapExists(o, lap); ++lap) {
        if (o.Laps[static_cast<std::size_t>(lap)].Shown != 0) fn(o, lap);
      }
    }
  }
}

std::vector<int> frmChlTree::ChosenChannels(const QString& title, bool multiple) {
  if (!NeedOuting(title)) return {};
  std::vector<int> chosen;
  for (int c : host_.ChooseChannels(title, ws_.CurOuting, multiple)) {
    if (c >= 0 && c < static_cast<int>(Current().Channels.size())) chosen.push_back(c);
  }
  return chosen;
}

std::vector<ChannelRef> frmChlTree::ChosenChannelRefs(const QString& title, bool multiple) {
  std::vector<ChannelRef> refs;
  for (int c : ChosenChannels(title, multiple)) refs.push_back(ChannelRefOf(Current(), c));
  return refs;
}

// The current channel follows what the commands left on the current lap.
void frmChlTree::SelectFirstChannel() {
  if (HasCurrentOuting() && FindCurrentChannel(ws_, ws_.CurOuting, Current().CurLap) >= 0) {
    Folder().ActiveChannel = Folder().SelChannel;
  }
}

bool frmChlTree::AddAnotherChannel() {
  const std::vector<int> chosen = ChosenChannels(kAddTitle, true);
  if (chosen.empty()) return false;
  OutingRec& o = Current();
  for (int c : chosen) SetChannelOn(o, o.CurLap, c, true);
  Folder().SelChannel = Folder().ActiveChannel = static_cast<int16_t>(chosen.front());
  Rebuild();
  return true;
}

bool frmChlTree::AddGlobalChannels() {
  const std::vector<ChannelRef> refs = ChosenChannelRefs(kAddGlobalTitle, true);
  if (refs.empty()) return false;
  ForEachShownLap([&](OutingRec& o, int lap) {
    for (const ChannelRef& ref : refs) SetChannelOn(o, lap, MatchChannel(o, ref), true);
  });
  Rebuild();
  return true;
}

bool frmChlTree::ReplaceCurrentChannel() {
  const std::vector<int> chosen = ChosenChannels(kReplaceTitle, false);
  if (chosen.empty()) return false;
  OutingRec& o = Current();
  const int to = chosen.front();
  SetChannelOn(o, o.CurLap, Folder().SelChannel, false);
  SetChannelOn(o, o.CurLap, to, true);
  Folder().SelChannel = Folder().ActiveChannel = static_cast<int16_t>(to);
  Rebuild();
  return true;
}

bool frmChlTree::ReplaceGlobalChannel() {
  if (!NeedOuting(kReplaceGlobalTitle)) return false;
  const ChannelRef current_ref = ChannelRefOf(Current(), Folder().SelChannel);
  const std::vector<ChannelRef> refs = ChosenChannelRefs(kReplaceGlobalTitle, false);
  if (refs.empty()) return false;
  ForEachShownLap([&](OutingRec& o, int lap) {
    const int from = MatchChannel(o, current_ref);
    if (!ChannelOn(o, lap, from)) return;
    SetChannelOn(o, lap, from, false);
    SetChannelOn(o, lap, MatchChannel(o, refs.front()), true);
  });
  SelectFirstChannel();
  Rebuild();
  return true;
}

bool frmChlTree::ReplaceAllChannels() {
  const std::vector<ChannelRef> refs = ChosenChannelRefs(kReplaceAllTitle, true);
  if (refs.empty()) return false;
  ForEachShownLap([&](OutingRec& o, int lap) {
    for (int c : ChannelsOnLap(o, lap)) SetChannelOn(o, lap, c, false);
    for (const ChannelRef& ref : refs) SetChannelOn(o, lap, MatchChannel(o, ref), true);
  });
  SelectFirstChannel();
  Rebuild();
  return true;
}

bool frmChlTree::DeleteCurrentChannel() {
  if (!HasCurrentOuting()) return false;
  SetChannelOn(Current(), Current().CurLap, Folder().SelChannel, false);
  if (FindCurrentChannel(ws_, ws_.CurOuting, Current().CurLap) < 0) {
    RemoveCurrentLap();
    return true;
  }
  Folder().ActiveChannel = Folder().SelChannel;
  Rebuild();
  return true;
}

// Laps left without a channel leave the tree, and outings left without a lap are unloaded.
bool frmChlTree::DeleteGlobalChannel() {
  if (!HasCurrentOuting()) return false;
  const ChannelRef ref = ChannelRefOf(Current(), Folder().SelChannel);
  ForEachShownLap([&](OutingRec& o, int lap) {
    SetChannelOn(o, lap, MatchChannel(o, ref), false);
    if (ChannelsOnLap(o, lap).empty()) ClearLap(o, lap);
  });
  const int16_t keep_folder = ws_.CurFolder;
  for (int f = 0; f < kFolderCount; ++f) {
    if (ws_.FolderTable[static_cast<std::size_t>(f)].InUse == 0) continue;
    ws_.CurFolder = static_cast<int16_t>(f);
    for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
      if (Folder().Outings[static_cast<std::size_t>(slot)].Loaded != 0 && !FindCurrentLap(ws_, slot)) ReleaseOuting(slot);
    }
  }
  ws_.CurFolder = keep_folder;
  if (!FindCurrentOuting(ws_)) host_.CloseOpenWindows();
  Folder().ActiveChannel = Folder().SelChannel;
  Rebuild();
  return true;
}
