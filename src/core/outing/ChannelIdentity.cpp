#include "core/outing/ChannelIdentity.h"

#include <array>

namespace {

struct SourceRange {
  int first;
  int last;
  const char* prefix;
  int base;  // the number shown is key - base; -1: the prefix alone
};

// Card 2 holds 15..17 and again 50..54, numbered on across the two ranges (1..3, then 4..8).
constexpr SourceRange kSources[] = {
    {0, 0, "Battery", -1},    {1, 1, "Lateral G", -1}, {2, 2, "Box Temp", -1},  {3, 6, "LCU.", 2},
    {7, 14, "Card 1.", 6},    {15, 17, "Card 2.", 14}, {18, 25, "JBX 1.", 17},  {26, 33, "JBX 2.", 25},
    {34, 41, "JBX 3.", 33},   {42, 49, "JBX 4.", 41},  {50, 54, "Card 2.", 46}, {55, 62, "Card 3.", 54},
    {63, 63, "Long G", -1},   {128, 191, "ECU.", 128}, {192, 207, "OBM", 192},  {208, 255, "Exp.", 208},
    {256, 287, "GPS", 256},   {288, 352, "PCU", 288},
};

constexpr std::array<const char*, 17> kStandardNames = {
    "Standard",     "Lateral G",  "Distance",     "Fuel Used", "Gyro",         "System Speed",
    "Lap Count",    "Lap Time",   "Split Time",   "Box Serial #", "RPM",       "MPG",
    "Lap Distance", "Throttle",   "GPS_Lat",      "GPS_Long",  "GPS_Alt"};

}  // namespace

QString ChannelSourceName(int key) {
  for (const SourceRange& r : kSources) {
    if (key < r.first || key > r.last) continue;
    const QString prefix = QString::fromLatin1(r.prefix);
    return r.base < 0 ? prefix : prefix + QString::number(key - r.base);
  }
  return QString();
}

QString StandardChannelName(int code) {
  if (code < 0 || code >= static_cast<int>(kStandardNames.size())) code = 0;
  return QString::fromLatin1(kStandardNames[static_cast<std::size_t>(code)]);
}
