#include "core/compute/OutingConstants.h"

#include <QFile>
#include <vector>

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/outing/ConstantsBlock.h"
#include "core/outing/HeaderProcessing.h"

namespace {

constexpr int kConstantNameWidth = 32;

// Names are fixed fields of 32 characters: compared over that width, trimmed and upper-cased.
QString NameKey(const QString& name) { return name.left(kConstantNameWidth).trimmed().toUpper(); }

bool IsDigit(QChar c) { return c >= '0' && c <= '9'; }

}  // namespace

void LoadOutingConstants(Workspace& ws, int slot, const QString& path) {
  OutingRec& o = OutingAt(ws, slot);
  o.OutingConstants = ws.GlobalConstants;
  o.OutingConstantCount = 0;
  std::vector<ConstantEntry> entries;
  const QString file = path.isEmpty() ? o.FileName : path;
  if (o.DataEnd < 1 || !ReadConstantsBlock(file, int64_t{o.DataEnd} - 1, entries)) return;
  o.OutingConstantCount = static_cast<int16_t>(entries.size());
  for (const ConstantEntry& e : entries) {
    const QString key = NameKey(e.Name.text);
    for (ConstantRec& row : o.OutingConstants) {
      if (NameKey(row.Name) == key) row.Value = ConstantValueText(e.Value);
    }
  }
}

bool SaveOutingConstants(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const QString title = QStringLiteral("Save Constants");
  QFile f(o.FileName);
  if (o.DataEnd < 1 || !f.open(QIODevice::ReadOnly)) {
    ws.messages.Show(QStringLiteral("Unable to open file ") + o.FileName, title, MessageIcon::Exclamation);
    return false;
  }
  QByteArray bytes = f.readAll();
  f.close();
  // The block goes in place at the end of the data; every other byte of the file stays, also
  // the tail of a longer block and whatever follows it. A file cut short is filled up to there.
  const qsizetype at = o.DataEnd - 1;
  if (bytes.size() < at) bytes.append(at - bytes.size(), '\0');
  std::vector<ConstantEntry> entries;
  for (const ConstantRec& row : o.OutingConstants) {
    entries.push_back({row.Name.left(kConstantNameWidth), static_cast<float>(LeadingNumber(row.Value))});
  }
  QByteArray block = ConstantsBlockBytes(entries);
  std::vector<ConstantEntry> old_entries;
  if (ReadConstantsBlock(o.FileName, at, old_entries)) {
    block.replace(kConstantsCarriedOffset, kConstantsCarriedSize, bytes.mid(at + kConstantsCarriedOffset, kConstantsCarriedSize));
  }
  if (bytes.size() < at + block.size()) bytes.resize(at + block.size());
  bytes.replace(at, block.size(), block);
  QString error;
  if (!WriteFileAtomically(o.FileName, bytes, &error)) {
    ws.messages.Show(error, title, MessageIcon::Exclamation);
    return false;
  }
  return true;
}

bool IsConstantLink(const QString& value) { return value.indexOf('!') >= 1; }

QString ResolveConstantLink(const QString& value) {
  // A live link asks a spreadsheet through a link service for its current value. This platform
  // has no such service, so every link is unreachable and reads as 0.
  if (IsConstantLink(value)) return QStringLiteral("0");
  return value;
}

double LeadingNumber(const QString& text) {
  qsizetype i = 0;
  const qsizetype n = text.size();
  while (i < n && (text.at(i) == ' ' || text.at(i) == '\t')) ++i;
  const qsizetype start = i;
  if (i < n && (text.at(i) == '+' || text.at(i) == '-')) ++i;
  qsizetype digits = 0;
  while (i < n && IsDigit(text.at(i))) ++i, ++digits;
  if (i < n && text.at(i) == '.') {
    ++i;
    while (i < n && IsDigit(text.at(i))) ++i, ++digits;
  }
  if (digits == 0) return 0;
  qsizetype end = i;
  if (i < n && (text.at(i) == 'e' || text.at(i) == 'E')) {
    qsizetype j = i + 1;
    if (j < n && (text.at(j) == '+' || text.at(j) == '-')) ++j;
    if (j < n && IsDigit(text.at(j))) {
      while (j < n && IsDigit(text.at(j))) ++j;
      end = j;
    }
  }
  bool ok = false;
  const double v = text.mid(start, end - start).toDouble(&ok);
  return ok ? v : 0;
}

QString ConstantValueText(float value) { return QString::number(static_cast<double>(value), 'g', 7); }
