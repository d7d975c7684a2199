#pragma once

// The 16 folders, one per folder tab. Each folder holds its own view of outings and its options.

#include <QString>
#include <array>
#include <functional>
#include <vector>
#include <cstdint>

#include "core/app/Options.h"
#include "core/plots/RefreshPlots.h"
#include "core/workspace/OutingModel.h"

inline constexpr int kFolderCount = 16;
inline constexpr int kOutingsPerFolder = 16;

struct FolderRec {
  std::array<OutingRec, kOutingsPerFolder> Outings;
  int16_t InUse = 0;          // -1 while the folder's tab exists
  int16_t SelOuting = 0;      // outing selected in this folder
  int16_t SelChannel = 0;     // channel selected in this folder
  int16_t DatumOuting = -1;   // outing that holds the Datum lap; -1 = none
  int16_t DatumLap = 0;
  int16_t TreeChannelCount = 0;
  int16_t LapsDisplayed = 1;  // laps in one comparison unit; 255 = the whole outing
  int16_t GroupCount = 1;     // settings key "GroupLaps"
  QString Name;               // Text 16; shown as "Folder - " and the name
  QString TrackFile;          // settings key "CurrentTrack"; empty = none
  int16_t TrackCorrection = 2;  // percent
  int32_t MinimumLaptime = 0;   // seconds
  int16_t Changed = 0;          // -1 after an outing was loaded or removed
  FolderOptions Options;
  // View window of the plots, from the start of the lap being plotted.
  int32_t TimeStart = 0;
  int32_t TimeEnd = 0;
  float DistanceStart = 0;
  float DistanceEnd = 0;
  // Scale of the selected channel, taken when the tree is rebuilt: the time axis and the
  // frequency plot. 0 and 0 when the channel has no range of its own.
  float TimeScaleMin = 0, TimeScaleMax = 0;
  float FftScaleMin = 0, FftScaleMax = 0;
  // The span of the spectra in ms from the lap's start, set from the time graph's cursor and
  // measure mark; none (the time view) while the end isn't above the start.
  int32_t FftStart = 0, FftEnd = 0;
  // The cursor and the channel of the current axis.
  int16_t ActiveChannel = 0;
  float CursorTime = 0;      // ms
  float CursorDistance = 0;
  float CursorValue = 0;     // the active channel's value at the cursor
  // The last ten views of each axis, for Undo; entries 1..10 are used, 0 stays empty.
  int16_t TimeZoomDepth = 0;
  std::array<int32_t, 11> TimeZoomStart{}, TimeZoomEnd{};
  int16_t DistanceZoomDepth = 0;
  std::array<float, 11> DistanceZoomStart{}, DistanceZoomEnd{};
  // The histograms' highest share of a bin (0 to 1) in the last drawing, and the bins summed over
  // every lap of the active channel with "HistoTotal".
  float HistoPeak = 0;
  std::vector<int32_t> HistoTotals;
  int32_t HistoTotalCount = 0;
  // Further channels whose scales stand in the side panels of the time and distance plots, by
  // short name: left panel's two columns, then the right panel. Empty: none.
  std::array<QString, 3> AxisPanelChannels;
  // The open plot windows of this folder, by the order in which they redraw (PlotWindow): each
  // sets its redraw when it opens and clears it when it closes.
  std::array<std::function<void()>, kPlotWindowKinds> Redraw;
};

struct Workspace;

// Sets the fields a folder starts with: no current outing, no Datum, window state cleared.
void InitFolder(FolderRec& folder);

// True when any of the 16 slots of the folder holds an outing.
bool AnyOutingLoaded(const Workspace& ws, int folder);
// The first free outing slot of the folder; 0 when all are full (callers test Loaded).
int NextAvailableCID(const Workspace& ws, int folder);
// The slot of CurFolder whose outing has this file name, or -1.
int OutingNotLoaded(const Workspace& ws, const QString& file);
// True when a lap of the outing (0..LastLap-1) is shown; sets the outing's CurLap to it.
bool FindCurrentLap(Workspace& ws, int outing);
// The first channel that the lap has chosen, stored in SelChannel; -1 when none.
int FindCurrentChannel(Workspace& ws, int outing, int lap);
// The first loaded outing of CurFolder with a shown lap that has a channel: CurOuting, SelOuting.
bool FindCurrentOuting(Workspace& ws);
// The first folder in use in which FindCurrentOuting finds an outing: CurFolder.
bool FindCurrentFolder(Workspace& ws);
// LapColor of lap 0, or -1 as soon as any lap of the outing has none.
int OutingColorSet(const Workspace& ws, int outing);
