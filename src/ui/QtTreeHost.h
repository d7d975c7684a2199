#pragma once

// The tree commands' dialogs as Qt dialogs, and their folder tabs and windows as the main
// window's. A test replaces the dialogs by overriding them and keeps the window's part.

#include "core/workspace/TreeHost.h"

class QWidget;
struct Workspace;

// What the tree commands do to the main window.
class FolderWindows {
 public:
  virtual ~FolderWindows() = default;
  virtual int FolderTabCount() = 0;
  virtual void AddFolderTab(int folder, const QString& caption) = 0;
  virtual void SetFolderTabCaption(int folder, const QString& caption) = 0;
  virtual void RemoveFolderTab(int folder) = 0;
  virtual void CloseOpenWindows() = 0;
};

class QtTreeHost : public TreeHost {
 public:
  explicit QtTreeHost(Workspace& ws) : ws_(ws) {}
  // The main window: the dialogs' parent, and the tabs and windows the commands change.
  void SetWindows(QWidget* parent, FolderWindows& windows) {
    parent_ = parent;
    windows_ = &windows;
  }

  std::optional<QString> AskText(const QString& prompt, const QString& title, const QString& def) override;
  QStringList ChooseOutingFiles(const QString& title, bool multiple) override;
  std::vector<int> ChooseLaps(const QString& title, frmLapSelect& form, bool multiple) override;
  std::vector<int> ChooseChannels(const QString& title, int outing, bool multiple) override;
  int PickColor() override;
  int ChooseDatumOuting(const frmDatumFile& form) override;
  bool ChooseHiddenLaps(frmLapHide& form) override;
  bool ChooseGroupLaps(frmGroupLaps& form) override;

  int FolderTabCount() override { return windows_->FolderTabCount(); }
  void AddFolderTab(int folder, const QString& caption) override { windows_->AddFolderTab(folder, caption); }
  void SetFolderTabCaption(int folder, const QString& caption) override { windows_->SetFolderTabCaption(folder, caption); }
  void RemoveFolderTab(int folder) override { windows_->RemoveFolderTab(folder); }
  void CloseOpenWindows() override { windows_->CloseOpenWindows(); }

 protected:
  Workspace& ws_;
  QWidget* parent_ = nullptr;
  FolderWindows* windows_ = nullptr;
};
