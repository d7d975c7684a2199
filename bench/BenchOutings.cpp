#include "BenchOutings.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "core/app/Files.h"
#include "core/app/Startup.h"
#include "core/demo/DemoInstall.h"
#include "core/outing/OpenOuting.h"
#include "core/outing/OutingWriter.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"
#include "core/track/DistanceTime.h"

BenchHome& TheBenchHome() {
  static QTemporaryDir dir;
  static BenchHome home = [] {
    BenchHome h;
    h.home = dir.path();
    DemoResult result;
    QString error;
    if (!CreateDemoInstallation(h.home, h.messages, result, &error)) {
      std::fprintf(stderr, "demo: %s\n", qUtf8Printable(error));
      std::exit(1);
    }
    h.outing = JoinPath(JoinPath(h.home, "Data"), "SILV0101.DAT");
    h.ws = std::make_unique<Workspace>(h.messages, h.home);
    StartUp(*h.ws, false);
    return h;
  }();
  return home;
}

QString WideBenchOuting() {
  BenchHome& h = TheBenchHome();
  const QString path = JoinPath(JoinPath(h.home, "Data"), "WIDE.DAT");
  OutingHeader header;
  header.Version = QStringLiteral("8.2.1");
  header.SystemName = QStringLiteral("ORLAN LOGGER");
  header.EndTime = 20 * 60 * 1000;
  header.BeaconCount = 40;
  for (int b = 0; b < 40; ++b) header.BeaconTimes[static_cast<std::size_t>(b)] = 30000 + b * 29000;
  std::vector<ChannelBlockData> blocks;
  for (int i = 0; i < 128; ++i) {
    ChannelBlockData b;
    b.Key = static_cast<uint16_t>(i < 64 ? i : (i == 64 ? 70 : 64 + i));
    b.RateCode = 3;  // 100 Hz
    b.WordSize = b.Key == 70 ? 4 : 2;
    if (i < 64) header.InputNames[static_cast<std::size_t>(i)] = QStringLiteral("SENSOR %1").arg(i);
    const std::vector<double> raw(static_cast<std::size_t>(header.EndTime / 10 + 1), 1000.0);
    b.Samples = EncodeSamples(b.WordSize == 4 ? SampleType::I32 : SampleType::I16, raw);
    blocks.push_back(b);
  }
  WriteOutingFile(path, header, blocks);
  return path;
}

void ShowBenchGraph(Workspace& ws) {
  static const char* const kChannels[] = {"SYSTEM SPEED", "THROTTLE", "BRAKE PRESSURE", "RPM",
                                          "LATERAL G",    "LONG G",   "STEERING",       "GEAR"};
  ws.CurFolder = 0;
  ws.CurOuting = 0;
  if (!OpenOuting(ws, TheBenchHome().outing)) std::abort();
  OutingRec& o = ws.FolderTable[0].Outings[0];
  int color = 0;
  for (int lap = 2; lap <= 5; ++lap) {
    o.Laps[static_cast<std::size_t>(lap)].Shown = -1;
    for (const char* name : kChannels) {
      const int c = FindChannelByName(ws, 0, 0, QString::fromLatin1(name));
      LapChannelRec& cache = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)];
      cache.Shown = -1;
      cache.Color = static_cast<int16_t>(color++ % kPaletteSize);
    }
  }
  o.CurLap = 2;
  FolderRec& f = ws.FolderTable[0];
  f.SelOuting = 0;
  f.ActiveChannel = static_cast<int16_t>(FindChannelByName(ws, 0, 0, QStringLiteral("SYSTEM SPEED")));
  f.TimeStart = 0;
  f.TimeEnd = static_cast<int32_t>(GetMaxTime(ws));
  f.CursorTime = 30000;
  f.DistanceStart = 0;
  f.DistanceEnd = GetMaxDistance(ws);
  f.CursorDistance = 1500;
}
