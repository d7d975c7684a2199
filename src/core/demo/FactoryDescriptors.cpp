#include "core/demo/FactoryDescriptors.h"

#include <QStringList>
#include <iterator>

namespace {

// Channel groups of the factory file; "Serial" is what older installations call telltales.
const QStringList kGroupNames = {"Analog", "Digital", "Serial", "ECU", "OBM", "GPS", "PCU", "Math", "Derived", "User"};
enum Group : uint16_t { kAnalog, kDigital, kTelltale, kEcu, kObm, kGps, kPcu, kMath, kDerived, kUser };

struct Named {
  int key;
  const char* name;
  const char* units;
  float min;
  float max;
  uint16_t decimals;
  uint16_t group;
};

// Channels with a fixed meaning, and the analogue inputs that installations usually wire.
// Analogue records (keys 0..63) are found by name, so their position only seeds the search.
constexpr Named kNamed[] = {
    {0, "BATTERY", "V", 10, 16, 2, kAnalog},
    {1, "LATERAL G", "g", -3, 3, 2, kAnalog},
    {2, "BOX TEMP", "C", 0, 80, 1, kAnalog},
    {3, "THROTTLE", "%", 0, 100, 1, kAnalog},
    {4, "BRAKE PRESSURE", "bar", 0, 120, 1, kAnalog},
    {5, "STEERING", "deg", -180, 180, 1, kAnalog},
    {6, "FUEL LEVEL", "l", 0, 100, 1, kAnalog},
    {7, "DAMPER FL", "mm", 0, 75, 1, kAnalog},
    {8, "DAMPER FR", "mm", 0, 75, 1, kAnalog},
    {9, "DAMPER RL", "mm", 0, 75, 1, kAnalog},
    {10, "DAMPER RR", "mm", 0, 75, 1, kAnalog},
    {11, "WATER TEMP", "C", 40, 120, 1, kAnalog},
    {12, "GYRO", "deg/s", -90, 90, 1, kAnalog},
    {13, "CLUTCH PRESSURE", "bar", 0, 40, 1, kAnalog},
    {14, "RIDE HEIGHT F", "mm", 0, 100, 1, kAnalog},
    {15, "RIDE HEIGHT R", "mm", 0, 100, 1, kAnalog},
    {63, "LONG G", "g", -4, 2, 2, kAnalog},
    {64, "WHEEL SPEED FL", "km/h", 0, 320, 1, kDigital},
    {65, "WHEEL SPEED FR", "km/h", 0, 320, 1, kDigital},
    {66, "WHEEL SPEED RL", "km/h", 0, 320, 1, kDigital},
    {67, "WHEEL SPEED RR", "km/h", 0, 320, 1, kDigital},
    {68, "SYSTEM SPEED", "km/h", 0, 320, 1, kDigital},
    {69, "DRIVESHAFT SPEED", "rpm", 0, 3000, 0, kDigital},
    {70, "DISTANCE", "m", 0, 10000, 0, kDigital},
    {71, "LAP COUNT", "", 0, 50, 0, kDigital},
    {72, "LAP TIME", "ms", 0, 200000, 0, kDigital},
    {73, "OIL TEMP", "C", 40, 150, 1, kDigital},
    {74, "GEARBOX TEMP", "C", 40, 150, 1, kDigital},
    {75, "AIR TEMP", "C", 0, 50, 1, kDigital},
    {76, "EXHAUST TEMP", "C", 200, 1000, 0, kDigital},
    {77, "BRAKE TEMP F", "C", 0, 900, 0, kDigital},
    {78, "BRAKE TEMP R", "C", 0, 900, 0, kDigital},
    {79, "SPLIT TIME", "ms", 0, 100000, 0, kDigital},
    {80, "SUPPLY VOLTS", "V", 10, 16, 2, kDigital},
    {81, "OIL PRESSURE", "bar", 0, 8, 2, kDigital},
    {82, "FUEL PRESSURE", "bar", 0, 8, 1, kDigital},
    {83, "RPM", "rpm", 0, 10000, 0, kDigital},
    {84, "TURBO SPEED", "krpm", 0, 200, 0, kDigital},
    {94, "GEAR", "", 0, 7, 0, kDigital},
    {95, "BOX SERIAL #", "", 0, 9999, 0, kTelltale},
    {112, "DIFF TEMP", "C", 40, 150, 1, kDigital},
    {128, "ECU RPM", "rpm", 0, 10000, 0, kEcu},
    {129, "ECU THROTTLE", "%", 0, 100, 1, kEcu},
    {130, "ECU WATER TEMP", "C", 40, 120, 1, kEcu},
    {131, "ECU OIL TEMP", "C", 40, 150, 1, kEcu},
    {132, "ECU LAMBDA", "", 0.7f, 1.3f, 3, kEcu},
    {133, "FUEL USED", "l", 0, 60, 2, kEcu},
    {134, "ECU MAP", "mbar", 0, 2500, 0, kEcu},
    {135, "IGNITION", "deg", -10, 50, 1, kEcu},
    {136, "INJECTION TIME", "ms", 0, 20, 2, kEcu},
    {137, "ECU GEAR", "", 0, 7, 0, kEcu},
    {158, "ECU ODOMETER", "m", 0, 1e6f, 0, kEcu},
    {224, "STRAIN GAUGE", "N", -5000, 5000, 0, kTelltale},
    {225, "PITOT PRESSURE", "mbar", 0, 50, 1, kTelltale},
    {226, "BRAKE BIAS SENSOR", "%", 40, 70, 1, kTelltale},
    {256, "GPS_LAT", "deg", -90, 90, 6, kGps},
    {257, "GPS_LONG", "deg", -180, 180, 6, kGps},
    {258, "GPS_ALT", "m", 0, 1000, 1, kGps},
    {259, "GPS_SPEED", "km/h", 0, 320, 1, kGps},
    {260, "GPS_HEADING", "deg", 0, 360, 1, kGps},
    {261, "GPS_SATS", "", 0, 20, 0, kGps},
    {1024, "TIME", "s", 0, 200, 2, kDerived},
    {1025, "LAP DISTANCE", "m", 0, 7000, 0, kDerived},
    {1026, "LONG ACCEL", "g", -4, 2, 2, kDerived},
};

// The name of a key that the table does not list: its source and number.
QString GenericName(int key) {
  if (key < 64) return QStringLiteral("ANALOG %1").arg(key);
  if (key < 112) return QStringLiteral("LOGGER %1").arg(key);
  if (key < 128) return QStringLiteral("EXPANSION %1").arg(key - 111);
  if (key < 192) return QStringLiteral("ECU %1").arg(key - 128);
  if (key < 208) return QStringLiteral("OBM %1").arg(key - 192);
  if (key < 224) return QStringLiteral("EXP %1").arg(key - 208);
  if (key < 256) return QStringLiteral("LINEAR %1").arg(key - 223);
  if (key < 288) return QStringLiteral("GPS %1").arg(key - 256);
  if (key < 353) return QStringLiteral("PCU %1").arg(key - 288);
  return QStringLiteral("SPARE %1").arg(key);
}

uint16_t GenericGroup(int key) {
  if (key < 64) return kAnalog;
  if (key < 128) return kDigital;
  if (key < 192) return kEcu;
  if (key < 208) return kObm;
  if (key < 256) return kTelltale;
  if (key < 288) return kGps;
  if (key < 353) return kPcu;
  return kUser;
}

// Palette entries that stand out on a white and on a black background alike, the strongest
// first; the factory gives them out by key. Black and the light greys are left to the engineer.
constexpr uint16_t kTraceColours[] = {1, 3, 2, 5, 0, 8, 11, 13, 6, 12, 4, 14, 18, 9, 10, 17, 19, 15};

}  // namespace

ChannelDescriptorFile FactoryChannelDescriptors() {
  ChannelDescriptorFile file;
  file.Head.DscTitle = QStringLiteral("Channel Setup");
  file.Head.DscVersion = QStringLiteral("8.0");
  for (int g = 0; g < kChannelGroupCount; ++g) file.Head.GroupNames[static_cast<std::size_t>(g)] = kGroupNames[g];
  EncodeRecordBytes(file.Head, file.Head.Raw.data());

  file.Records.reserve(kKeyedDescriptorCount);
  for (int key = 0; key < kKeyedDescriptorCount; ++key) {
    ChannelDescriptor d = NewChannelDescriptor(GenericName(key), key);
    d.Group = d.SourceGroup = GenericGroup(key);
    d.Color = kTraceColours[static_cast<std::size_t>(key) % std::size(kTraceColours)];
    file.Records.push_back(d);
  }
  for (const Named& n : kNamed) {
    ChannelDescriptor& d = file.Records[static_cast<std::size_t>(n.key)];
    d.Name = QString::fromLatin1(n.name);
    d.Units = QString::fromLatin1(n.units);
    d.ScreenMin = n.min;
    d.ScreenMax = n.max;
    d.Decimals = n.decimals;
    d.Group = d.SourceGroup = n.group;
  }
  return file;
}
