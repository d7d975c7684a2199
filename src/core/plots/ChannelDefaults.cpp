#include "core/plots/ChannelDefaults.h"

#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

QString NameKey(const QString& name) { return name.trimmed().toUpper(); }

void EditFolder(FolderRec& folder, const QString& key, const std::function<void(ChannelRec&)>& edit) {
  for (OutingRec& o : folder.Outings) {
    if (o.Loaded == 0) continue;
    for (ChannelRec& c : o.Channels) {
      if (NameKey(c.ShortName) == key) edit(c);
    }
  }
}

}  // namespace

void ForEachChannelNamed(Workspace& ws, int folder, const QString& name, const std::function<void(ChannelRec&)>& edit) {
  const QString key = NameKey(name);
  if (folder >= 0) {
    if (folder < kFolderCount) EditFolder(ws.FolderTable[static_cast<std::size_t>(folder)], key, edit);
    return;
  }
  for (FolderRec& f : ws.FolderTable) EditFolder(f, key, edit);
}

bool EditDescriptor(Workspace& ws, int index, const std::function<void(ChannelDescriptor&)>& edit) {
  if (index < 0 || index >= static_cast<int>(ws.ChannelDsc.size())) return false;
  ChannelDescriptorFile file;
  file.Head = ws.DscHead;
  file.Records = ws.ChannelDsc;
  edit(file.Records[static_cast<std::size_t>(index)]);
  QString error;
  if (!WriteFileAtomically(ChannelDscPath(ws), ChannelDescriptorFileBytes(file), &error)) {
    ws.messages.Show(error, QStringLiteral("Write Channels"), MessageIcon::Exclamation);
    return false;
  }
  return ReadChannelDescriptors(ws);
}
