#include "core/compute/MathDefinitions.h"

#include <QFile>
#include <QTextStream>

#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

constexpr const char* kMathFunctionNames[kMathFunctionCount] = {
    "ABS", "ACos", "ASin", "ATan", "Avg", "Ceil", "Cos", "Delta", "Deriv", "Exp",
    "Floor", "Gate_Avg", "Integ", "Ln", "Log", "Max", "Min", "Not", "Sin", "Sqrt",
    "Tan", "Start", "End", "+", "-", "*", "/", "^", ">=", ">", "<=", "<",
    "&", "|", "#", "%", "=", "!="};
constexpr int kFirstOperatorRow = 23;

QString RightTrimmed(const QString& s) {
  qsizetype n = s.size();
  while (n > 0 && s.at(n - 1).isSpace()) --n;
  return s.left(n);
}

QString LeftTrimmed(const QString& s) {
  qsizetype i = 0;
  while (i < s.size() && s.at(i).isSpace()) ++i;
  return s.mid(i);
}

// Reads up to `max_lines` lines; false when the file exists but cannot be read.
bool ReadLines(const QString& path, int max_lines, QStringList& lines, bool& exists) {
  lines.clear();
  exists = QFile::exists(path);
  if (!exists) return true;
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  QTextStream in(&f);
  in.setEncoding(QStringConverter::Latin1);
  while (lines.size() < max_lines && !in.atEnd()) lines << in.readLine();
  return true;
}

bool WriteLines(const QString& path, const QStringList& lines) {
  QByteArray bytes;
  for (const QString& l : lines) bytes += l.toLatin1() + "\r\n";
  return WriteFileAtomically(path, bytes);
}

}  // namespace

bool LoadMathChannels(Workspace& ws) {
  ws.MathDefs.assign(kMathDefRows, MathDefRec{});
  ws.MathCount = 0;
  QStringList lines;
  bool exists = false;
  const bool ok = ReadLines(JoinPath(ws.Paths.MathDirectory, kMathDefFileName), kMathDefRows, lines, exists);
  if (!ok) {
    ws.messages.Show(QStringLiteral("Unable to read %1").arg(kMathDefFileName), QStringLiteral("Load math channels"),
                     MessageIcon::Exclamation);
  }
  for (const QString& line : lines) {
    if (line.contains(QLatin1String("ZOL Math Channels")) || line.trimmed().isEmpty()) continue;
    ws.MathDefs[static_cast<std::size_t>(ws.MathCount++)].Line = RightTrimmed(line);
  }
  InitMathFunctions(ws);
  return ok;
}

bool SaveMathDefs(Workspace& ws) {
  QStringList lines{QString::fromLatin1(kMathDefFirstLine)};
  for (int i = 0; i < ws.MathCount; ++i) lines << ws.MathDefs[static_cast<std::size_t>(i)].Line;
  return WriteLines(JoinPath(ws.Paths.MathDirectory, kMathDefFileName), lines);
}

void ProcessMathDefs(Workspace& ws) {
  for (int i = 0; i < ws.MathCount; ++i) {
    MathDefRec& d = ws.MathDefs[static_cast<std::size_t>(i)];
    const qsizetype open = d.Line.indexOf('[');
    d.Name = open > 0 ? d.Line.left(open) : QStringLiteral("Undefined");
    const qsizetype close = d.Line.indexOf(']', open + 1);
    bool ok = false;
    const int id = open >= 0 && close > open ? d.Line.mid(open + 1, close - open - 1).trimmed().toInt(&ok) : 0;
    d.ID = static_cast<int16_t>(ok ? id : i);
    const qsizetype eq = d.Line.indexOf('=');
    d.Expression = eq >= 0 ? LeftTrimmed(d.Line.mid(eq + 1)) : QString();
    // A function at the head of a formula stands between blanks like anywhere else.
    for (int f = 0; f < kFirstOperatorRow; ++f) {
      const QString name = QString::fromLatin1(kMathFunctionNames[f]);
      if (!d.Expression.startsWith(name, Qt::CaseInsensitive)) continue;
      const QChar next = d.Expression.size() > name.size() ? d.Expression.at(name.size()).toUpper() : QChar();
      if (!((next >= 'A' && next <= 'Z') || next == '_')) {
        d.Expression.prepend(' ');
        break;
      }
    }
    // A minus at the head, as the editor writes it ("- 5"), is an operator too: the evaluator
    // makes it a negation. Without its blank it would be read as a number "-" and a stray word.
    if (d.Expression.startsWith(QLatin1String("- "))) d.Expression.prepend(' ');
  }
}

void InitMathFunctions(Workspace& ws) {
  for (int i = 0; i < kMathFunctionCount; ++i) ws.MathFunctions[static_cast<std::size_t>(i)] = QString::fromLatin1(kMathFunctionNames[i]);
}

bool LoadGlobalConstants(Workspace& ws) {
  ws.GlobalConstants.clear();
  ws.GlobalConstantCount = 0;
  QStringList lines;
  bool exists = false;
  if (!ReadLines(JoinPath(ws.Paths.MathDirectory, kConstantFileName), kMaxConstantLines, lines, exists)) {
    ws.messages.Show(QStringLiteral("Error loading constant definitions"), QStringLiteral("Load Constants"),
                     MessageIcon::Exclamation);
    return false;
  }
  for (const QString& line : lines) {
    if (line.contains(QLatin1String("ZOL Global Constants"))) continue;
    const qsizetype eq = line.indexOf('=');
    if (eq <= 0) continue;  // no "=", or "=" in the first place
    ws.GlobalConstants.push_back({line.left(eq).left(32), LeftTrimmed(line.mid(eq + 1))});
  }
  ws.GlobalConstantCount = static_cast<int>(ws.GlobalConstants.size());
  return true;
}

bool SaveGlobalConstants(Workspace& ws) {
  QStringList lines{QString::fromLatin1(kConstantFirstLine)};
  for (const ConstantRec& c : ws.GlobalConstants) lines << RightTrimmed(c.Name) + QStringLiteral(" = ") + c.Value;
  return WriteLines(JoinPath(ws.Paths.MathDirectory, kConstantFileName), lines);
}

QString MathDefLine(const QString& name, int id, const QString& expression) {
  return RightTrimmed(name) + QStringLiteral("[%1] = ").arg(id, 3, 10, QLatin1Char('0')) + expression;
}
