#pragma once

// frmEditMath on screen: the functions, the formula of the current definition with the caret
// the editor inserts at, the channel list, the status bar with ID and name, and the menus that
// move between definitions, name, delete, export and import them. All rules are frmEditMath's;
// this window shows its state and passes the person's actions on.

#include <QDialog>

#include "core/compute/frmEditMath.h"
#include "ui/Dialogs.h"

class QAction;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QMenuBar;
class QPushButton;

class EditMathDialog : public QDialog {
 public:
  explicit EditMathDialog(DialogHost& host);
  const frmEditMath& Form() const { return form_; }
  QAction* Menu(const char* name) const;

  // Closing (Close, Escape, the window's box): with changes, asks whether to save them.
  void reject() override;

 protected:
  void showEvent(QShowEvent* e) override;
  void keyPressEvent(QKeyEvent* e) override;

 private:
  void BuildMenus(QMenuBar* bar);
  QWidget* BuildBody();
  QWidget* BuildWarning();
  QAction* AddMenu(QMenu* menu, const char* name, const QString& text, void (EditMathDialog::*run)(),
                   const QKeySequence& key = {});

  void Pull();
  void Push();
  bool Validate();
  void Refused();
  bool Save();

  void mnuValidate();
  void mnuNextChannel();
  void mnuPreviousChannel();
  void mnuSelectChannel();
  void mnuDefineNew();
  void mnuRename();
  void mnuDelete();
  void mnuExport();
  void mnuImport();
  void mnuScales();
  void mnuSave();
  void cmdAccept();
  void cmdChannel();
  void cmdOK();
  void lstFunction_DblClick(QListWidgetItem* item);

  DialogHost& host_;
  Workspace& ws_;
  frmEditMath form_;
  bool pushing_ = false;
  QListWidget* lstFunction_ = nullptr;
  QLineEdit* txtMath_ = nullptr;
  QPushButton* cmdChannel_ = nullptr;
  QWidget* warning_ = nullptr;
  QLabel* lblID_ = nullptr;
  QLabel* lblName_ = nullptr;
};
