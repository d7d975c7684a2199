#include "core/demo/DemoSession.h"

#include "core/app/Files.h"
#include "core/app/LastState.h"
#include "core/app/Options.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/demo/DemoInstall.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/plots/PlotScale.h"
#include "core/track/DistanceTime.h"

namespace {

const QString kFiles[] = {QStringLiteral("SILV0101.DAT"), QStringLiteral("SILV0102.DAT")};

}  // namespace

bool HoldsDemoSession(const QString& home, Messages& messages) {
  Workspace ws(messages, home);
  ReadPaths(ws, false);
  ReadRegistryData(ws);
  const QStringList demo = {JoinPath(ws.Paths.DataDirectory, kFiles[0]), JoinPath(ws.Paths.DataDirectory, kFiles[1])};
  return SavedOutingFiles(ws, 0) == demo && SavedOutingFiles(ws, 1).isEmpty() &&
         ws.FolderTable[0].TrackFile == DemoMapPath(ws.Paths);
}

bool WriteDemoSession(const QString& home, Messages& messages) {
  Workspace ws(messages, home);
  if (!StartUp(ws, false)) return false;
  if (HasFolderState(ws)) return true;  // a session of the person's own
  FolderRec& folder = ws.FolderTable[0];
  for (int slot = 0; slot < 2; ++slot) {
    ws.CurFolder = 0;
    ws.CurOuting = static_cast<int16_t>(slot);
    if (!OpenOuting(ws, JoinPath(ws.Paths.DataDirectory, kFiles[slot]))) return false;
    OutingRec& o = OutingAt(ws, slot);
    for (LapRec& lap : o.Laps) lap.Shown = 0;
    o.CurLap = o.PrevLap = o.FastLap;
    LapRec& fast = o.Laps[static_cast<std::size_t>(o.FastLap)];
    fast.Shown = -1;
    for (const char* name : {"SYSTEM SPEED", "THROTTLE"}) {
      const int c = FindChannelByName(ws, 0, slot, QString::fromLatin1(name));
      if (c >= 0 && c < static_cast<int>(fast.LapChannels.size())) fast.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
    }
  }
  folder.SelOuting = 0;
  folder.ActiveChannel = static_cast<int16_t>(std::max(0, FindChannelByName(ws, 0, 0, QStringLiteral("SYSTEM SPEED"))));
  folder.TimeStart = 0;
  folder.TimeEnd = static_cast<int32_t>(GetMaxTime(ws));
  folder.CursorTime = static_cast<float>(folder.TimeEnd) / 3;  // in the first corners, not on the edge
  SaveFolderState(ws);
  // Speed and throttle each in a band of its own; no other option of the home is touched.
  ws.Settings.WriteBool(kAppAnalysis, FolderSection("UserOptions", 0), "TileGraphs", true);
  ws.Settings.WriteBool(kAppAnalysis, FolderSection("Graph", 0), "Active", true);
  // The demo's map, when it was made, is the folder's; laps within 2 % of it are stretched to it,
  // and a new map starts from the settings that made it.
  if (FileExists(DemoMapPath(ws.Paths))) {
    ws.Settings.Write(kAppAnalysis, FolderSection("Track", 0), "CurrentTrack", DemoMapPath(ws.Paths));
    ws.Settings.WriteInt(kAppAnalysis, FolderSection("Track", 0), "TrackCorrection", 2);
    WriteTrackSettings(ws, DemoMapSettings());
  }
  ws.Settings.Sync(kAppAnalysis);
  return true;
}
