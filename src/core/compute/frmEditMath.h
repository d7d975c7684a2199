#pragma once

// The logic of the math editor: a private copy of the definitions that the person walks through,
// validates, names, renames, deletes, exports and imports; nothing reaches the program's
// definitions until SaveMathChanges, so leaving without saving drops every change.

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

#include "core/compute/MathDefinitions.h"

struct Workspace;

class frmEditMath {
 public:
  static const QString kExportTitle, kExportFilter, kImportTitle, kImportFilter;

  // Takes a copy of the definitions and shows the first.
  void Form_Load(Workspace& ws);

  // lstFunction: the functions in alphabetical order, then the operators.
  QStringList lstFunction() const;
  // The names cmdChannel offers: the constants, then the channels of the selected outing.
  static QStringList ChannelList(Workspace& ws);

  QString StatusID() const;    // "ID : " and three digits
  QString StatusName() const;  // "Name : " and the name, or "Name : None Defined"

  int MathCount() const { return static_cast<int>(rows_.size()); }
  int CurrentRow() const { return current_; }
  const MathDefRec& Row(int i) const { return rows_.at(static_cast<std::size_t>(i)).def; }
  bool Changed() const { return changed_; }

  // Checks and normalises txtMath. Success puts the normalised text back into txtMath and the
  // current row. A fault shows "WARNING : " and the message, unless the person has accepted a
  // warning for this row before, and then the text passes with its fault.
  bool ValidateString(Workspace& ws);
  // The person accepts the warning just shown: from now on this row's text passes.
  void AcceptWarning();

  // True when the character two places before the caret is an operator: the text before the
  // caret ends with an operator and its blank. `position` is the caret as a count of the
  // characters in front of it.
  bool OperatorExists(const QString& text, qsizetype position) const;
  // lstFunction_DblClick: a function goes in as "Name   (" and ")" around the caret; an
  // operator goes in as it is, since validation puts the blanks around it.
  void InsertFunction(const QString& word);
  // The name chosen in the channel list goes in at the caret, behind a blank when it would
  // otherwise run into the name or number in front of it.
  void InsertChannel(const QString& name);

  // Moving to another row validates first; false (staying put) when the text was refused.
  bool mnuNextChannel(Workspace& ws);
  bool mnuPreviousChannel(Workspace& ws);
  bool mnuSelectChannel(Workspace& ws, int row);

  // frmNewMath: a new row named `name` with the next ID, which becomes the current row.
  int NextID() const;
  bool mnuDefineNew(Workspace& ws, const QString& name);
  bool mnuRename(Workspace& ws, const QString& name);
  void mnuDelete();

  // Writes the rows in `selection` as "name = expression" lines.
  bool mnuExport(Workspace& ws, const std::vector<int>& selection, const QString& path);
  // Reads "name = expression" lines: an existing name is overwritten when the person says yes,
  // a new one gets a row of its own.
  bool mnuImport(Workspace& ws, const QString& path);

  // Closing: with changes, asks whether to save them. False when the window stays open (the
  // text was refused or the file could not be written).
  bool Form_QueryUnload(Workspace& ws);
  // The working table becomes the program's definitions: written to MATHCHL.DEF, split again
  // and compiled into every loaded outing. A file that cannot be written leaves the program's
  // definitions as they were.
  bool SaveMathChanges(Workspace& ws);

  QString txtMath;
  qsizetype SelStart = 0;  // the caret in txtMath

 private:
  struct WorkRow {
    MathDefRec def;
    bool warning_accepted = false;
  };

  std::vector<MathDefRec> Definitions() const;
  bool MoveTo(Workspace& ws, int row);
  void ShowRow(int row);
  bool IsFunction(const QString& word) const;
  int FindRow(const QString& name) const;
  bool TableFull(Workspace& ws, const QString& title) const;

  std::vector<WorkRow> rows_;
  int current_ = 0;
  bool changed_ = false;
  std::array<QString, kMathFunctionCount> functions_;
};
