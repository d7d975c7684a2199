#include "core/workspace/frmChlTree.h"

#include <QFileInfo>
#include <algorithm>

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/Laps.h"
#include "core/workspace/frmGroupLaps.h"
#include "core/workspace/frmLapHide.h"

frmChlTree::frmChlTree(Workspace& ws, TreeHost& host) : ws_(ws), host_(host) {}

FolderRec& frmChlTree::Folder() { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)]; }

OutingRec& frmChlTree::Current() { return Folder().Outings[static_cast<std::size_t>(ws_.CurOuting)]; }

bool frmChlTree::HasCurrentOuting() {
  return ws_.CurOuting >= 0 && ws_.CurOuting < kOutingsPerFolder && Current().Loaded != 0 &&
         Current().CurLap >= 0 && Current().CurLap < static_cast<int>(Current().Laps.size());
}

bool frmChlTree::NeedOuting(const QString& title) {
  if (HasCurrentOuting()) return true;
  ws_.messages.Show(QStringLiteral("No Outing Loaded"), title, MessageIcon::Exclamation);
  return false;
}

bool frmChlTree::RefusedUnderEntireOuting(const char* text, const QString& title) {
  if (Folder().LapsDisplayed != frmGroupLaps::kEntireOuting) return false;
  ws_.messages.Show(QString::fromLatin1(text), title, MessageIcon::Exclamation);
  return true;
}

void frmChlTree::Rebuild() {
  LoadTreeData();
  RefreshPlots(ws_);
}

// --- Rebuild ------------------------------------------------------------------------------------

int frmChlTree::AddNode(const QString& text, const QString& tag, int parent, int16_t level, bool expanded) {
  TreeNode n;
  n.Text = text;
  n.Tag = tag;
  n.Parent = parent;
  n.Level = level;
  n.Expanded = expanded;
  nodes_.push_back(n);
  return static_cast<int>(nodes_.size()) - 1;
}

void frmChlTree::LoadTreeData() {
  nodes_.clear();
  selected_ = -1;
  level_ = kLevelNone;
  FolderRec& folder = Folder();
  AddNode(QStringLiteral("Folder - ") + folder.Name, QStringLiteral("000"), -1, kLevelRoot, true);
  folder.TreeChannelCount = 0;
  AddDatumNode();
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    if (folder.Outings[static_cast<std::size_t>(slot)].Loaded != 0) AddOutingNodes(slot);
  }
  if (AnyOutingLoaded(ws_, ws_.CurFolder)) SetFolderScale();
  GetTileCount(ws_);  // the bands of a tiled folder follow what the tree shows
  AddSupportNodes();
  ShowCurrentNode();
}

void frmChlTree::AddDatumNode() {
  const FolderRec& folder = Folder();
  QString text = QStringLiteral("Datum - (None)");
  const int slot = folder.DatumOuting;
  if (slot >= 0 && slot < kOutingsPerFolder) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded != 0 && LapExists(o, folder.DatumLap)) {
      text = QStringLiteral("Datum - ") + BaseName(o.FileName) + QStringLiteral(" - ") +
             LapNumberText(o, folder.DatumLap) + QStringLiteral("  (") +
             LapTimeText(LapTimeMs(o, folder.DatumLap)) + QLatin1Char(')');
    }
  }
  AddNode(text, QStringLiteral(":D"), 0, kLevelDatum);
}

void frmChlTree::AddOutingNodes(int outing) {
  const OutingRec& o = Folder().Outings[static_cast<std::size_t>(outing)];
  QString text = QStringLiteral(" - ") + BaseName(o.FileName);
  for (const QString& part : {o.Driver, o.TrackName}) {
    if (!part.trimmed().isEmpty()) text += QStringLiteral(" - ") + part.trimmed();
  }
  const int node = AddNode(text, OutingTag(outing), 0, kLevelOuting, true);
  for (int lap = 0; LapExists(o, lap); ++lap) {
    if (o.Laps[static_cast<std::size_t>(lap)].Shown != 0) AddLapNode(outing, lap, node);
  }
}

void frmChlTree::AddLapNode(int outing, int lap, int parent) {
  FolderRec& folder = Folder();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(outing)];
  QString text;
  if (folder.LapsDisplayed < 2) {
    text = LapNumberText(o, lap) + QStringLiteral(" - (") + LapTimeText(LapTimeMs(o, lap)) + QLatin1Char(')');
  } else {
    const int end = std::min<int>(lap + folder.LapsDisplayed, o.LastLap);  // the row that closes the group
    const int ms = o.Laps[static_cast<std::size_t>(end)].StartTime - o.Laps[static_cast<std::size_t>(lap)].StartTime;
    text = LapNumberText(o, lap) + QStringLiteral(" - ") + LapNumberText(o, end - 1) + QStringLiteral("  (") +
           LapTimeText(ms) + QLatin1Char(')');
  }
  const int node = AddNode(text, LapTag(outing, lap), parent, kLevelLap, true);
  for (int c : ChannelsOnLap(o, lap)) {
    const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
    const int n = AddNode(ch.Name, ChannelTag(outing, lap, c), node, kLevelChannel);
    nodes_[static_cast<std::size_t>(n)].Icon = ChannelClassOf(ch.Key);
    ++folder.TreeChannelCount;
  }
}

// The folder's scales follow the selected channel; a channel without a range of its own clears
// them, so a plot does not keep the previous channel's scale.
void frmChlTree::SetFolderScale() {
  FolderRec& folder = Folder();
  folder.TimeScaleMin = folder.TimeScaleMax = folder.FftScaleMin = folder.FftScaleMax = 0;
  if (ws_.CurOuting < 0 || ws_.CurOuting >= kOutingsPerFolder || Current().Loaded == 0) return;
  const OutingRec& o = Current();
  if (folder.SelChannel < 0 || folder.SelChannel >= static_cast<int>(o.Channels.size())) return;
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(folder.SelChannel)];
  if (c.TimeMax > c.TimeMin) {
    folder.TimeScaleMin = c.TimeMin;
    folder.TimeScaleMax = c.TimeMax;
  }
  if (c.FftScaleMax > c.FftScaleMin) {
    folder.FftScaleMin = c.FftScaleMin;
    folder.FftScaleMax = c.FftScaleMax;
  }
}

void frmChlTree::AddSupportNodes() {
  const FolderRec& folder = Folder();
  const int support = AddNode(QStringLiteral("Support"), QString(), 0, kLevelSupport);
  const QString track =
      folder.TrackFile.isEmpty() ? QStringLiteral("(Empty)") : QFileInfo(BaseName(folder.TrackFile)).completeBaseName();
  AddNode(track, QStringLiteral("TRAK"), support, kLevelSupport);
  AddNode(QStringLiteral("Def : ") + ws_.DscHead.DscTitle.text, QStringLiteral("CDEF"), support, kLevelSupport);
  AddNode(QStringLiteral("Math Channels"), QStringLiteral("MATH"), support, kLevelSupport);
  AddNode(QStringLiteral("Constants"), QStringLiteral("CNST"), support, kLevelSupport);
}

int frmChlTree::ShowCurrentNode() {
  selected_ = -1;
  if (ws_.CurOuting < 0 || ws_.CurOuting >= kOutingsPerFolder) return selected_;
  const QString tag = ChannelTag(ws_.CurOuting, Current().CurLap, Folder().SelChannel);
  for (int i = static_cast<int>(nodes_.size()) - 1; i >= 0; --i) {
    if (nodes_[static_cast<std::size_t>(i)].Level == kLevelChannel && nodes_[static_cast<std::size_t>(i)].Tag == tag) {
      selected_ = i;
      level_ = kLevelChannel;
      break;
    }
  }
  return selected_;
}

void frmChlTree::SelectNode(int index) {
  if (index < 0 || index >= static_cast<int>(nodes_.size())) return;
  selected_ = index;
  const TreeNode& node = nodes_[static_cast<std::size_t>(index)];
  level_ = node.Level;
  if (node.Level != kLevelOuting && node.Level != kLevelLap && node.Level != kLevelChannel) return;
  const TreeTagParts t = ParseTreeTag(node.Tag);
  FolderRec& folder = Folder();
  if (t.Outing < 0 || t.Outing >= kOutingsPerFolder) return;
  OutingRec& o = folder.Outings[static_cast<std::size_t>(t.Outing)];
  if (o.Loaded == 0) return;
  ws_.CurOuting = folder.SelOuting = static_cast<int16_t>(t.Outing);
  if (LapExists(o, t.Lap)) o.CurLap = static_cast<int16_t>(t.Lap);
  if (t.Channel >= 0 && t.Channel < static_cast<int>(o.Channels.size())) {
    folder.SelChannel = folder.ActiveChannel = static_cast<int16_t>(t.Channel);
  }
  RefreshPlots(ws_);
}

// --- Dispatchers --------------------------------------------------------------------------------

void frmChlTree::AddReplaceChannel() {
  if (level_ == kLevelChannel) {
    ReplaceCurrentChannel();
  } else {
    AddAnotherChannel();
  }
}

void frmChlTree::AddReplaceLap() {
  switch (level_) {
    case kLevelRoot:
    case kLevelNone:
    case kLevelOuting:
      AddAnotherLap();
      break;
    case kLevelDatum:
      ReplaceDatumLap();
      break;
    case kLevelLap:
    case kLevelChannel:
      ReplaceCurrentLap();
      break;
    default:
      break;
  }
}

void frmChlTree::AddReplaceOuting() {
  if (level_ == kLevelOuting) {
    ReplaceCurrentOuting();
  } else {
    AddAnotherOuting();
  }
}

// --- Colours and hiding -------------------------------------------------------------------------

bool frmChlTree::ChangeLapColor() {
  if (!HasCurrentOuting()) return false;
  const int color = host_.PickColor();
  if (color < 0 || color >= kPaletteSize) return false;
  Current().Laps[static_cast<std::size_t>(Current().CurLap)].LapColor = static_cast<int16_t>(color);
  Rebuild();
  return true;
}

bool frmChlTree::ChangeOutingColor() {
  if (!HasCurrentOuting()) return false;
  const int color = host_.PickColor();
  if (color < 0 || color >= kPaletteSize) return false;
  for (LapRec& lap : Current().Laps) lap.LapColor = static_cast<int16_t>(color);
  Rebuild();
  return true;
}

void frmChlTree::UndoLapColor() {
  if (!HasCurrentOuting()) return;
  Current().Laps[static_cast<std::size_t>(Current().CurLap)].LapColor = -1;
  Rebuild();
}

void frmChlTree::UndoOutingColor() {
  if (!HasCurrentOuting()) return;
  for (LapRec& lap : Current().Laps) lap.LapColor = -1;
  Rebuild();
}

void frmChlTree::ToggleOutingHidden() {
  if (!HasCurrentOuting()) return;
  Current().OutingHidden = Current().OutingHidden != 0 ? 0 : -1;
  Rebuild();
}

bool frmChlTree::mnuHideLaps() {
  if (!HasCurrentOuting()) return false;
  frmLapHide form(ws_, ws_.CurOuting);
  if (!host_.ChooseHiddenLaps(form)) return false;
  form.cmdOK();
  return true;
}

bool frmChlTree::mnuGroupLaps() {
  frmGroupLaps form(ws_);
  if (!host_.ChooseGroupLaps(form)) return false;
  form.cmdOK();
  FindCurrentOuting(ws_);
  Rebuild();
  return true;
}
