#include "core/workspace/TreeNode.h"

#include <QStringList>

namespace {

QString Three(int v) { return QStringLiteral("%1").arg(v, 3, 10, QLatin1Char('0')); }

}  // namespace

ChannelClass ChannelClassOf(int key) {
  struct Range {
    int last;
    ChannelClass cls;
  };
  static constexpr Range kRanges[] = {
      {63, ChannelClass::Analog}, {111, ChannelClass::Digital}, {127, ChannelClass::Telltale},
      {191, ChannelClass::Ecu},   {255, ChannelClass::Obm},     {287, ChannelClass::Gps},
      {351, ChannelClass::Pcu},
  };
  if (key < 0) return ChannelClass::Math;
  for (const Range& r : kRanges) {
    if (key <= r.last) return r.cls;
  }
  return ChannelClass::Math;
}

QString OutingTag(int outing) { return Three(outing); }
QString LapTag(int outing, int lap) { return OutingTag(outing) + QLatin1Char(':') + Three(lap); }
QString ChannelTag(int outing, int lap, int channel) { return LapTag(outing, lap) + QLatin1Char(':') + Three(channel); }

TreeTagParts ParseTreeTag(const QString& tag) {
  const QStringList parts = tag.split(QLatin1Char(':'));
  if (parts.size() > 3) return {};
  int values[3] = {-1, -1, -1};
  for (int i = 0; i < static_cast<int>(parts.size()); ++i) {
    const QString& p = parts[i];
    bool ok = false;
    const int v = p.toInt(&ok);
    if (p.size() != 3 || !ok || v < 0) return {};
    values[i] = v;
  }
  return {values[0], values[1], values[2]};
}
