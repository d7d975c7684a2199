#pragma once

// frmConstants on screen: the global constants or those of the selected outing in lvwConst,
// values edited in place, and the menus that add, copy between the tables, go through the
// clipboard, export, import and refresh links. All rules are frmConstants'; this window shows
// its rows and passes the person's actions on.

#include <QDialog>
#include <vector>

#include "core/compute/frmConstants.h"
#include "ui/Dialogs.h"

class QAction;
class QLabel;
class QMenuBar;
class QRadioButton;
class QTreeWidget;

class ConstantsDialog : public QDialog {
 public:
  explicit ConstantsDialog(DialogHost& host);
  const frmConstants& Form() const { return form_; }
  QAction* Menu(const char* name) const;

  // Closing (Close, Escape, the window's box): with changes, asks whether to save them.
  void reject() override;

 private:
  void BuildMenus(QMenuBar* bar);
  QAction* AddMenu(QMenu* menu, const char* name, const QString& text, void (ConstantsDialog::*run)(),
                   const QKeySequence& key = {});
  void Fill();
  std::vector<int> Selection() const;
  void SetValue(int row, const QString& value);
  void CommitEdit();

  void optGlobal_Click();
  void optOuting_Click();
  void mnuAddConstant();
  void mnuCopyToGlobal();
  void mnuCopyToOuting();
  void mnuCopy();
  void mnuCut();
  void mnuPaste();
  void mnuExport();
  void mnuImport();
  void mnuRefresh();
  void mnuSave();
  void cmdOK();

  DialogHost& host_;
  Workspace& ws_;
  frmConstants form_;
  QRadioButton* optGlobal_ = nullptr;
  QRadioButton* optOuting_ = nullptr;
  QLabel* lblTable_ = nullptr;
  QTreeWidget* lvwConst_ = nullptr;
};
