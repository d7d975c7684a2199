// Math definitions as a file holds them and formulas as a person types them: every line is
// validated as the editor does, then the whole text is taken as MATHCHL.DEF, compiled for an
// outing of four channels at different rates and evaluated for a lap, with a Datum lap set.
// Nothing may crash, hang or run out of memory.

#include <QCoreApplication>
#include <QTemporaryDir>
#include <cmath>
#include <cstdint>

#include "core/app/Messages.h"
#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/MathEvaluator.h"
#include "core/compute/frmEditMath.h"
#include "core/outing/ChannelData.h"

namespace {

constexpr int kLogged = 4;

// An outing whose channels are in the lap caches already, so nothing reads a file.
void MakeOuting(Workspace& ws) {
  ws.FolderTable[0].DatumOuting = 0;
  ws.FolderTable[0].DatumLap = 0;
  OutingRec& o = ws.FolderTable[0].Outings[0];
  o = OutingRec{};
  o.Loaded = -1;
  o.LoggedCount = kLogged;
  o.ChanDistance = 1;
  o.ChanSpeed = 2;
  o.Channels.resize(kLogged + 3);
  const char* names[] = {"SPEED", "DISTANCE", "RPM", "GEAR_2"};
  const float rates[] = {0.1f, 0.01f, 1.0f, 0.0f};
  for (int c = 0; c < kLogged; ++c) {
    o.Channels[static_cast<std::size_t>(c)].Name = QString::fromLatin1(names[c]);
    o.Channels[static_cast<std::size_t>(c)].ShortName = QString::fromLatin1(names[c]);
    o.Channels[static_cast<std::size_t>(c)].Rate = rates[c];
  }
  o.Channels[kLogged].Key = kDerivedTimeKey;
  o.Channels[kLogged].Name = QStringLiteral("TIME");
  o.Channels[kLogged].Rate = 0.01f;
  o.Channels[kLogged + 1].Key = kDerivedLapDistanceKey;
  o.Channels[kLogged + 1].Rate = 0.1f;
  o.Channels[kLogged + 2].Key = kDerivedLongAccelKey;
  o.Channels[kLogged + 2].Rate = 0.1f;
  o.Laps.resize(3);
  o.Laps[1].StartTime = 1500;
  o.Laps[2].StartTime = 3000;
  o.LastLap = 2;
}

void FillCaches(Workspace& ws) {
  OutingRec& o = ws.FolderTable[0].Outings[0];
  for (LapRec& lap : o.Laps) {
    lap.LapChannels.assign(static_cast<std::size_t>(o.LastChannel) + 1, LapChannelRec{});
    for (int c = 0; c < kLogged; ++c) {
      LapChannelRec& cache = lap.LapChannels[static_cast<std::size_t>(c)];
      const auto n = static_cast<std::size_t>(std::lround((1500 + 5000) * o.Channels[static_cast<std::size_t>(c)].Rate));
      cache.Samples.resize(n + 1);
      for (std::size_t i = 0; i < n; ++i) cache.Samples[i] = static_cast<float>(c == 1 ? i * 3.0 : std::sin(i * 0.1) * 50);
      cache.Loaded = -1;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static int argc = 1;
  static char name[] = "fuzz";
  static char* argv[] = {name, nullptr};
  static QCoreApplication app(argc, argv);
  static QTemporaryDir dir;
  RecordingMessages messages;
  Workspace ws(messages, dir.path());
  InitMathFunctions(ws);
  MakeOuting(ws);
  ws.GlobalConstants = {{QStringLiteral("K"), QStringLiteral("2.5")}, {QStringLiteral("LINK"), QStringLiteral("a!b")}};
  ws.GlobalConstantCount = 2;
  ws.FolderTable[0].Outings[0].OutingConstants = ws.GlobalConstants;

  const QStringList lines = QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
                                .split('\n', Qt::SkipEmptyParts);
  ws.MathDefs.assign(kMathDefRows, MathDefRec{});
  ws.MathCount = 0;
  for (const QString& line : lines) {
    if (ws.MathCount >= kMathDefRows) break;
    ws.MathDefs[static_cast<std::size_t>(ws.MathCount++)].Line = line;
  }
  ProcessMathDefs(ws);
  RecompileOutingMath(ws, 0);
  FillCaches(ws);
  for (int lap = 0; lap <= 1; ++lap) {
    for (int i = 0; i < ws.MathCount; ++i) GetChannelData(ws, 0, lap, kLogged + 3 + i);
  }
  frmEditMath editor;
  editor.Form_Load(ws);
  for (qsizetype i = 0; i < lines.size() && i < 8; ++i) {
    editor.txtMath = lines[i];
    editor.ValidateString(ws);
  }
  return 0;
}
