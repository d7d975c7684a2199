#include "core/plots/frmChlXYAxis.h"

#include <algorithm>

#include "core/app/Workspace.h"

const QString frmChlXYAxis::kTitle = QStringLiteral("Select Channel");

frmChlXYAxis::frmChlXYAxis(const Workspace& ws, int outing) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (outing < 0 || outing >= kOutingsPerFolder) return;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(outing)];
  if (o.Loaded == 0) return;
  for (int c = 0; c < static_cast<int>(o.Channels.size()); ++c) {
    const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
    if (ch.Rate > 0) Rows.push_back({ch.Name.trimmed(), ch.Units.trimmed(), c});  // a Rate of 0: no data
  }
  std::stable_sort(Rows.begin(), Rows.end(),
                   [](const Row& a, const Row& b) { return a.Name.compare(b.Name, Qt::CaseInsensitive) < 0; });
  Selected = Find(folder.Options.AxisXYChannel);
}

int frmChlXYAxis::Find(const QString& name) const {
  const QString key = name.trimmed().toUpper().left(16);
  for (int r = 0; r < static_cast<int>(Rows.size()); ++r) {
    if (Rows[static_cast<std::size_t>(r)].Name.toUpper().left(16).trimmed() == key) return r;
  }
  return -1;
}

int frmChlXYAxis::cmdOK() const {
  if (Selected < 0 || Selected >= static_cast<int>(Rows.size())) return -1;
  return Rows[static_cast<std::size_t>(Selected)].Channel;
}
