#include "core/track/Laps.h"

#include <QFile>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OutingFormat.h"

namespace {

constexpr int kEndMarginMs = 500;  // the closing row keeps a margin for channels of low rate

// Reads sample `n` and the one after it of a logged channel straight from the file.
bool ReadTwoSamples(QFile& f, const ChannelRec& c, int64_t lcu_serial, int64_t n, double& s0, double& s1) {
  const SampleType type = SampleTypeFor(c.WordSize, c.Key, static_cast<uint16_t>(lcu_serial));
  if (type == SampleType::None || n < 0) return false;
  uint8_t b[16] = {};
  if (!f.seek(int64_t{c.BlockOffset} - 1 + n * c.WordSize)) return false;
  f.read(reinterpret_cast<char*>(b), 2 * c.WordSize);  // past the end of the file reads as zeros
  s0 = SampleAt(type, b);
  s1 = SampleAt(type, b + c.WordSize);
  return true;
}

}  // namespace

void BuildLaps(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  OutingHeader& h = ws.OutingHdr;
  int64_t shift = 0;
  if (h.Cyclic > 0) {
    const CyclicTimes t = CyclicTimeBase(h);
    shift = t.Shift;
    h.EndTime = SaturateInt32(t.TrueEndTime);
  }
  const int64_t end = h.EndTime;
  const int beacons = std::min<int>(h.BeaconCount, 255);
  o.Laps.assign(static_cast<std::size_t>(beacons) + 2, LapRec{});
  if (!ws.Options.ProcessBeacon) {
    o.FirstLap = 1;
    o.LastLap = 1;
  } else {
    int n = 0;
    for (int i = 0; i < beacons; ++i) {
      const int64_t t = h.BeaconTimes[static_cast<std::size_t>(i)] - shift;
      if (t <= end) ++n;
      // A beacon past the end opens no lap: it overwrites the start of the last one counted.
      o.Laps[static_cast<std::size_t>(n)].StartTime = t < 1 ? 0 : SaturateInt32(t);
    }
    o.LastLap = static_cast<int16_t>(n);
    if (o.Laps[static_cast<std::size_t>(n)].StartTime + int64_t{kEndMarginMs} < end) ++o.LastLap;
  }
  // The closing row always lies 500 ms before the end of the data, and replaces a last beacon
  // closer to the end than that. Without any lap there is no closing row to set.
  if (o.LastLap > 0) o.Laps[static_cast<std::size_t>(o.LastLap)].StartTime = SaturateInt32(end - kEndMarginMs);
  o.Laps.resize(static_cast<std::size_t>(o.LastLap) + 1);
  FindFastLap(ws, slot);
}

void FindFastLap(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  o.FastLap = 0;
  const int64_t minimum = int64_t{ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].MinimumLaptime} * 1000;
  int64_t best = 360000000;
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    const int64_t d = LapTimeMs(o, i);
    if (d < best && d > minimum) {
      best = d;
      o.FastLap = static_cast<int16_t>(i);
    }
  }
}

bool DistanceCountAt(const OutingRec& o, QFile& f, double ms, float& count) {
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(o.ChanDistance)];
  const double p = static_cast<double>(c.Rate) * ms;
  const int64_t ip = Floor(p);
  double c0 = 0, c1 = 0;
  if (!ReadTwoSamples(f, c, o.LcuSerial, ip, c0, c1)) return false;
  if (o.LcuSerial == kConvertedSerial) {
    count = static_cast<float>(c0);  // already a distance
  } else {
    count = c1 - c0 < 0 ? 0.0f : static_cast<float>(c0 + (c1 - c0) * (p - static_cast<double>(ip)));
  }
  return true;
}

bool DistanceSampleAt(const OutingRec& o, QFile& f, int64_t n, double& value) {
  double next = 0;
  return ReadTwoSamples(f, o.Channels[static_cast<std::size_t>(o.ChanDistance)], o.LcuSerial, n, value, next);
}

void ComputeLapDistances(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance == -1) return;
  QFile f(o.FileName);
  if (!f.open(QIODevice::ReadOnly)) return;
  for (int i = 1; i <= o.LastLap; ++i) {
    LapRec& lap = o.Laps[static_cast<std::size_t>(i)];
    DistanceCountAt(o, f, lap.StartTime, lap.StartDistance);
  }
  f.close();
  ComputeLapScales(ws, slot);
}

float LapDistanceScale(const Workspace& ws, float d) {
  if (!ws.TrackLoaded || !(d > 0)) return 1.0f;
  const int correction = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackCorrection;
  const float f = ws.TrackLength / d;
  return std::fabs(1.0f - f) * 100.0f < static_cast<float>(correction) ? f : 1.0f;
}

void ComputeLapScales(Workspace& ws, int slot) {
  OutingRec& o = OutingAt(ws, slot);
  for (int i = 0; i < o.LastLap; ++i) {
    LapRec& lap = o.Laps[static_cast<std::size_t>(i)];
    lap.DistanceScale = LapDistanceScale(ws, o.Laps[static_cast<std::size_t>(i + 1)].StartDistance - lap.StartDistance);
  }
}

int LapTimeMs(const OutingRec& outing, int lap) {
  if (lap < 0 || lap + 1 >= static_cast<int>(outing.Laps.size())) return 0;
  return outing.Laps[static_cast<std::size_t>(lap + 1)].StartTime - outing.Laps[static_cast<std::size_t>(lap)].StartTime;
}

QString LapLabel(const OutingRec& outing, int lap) {
  if (lap == 0) return QStringLiteral("Out");
  if (lap == outing.LastLap - 1) return QStringLiteral("In");
  if (lap == outing.FastLap && outing.FastLap > 0) return QStringLiteral("Fast");
  return QString();
}

QString LapNumberText(const OutingRec& outing, int lap) {
  return QStringLiteral("%1").arg(outing.LapNumberBase + lap, 3, 10, QLatin1Char('0'));
}

QString LapTimeText(int ms) {
  const int a = std::abs(ms);
  return QStringLiteral("%1:%2.%3")
      .arg(a / 60000, 2, 10, QLatin1Char('0'))
      .arg(a / 1000 % 60, 2, 10, QLatin1Char('0'))
      .arg(a % 1000, 3, 10, QLatin1Char('0'));
}
