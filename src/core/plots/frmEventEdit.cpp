#include "core/plots/frmEventEdit.h"

#include <cmath>
#include <limits>

#include "core/app/Workspace.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/plots/ChannelDefaults.h"

const std::array<frmEventEdit::Choice, 6> frmEventEdit::kConditions = {
    {{1, "&Greater Than"}, {2, "&Less Than"}, {4, "&Equal To"}, {8, "N&ot Equal To"}, {16, "&True"}, {32, "&False"}}};
const QString frmEventEdit::kTitle = QStringLiteral("Channel Events");

frmEventEdit::frmEventEdit(Workspace& ws) : ws_(ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (folder.SelOuting < 0 || folder.SelOuting >= kOutingsPerFolder) return;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  if (o.Loaded == 0 || folder.SelChannel < 0 || folder.SelChannel >= static_cast<int>(o.Channels.size())) return;
  slot_ = folder.SelOuting;
  channel_ = folder.SelChannel;
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel_)];
  const uint16_t condition = c.EventFlags & kConditionBits;
  for (const auto& k : kConditions) {
    if (k.Flag == condition) Condition = condition;
  }
  txtLimit = QString::number(static_cast<double>(c.EventLimit), 'g', 7);
  chkEnabled = c.EventEnabled != 0;
  chkMinimum = (c.EventFlags & kLabelMinimum) != 0;
  chkMaximum = (c.EventFlags & kLabelMaximum) != 0;
}

QString frmEventEdit::ChannelName() const {
  if (!HasChannel()) return {};
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  return folder.Outings[static_cast<std::size_t>(slot_)].Channels[static_cast<std::size_t>(channel_)].Name.trimmed();
}

uint16_t frmEventEdit::Flags(uint16_t old) const {
  const uint16_t ours = kConditionBits | kLabelMinimum | kLabelMaximum;
  uint16_t flags = static_cast<uint16_t>((old & ~ours) | (Condition & kConditionBits));
  if (chkMinimum) flags |= kLabelMinimum;
  if (chkMaximum) flags |= kLabelMaximum;
  return flags;
}

bool frmEventEdit::cmdOK() {
  if (!HasChannel()) return false;
  bool ok = false;
  const double limit = txtLimit.trimmed().toDouble(&ok);
  if (!ok || !std::isfinite(limit) || std::abs(limit) > std::numeric_limits<float>::max()) {
    ws_.messages.Show(QStringLiteral("The event limit must be a number"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  const auto value = static_cast<float>(limit);
  const uint16_t enabled = chkEnabled ? 0xFFFF : 0;  // -1 for true
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const ChannelRec& selected =
      folder.Outings[static_cast<std::size_t>(slot_)].Channels[static_cast<std::size_t>(channel_)];
  // The file first: when it can't be written, nothing changes.
  const bool written = EditDescriptor(ws_, selected.DscIndex, [&](ChannelDescriptor& d) {
    d.EventLimit = value;
    d.EventEnabled = static_cast<int16_t>(enabled);
    d.EventFlags = Flags(d.EventFlags);
  });
  if (!written) return false;
  ForEachChannelNamed(ws_, ws_.CurFolder, selected.ShortName, [&](ChannelRec& c) {
    c.EventLimit = value;
    c.EventEnabled = enabled;
    c.EventFlags = Flags(c.EventFlags);
  });
  return true;
}
