#include "core/demo/DemoOutings.h"

#include <QTimeZone>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Startup.h"
#include "core/demo/DemoChannels.h"
#include "core/outing/OutingWriter.h"

namespace {

constexpr int kCyclicUnits = 4;             // the cyclic logger counts quarter milliseconds
constexpr int64_t kCyclicShiftMs = 734512;  // where its running clock stood at the recording's start

QDateTime At(int month, int day, int hour, int minute) {
  return QDateTime(QDate(2026, month, day), QTime(hour, minute), QTimeZone::utc());
}

// A Windows file time of the logger's wall clock (it knows no time zone).
uint64_t FileTimeOf(const QDateTime& t) {
  constexpr int64_t kTicksTo1970 = 116444736000000000LL;
  return static_cast<uint64_t>(t.toMSecsSinceEpoch() * 10000 + kTicksTo1970);
}

// Samples of a channel at its rate over the whole recording, read off the 1 kHz simulation.
std::vector<double> RawSamples(const OutingHeader& h, const DemoChannel& c, const SimulatedOuting& sim, bool converted) {
  const double rate = RateFromCode(c.RateCode, h.SystemFlags);  // samples per ms
  const int64_t n = Floor(sim.EndTimeMs * rate) + 1;
  std::vector<double> raw(static_cast<std::size_t>(n));
  for (int64_t i = 0; i < n; ++i) {
    const double value = c.Signal(sim, static_cast<int>(RoundHalfEven(i / rate)));
    raw[static_cast<std::size_t>(i)] = converted ? value : RawFromEngineering(h, c, value);
  }
  return raw;
}

}  // namespace

std::vector<DemoOutingSpec> DemoOutingSpecs() {
  std::vector<DemoOutingSpec> specs(5);
  specs[0] = {QStringLiteral("SILV0101.DAT"), QStringLiteral("Silverstone"), 10, 11, DemoMode::Plain,
              QStringLiteral("ORLAN LOGGER"), 0, false, QStringLiteral("M. Castellan"), QStringLiteral("OV-07"),
              QStringLiteral("Baseline set-up, new tyres"), 1, 1, At(6, 12, 10, 5)};
  specs[1] = {QStringLiteral("SILV0102.DAT"), QStringLiteral("Silverstone"), 8, 12, DemoMode::Plain,
              QStringLiteral("ORLAN LOGGER"), 0, false, QStringLiteral("M. Castellan"), QStringLiteral("OV-07"),
              QStringLiteral("Front wing +2, rear bar soft"), 1, 2, At(6, 12, 11, 40)};
  specs[2] = {QStringLiteral("SPIE0201.DAT"), QStringLiteral("Spielberg"), 6, 21, DemoMode::Plain,
              QStringLiteral("ORLAN ECU-LOG"), 1, true, QStringLiteral("J. Okafor"), QStringLiteral("OV-09"),
              QStringLiteral("Qualifying simulation"), 2, 1, At(7, 3, 14, 20)};
  specs[3] = {QStringLiteral("HOCK0301.DAT"), QStringLiteral("Hockenheim"), 5, 31, DemoMode::Cyclic,
              QStringLiteral("ORLAN LOGGER"), 0, false, QStringLiteral("J. Okafor"), QStringLiteral("OV-09"),
              QStringLiteral("Long run, cyclic memory"), 3, 1, At(7, 24, 9, 15)};
  specs[4] = {QStringLiteral("SILV0103.CNV"), QStringLiteral("Silverstone"), 4, 13, DemoMode::Converted,
              QStringLiteral("ORLAN LOGGER"), 0, false, QStringLiteral("M. Castellan"), QStringLiteral("OV-07"),
              QStringLiteral("Converted outing"), 1, 3, At(6, 12, 15, 0)};
  return specs;
}

std::vector<std::pair<QString, float>> DemoOutingConstants() {
  return {{QStringLiteral("Brake Bias"), 58.5f}, {QStringLiteral("Front Weight"), 0.46f},
          {QStringLiteral("Fuel Density"), 0.748f}};
}

OutingHeader DemoHeader(const DemoOutingSpec& spec, const SimulatedOuting& sim) {
  OutingHeader h;
  const bool converted = spec.Mode == DemoMode::Converted;
  h.MemoryBlocks = 64;
  h.LcuSerial = converted ? kConvertedSerial : 4711;
  h.RunSeconds = static_cast<uint16_t>(std::min(65535, sim.EndTimeMs / 1000));
  h.Firmware = 21;
  h.StartFileTime = FileTimeOf(spec.Start);
  h.SystemFlags = spec.SystemFlags;
  h.SystemName = spec.SystemName;
  h.Version = converted ? ProgramVersionText() : QStringLiteral("8.2.1");
  h.Driver = spec.Driver;
  h.TrackName = spec.Circuit;
  h.Chassis = spec.Chassis;
  h.Comment1 = spec.Comment;
  h.Comment2 = QStringLiteral("Demo outing, simulated");
  h.SessionNumber = static_cast<uint16_t>(spec.Session - 1);
  h.RunNumber = static_cast<uint16_t>(spec.Run - 1);
  h.FirstLapNumber = 0;
  h.LastOutingNumber = static_cast<uint16_t>(sim.BeaconTimesMs.size());
  h.TrackLength = static_cast<int16_t>(std::min(32767.0, std::round(sim.LineLengthM)));
  h.DisplayFlags = 1;  // kilometres
  h.OutingDistance = static_cast<int32_t>(sim.DistanceM.empty() ? 0 : sim.DistanceM.back());
  h.EngineName = QStringLiteral("V8-2.4 #3");
  h.EngineNumber = 317;

  const int64_t shift = spec.Mode == DemoMode::Cyclic ? kCyclicShiftMs : 0;
  h.BeaconCount = static_cast<uint16_t>(std::min<std::size_t>(sim.BeaconTimesMs.size(), kMaxBeacons));
  for (std::size_t i = 0; i < h.BeaconCount; ++i) h.BeaconTimes[i] = SaturateInt32(sim.BeaconTimesMs[i] + shift);
  h.EndTime = SaturateInt32(sim.EndTimeMs + shift);
  if (spec.Mode == DemoMode::Cyclic) {
    h.Cyclic = kCyclicUnits;
    h.RawEndTime = sim.EndTimeMs * kCyclicUnits;
  }
  SetDemoCalibrations(h);
  return h;
}

bool WriteDemoOuting(const DemoOutingSpec& spec, const SimulatedOuting& sim, const QString& path, QString* error) {
  OutingHeader h = DemoHeader(spec, sim);
  const bool converted = spec.Mode == DemoMode::Converted;
  std::vector<ChannelBlockData> blocks;
  for (const DemoChannel& c : DemoChannelList()) {
    ChannelBlockData b;
    b.Key = c.Key;
    b.RateCode = c.RateCode;
    b.WordSize = converted && c.WordSize != 8 ? 4 : c.WordSize;
    const SampleType type = SampleTypeFor(b.WordSize, b.Key, h.LcuSerial);
    b.Samples = EncodeSamples(type, RawSamples(h, c, sim, converted));
    blocks.push_back(std::move(b));
  }
  std::vector<ConstantEntry> constants;
  for (const auto& [name, value] : DemoOutingConstants()) constants.push_back({name, value});
  return WriteOutingFile(path, h, blocks, spec.WithConstants ? &constants : nullptr, error);
}
