#include "core/compute/frmEditMath.h"

#include <algorithm>

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/frmNewMath.h"

const QString frmEditMath::kExportTitle = QStringLiteral("Export Math");
const QString frmEditMath::kExportFilter = QStringLiteral("Export Math (*.TXT)|*.TXT");
const QString frmEditMath::kImportTitle = QStringLiteral("Import Math");
const QString frmEditMath::kImportFilter = QStringLiteral("Import Math (*.TXT)|*.TXT");

namespace {

constexpr int kFirstOperatorRow = 23;
const QString kIllegalCharacter = QStringLiteral("Illegal character in math string !");
const QString kUndefinedName = QStringLiteral("Undefined channel or constant in math string !");
const QString kUnknownOperator = QStringLiteral("Unrecognized operator in math string !");
const QString kParenthesisError = QStringLiteral("Parenthesis error in math string !");

bool IsDigit(QChar c) { return c >= '0' && c <= '9'; }
bool IsLetter(QChar c) { return c >= 'A' && c <= 'Z'; }

QString RightTrimmed(const QString& s) {
  qsizetype n = s.size();
  while (n > 0 && s.at(n - 1) == ' ') --n;
  return s.left(n);
}

const OutingRec* SelectedOuting(Workspace& ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (folder.SelOuting < 0 || folder.SelOuting >= kOutingsPerFolder) return nullptr;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  return o.Loaded != 0 ? &o : nullptr;
}

// The names a formula may use besides the functions, in the order validation looks for them:
// the constants, then the channels of the selected outing (with no outing loaded, none).
QStringList OperandNames(Workspace& ws) {
  QStringList names;
  for (const ConstantRec& c : ws.GlobalConstants) names << RightTrimmed(c.Name);
  if (const OutingRec* o = SelectedOuting(ws)) {
    const int last = std::min<int>(o->LastChannel, static_cast<int>(o->Channels.size()) - 1);
    for (int c = 0; c <= last; ++c) names << RightTrimmed(o->Channels[static_cast<std::size_t>(c)].Name);
  }
  names.removeAll(QString());
  return names;
}

// The walk over the typed text: blanks normalised, words set apart, names written as they are
// defined. Every character up to the last is looked at: read as counting from 1 with "below the
// length" the last one would go unchecked, so "1." would pass and a mistyped name at the end
// would never be reported. The text is read from `in` and what is done goes to `out`, so every
// rewrite touches only the part still ahead and a long text costs one pass. `message` keeps the
// last fault found.
struct MathWalk {
  const std::array<QString, kMathFunctionCount>& functions;
  const QStringList& operands;
  const QString& in;
  QString out;
  QString message;
  qsizetype p = 0;

  void Run() {
    while (p < in.size()) Step();
    int depth = 0;
    for (const QChar c : out) depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (depth != 0) message = kParenthesisError;  // a sum: ")(" passes
  }

  void Step() {
    const QChar c = in.at(p).toUpper();
    if (c == ' ') {
      // What stands in front is never a blank here (each step leaves a word, a digit or a
      // bracket there), so the blanks around this one are those from here on.
      SkipBlanks();
    } else if (c == '(' || c == ')' || IsDigit(c)) {
      out += in.at(p++);
    } else if (c == '.') {
      out += in.at(p++);
      if (p >= in.size() || !IsDigit(in.at(p))) {
        message = kIllegalCharacter;
        out += in.mid(p);  // the walk ends, the rest stays as it is
        p = in.size();
      }
    } else if (IsLetter(c)) {
      Name();
    } else {
      Operator();
    }
  }

  void SkipBlanks() {
    while (p < in.size() && in.at(p) == ' ') ++p;
  }

  // True when `name` is written here, in any case, and stands alone.
  bool NameHere(const QString& name) const {
    if (name.isEmpty() || QStringView(in).mid(p, name.size()).compare(name, Qt::CaseInsensitive) != 0) return false;
    const QString around = (out.isEmpty() ? QString(QLatin1Char(' ')) : out.right(1)) + in.mid(p, name.size() + 1);
    return IsWholeName(around, 1, name);
  }

  // The word between single blanks; the walk goes on behind the second, blanks skipped.
  void SetApart(qsizetype length) {
    out += QLatin1Char(' ') + in.mid(p, length) + QLatin1Char(' ');
    p += length;
    SkipBlanks();
  }

  void Name() {
    for (int f = 0; f < kFirstOperatorRow; ++f) {
      const QString& name = functions[static_cast<std::size_t>(f)];
      if (NameHere(name)) return SetApart(name.size());
    }
    for (const QString& name : operands) {
      if (!NameHere(name)) continue;
      out += name;  // in the case of its definition
      p += name.size();
      SkipBlanks();
      return;
    }
    message = kUndefinedName;
    out += in.at(p++);
  }

  void Operator() {
    for (int f = kFirstOperatorRow; f < kMathFunctionCount; ++f) {
      const QString& op = functions[static_cast<std::size_t>(f)];
      if (!op.isEmpty() && QStringView(in).mid(p, op.size()) == op) return SetApart(op.size());
    }
    message = kUnknownOperator;
    out += in.at(p++);
  }
};

}  // namespace

void frmEditMath::Form_Load(Workspace& ws) {
  functions_ = ws.MathFunctions;
  rows_.clear();
  const int count = std::clamp<int>(ws.MathCount, 0, static_cast<int>(ws.MathDefs.size()));
  for (int i = 0; i < count; ++i) rows_.push_back({ws.MathDefs[static_cast<std::size_t>(i)], false});
  changed_ = false;
  ShowRow(0);
}

QStringList frmEditMath::lstFunction() const {
  QStringList names(functions_.begin(), functions_.begin() + kFirstOperatorRow);
  std::sort(names.begin(), names.end(),
            [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
  for (int f = kFirstOperatorRow; f < kMathFunctionCount; ++f) names << functions_[static_cast<std::size_t>(f)];
  return names;
}

QStringList frmEditMath::ChannelList(Workspace& ws) { return OperandNames(ws); }

QString frmEditMath::StatusID() const {
  const int id = rows_.empty() ? 0 : Row(current_).ID;
  return QStringLiteral("ID : %1").arg(id, 3, 10, QLatin1Char('0'));
}

QString frmEditMath::StatusName() const {
  if (rows_.empty()) return QStringLiteral("Name : None Defined");
  return QStringLiteral("Name : ") + RightTrimmed(Row(current_).Name);
}

bool frmEditMath::ValidateString(Workspace& ws) {
  if (rows_.empty()) return true;  // no row to hold a text
  QString text = txtMath.trimmed();
  // Text boxes here end a line with a line feed alone; a CRLF is cut at its CR either way.
  for (qsizetype p = 0; p < text.size(); ++p) {
    if (text.at(p) == '\r' || text.at(p) == '\n') {
      text.truncate(p);
      break;
    }
  }
  QString message;
  if (!text.isEmpty()) {  // an emptied text passes and is kept: the person cleared the formula
    const QStringList operands = OperandNames(ws);
    MathWalk walk{functions_, operands, text, {}, {}, 0};
    walk.Run();
    text = walk.out;
    message = walk.message;
  }
  WorkRow& row = rows_[static_cast<std::size_t>(current_)];
  if (!message.isEmpty() && !row.warning_accepted) {
    ws.messages.Show(QStringLiteral("WARNING : ") + message, QStringLiteral("Validate Math"), MessageIcon::Exclamation);
    return false;
  }
  txtMath = text;
  SelStart = std::min(SelStart, txtMath.size());
  if (row.def.Expression != text) {
    row.def.Expression = text;
    changed_ = true;
  }
  return true;
}

void frmEditMath::AcceptWarning() {
  if (!rows_.empty()) rows_[static_cast<std::size_t>(current_)].warning_accepted = true;
}

bool frmEditMath::OperatorExists(const QString& text, qsizetype position) const {
  if (position < 2 || position - 2 >= text.size()) return false;
  const QChar c = text.at(position - 2);
  for (int f = kFirstOperatorRow; f < kMathFunctionCount; ++f) {
    if (functions_[static_cast<std::size_t>(f)].contains(c)) return true;
  }
  return false;
}

bool frmEditMath::IsFunction(const QString& word) const {
  return std::any_of(functions_.begin(), functions_.begin() + kFirstOperatorRow,
                     [&](const QString& f) { return f.compare(word, Qt::CaseInsensitive) == 0; });
}

void frmEditMath::InsertFunction(const QString& word) {
  SelStart = std::clamp<qsizetype>(SelStart, 0, txtMath.size());
  if (!IsFunction(word)) {
    txtMath.insert(SelStart, word);
    SelStart += word.size();
    return;
  }
  txtMath.insert(SelStart, word + QStringLiteral("   ()"));
  SelStart += word.size() + 4;  // between the brackets
}

void frmEditMath::InsertChannel(const QString& name) {
  SelStart = std::clamp<qsizetype>(SelStart, 0, txtMath.size());
  const QChar before = SelStart > 0 ? txtMath.at(SelStart - 1).toUpper() : QChar(' ');
  const bool runs_in = IsLetter(before) || IsDigit(before) || before == '_' || before == '.' || before == ')';
  const QString inserted = runs_in ? QLatin1Char(' ') + name : name;
  txtMath.insert(SelStart, inserted);
  SelStart += inserted.size();
}

void frmEditMath::ShowRow(int row) {
  current_ = rows_.empty() ? 0 : std::clamp(row, 0, MathCount() - 1);
  txtMath = rows_.empty() ? QString() : Row(current_).Expression;
  SelStart = txtMath.size();
}

bool frmEditMath::MoveTo(Workspace& ws, int row) {
  if (row < 0 || row >= MathCount()) return false;
  if (!ValidateString(ws)) return false;
  ShowRow(row);
  return true;
}

bool frmEditMath::mnuNextChannel(Workspace& ws) { return MoveTo(ws, current_ + 1); }
bool frmEditMath::mnuPreviousChannel(Workspace& ws) { return MoveTo(ws, current_ - 1); }
bool frmEditMath::mnuSelectChannel(Workspace& ws, int row) { return MoveTo(ws, row); }

std::vector<MathDefRec> frmEditMath::Definitions() const {
  std::vector<MathDefRec> defs;
  for (const WorkRow& r : rows_) defs.push_back(r.def);
  return defs;
}

int frmEditMath::NextID() const { return NextMathID(Definitions()); }

bool frmEditMath::TableFull(Workspace& ws, const QString& title) const {
  if (MathCount() < kMathDefRows) return false;
  ws.messages.Show(QStringLiteral("No room for another math channel: the table holds 257"), title,
                   MessageIcon::Exclamation);
  return true;
}

int frmEditMath::FindRow(const QString& name) const {
  for (int r = 0; r < MathCount(); ++r) {
    if (SameName(Row(r).Name, name)) return r;
  }
  return -1;
}

bool frmEditMath::mnuDefineNew(Workspace& ws, const QString& name) {
  if (TableFull(ws, QStringLiteral("New Math")) || !ValidateString(ws)) return false;
  const QString checked = frmNewMath::CheckName(ws, name, Definitions());
  if (checked.isEmpty()) return false;
  MathDefRec def;
  def.Name = checked;
  def.ID = static_cast<int16_t>(NextID());
  rows_.push_back({def, false});
  changed_ = true;
  ShowRow(MathCount() - 1);
  return true;
}

bool frmEditMath::mnuRename(Workspace& ws, const QString& name) {
  if (rows_.empty()) return false;
  const QString checked = frmNewMath::CheckName(ws, name, Definitions(), current_);
  if (checked.isEmpty()) return false;
  rows_[static_cast<std::size_t>(current_)].def.Name = checked;
  changed_ = true;
  return true;
}

void frmEditMath::mnuDelete() {
  if (rows_.empty()) return;
  rows_.erase(rows_.begin() + current_);
  changed_ = true;
  ShowRow(current_);
}

bool frmEditMath::mnuExport(Workspace& ws, const std::vector<int>& selection, const QString& path) {
  QStringList lines{QStringLiteral("[Export Math Channels]")};
  for (const int r : selection) {
    if (r < 0 || r >= MathCount()) continue;
    lines << RightTrimmed(Row(r).Name) + QStringLiteral(" = ") + Row(r).Expression.trimmed();
  }
  return WriteExportLines(ws, path, lines, kExportTitle);
}

bool frmEditMath::mnuImport(Workspace& ws, const QString& path) {
  QStringList lines;
  if (!ReadExportLines(path, lines)) {
    ws.messages.Show(QStringLiteral("Unable to open file ") + path, kImportTitle, MessageIcon::Exclamation);
    return false;
  }
  if (lines.isEmpty() || !(lines[0].contains(QLatin1String("Export Math Channels")) ||
                           lines[0].contains(QLatin1String("Math Channel Definitions")))) {
    ws.messages.Show(QStringLiteral("Invalid math definitions file"), kImportTitle, MessageIcon::Exclamation);
    return false;
  }
  const bool was_empty = rows_.empty();
  const QString shown = was_empty ? QString() : Row(current_).Expression;
  bool full_told = false;
  for (qsizetype l = 1; l < lines.size(); ++l) {
    QString name, expression;
    if (lines[l].trimmed().isEmpty() || !SplitExportLine(lines[l], name, expression)) continue;
    // A name the table could not hold is left out, as it would be refused when typed.
    name = name.replace(QLatin1Char(' '), QLatin1Char('_')).left(kNameWidth);
    if (name.size() < 2 || HasIllegalNameCharacter(name)) continue;
    const int r = FindRow(name);
    if (r >= 0) {
      if (ws.messages.Ask(OverwriteQuestion(Row(r).Name, QStringLiteral("channel")), kImportTitle)) {
        rows_[static_cast<std::size_t>(r)].def.Expression = expression;
        changed_ = true;
      }
      continue;
    }
    if (MathCount() >= kMathDefRows) {
      if (!full_told) TableFull(ws, kImportTitle);
      full_told = true;
      continue;
    }
    MathDefRec def;
    def.Name = name;
    def.ID = static_cast<int16_t>(NextID());
    def.Expression = expression;
    rows_.push_back({def, false});
    changed_ = true;
  }
  // The text box follows its row only when the import replaced what it shows, so what the
  // person typed there is not lost otherwise.
  if (was_empty || (!rows_.empty() && Row(current_).Expression != shown)) ShowRow(current_);
  return true;
}

bool frmEditMath::Form_QueryUnload(Workspace& ws) {
  const bool typed = !rows_.empty() && txtMath != Row(current_).Expression;
  if (!changed_ && !typed) return true;
  if (!ws.messages.Ask(QStringLiteral("Save Math Changes ?"), QStringLiteral("Save Math"))) return true;
  if (typed && !ValidateString(ws)) return false;
  return SaveMathChanges(ws);
}

bool frmEditMath::SaveMathChanges(Workspace& ws) {
  const std::vector<MathDefRec> old_defs = ws.MathDefs;
  const int old_count = ws.MathCount;
  ws.MathDefs.assign(kMathDefRows, MathDefRec{});
  for (int i = 0; i < MathCount(); ++i) {
    MathDefRec& d = ws.MathDefs[static_cast<std::size_t>(i)];
    d = Row(i);
    d.Line = MathDefLine(d.Name, d.ID, d.Expression.trimmed());
  }
  ws.MathCount = MathCount();
  if (!SaveMathDefs(ws)) {
    ws.MathDefs = old_defs;
    ws.MathCount = old_count;
    ws.messages.Show(QStringLiteral("Unable to write ") + JoinPath(ws.Paths.MathDirectory, kMathDefFileName),
                     QStringLiteral("Save Math"), MessageIcon::Exclamation);
    return false;
  }
  ProcessMathDefs(ws);
  RecompileLoadedOutings(ws);
  changed_ = false;
  return true;
}
