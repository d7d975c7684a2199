#include "core/workspace/FolderTable.h"

#include "core/app/Workspace.h"

namespace {

FolderRec& Current(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }
const FolderRec& Current(const Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

}  // namespace

void InitFolder(FolderRec& folder) {
  folder.InUse = 0;
  folder.SelOuting = 0;
  folder.SelChannel = 0;
  folder.DatumOuting = -1;
  folder.DatumLap = 0;
  folder.TreeChannelCount = 0;
  folder.Changed = 0;
  folder.TimeStart = folder.TimeEnd = 0;
  folder.DistanceStart = folder.DistanceEnd = 0;
  folder.CursorTime = folder.CursorDistance = folder.CursorValue = 0;
  folder.TimeZoomDepth = folder.DistanceZoomDepth = 0;
}

bool AnyOutingLoaded(const Workspace& ws, int folder) {
  if (folder < 0 || folder >= kFolderCount) return false;
  for (const OutingRec& o : ws.FolderTable[static_cast<std::size_t>(folder)].Outings) {
    if (o.Loaded != 0) return true;
  }
  return false;
}

int NextAvailableCID(const Workspace& ws, int folder) {
  if (folder < 0 || folder >= kFolderCount) return 0;
  const auto& outings = ws.FolderTable[static_cast<std::size_t>(folder)].Outings;
  for (int s = 0; s < kOutingsPerFolder; ++s) {
    if (outings[static_cast<std::size_t>(s)].Loaded == 0) return s;
  }
  return 0;
}

int OutingNotLoaded(const Workspace& ws, const QString& file) {
  const auto& outings = Current(ws).Outings;
  for (int s = 0; s < kOutingsPerFolder; ++s) {
    const OutingRec& o = outings[static_cast<std::size_t>(s)];
    if (o.Loaded != 0 && o.FileName == file) return s;
  }
  return -1;
}

bool FindCurrentLap(Workspace& ws, int outing) {
  OutingRec& o = Current(ws).Outings[static_cast<std::size_t>(outing)];
  for (int l = 0; l < o.LastLap && l < static_cast<int>(o.Laps.size()); ++l) {
    if (o.Laps[static_cast<std::size_t>(l)].Shown != 0) {
      o.CurLap = static_cast<int16_t>(l);
      return true;
    }
  }
  return false;
}

int FindCurrentChannel(Workspace& ws, int outing, int lap) {
  FolderRec& folder = Current(ws);
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(outing)];
  if (lap < 0 || lap >= static_cast<int>(o.Laps.size())) return -1;
  const auto& chosen = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  for (int c = 0; c < static_cast<int>(chosen.size()); ++c) {
    if (chosen[static_cast<std::size_t>(c)].Shown != 0) {
      folder.SelChannel = static_cast<int16_t>(c);
      return c;
    }
  }
  return -1;
}

bool FindCurrentOuting(Workspace& ws) {
  FolderRec& folder = Current(ws);
  for (int s = 0; s < kOutingsPerFolder; ++s) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(s)];
    if (o.Loaded == 0 || !FindCurrentLap(ws, s) || FindCurrentChannel(ws, s, o.CurLap) < 0) continue;
    ws.CurOuting = folder.SelOuting = static_cast<int16_t>(s);
    return true;
  }
  return false;
}

bool FindCurrentFolder(Workspace& ws) {
  const int16_t keep = ws.CurFolder;
  for (int f = 0; f < kFolderCount; ++f) {
    if (ws.FolderTable[static_cast<std::size_t>(f)].InUse == 0) continue;
    ws.CurFolder = static_cast<int16_t>(f);
    if (FindCurrentOuting(ws)) return true;
  }
  ws.CurFolder = keep;
  return false;
}

int OutingColorSet(const Workspace& ws, int outing) {
  const OutingRec& o = Current(ws).Outings[static_cast<std::size_t>(outing)];
  if (o.Laps.empty()) return -1;
  for (const LapRec& lap : o.Laps) {
    if (lap.LapColor == -1) return -1;
  }
  return o.Laps[0].LapColor;
}
