// `orlan info FILE [--json]`: what an outing header says, readable.

#include <QDateTime>
#include <QTimeZone>
#include <QFileInfo>
#include <cstdio>
#include <set>
#include <nlohmann/json.hpp>

#include "cli/CliWorkspace.h"
#include "cli/Commands.h"
#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/compute/MathCompiler.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/app/Files.h"
#include "core/app/Paths.h"
#include "core/app/SettingsStore.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/ChannelIdentity.h"
#include "core/outing/ConstantsBlock.h"
#include "core/outing/OutingFormat.h"

using nlohmann::ordered_json;

namespace {

// Text fields may hold anything: control bytes are shown as \xNN so the terminal stays sane.
std::string Shown(const QString& text) {
  QString out;
  for (QChar c : text) {
    const ushort u = c.unicode();
    if (u < 0x20 || (u >= 0x7F && u < 0xA0)) {
      out += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
    } else {
      out += c;
    }
  }
  return out.toStdString();
}

// A Windows file time (100 ns ticks since 1601) as calendar time; empty when out of range.
std::string FileTimeText(uint64_t ticks) {
  constexpr int64_t kTicksTo1970 = 116444736000000000LL;
  if (ticks == 0 || ticks < static_cast<uint64_t>(kTicksTo1970) || ticks > 4102444800ULL * 10000000ULL + kTicksTo1970) return "";
  const int64_t ms = static_cast<int64_t>((ticks - kTicksTo1970) / 10000);
  return QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc()).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString();
}

std::string Number3(int v) { return QStringLiteral("%1").arg(v, 3, 10, QLatin1Char('0')).toStdString(); }

// The name a channel is shown under: the header's input name, else the descriptor by key.
std::string ChannelName(const OutingHeader& h, const ChannelDescriptorFile& dsc, int key) {
  if (key >= 0 && key < 64) return Shown(h.InputNames[static_cast<std::size_t>(key)].text);
  if (key < static_cast<int>(dsc.Records.size())) return Shown(dsc.Records[static_cast<std::size_t>(key)].Name.text);
  return "";
}

ordered_json Describe(const QString& path, OutingHeader& h, const ChannelDescriptorFile& dsc) {
  const int64_t file_size = QFileInfo(path).size();
  ordered_json j;
  j["File"] = path.toStdString();
  j["FileSize"] = file_size;
  j["Date"] = FileTimeText(h.StartFileTime);
  j["StartFileTime"] = h.StartFileTime;
  j["Driver"] = Shown(h.Driver);
  j["TrackName"] = Shown(h.TrackName);
  j["Chassis"] = Shown(h.Chassis);
  j["Comment1"] = Shown(h.Comment1);
  j["Comment2"] = Shown(h.Comment2);
  j["SessionText"] = "[" + Number3(h.SessionNumber) + "." + Number3(h.RunNumber) + "." + Number3(h.LastOutingNumber) + "]";
  j["SystemName"] = Shown(h.SystemName);
  j["Version"] = Shown(h.Version);
  j["Firmware"] = h.Firmware;
  j["LcuSerial"] = h.LcuSerial;
  j["Converted"] = h.LcuSerial == kConvertedSerial;
  j["Checksum"] = h.Checksum;
  j["MemoryBlocks"] = h.MemoryBlocks;
  j["RunSeconds"] = h.RunSeconds;
  j["Resets"] = h.Resets;
  j["SystemFlags"] = h.SystemFlags;
  j["Cyclic"] = h.Cyclic;
  j["EndTime"] = h.EndTime;
  const CyclicTimes cyclic = CyclicTimeBase(h);
  if (h.Cyclic > 0) {
    j["RawEndTime"] = h.RawEndTime;
    j["CyclicShift"] = cyclic.Shift;
    j["TrueEndTime"] = cyclic.TrueEndTime;
  }
  j["BeaconCount"] = h.BeaconCount;
  ordered_json beacons = ordered_json::array();
  for (int i = 0; i < std::min<int>(h.BeaconCount, 255); ++i) beacons.push_back(h.BeaconTimes[static_cast<std::size_t>(i)] - cyclic.Shift);
  j["BeaconTimes"] = beacons;
  j["LoggedChannels"] = h.LoggedChannels;

  const std::vector<int64_t> offsets = ChannelBlockOffsets(h);
  ordered_json channels = ordered_json::array();
  for (int i = 0; i + 1 < static_cast<int>(offsets.size()); ++i) {
    const ChannelTableEntry& e = h.ChannelTable[static_cast<std::size_t>(i)];
    const float rate = RateFromCode(e.RateCode, h.SystemFlags);
    const int64_t length = ChannelBlockLength(h, i);
    ordered_json c;
    c["Index"] = i;
    c["Key"] = e.Key;
    c["Name"] = ChannelName(h, dsc, e.Key);
    c["Source"] = ChannelSourceName(e.Key).toStdString();
    c["RateCode"] = e.RateCode;
    c["Rate"] = rate;
    c["Hz"] = static_cast<double>(rate) * 1000.0;
    c["WordSize"] = e.WordSize;
    c["SampleType"] = SampleTypeName(SampleTypeFor(e.WordSize, e.Key, h.LcuSerial));
    c["BlockOffset"] = offsets[static_cast<std::size_t>(i)];
    c["BlockLength"] = length;
    c["Samples"] = e.WordSize > 0 && length > 0 ? length / e.WordSize : 0;
    channels.push_back(c);
  }
  j["Channels"] = channels;

  std::vector<ConstantEntry> constants;
  if (ReadConstantsBlock(path, offsets.back(), constants)) {
    ordered_json cs = ordered_json::array();
    for (const ConstantEntry& c : constants) cs.push_back({{"Name", Shown(c.Name)}, {"Value", c.Value}});
    j["Constants"] = cs;
  }
  ordered_json warnings = ordered_json::array();
  for (const QString& p : CheckOutingLayout(h, file_size)) warnings.push_back(p.toStdString());
  j["Warnings"] = warnings;
  return j;
}

ordered_json Calibration(const ChannelRec& c) {
  ordered_json cal;
  cal["CalType"] = c.CalType;
  cal["CalOffset"] = c.CalOffset;
  cal["CalCoefA"] = c.CalCoefA;
  cal["CalCoefB"] = c.CalCoefB;
  cal["CalCoefC"] = c.CalCoefC;
  if (c.CalType == 0 || c.CalType == 4) {
    cal["CalPoints"] = c.CalPoints;
    ordered_json x = ordered_json::array(), y = ordered_json::array();
    for (int p = 0; p <= std::clamp<int>(c.CalPoints, 0, 12); ++p) {
      x.push_back(c.CalX[static_cast<std::size_t>(p)]);
      y.push_back(c.CalY[static_cast<std::size_t>(p)]);
    }
    cal["CalX"] = x;
    cal["CalY"] = y;
  }
  return cal;
}

// What the load of the outing made of it: laps, standard channels, channels with calibration.
// The math channels as this outing compiled them: the bound text shows which names it found.
ordered_json DescribeMath(const Workspace& ws, const OutingRec& o) {
  ordered_json math = ordered_json::array();
  for (int i = 0; i < static_cast<int>(o.Postfix.size()) && i < ws.MathCount; ++i) {
    const int index = o.LoggedCount + 3 + i;
    const PostfixRec& rec = o.Postfix[static_cast<std::size_t>(i)];
    const MathDefRec& def = ws.MathDefs[static_cast<std::size_t>(i)];
    math.push_back({{"Index", index},
                    {"Name", Shown(o.Channels[static_cast<std::size_t>(index)].Name)},
                    {"Rate", o.Channels[static_cast<std::size_t>(index)].Rate},
                    {"Expression", Shown(def.Expression)},
                    {"BoundText", Shown(def.BoundText)},
                    {"Compiled", rec.Count > 0},
                    {"Tokens", rec.Count}});
  }
  return math;
}

ordered_json DescribeOuting(const Workspace& ws, const OutingRec& o) {
  ordered_json j;
  j["DateText"] = o.DateText.toStdString();
  j["LastLap"] = o.LastLap;
  j["FastLap"] = o.FastLap;
  ordered_json laps = ordered_json::array();
  // Every row, the closing one included: a lap's time is the next row's start minus its own.
  for (int l = 0; l <= o.LastLap && l < static_cast<int>(o.Laps.size()); ++l) {
    const LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
    laps.push_back({{"Lap", l},
                    {"Number", LapNumberText(o, l).toStdString()},
                    {"Label", LapLabel(o, l).toStdString()},
                    {"StartTime", lap.StartTime},
                    {"StartDistance", lap.StartDistance},
                    {"DistanceScale", lap.DistanceScale},
                    {"LapTime", LapTimeMs(o, l)},
                    {"LapTimeText", LapTimeText(LapTimeMs(o, l)).toStdString()}});
  }
  j["Laps"] = laps;
  ordered_json standard;
  const std::pair<const char*, int16_t> kStandard[] = {
      {"ChanLatG", o.ChanLatG},       {"ChanDistance", o.ChanDistance}, {"ChanFuel", o.ChanFuel},
      {"ChanGyro", o.ChanGyro},       {"ChanSpeed", o.ChanSpeed},       {"ChanLapCount", o.ChanLapCount},
      {"ChanLapTime", o.ChanLapTime}, {"ChanSplitTime", o.ChanSplitTime}, {"ChanBoxSerial", o.ChanBoxSerial},
      {"ChanRpm", o.ChanRpm},         {"ChanMpg", o.ChanMpg},           {"ChanLapDistance", o.ChanLapDistance},
      {"ChanThrottle", o.ChanThrottle}, {"ChanGpsLat", o.ChanGpsLat},   {"ChanGpsLong", o.ChanGpsLong},
      {"ChanGpsAlt", o.ChanGpsAlt}};
  for (const auto& [name, index] : kStandard) standard[name] = index;
  j["StandardChannels"] = standard;
  ordered_json channels = ordered_json::array();
  for (int i = 0; i < o.LastChannel; ++i) {
    const ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
    ordered_json ch;
    ch["Index"] = i;
    ch["Key"] = c.Key;
    ch["Name"] = Shown(c.Name);
    ch["Units"] = Shown(c.Units);
    ch["Rate"] = c.Rate;
    ch["Filter"] = FilterKindName(c.FilterKind);
    int key = c.Key;
    if (key >= 112 && key <= 127) key = o.ExpansionMap[static_cast<std::size_t>(key - 112)].Key;
    if (key <= 63) {
      ch["Calibration"] = Calibration(c);
    } else if ((key >= 128 && key <= 191) || (key >= 224 && key <= 255)) {
      ch["Calibration"] = {{"Gain", c.CalCoefB}, {"Offset", c.CalCoefC}};
    }
    channels.push_back(ch);
  }
  j["Channels"] = channels;
  j["MathChannels"] = DescribeMath(ws, o);
  return j;
}

void PrintOuting(const ordered_json& j) {
  std::printf("\nLaps (last lap %d, fast lap %d)\n", j["LastLap"].get<int>(), j["FastLap"].get<int>());
  std::printf("%5s %6s %-5s %10s %12s %10s %10s\n", "Lap", "Number", "", "StartTime", "StartDist", "Scale", "Time");
  for (const auto& l : j["Laps"]) {
    std::printf("%5d %6s %-5s %10d %12.1f %10.6f %10s\n", l["Lap"].get<int>(), l["Number"].get<std::string>().c_str(),
                l["Label"].get<std::string>().c_str(), l["StartTime"].get<int>(), l["StartDistance"].get<double>(),
                l["DistanceScale"].get<double>(), l["LapTimeText"].get<std::string>().c_str());
  }
  // Fields that default to -1 are present from index 0 on; the others only above 0.
  static const std::set<std::string> kMinusOneDefault = {"ChanLatG", "ChanDistance", "ChanGyro", "ChanGpsLat",
                                                         "ChanGpsLong", "ChanGpsAlt"};
  std::printf("\nStandard channels:");
  for (const auto& [name, index] : j["StandardChannels"].items()) {
    if (index.get<int>() > 0 || (index.get<int>() == 0 && kMinusOneDefault.count(name))) {
      std::printf(" %s=%d", name.c_str() + 4, index.get<int>());
    }
  }
  std::printf("\n\n%5s %5s  %-32s %-10s %8s  %s\n", "Index", "Key", "Name", "Units", "Hz", "Calibration");
  for (const auto& c : j["Channels"]) {
    std::string cal;
    if (c.contains("Calibration")) {
      const auto& k = c["Calibration"];
      char buf[160];
      if (k.contains("Gain")) {
        std::snprintf(buf, sizeof buf, "gain %g offset %g", k["Gain"].get<double>(), k["Offset"].get<double>());
      } else {
        std::snprintf(buf, sizeof buf, "type %d  a=%g b=%g c=%g  user offset %g", k["CalType"].get<int>(),
                      k["CalCoefA"].get<double>(), k["CalCoefB"].get<double>(), k["CalCoefC"].get<double>(),
                      k["CalOffset"].get<double>());
      }
      cal = buf;
    }
    std::printf("%5d %5d  %-32s %-10s %8g  %s\n", c["Index"].get<int>(), c["Key"].get<int>(), c["Name"].get<std::string>().c_str(),
                c["Units"].get<std::string>().c_str(), c["Rate"].get<double>() * 1000.0, cal.c_str());
  }
}

void PrintMath(const ordered_json& j) {
  if (j["MathChannels"].empty()) return;
  std::printf("\n%5s  %-32s %8s  %-8s  %s\n", "Index", "Math channel", "Hz", "Compiled", "Bound text");
  for (const auto& m : j["MathChannels"]) {
    std::printf("%5d  %-32s %8g  %-8s  %s\n", m["Index"].get<int>(), m["Name"].get<std::string>().c_str(),
                m["Rate"].get<double>() * 1000.0, m["Compiled"].get<bool>() ? "yes" : "no",
                m["BoundText"].get<std::string>().c_str());
  }
}

void PrintText(const ordered_json& j) {
  auto line = [](const char* label, const std::string& value) { std::printf("%-14s %s\n", label, value.c_str()); };
  line("File", j["File"].get<std::string>() + "  (" + std::to_string(j["FileSize"].get<int64_t>()) + " bytes)");
  line("Date", j["Date"].get<std::string>());
  line("Driver", j["Driver"].get<std::string>());
  line("Track", j["TrackName"].get<std::string>());
  line("Chassis", j["Chassis"].get<std::string>());
  line("Comment 1", j["Comment1"].get<std::string>());
  line("Comment 2", j["Comment2"].get<std::string>());
  line("Session", j["SessionText"].get<std::string>());
  line("System", j["SystemName"].get<std::string>());
  line("Version", j["Version"].get<std::string>() + "   firmware " + std::to_string(j["Firmware"].get<int>()));
  line("LCU", std::to_string(j["LcuSerial"].get<int>()) + (j["Converted"].get<bool>() ? "  (converted outing)" : ""));
  line("Checksum", QStringLiteral("%1H").arg(j["Checksum"].get<int>(), 4, 16, QLatin1Char('0')).toUpper().toStdString());
  const int run = j["RunSeconds"].get<int>();
  char run_text[16];
  std::snprintf(run_text, sizeof run_text, "%02d:%02d", run / 60, run % 60);
  line("Run time", run_text);
  line("Cyclic", std::to_string(j["Cyclic"].get<int>()));
  line("End time", std::to_string(j["EndTime"].get<int>()) + " ms" +
                       (j.contains("TrueEndTime") ? "  (true end " + std::to_string(j["TrueEndTime"].get<int64_t>()) + " ms)" : ""));
  std::string beacons;
  for (const auto& b : j["BeaconTimes"]) beacons += std::to_string(b.get<int64_t>()) + " ";
  line("Beacons", std::to_string(j["BeaconCount"].get<int>()) + ": " + beacons);
  std::printf("\n%5s %5s  %-32s %-10s %8s %5s %5s %10s %10s\n", "Index", "Key", "Name", "Source", "Hz", "Word", "Type",
              "Offset", "Length");
  for (const auto& c : j["Channels"]) {
    std::printf("%5d %5d  %-32s %-10s %8g %5d %5s %10lld %10lld\n", c["Index"].get<int>(), c["Key"].get<int>(),
                c["Name"].get<std::string>().c_str(), c["Source"].get<std::string>().c_str(), c["Hz"].get<double>(),
                c["WordSize"].get<int>(), c["SampleType"].get<std::string>().c_str(),
                static_cast<long long>(c["BlockOffset"].get<int64_t>()), static_cast<long long>(c["BlockLength"].get<int64_t>()));
  }
  if (j.contains("Constants")) {
    std::printf("\nConstants\n");
    for (const auto& c : j["Constants"]) std::printf("  %-32s %g\n", c["Name"].get<std::string>().c_str(), c["Value"].get<double>());
  }
  for (const auto& p : j["Warnings"]) std::printf("Warning: %s\n", p.get<std::string>().c_str());
}

}  // namespace

void AddInfoCommand(CLI::App& cli, CliContext& context) {
  auto* sub = cli.add_subcommand("info", "Show what an outing file's header says");
  auto file = std::make_shared<std::string>();
  auto json = std::make_shared<bool>(false);
  sub->add_option("FILE", *file, "Outing file (*.DAT, *.CNV)")->required();
  sub->add_flag("--json", *json, "Print one JSON object, for scripts");
  AddHomeOption(*sub, context);
  sub->callback([file, json, &context] {
    const QString path = QString::fromStdString(*file);
    OutingHeader header;
    QString error;
    if (!FileExists(path) || !ReadOutingHeader(path, header, &error)) {
      std::fprintf(stderr, "Unable to open file %s\n", file->c_str());
      context.exit_code = 1;
      return;
    }
    ChannelDescriptorFile dsc;  // names of built-in channels, when the home has its CHANNEL.DSC
    ReadChannelDescriptorFile(JoinPath(SetupDirectoryOf(context), kChannelDscFileName), dsc);
    ordered_json j = Describe(path, header, dsc);
    // What a load makes of it: the program's own refusal, or the outing as loaded.
    StderrMessages messages;
    const QString refusal = HeaderRefusal(header);
    auto ws = refusal.isEmpty() ? StartCliWorkspace(context, messages) : nullptr;
    bool refused = !refusal.isEmpty();
    if (refused) messages.Show(QStringLiteral("Unable to process header"), QStringLiteral("Process header"), MessageIcon::Exclamation);
    if (ws) {
      if (LoadCliOuting(*ws, path)) {
        j["Outing"] = DescribeOuting(*ws, OutingAt(*ws, 0));
      } else {
        refused = true;
      }
    }
    if (!refusal.isEmpty()) std::fprintf(stderr, "  %s\n", qUtf8Printable(refusal));
    if (*json) {
      std::printf("%s\n", j.dump(2).c_str());
    } else {
      PrintText(j);
      if (j.contains("Outing")) {
        PrintOuting(j["Outing"]);
        PrintMath(j["Outing"]);
      }
    }
    if (refused) context.exit_code = 2;
  });
}

void AddHomeOption(CLI::App& sub, CliContext& context) {
  sub.add_option("--home", context.home, "Home folder (default $ORLAN_HOME, else ~/Orlan Vector)");
}

QString SetupDirectoryOf(const CliContext& context) {
  const QString home = ResolveHome(QString::fromStdString(context.home));
  const SettingsStore store(JoinPath(home, QStringLiteral("Settings")));
  return store.Read(kAppFamily, QStringLiteral("Paths"), QStringLiteral("SetupDirectory"), DefaultPaths(home).SetupDirectory);
}
