#pragma once

// The logic of the constants editor: the global constants or those of the selected outing, as a
// working copy that reaches the files and the compiled formulas only when it is saved.

#include <QString>
#include <QStringList>
#include <map>
#include <optional>
#include <vector>

#include "core/compute/MathDefinitions.h"

struct Workspace;

class frmNewConst {
 public:
  // The typed name as the table holds it (trimmed, cut to the fixed width); empty, with the
  // message shown, when it holds an illegal character or is shorter than 2 characters.
  static QString CheckName(Workspace& ws, const QString& typed);
};

class frmConstants {
 public:
  static const QStringList kColumns;  // lvwConst: "Name", "Value/Link"
  static const QString kExportTitle, kExportFilter, kImportTitle, kImportFilter;
  // CONSTANT.DEF is read up to its 512th line, its first line included: a longer table would
  // not come back whole.
  static constexpr int kMaxConstants = kMaxConstantLines - 1;

  // Shows the global constants.
  void Form_Load(Workspace& ws);
  // Switching tables is leaving the one shown: with changes, asks whether to save them.
  bool optGlobal_Click(Workspace& ws);
  // The constants of the selected outing of the current folder; refused when none is loaded.
  bool optOuting_Click(Workspace& ws);
  bool optOuting() const { return outing_mode_; }
  QString lblTable() const { return label_; }

  int Count() const { return static_cast<int>(rows_.size()); }
  const ConstantRec& Row(int i) const { return rows_.at(static_cast<std::size_t>(i)); }
  const std::vector<ConstantRec>& Rows() const { return rows_; }
  bool Changed() const { return changed_; }
  // The Value/Link column: the value, or for a live link the link, " - (", what it gives now, ")".
  QString ValueText(int row) const;
  // Asks every link again.
  void mnuRefresh() { link_values_.clear(); }

  // frmNewConst: a new row, or, after a yes to the question, a new value for the row of that
  // name. The outing's table has the rows of the global one, so new names go there.
  bool AddConstant(Workspace& ws, const QString& name, const QString& value);
  void SetValue(int row, const QString& value);

  // Outing mode: the global rows of the same names take the outing's values; they reach
  // CONSTANT.DEF with the dialog's save, and not at all when the changes are dropped.
  bool mnuCopyToGlobal(Workspace& ws);
  // Outing mode: each row takes the global value as the outing would keep it, a link its
  // present value (0 when it gives none). Saved with the outing's table.
  bool mnuCopyToOuting(Workspace& ws);

  // The selected rows as "name,value" lines, for the clipboard.
  QString mnuCopy(const std::vector<int>& selection) const;
  // As mnuCopy, and the rows leave the table (the global table only).
  bool mnuCut(Workspace& ws, const std::vector<int>& selection, QString& text);
  // "name,value" lines: a name in the table takes the value, a new name a row of its own.
  bool mnuPaste(Workspace& ws, const QString& text);

  bool mnuExport(Workspace& ws, const std::vector<int>& selection, const QString& path);
  bool mnuImport(Workspace& ws, const QString& path);

  // Leaving with changes asks whether to save them; false when the window stays open.
  bool Form_QueryUnload(Workspace& ws);
  // Global mode: CONSTANT.DEF, then every loaded outing's table and formulas. Outing mode: the
  // outing's file, its table read back from it, and its formulas.
  bool SaveChanges(Workspace& ws);

 private:
  bool Leave(Workspace& ws);
  bool NeedOuting(Workspace& ws) const;
  bool GlobalOnly(Workspace& ws) const;
  int FindRow(const QString& name) const;
  // Sets the value of the row of that name or adds a row; false when nothing changed. `told`
  // keeps a refusal to one message per import or paste.
  bool Merge(Workspace& ws, const QString& name, const QString& value, bool ask, const QString& title, bool& told);
  bool StoreGlobal(Workspace& ws, const std::vector<ConstantRec>& table);
  bool StoreOuting(Workspace& ws);

  std::vector<ConstantRec> rows_;
  std::optional<std::vector<ConstantRec>> global_copy_;  // the global table with copied values
  bool outing_mode_ = false;
  int folder_ = 0;
  int slot_ = 0;
  QString file_;  // the outing whose table is shown
  QString label_;
  bool changed_ = false;
  mutable std::map<QString, QString> link_values_;
};
