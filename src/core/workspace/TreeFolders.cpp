// The folder commands of the tree: a new folder with its first outing, a new name, removal.

#include "core/app/Workspace.h"
#include "core/workspace/FolderSettings.h"
#include "core/workspace/frmChlTree.h"

namespace {

constexpr int kMaxFolderTabs = 15;
constexpr int kNameWidth = 16;

// The first folder whose tab exists (in_use) or doesn't; -1 when none.
int FirstFolder(const Workspace& ws, bool in_use) {
  for (int f = 0; f < kFolderCount; ++f) {
    if ((ws.FolderTable[static_cast<std::size_t>(f)].InUse != 0) == in_use) return f;
  }
  return -1;
}

}  // namespace

bool frmChlTree::AddAnotherFolder() {
  const QString title = QStringLiteral("New Folder");
  const std::optional<QString> name =
      host_.AskText(QStringLiteral("Enter name for the new folder"), title, QStringLiteral("new"));
  if (!name || name->trimmed().isEmpty()) return false;
  const QStringList files = host_.ChooseOutingFiles(QStringLiteral("Add New Folder"), false);
  if (files.isEmpty()) return false;
  const int16_t keep_folder = ws_.CurFolder, keep_outing = ws_.CurOuting;
  const int free = FirstFolder(ws_, false);
  if (host_.FolderTabCount() >= kMaxFolderTabs || free < 0) {
    ws_.messages.Show(QStringLiteral("Maximum number of Folders loaded"), title, MessageIcon::Exclamation);
    ws_.CurFolder = keep_folder;
    ws_.CurOuting = keep_outing;
    return false;
  }
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(free)];
  for (OutingRec& o : folder.Outings) o = OutingRec{};
  InitFolder(folder);
  // A folder deleted earlier may have left its comparison settings in this entry.
  folder.LapsDisplayed = folder.GroupCount = 1;
  folder.AxisPanelChannels = {};
  folder.Name = name->trimmed().left(kNameWidth);
  folder.InUse = -1;
  host_.AddFolderTab(free, folder.Name);
  ws_.CurFolder = static_cast<int16_t>(free);
  ws_.CurOuting = 0;
  const bool loaded = LoadNewOuting(files.front(), {});
  if (!loaded) ws_.CurOuting = keep_outing;
  Rebuild();
  return loaded;
}

bool frmChlTree::mnuEditFolder() {
  const std::optional<QString> name =
      host_.AskText(QStringLiteral("Enter name of new folder"), QStringLiteral("Edit Name"), Folder().Name);
  if (!name || name->trimmed().isEmpty()) return false;
  Folder().Name = name->trimmed().left(kNameWidth);
  host_.SetFolderTabCaption(ws_.CurFolder, Folder().Name);
  LoadTreeData();
  return true;
}

bool frmChlTree::DeleteCurrentFolder() {
  // Without a folder nothing could be loaded or saved: the last one stays.
  if (host_.FolderTabCount() <= 1) {
    ws_.messages.Show(QStringLiteral("Cannot delete the only Folder"), QStringLiteral("Delete Folder"), MessageIcon::Exclamation);
    return false;
  }
  const int gone = ws_.CurFolder;
  host_.CloseOpenWindows();
  FolderRec& folder = Folder();
  for (OutingRec& o : folder.Outings) o = OutingRec{};
  InitFolder(folder);
  MoveFolderSettingsDown(ws_.Settings, gone);
  host_.RemoveFolderTab(gone);
  if (!FindCurrentFolder(ws_)) {
    const int first = FirstFolder(ws_, true);
    ws_.CurFolder = static_cast<int16_t>(first < 0 ? gone : first);
    ws_.CurOuting = 0;
  }
  Rebuild();
  return true;
}
