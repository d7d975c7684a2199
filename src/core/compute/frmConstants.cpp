#include "core/compute/frmConstants.h"

#include <algorithm>
#include <set>

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/compute/OutingConstants.h"
#include "core/compute/frmNewMath.h"
#include "core/outing/HeaderProcessing.h"

const QStringList frmConstants::kColumns = {QStringLiteral("Name"), QStringLiteral("Value/Link")};
const QString frmConstants::kExportTitle = QStringLiteral("Export Constant");
const QString frmConstants::kExportFilter = QStringLiteral("Export Constant (*.TXT)|*.TXT");
const QString frmConstants::kImportTitle = QStringLiteral("Import Constant");
const QString frmConstants::kImportFilter = QStringLiteral("Import Constant (*.TXT)|*.TXT");

namespace {

const QString kTitle = QStringLiteral("Constants");
const QString kSaveTitle = QStringLiteral("Save Constants");

// A name as the table holds it, or empty when it cannot be one; for names that come from files
// and the clipboard, which are left out without a word, as a typed one would be refused.
QString TableName(const QString& name) {
  const QString trimmed = name.trimmed().left(kNameWidth);
  return trimmed.size() < 2 || HasIllegalNameCharacter(trimmed) ? QString() : trimmed;
}

// A value is one line of text.
QString OneLine(const QString& value) {
  qsizetype end = 0;
  while (end < value.size() && value.at(end) != '\r' && value.at(end) != '\n') ++end;
  return value.left(end).trimmed();
}

QStringList TextLines(const QString& text) {
  QStringList lines = text.split(QLatin1Char('\n'));
  for (QString& l : lines) {
    if (l.endsWith(QLatin1Char('\r'))) l.chop(1);
  }
  return lines;
}

// Each loaded outing's table anew from the global one and the values its file keeps, as a
// load would build it; then the formulas, so the new numbers reach them.
void RefreshLoadedOutings(Workspace& ws) {
  const int16_t current = ws.CurFolder;
  for (int f = 0; f < kFolderCount; ++f) {
    ws.CurFolder = static_cast<int16_t>(f);
    for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
      if (OutingAt(ws, slot).Loaded != 0) LoadOutingConstants(ws, slot);
    }
  }
  ws.CurFolder = current;
  RecompileLoadedOutings(ws);
}

}  // namespace

QString frmNewConst::CheckName(Workspace& ws, const QString& typed) {
  if (!CheckNameCharacters(ws, typed)) return {};
  const QString name = typed.trimmed().left(kNameWidth);
  if (name.size() >= 2) return name;
  ws.messages.Show(QStringLiteral("Constant names must be at least 2 characters"), kTitle, MessageIcon::Exclamation);
  return {};
}

void frmConstants::Form_Load(Workspace& ws) {
  outing_mode_ = false;
  rows_ = ws.GlobalConstants;
  label_ = QStringLiteral("Global Constants :");
  changed_ = false;
  link_values_.clear();
}

bool frmConstants::optGlobal_Click(Workspace& ws) {
  if (!Leave(ws)) return false;
  Form_Load(ws);
  return true;
}

bool frmConstants::optOuting_Click(Workspace& ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const int slot = folder.SelOuting;
  if (slot < 0 || slot >= kOutingsPerFolder || folder.Outings[static_cast<std::size_t>(slot)].Loaded == 0) {
    ws.messages.Show(QStringLiteral("No outing is selected"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  if (!Leave(ws)) return false;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  outing_mode_ = true;
  folder_ = ws.CurFolder;
  slot_ = slot;
  file_ = o.FileName;
  rows_ = o.OutingConstants;
  label_ = QStringLiteral("Outing : ") + BaseName(o.FileName) + QStringLiteral(" - ") + o.DateText;
  changed_ = false;
  link_values_.clear();
  return true;
}

QString frmConstants::ValueText(int row) const {
  const QString& value = Row(row).Value;
  if (!IsConstantLink(value)) return value;
  auto found = link_values_.find(value);
  if (found == link_values_.end()) found = link_values_.emplace(value, ResolveConstantLink(value)).first;
  return value + QStringLiteral(" - (") + found->second + QStringLiteral(")");
}

int frmConstants::FindRow(const QString& name) const {
  for (int r = 0; r < Count(); ++r) {
    if (SameName(Row(r).Name, name)) return r;
  }
  return -1;
}

bool frmConstants::NeedOuting(Workspace& ws) const {
  if (outing_mode_) return true;
  ws.messages.Show(QStringLiteral("Show the constants of an outing first"), kTitle, MessageIcon::Exclamation);
  return false;
}

bool frmConstants::GlobalOnly(Workspace& ws) const {
  if (!outing_mode_) return true;
  ws.messages.Show(QStringLiteral("Constants are added and removed in the global table"), kTitle,
                   MessageIcon::Exclamation);
  return false;
}

void frmConstants::SetValue(int row, const QString& value) {
  if (row < 0 || row >= Count()) return;
  rows_[static_cast<std::size_t>(row)].Value = OneLine(value);
  changed_ = true;
}

bool frmConstants::AddConstant(Workspace& ws, const QString& name, const QString& value) {
  const QString checked = frmNewConst::CheckName(ws, name);
  if (checked.isEmpty()) return false;
  bool told = false;
  return Merge(ws, checked, value, true, kTitle, told);
}

bool frmConstants::Merge(Workspace& ws, const QString& name, const QString& value, bool ask, const QString& title,
                         bool& told) {
  const int r = FindRow(name);
  if (r >= 0) {
    if (ask && !ws.messages.Ask(OverwriteQuestion(Row(r).Name, QStringLiteral("constant")), title)) return false;
    SetValue(r, value);
    return true;
  }
  if (outing_mode_ || Count() >= kMaxConstants) {
    if (!told && outing_mode_) GlobalOnly(ws);
    if (!told && !outing_mode_) {
      ws.messages.Show(QStringLiteral("No room for another constant: the table holds 511"), title,
                       MessageIcon::Exclamation);
    }
    told = true;
    return false;
  }
  rows_.push_back({name, OneLine(value)});
  changed_ = true;
  return true;
}

bool frmConstants::mnuCopyToGlobal(Workspace& ws) {
  if (!NeedOuting(ws)) return false;
  if (!ws.messages.Ask(QStringLiteral("Copy Outing Constants to Global ?"), QStringLiteral("Copy to Global"))) {
    return false;
  }
  // The values wait in a copy of the global table until the dialog's save stores them.
  if (!global_copy_) global_copy_ = ws.GlobalConstants;
  for (ConstantRec& g : *global_copy_) {
    const int r = FindRow(g.Name);
    if (r >= 0) g.Value = Row(r).Value;
  }
  changed_ = true;
  return true;
}

bool frmConstants::mnuCopyToOuting(Workspace& ws) {
  if (!NeedOuting(ws)) return false;
  for (const ConstantRec& g : ws.GlobalConstants) {
    const int r = FindRow(g.Name);
    if (r < 0) continue;
    // The outing keeps a 32-bit number; a link that gives nothing (or no number) keeps 0.
    SetValue(r, ConstantValueText(static_cast<float>(LeadingNumber(ResolveConstantLink(g.Value)))));
  }
  return true;
}

QString frmConstants::mnuCopy(const std::vector<int>& selection) const {
  QStringList lines;
  for (const int r : selection) {
    if (r >= 0 && r < Count()) lines << Row(r).Name.trimmed() + QLatin1Char(',') + Row(r).Value;
  }
  return lines.isEmpty() ? QString() : lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

bool frmConstants::mnuCut(Workspace& ws, const std::vector<int>& selection, QString& text) {
  if (!GlobalOnly(ws)) return false;
  text = mnuCopy(selection);
  const std::set<int> gone(selection.begin(), selection.end());
  std::vector<ConstantRec> kept;
  for (int r = 0; r < Count(); ++r) {
    if (gone.count(r) == 0) kept.push_back(Row(r));
  }
  changed_ = changed_ || kept.size() != rows_.size();
  rows_ = std::move(kept);
  return true;
}

bool frmConstants::mnuPaste(Workspace& ws, const QString& text) {
  bool told = false;
  for (const QString& line : TextLines(text)) {
    const qsizetype comma = line.indexOf(QLatin1Char(','));
    const QString name = comma > 0 ? TableName(line.left(comma)) : QString();
    if (!name.isEmpty()) Merge(ws, name, line.mid(comma + 1), false, kTitle, told);
  }
  return true;
}

bool frmConstants::mnuExport(Workspace& ws, const std::vector<int>& selection, const QString& path) {
  QStringList lines{QStringLiteral("[Export Constants]")};
  for (const int r : selection) {
    if (r >= 0 && r < Count()) lines << Row(r).Name.trimmed() + QStringLiteral(" = ") + Row(r).Value;
  }
  return WriteExportLines(ws, path, lines, kExportTitle);
}

bool frmConstants::mnuImport(Workspace& ws, const QString& path) {
  QStringList lines;
  if (!ReadExportLines(path, lines)) {
    ws.messages.Show(QStringLiteral("Unable to open file ") + path, kImportTitle, MessageIcon::Exclamation);
    return false;
  }
  if (lines.isEmpty() || !lines[0].contains(QLatin1String("Export Constants"))) {
    ws.messages.Show(QStringLiteral("Invalid constant file"), kImportTitle, MessageIcon::Exclamation);
    return false;
  }
  bool told = false;
  for (qsizetype l = 1; l < lines.size(); ++l) {
    QString name, value;
    if (!SplitExportLine(lines[l], name, value)) continue;
    name = TableName(name);
    if (!name.isEmpty()) Merge(ws, name, value, true, kImportTitle, told);
  }
  return true;
}

bool frmConstants::Leave(Workspace& ws) {
  if (!changed_) return true;
  if (ws.messages.Ask(QStringLiteral("Save Constant Changes ?"), kSaveTitle)) return SaveChanges(ws);
  changed_ = false;
  global_copy_.reset();
  return true;
}

bool frmConstants::Form_QueryUnload(Workspace& ws) { return Leave(ws); }

bool frmConstants::SaveChanges(Workspace& ws) {
  bool saved = outing_mode_ ? StoreOuting(ws) : StoreGlobal(ws, rows_);
  if (saved && global_copy_) saved = StoreGlobal(ws, *global_copy_);
  if (saved) {
    changed_ = false;
    global_copy_.reset();
  }
  return saved;
}

bool frmConstants::StoreGlobal(Workspace& ws, const std::vector<ConstantRec>& table) {
  const std::vector<ConstantRec> old = ws.GlobalConstants;
  ws.GlobalConstants = table;
  ws.GlobalConstantCount = static_cast<int>(table.size());
  if (!SaveGlobalConstants(ws)) {
    ws.GlobalConstants = old;
    ws.GlobalConstantCount = static_cast<int>(old.size());
    ws.messages.Show(QStringLiteral("Unable to write ") + JoinPath(ws.Paths.MathDirectory, kConstantFileName),
                     kSaveTitle, MessageIcon::Exclamation);
    return false;
  }
  RefreshLoadedOutings(ws);
  return true;
}

bool frmConstants::StoreOuting(Workspace& ws) {
  const int16_t current = ws.CurFolder;
  ws.CurFolder = static_cast<int16_t>(folder_);
  OutingRec& o = OutingAt(ws, slot_);
  bool saved = false;
  if (o.Loaded == 0 || o.FileName != file_) {
    ws.messages.Show(QStringLiteral("Unable to open file ") + file_, kSaveTitle, MessageIcon::Exclamation);
  } else {
    const std::vector<ConstantRec> old = o.OutingConstants;
    o.OutingConstants = rows_;
    saved = SaveOutingConstants(ws, slot_);
    if (saved) {
      // What the file holds now is what the outing has: a link is kept as its number.
      LoadOutingConstants(ws, slot_);
      RecompileOutingMath(ws, slot_);
      rows_ = o.OutingConstants;
    } else {
      o.OutingConstants = old;
    }
  }
  ws.CurFolder = current;
  return saved;
}
