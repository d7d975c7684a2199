#include "core/app/Files.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

bool FileExists(const QString& path) {
  if (path.isEmpty()) return false;
  QFileInfo info(path);
  if (!info.isFile()) return false;
  QFile f(path);
  return f.open(QIODevice::ReadOnly);
}

QString BaseName(const QString& path) {
  const qsizetype cut = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/')));
  return path.mid(cut + 1);
}

QString JoinPath(const QString& dir, const QString& name) {
  if (dir.isEmpty()) return name;
  if (dir.endsWith(QLatin1Char('/')) || dir.endsWith(QLatin1Char('\\'))) return dir + name;
  return dir + QLatin1Char('/') + name;
}

bool WriteFileAtomically(const QString& path, const QByteArray& bytes, QString* error) {
  QSaveFile f(path);
  if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size() || !f.commit()) {
    if (error) *error = QStringLiteral("Unable to write %1: %2").arg(path, f.errorString());
    return false;
  }
  return true;
}

bool ReadFileBytes(const QString& path, qint64 offset, qint64 max_bytes, QByteArray& out,
                   QString* error) {
  out.clear();
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly)) {
    if (error) *error = QStringLiteral("Unable to open %1: %2").arg(path, f.errorString());
    return false;
  }
  const qint64 size = f.size();
  if (offset >= size || max_bytes <= 0) return true;
  if (!f.seek(offset)) return true;
  out = f.read(std::min(max_bytes, size - offset));
  return true;
}
