#include "core/workspace/FolderSettings.h"

#include "core/app/Options.h"
#include "core/app/SettingsStore.h"
#include "core/workspace/FolderTable.h"

namespace {

void ClearSection(SettingsStore& store, const QString& section) {
  for (const QString& key : store.ListSection(kAppAnalysis, section)) store.DeleteKey(kAppAnalysis, section, key);
}

void CopySection(SettingsStore& store, const QString& from, const QString& to) {
  ClearSection(store, to);
  for (const QString& key : store.ListSection(kAppAnalysis, from)) {
    store.Write(kAppAnalysis, to, key, store.Read(kAppAnalysis, from, key, QString()));
  }
}

}  // namespace

void MoveFolderSettingsDown(SettingsStore& store, int folder) {
  if (folder < 0 || folder >= kFolderCount) return;
  for (const char* kind : kFolderWindowSections) {
    for (int f = folder; f + 1 < kFolderCount; ++f) CopySection(store, FolderSection(kind, f + 1), FolderSection(kind, f));
    ClearSection(store, FolderSection(kind, kFolderCount - 1));
  }
}
