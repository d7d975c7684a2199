#include "core/demo/DemoInstall.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "core/app/Files.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/DemoOutings.h"
#include "core/demo/FactoryDescriptors.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/track/TrackCreate.h"

namespace {

const QString kDemoMapName = QStringLiteral("Silverstone");
const QString kDemoMapOuting = QStringLiteral("SILV0101.DAT");

// Formulas an engineer sets up first: slip, combined grip, fuel mass, roll.
// (Written as the editor writes them: no blank inside a parenthesis; "*" binds tighter than "/".)
const QStringList kDemoMath = {
    QStringLiteral("Rear_Slip[001] = (WHEEL SPEED RL + WHEEL SPEED RR) * 100 / (WHEEL SPEED FL + WHEEL SPEED FR) - 100"),
    QStringLiteral("Combined_G[002] = Sqrt (LATERAL G * LATERAL G + LONG G * LONG G)"),
    QStringLiteral("Fuel_Mass[003] = FUEL USED * Fuel Density"),
    QStringLiteral("Front_Roll[004] = DAMPER FL - DAMPER FR"),
};

// Display settings of the demo's math channels, so that a load finds them in CHANNEL.DSC.
struct MathDisplay {
  const char* name;
  const char* units;
  float min, max;
  uint16_t decimals;
};
constexpr MathDisplay kDemoMathDisplay[] = {
    {"REAR_SLIP", "%", -5, 15, 1}, {"COMBINED_G", "g", 0, 4, 2}, {"FUEL_MASS", "kg", 0, 50, 1}, {"FRONT_ROLL", "mm", -10, 10, 1}};

const std::vector<ConstantRec> kDemoConstants = {
    {QStringLiteral("Brake Bias"), QStringLiteral("57.5")},
    {QStringLiteral("Front Weight"), QStringLiteral("0.45")},
    {QStringLiteral("Fuel Density"), QStringLiteral("0.745")},
    {QStringLiteral("Wheelbase"), QStringLiteral("3.0")},
    {QStringLiteral("Final Drive"), QStringLiteral("3.2")},
};

// Writes a file only when it is not there; `write` makes it.
template <class F>
bool MakeIfMissing(const QString& path, DemoResult& result, QString* error, F write) {
  if (QFileInfo::exists(path)) {
    result.Kept << path;
    return true;
  }
  if (!write()) {
    if (error && error->isEmpty()) *error = QStringLiteral("Unable to write %1").arg(path);
    return false;
  }
  result.Written << path;
  return true;
}

bool MakeOuting(DemoOutingSpec spec, const QString& path, int laps_cap, QString* error) {
  if (laps_cap > 0) spec.FlyingLaps = std::min(spec.FlyingLaps, laps_cap);
  Centreline line;
  if (!ReadDrivenLine(JoinPath(ShippedDataDirectory(), QStringLiteral("tracks")), spec.Circuit, line, error)) return false;
  SimulationOptions options;
  options.flying_laps = spec.FlyingLaps;
  options.seed = spec.Seed;
  return WriteDemoOuting(spec, SimulateOuting(line, CarModel{}, options), path, error);
}

// The demo's map of Silverstone, made the program's own way: from the gyro of the first run's
// fast lap (the cleanest of the three ways on the demo's data), as `orlan track create` does.
// A home whose SILV0101.DAT is a file of the person's own gets no map, without a word.
bool MakeDemoMap(const QString& home) {
  RecordingMessages quiet;
  Workspace ws(quiet, home);
  if (!StartUp(ws, false)) return false;
  ws.CurOuting = 0;
  if (!OpenOuting(ws, JoinPath(ws.Paths.DataDirectory, kDemoMapOuting))) return false;
  return CreateTrack(ws, 0, OutingAt(ws, 0).FastLap, DemoMapSettings()) &&
         SaveNewTrack(ws, 0, kDemoMapName, QStringLiteral("Gyro, fast lap of ") + kDemoMapOuting);
}

}  // namespace

TrackSettings DemoMapSettings() {
  TrackSettings s = SetDefaults();
  s.CreateMode = 1;
  s.InvertCalibration = true;  // the demo logs left-hand corners as positive
  return s;
}

QString DemoMapPath(const PathSettings& paths) {
  return JoinPath(paths.TrackDirectory, kDemoMapName + QStringLiteral(".MAP"));
}

QString ShippedDataDirectory() {
  const QByteArray env = qgetenv("ORLAN_DATA_DIR");
  if (!env.isEmpty()) return QString::fromLocal8Bit(env);
  if (QCoreApplication::instance()) {
    const QString installed = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/orlan"));
    if (QFileInfo::exists(JoinPath(installed, QStringLiteral("tracks")))) return QDir::cleanPath(installed);
  }
  return QStringLiteral(ORLAN_SOURCE_DATA_DIR);
}

bool CreateDemoInstallation(const QString& home, Messages& messages, DemoResult& result, QString* error,
                            int laps_cap) {
  Workspace ws(messages, home);
  ReadPaths(ws);  // makes the directories
  WritePaths(ws);

  const QString dsc = ChannelDscPath(ws);
  bool ok = MakeIfMissing(dsc, result, error, [&] {
    ChannelDescriptorFile file = FactoryChannelDescriptors();
    for (const MathDisplay& m : kDemoMathDisplay) {
      ChannelDescriptor d = NewChannelDescriptor(QString::fromLatin1(m.name), static_cast<int>(file.Records.size()));
      d.Units = QString::fromLatin1(m.units);
      d.ScreenMin = m.min;
      d.ScreenMax = m.max;
      d.Decimals = m.decimals;
      d.Group = d.SourceGroup = 7;  // "Math"
      file.Records.push_back(d);
    }
    return WriteFileAtomically(dsc, ChannelDescriptorFileBytes(file), error);
  });
  ok = ok && MakeIfMissing(JoinPath(ws.Paths.MathDirectory, kMathDefFileName), result, error, [&] {
    ws.MathDefs.assign(kMathDefRows, MathDefRec{});
    ws.MathCount = static_cast<int>(kDemoMath.size());
    for (int i = 0; i < ws.MathCount; ++i) ws.MathDefs[static_cast<std::size_t>(i)].Line = kDemoMath[i];
    return SaveMathDefs(ws);
  });
  ok = ok && MakeIfMissing(JoinPath(ws.Paths.MathDirectory, kConstantFileName), result, error, [&] {
    ws.GlobalConstants = kDemoConstants;
    ws.GlobalConstantCount = static_cast<int>(kDemoConstants.size());
    return SaveGlobalConstants(ws);
  });
  for (const DemoOutingSpec& spec : DemoOutingSpecs()) {
    if (!ok) break;
    const QString path = JoinPath(ws.Paths.DataDirectory, spec.FileName);
    ok = MakeIfMissing(path, result, error, [&] { return MakeOuting(spec, path, laps_cap, error); });
    result.Outings << path;
  }
  const QString map = DemoMapPath(ws.Paths);
  if (QFileInfo::exists(map)) {
    result.Kept << map;
  } else if (ok && MakeDemoMap(home)) {
    result.Written << map;
  }
  return ok;
}
