#include "core/demo/Centreline.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>
#include <cmath>
#include <utility>

#include "core/app/Files.h"

namespace {

constexpr int kMinPoints = 10;

}  // namespace

bool ReadCentreline(const QString& path, Centreline& out, QString* error) {
  out = Centreline{};
  Centreline read;  // handed out only when the whole file has read
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
    if (error) *error = QStringLiteral("Unable to open %1: %2").arg(path, f.errorString());
    return false;
  }
  QTextStream in(&f);
  int line_number = 0;
  while (!in.atEnd()) {
    const QString line = in.readLine().trimmed();
    ++line_number;
    if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) continue;
    const QStringList fields = line.split(QLatin1Char(','));
    if (fields.size() < 2) {
      if (error)
        *error = QStringLiteral("%1 line %2: expected x and y, found '%3'").arg(path).arg(line_number).arg(line);
      return false;
    }
    double xy[2] = {0, 0};
    for (int c = 0; c < 2; ++c) {
      bool ok = false;
      const QString field = fields[c].trimmed();
      xy[c] = field.toDouble(&ok);
      if (!ok || !std::isfinite(xy[c])) {
        if (error) *error = QStringLiteral("%1 line %2: '%3' is not a number").arg(path).arg(line_number).arg(field);
        return false;
      }
    }
    read.X.push_back(xy[0]);
    read.Y.push_back(xy[1]);
  }
  const int n = static_cast<int>(read.X.size());
  if (n < kMinPoints) {
    if (error)
      *error = QStringLiteral("%1 has %2 points; a circuit needs at least %3").arg(path).arg(n).arg(kMinPoints);
    return false;
  }
  double length = 0;
  for (int i = 0; i < n; ++i) {
    const int j = (i + 1) % n;
    length += std::hypot(read.X[j] - read.X[i], read.Y[j] - read.Y[i]);
  }
  if (!(length > 0)) {
    if (error) *error = QStringLiteral("%1: the line has zero length").arg(path);
    return false;
  }
  read.Length = length;
  read.Name = QFileInfo(path).completeBaseName();
  out = std::move(read);
  return true;
}

bool ReadDrivenLine(const QString& tracks_dir, const QString& name, Centreline& out, QString* error) {
  const QString raceline = JoinPath(JoinPath(tracks_dir, QStringLiteral("racelines")), name + QStringLiteral(".csv"));
  if (FileExists(raceline)) return ReadCentreline(raceline, out, error);
  return ReadCentreline(JoinPath(tracks_dir, name + QStringLiteral(".csv")), out, error);
}
