// Any bytes as an outing file, loaded as the program loads one and fetched: whatever the header
// claims, the load ends with its message or a loaded outing, and every fetch stays within what
// the file can hold.

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cmath>
#include <cstdint>

#include "core/app/Files.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/FactoryDescriptors.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

struct Home {
  QTemporaryDir dir;
  RecordingMessages messages;
  std::unique_ptr<Workspace> ws;
  QByteArray factory;
  QString dsc;
  QString outing;

  Home() {
    ws = std::make_unique<Workspace>(messages, dir.path());
    ReadPaths(*ws);
    ChannelDescriptorFile file = FactoryChannelDescriptors();
    factory = ChannelDescriptorFileBytes(file);
    dsc = ChannelDscPath(*ws);
    outing = JoinPath(ws->Paths.DataDirectory, QStringLiteral("FUZZ.DAT"));
    Check(WriteFileAtomically(dsc, factory));
    Check(StartUp(*ws, false));
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Home home;
  Workspace& ws = *home.ws;
  // Input names that match nothing are appended to CHANNEL.DSC: start each run from the factory file.
  if (QFileInfo(home.dsc).size() != home.factory.size()) Check(WriteFileAtomically(home.dsc, home.factory));
  {
    QFile f(home.outing);
    Check(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
  }
  home.messages.entries.clear();
  ws.CurFolder = 0;
  ws.CurOuting = 0;
  if (!OpenOuting(ws, home.outing)) return 0;
  const OutingRec& o = OutingAt(ws, 0);
  for (int lap = 0; lap < std::min<int>(o.LastLap, 3); ++lap) {
    for (int c = 0; c <= o.LastChannel; ++c) {
      GetChannelData(ws, 0, lap, c);
      const auto& samples = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
      // Whatever the header's times say, a fetch never spans more than the longest outing.
      const double rate = o.Channels[static_cast<std::size_t>(c)].Rate;
      Check(samples.size() <= static_cast<std::size_t>(std::ceil((kMaxFetchSpanMs + kFetchMarginMs) * rate)) + 2);
      ComputeTimeStats(ws, 0, lap, c);
    }
  }
  ClearOutingCache(ws, 0);
  return 0;
}
