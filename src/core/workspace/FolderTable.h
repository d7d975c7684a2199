#pragma once

// The 16 folders, one per folder tab. Each folder holds its own view of outings and its options.

#include <QString>
#include <array>
#include <cstdint>

#include "core/app/Options.h"

inline constexpr int kFolderCount = 16;
inline constexpr int kOutingsPerFolder = 16;

struct FolderRec {
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
};

// Sets the fields a folder starts with: no current outing, no Datum, window state cleared.
void InitFolder(FolderRec& folder);
