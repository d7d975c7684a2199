#pragma once

// The small windows of the math and constants editors, each opened modally over its editor:
// frmNewMath (a name for a math channel), frmChlMath (math channels to pick), frmChlList (a
// constant or channel for the formula), frmMathScales and frmNewConst; and the file dialogs of
// export and import.

#include <QDialog>
#include <QString>
#include <functional>
#include <vector>

class QDialogButtonBox;
class QVBoxLayout;
class QWidget;
class frmEditMath;
struct Workspace;

// A dialog named after its window, with a body laid out top to bottom and OK and Cancel
// (cmdOK, cmdCancel). `accept_if`, when set, decides whether OK closes it.
struct FormDialog {
  QDialog dialog;
  QVBoxLayout* body;
  QDialogButtonBox* buttons;
  std::function<bool()> accept_if;

  FormDialog(QWidget* parent, const QString& name, const QString& title);
  bool Run();
};

// frmNewMath over the editor's table: a new name, or with `rename` a new name for the current
// row, as typed; empty when cancelled. The dialog stays open on a refused name.
QString AskMathName(QWidget* parent, Workspace& ws, const frmEditMath& editor, bool rename);

// frmChlMath: rows of the editor's table, the current one preselected; all rows preselected
// when `multiple`. Empty when cancelled.
std::vector<int> ChooseMathRows(QWidget* parent, const frmEditMath& editor, const QString& title, bool multiple);

// frmChlList: a name that a formula may use (constants, then the selected outing's channels);
// empty when cancelled.
QString ChooseOperand(QWidget* parent, Workspace& ws);

// frmMathScales for the math channel `name`; true when new settings were stored.
bool EditMathScales(QWidget* parent, Workspace& ws, const QString& name);

// frmNewConst: the name (proposed as "New") and the value or link of a new constant; false when
// cancelled. The dialog stays open on a refused name.
bool AskNewConstant(QWidget* parent, Workspace& ws, QString& name, QString& value);

// File dialogs for a filter written as "Name (*.EXT)|*.EXT"; empty when cancelled. A saved name
// typed without an extension gets the filter's.
QString AskSaveFile(QWidget* parent, const QString& title, const QString& filter, const QString& dir);
QString AskOpenFile(QWidget* parent, const QString& title, const QString& filter, const QString& dir);
