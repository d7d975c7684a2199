#include "core/outing/HeaderProcessing.h"

#include <QLocale>
#include <QTimeZone>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/OutingFormat.h"

namespace {

struct StandardName {
  const char* name;
  int code;
  int16_t OutingRec::*field;
};

// In the order they are tested; the last match wins.
constexpr StandardName kStandardNames[] = {
    {"LATERAL G", 1, &OutingRec::ChanLatG},       {"ECU LAT G", 1, &OutingRec::ChanLatG},
    {"ACCEL LAT", 1, &OutingRec::ChanLatG},       {"DISTANCE", 2, &OutingRec::ChanDistance},
    {"FUEL USED", 3, &OutingRec::ChanFuel},       {"FUEL", 3, &OutingRec::ChanFuel},
    {"ALL-FUEL", 3, &OutingRec::ChanFuel},        {"GYRO", 4, &OutingRec::ChanGyro},
    {"SYSTEM SPEED", 5, &OutingRec::ChanSpeed},   {"LAP COUNT", 6, &OutingRec::ChanLapCount},
    {"LAP TIME", 7, &OutingRec::ChanLapTime},     {"SPLIT TIME", 8, &OutingRec::ChanSplitTime},
    {"BOX SERIAL #", 9, &OutingRec::ChanBoxSerial}, {"RPM", 10, &OutingRec::ChanRpm},
    {"MPG", 11, &OutingRec::ChanMpg},             {"LAP DISTANCE", 12, &OutingRec::ChanLapDistance},
    {"THROTTLE", 13, &OutingRec::ChanThrottle},   {"GPS_LAT", 14, &OutingRec::ChanGpsLat},
    {"GPS_LONG", 15, &OutingRec::ChanGpsLong},    {"GPS_ALT", 16, &OutingRec::ChanGpsAlt},
};

constexpr int64_t kTicksTo1970 = 116444736000000000LL;

// A logger stamp is a wall clock without a time zone: its ticks are taken as calendar time.
QDateTime StampTime(uint64_t ticks) {
  const int64_t ms = (static_cast<int64_t>(ticks) - kTicksTo1970) / 10000;
  const QDateTime utc = QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
  return QDateTime(utc.date(), utc.time());
}

bool UsesLoggerStamp(const QString& version) {
  const int major = version.isEmpty() ? -1 : version.at(0).digitValue();
  if (major < 6) return false;
  if (major > 6) return true;
  const QChar third = version.size() > 2 ? version.at(2) : QChar();
  const QChar fifth = version.size() > 4 ? version.at(4) : QChar();
  return !(third < QLatin1Char('1') || fifth < QLatin1Char('9'));  // trusted from 6.1.9 on
}

}  // namespace

OutingRec& OutingAt(Workspace& ws, int slot) {
  return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Outings[static_cast<std::size_t>(slot)];
}

QString OutingDateText(const QString& version, uint64_t start_file_time, const QDateTime& file_written,
                       bool long_form) {
  const QDateTime when = UsesLoggerStamp(version) ? StampTime(start_file_time) : file_written.toLocalTime();
  const QLocale locale = QLocale::system();
  return locale.toString(when.date(), long_form ? QLocale::LongFormat : QLocale::ShortFormat) +
         QStringLiteral("  ") + locale.toString(when.time(), QStringLiteral("hh:mm:ss AP"));
}

bool IsOldDataVersion(const QString& version, int64_t lcu_serial) {
  if (lcu_serial == kConvertedSerial) return false;
  if (version.contains(QLatin1String("5.0")) || version.contains(QLatin1String("5.1"))) return true;
  static const QStringList kOld = {"5.2.0", "5.2.1", "5.2.2", "5.2.3", "5.2.4", "5.2.5", "5.2.6"};
  QString cut = version;
  while (cut.endsWith(' ')) cut.chop(1);
  return kOld.contains(cut);
}

float ChannelRate(const Workspace& ws, int rate_code, int slot) {
  return RateFromCode(rate_code, ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]
                                     .Outings[static_cast<std::size_t>(slot)]
                                     .SystemFlags);
}

void SetDataVersionFlag(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  o.OldVersion = IsOldDataVersion(o.Version, o.LcuSerial) ? -1 : 0;
}

void BuildChannelLayout(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const OutingHeader& h = ws.OutingHdr;
  int64_t position = kDataSectionStart + 1;  // 1-based, the first byte after the header
  for (int i = 0; i < o.LoggedCount; ++i) {
    const ChannelTableEntry& e = h.ChannelTable[static_cast<std::size_t>(i)];
    ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
    c.Key = e.Key;
    c.WordSize = e.WordSize;
    c.Rate = ChannelRate(ws, e.RateCode, slot);
    const int64_t length = ChannelBlockLength(h, i);
    c.BlockLength = SaturateInt32(length);
    c.BlockOffset = SaturateInt32(position);
    position += length;
  }
  o.DataEnd = SaturateInt32(position);
}

void FindStandardChannels(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  o.ChanLatG = o.ChanDistance = o.ChanGyro = o.ChanGpsLat = o.ChanGpsLong = o.ChanGpsAlt = -1;
  o.ChanFuel = o.ChanSpeed = o.ChanLapCount = o.ChanLapTime = o.ChanSplitTime = o.ChanBoxSerial = o.ChanRpm =
      o.ChanMpg = o.ChanLapDistance = o.ChanThrottle = 0;
  for (int i = 0; i < o.LoggedCount; ++i) {
    ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
    c.Name = c.Name.toUpper();
    QString name = c.Name;
    while (name.endsWith(' ')) name.chop(1);
    c.StandardCode = 0;
    for (const StandardName& s : kStandardNames) {
      if (name != QLatin1String(s.name)) continue;
      c.StandardCode = static_cast<uint16_t>(s.code);
      o.*(s.field) = static_cast<int16_t>(i);
      break;
    }
  }
}

void DerivedChannelSetup(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const std::size_t n = static_cast<std::size_t>(o.LoggedCount);
  o.Channels[n].Key = kDerivedTimeKey;
  o.Channels[n].Rate = 0.01f;
  o.Channels[n + 1].Key = kDerivedLapDistanceKey;
  o.Channels[n + 1].Rate = 0.1f;
  o.Channels[n + 2].Key = kDerivedLongAccelKey;
  o.Channels[n + 2].Rate = o.ChanSpeed > 0 ? o.Channels[static_cast<std::size_t>(o.ChanSpeed)].Rate : 0.0f;
}

namespace {

// The calibration of key k from the header; an expansion key stands for the key in its slot.
void CalibrationOfKey(const OutingHeader& h, int k, ChannelRec& c) {
  if (k >= 0 && k <= 63) {
    const InputCalibration& cal = h.InputCalibrations[static_cast<std::size_t>(k)];
    c.CalType = static_cast<int16_t>(cal.CalType);
    c.CalOffset = cal.CalOffset;
    c.CalPoints = cal.CalPoints;
    for (std::size_t p = 0; p < 13; ++p) {
      c.CalX[p] = cal.CalX[p];
      c.CalY[p] = cal.CalY[p];
    }
    c.CalCoefA = cal.CalCoefA;
    c.CalCoefB = cal.CalCoefB;
    c.CalCoefC = cal.CalCoefC;
  } else if (k >= 128 && k <= 191) {
    const EcuCalibration& cal = h.EcuCalibrations[static_cast<std::size_t>(k - 128)];
    c.CalCoefB = cal.Gain;
    c.CalCoefC = cal.Offset;
    c.Security = cal.SecurityFlag > 0 ? -1 : 0;
  } else if (k >= 224 && k <= 255) {
    const LinearCalibration& cal = h.LinearCalibrations[static_cast<std::size_t>(k - 224)];
    c.CalCoefB = cal.Gain;
    c.CalCoefC = cal.Offset;
    c.Security = 0;
  }
}

}  // namespace

void LoadChannelCalibrations(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  for (int i = 0; i < o.LoggedCount; ++i) {
    ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
    int k = c.Key;
    if (k >= 112 && k <= 127) {
      k = ws.OutingHdr.ExpansionMap[static_cast<std::size_t>(k - 112)].Key;
      if (k >= 112 && k <= 127) continue;  // a slot naming another slot names nothing
    }
    CalibrationOfKey(ws.OutingHdr, k, c);
  }
}

void CopyLogbook(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  const OutingHeader& h = ws.OutingHdr;
  o.EngineName = h.EngineName.text;
  o.EngineNumber = h.EngineNumber;
  o.EngineSeconds = h.EngineSeconds;
  o.EngineDistance = h.EngineDistance;
  o.FullLoadSeconds = h.FullLoadSeconds;
  o.TotalRevs = h.TotalRevs;
  o.MaxRpm = h.MaxRpm;
  o.OutingDistance = h.OutingDistance;
  o.LogbookLimits = h.LogbookLimits;
  o.LogbookBands = h.LogbookBands;
}
