#pragma once

// A tree host that answers every dialog from a script and keeps what the tree asked of it.

#include <deque>
#include <functional>
#include <optional>

#include "core/workspace/TreeHost.h"
#include "core/workspace/frmDatumFile.h"
#include "core/workspace/frmGroupLaps.h"
#include "core/workspace/frmLapHide.h"
#include "core/workspace/frmLapSelect.h"

class FakeTreeHost : public TreeHost {
 public:
  std::optional<QString> AskText(const QString&, const QString& title, const QString&) override {
    return Next(texts, title, std::optional<QString>{});
  }
  QStringList ChooseOutingFiles(const QString& title, bool) override { return Next(files, title, QStringList{}); }
  std::vector<int> ChooseLaps(const QString& title, frmLapSelect&, bool) override {
    return Next(laps, title, std::vector<int>{});
  }
  std::vector<int> ChooseChannels(const QString& title, int, bool) override {
    return Next(channels, title, std::vector<int>{});
  }
  int PickColor() override { return Next(colors, QStringLiteral("color"), -1); }
  int ChooseDatumOuting(const frmDatumFile& form) override {
    datum_rows = form.Rows();
    return Next(datum, frmDatumFile::kTitle, -1);
  }
  bool ChooseHiddenLaps(frmLapHide& form) override {
    asked.push_back(QStringLiteral("hide"));
    return hide && hide(form);
  }
  bool ChooseGroupLaps(frmGroupLaps& form) override {
    asked.push_back(QStringLiteral("group"));
    return group && group(form);
  }
  int FolderTabCount() override { return tab_count; }
  void AddFolderTab(int folder, const QString& caption) override {
    ++tab_count;
    tabs_added.emplace_back(folder, caption);
  }
  void SetFolderTabCaption(int folder, const QString& caption) override { tabs_added.emplace_back(folder, caption); }
  void RemoveFolderTab(int folder) override {
    --tab_count;
    tabs_removed.push_back(folder);
  }
  void CloseOpenWindows() override { ++windows_closed; }

  // Scripted answers, taken in order; a dialog with none left is cancelled.
  std::deque<std::optional<QString>> texts;
  std::deque<QStringList> files;
  std::deque<std::vector<int>> laps, channels;
  std::deque<int> colors, datum;
  std::function<bool(frmLapHide&)> hide;
  std::function<bool(frmGroupLaps&)> group;

  // What the tree did: titles of the dialogs in order, the rows it offered, the tabs.
  std::vector<QString> asked;
  std::vector<frmDatumFile::Row> datum_rows;
  int tab_count = 1;
  std::vector<std::pair<int, QString>> tabs_added;
  std::vector<int> tabs_removed;
  int windows_closed = 0;

 private:
  template <typename T>
  T Next(std::deque<T>& queue, const QString& title, T cancelled) {
    asked.push_back(title);
    if (queue.empty()) return cancelled;
    T v = queue.front();
    queue.pop_front();
    return v;
  }
};
