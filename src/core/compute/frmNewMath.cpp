#include "core/compute/frmNewMath.h"

#include <algorithm>
#include <set>

#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

constexpr int kLargestThreeDigitID = 999;

}  // namespace

const QString frmNewMath::kCaption = QStringLiteral("New Function");

bool HasIllegalNameCharacter(const QString& name) {
  static const QString kIllegal = QStringLiteral(",:;'[]=");
  return std::any_of(name.begin(), name.end(), [](QChar c) { return kIllegal.contains(c); });
}

bool CheckNameCharacters(Workspace& ws, const QString& name) {
  if (!HasIllegalNameCharacter(name)) return true;
  ws.messages.Show(QStringLiteral("Illegal character in channel name"), QStringLiteral("Check String"),
                   MessageIcon::Exclamation);
  return false;
}

bool SameName(const QString& a, const QString& b) { return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0; }

QString frmNewMath::lblID() const { return QStringLiteral("ID : 000-") + QString::number(next_id_); }

QString frmNewMath::CheckName(Workspace& ws, const QString& typed, const std::vector<MathDefRec>& rows, int skip_row) {
  if (!CheckNameCharacters(ws, typed)) return {};
  QString name = typed.trimmed();
  if (name.size() < 2) {
    ws.messages.Show(QStringLiteral("Math channel names must be at least 2 characters"), QStringLiteral("New Math"),
                     MessageIcon::Exclamation);
    return {};
  }
  name.replace(QLatin1Char(' '), QLatin1Char('_'));
  name.truncate(kNameWidth);
  for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
    if (r == skip_row || !SameName(rows[static_cast<std::size_t>(r)].Name, name)) continue;
    ws.messages.Show(QStringLiteral("Math channel name already in use !"), QStringLiteral("Math Name"),
                     MessageIcon::Exclamation);
    return {};
  }
  return name;
}

int NextMathID(const std::vector<MathDefRec>& rows) {
  std::set<int> used;
  for (const MathDefRec& r : rows) used.insert(r.ID);
  const int above = used.empty() ? 1 : std::max(1, *used.rbegin() + 1);
  if (above <= kLargestThreeDigitID) return above;
  int id = 1;
  while (used.count(id) != 0) ++id;
  return id;
}

bool ReadExportLines(const QString& path, QStringList& lines) {
  lines.clear();
  QByteArray bytes;
  if (!FileExists(path) || !ReadFileBytes(path, 0, kMaxExportBytes, bytes)) return false;
  lines = QString::fromLatin1(bytes).split(QLatin1Char('\n'));
  for (QString& l : lines) {
    if (l.endsWith(QLatin1Char('\r'))) l.chop(1);
  }
  if (!lines.isEmpty() && lines.back().isEmpty()) lines.removeLast();
  return true;
}

bool WriteExportLines(Workspace& ws, const QString& path, const QStringList& lines, const QString& title) {
  QByteArray bytes;
  for (const QString& l : lines) bytes += l.toLatin1() + "\r\n";
  QString error;
  if (WriteFileAtomically(path, bytes, &error)) return true;
  ws.messages.Show(error, title, MessageIcon::Exclamation);
  return false;
}

bool SplitExportLine(const QString& line, QString& name, QString& value) {
  const qsizetype eq = line.indexOf(QLatin1Char('='));
  if (eq < 0) return false;
  name = line.left(eq).trimmed();
  value = line.mid(eq + 1).trimmed();
  return !name.isEmpty();
}

QString OverwriteQuestion(const QString& name, const QString& what) {
  return QStringLiteral("Channel  \"") + name.trimmed() + QStringLiteral("\"  exists. Overwrite existing ") + what +
         QStringLiteral(" ?");
}
