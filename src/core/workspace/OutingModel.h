#pragma once

// The records of a loaded outing: its channels, its laps, and per lap and channel the cached
// samples. Samples are not held per outing: they are fetched per lap and channel on demand.

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "core/compute/MathCompiler.h"
#include "core/compute/MathDefinitions.h"
#include "core/outing/OutingHeader.h"

// Statistics of a channel over the folder's view window.
struct ChannelStats {
  float Min = 0;
  int32_t MinIndex = 0;
  float Max = 0;
  int32_t MaxIndex = 0;
  float Avg = 0;
  float Dev = 0;
  int16_t Valid = 0;
};

// One bar of a histogram: the values from Low up to below High, and how many samples fell there.
struct HistoBin {
  float Low = 0;
  float High = 0;
  int32_t Count = 0;
};

// The cache of one channel in one lap.
struct LapChannelRec {
  std::vector<float> Samples;  // engineering values, index 0 at the lap's start
  int16_t Loaded = 0;          // -1: Samples is valid
  ChannelStats TimeStats;
  ChannelStats DistanceStats;
  int16_t Color = -1;          // palette index of this channel in this lap; -1: the channel's own
  int16_t Shown = 0;           // -1: the channel is chosen for this lap
  int16_t EventRow = 0;        // stacking row of its event bars
  int16_t TileIndex = 0;       // band of a tiled folder, 0 at the top
  std::vector<HistoBin> Bins;  // the histogram of the time view, 0..HistoBins
  int32_t BinSamples = 0;      // the samples the histogram took
  std::vector<float> Spectrum; // magnitudes of bins 0..n/2-1 over the folder's spectrum span
  int32_t SpectrumPoints = 0;  // n, the samples transformed
};

struct LapRec {
  int16_t Shown = 0;        // -1: the lap stands in the tree and is compared
  int32_t StartTime = 0;    // ms from the start of recording
  float StartDistance = 0;  // distance count at StartTime
  float DistanceScale = 1;  // raw distance to track distance
  int16_t Hidden = 0;       // -1: kept in the tree, not drawn
  int16_t LapColor = -1;    // palette index; -1: none of its own
  std::vector<LapChannelRec> LapChannels;
};

inline constexpr int kDerivedTimeKey = 1024;
inline constexpr int kDerivedLapDistanceKey = 1025;
inline constexpr int kDerivedLongAccelKey = 1026;
inline constexpr int kFirstMathKey = 1027;

struct ChannelRec {
  uint16_t Key = 0;
  uint16_t SourceGroup = 0;
  QString ShortName;  // first 16 characters of Name: how channels match across outings
  QString Name;       // upper case
  QString Units;
  float ScreenMin = 0;
  float ScreenMax = 0;
  uint16_t Group = 0;
  int16_t SmoothWidth = 0;
  int16_t Security = 0;
  int16_t AutoScale = 0;
  uint16_t StandardCode = 0;
  uint16_t Decimals = 0;
  uint16_t Color = 0;
  uint16_t FftDecimals = 0;
  uint16_t WordSize = 0;
  uint16_t DscIndex = 0;
  float EventLimit = 0;
  float EventHigh = 0;
  uint16_t EventEnabled = 0;
  uint16_t EventFlags = 0;
  int16_t FftAutoScale = 0;
  int16_t FilterKind = 0;  // 0 none, 1 Smooth, 2 low-pass, 3 high-pass, 4 band-pass, 5 band-reject
  int16_t FilterWindow = 0;   // 0 Hamming, 1 Blackman, 2 Raised Cosine, other Rectangular
  int16_t FilterKernel = 0;   // kernel length M, used clamped to 10..200
  int16_t FilterLowCut = 0;   // hundredths of a hertz
  int16_t FilterHighCut = 0;  // hundredths of a hertz
  uint16_t PrecisionMode = 0;
  uint16_t TileBottom = 0;
  uint16_t TileTop = 0;
  float FftScaleMin = 0;
  float FftScaleMax = 0;
  float TimeMin = 0, TimeMax = 0, DistanceMin = 0, DistanceMax = 0;  // scales in force in the plots
  float Rate = 0;           // samples per ms; 0: not available
  int32_t BlockOffset = 0;  // 1-based position of the block in the file
  int32_t BlockLength = 0;  // bytes
  std::array<int32_t, 13> CalX{};
  std::array<float, 13> CalY{};
  float CalCoefA = 0, CalCoefB = 0, CalCoefC = 0, CalOffset = 0;
  int16_t CalType = 0;
  int16_t CalPoints = 0;
};

struct OutingRec {
  std::vector<ChannelRec> Channels;  // 0..LastChannel: logged, derived, math
  std::vector<LapRec> Laps;          // 0..LastLap: one row per lap start and the closing row
  std::vector<PostfixRec> Postfix;           // one per math definition: its compiled tokens
  std::vector<ConstantRec> OutingConstants;  // the global constants' rows, with this outing's values
  int16_t OutingConstantCount = 0;           // entries the outing's constants block held
  QString FileName;
  QString DateText;
  QString SizeText;
  QString LongDateText;
  QString SessionText;
  QString SystemName;
  QString Version;
  uint16_t Checksum = 0;
  int16_t Firmware = 0;
  uint16_t MemoryBlocks = 0;
  int32_t LcuSerial = 0;
  QString RunTimeText;
  uint16_t Resets = 0;
  QString Driver, TrackName, Chassis, Comment1, Comment2;
  int16_t Loaded = 0;
  int16_t SessionNumber = 0;
  int16_t RunNumber = 0;
  int16_t FirstLap = 0;
  int16_t LastLap = 0;
  int16_t FirstLapNumber = 0;
  int16_t LapCountInSession = 0;
  int16_t Cyclic = 0;
  int16_t LoggedCount = 0;
  int16_t LastChannel = 0;
  int16_t FastLap = 0;
  int16_t ReferenceLap = 0;
  // Standard channels; -1 or 0 when absent, as each one's default says.
  int16_t ChanLatG = -1, ChanDistance = -1, ChanFuel = 0, ChanGyro = -1, ChanSpeed = 0, ChanLapCount = 0,
          ChanLapTime = 0, ChanSplitTime = 0, ChanBoxSerial = 0, ChanRpm = 0, ChanMpg = 0, ChanLapDistance = 0,
          ChanThrottle = 0, ChanGpsLat = -1, ChanGpsLong = -1, ChanGpsAlt = -1;
  uint16_t DisplayFlags = 0;
  QString EngineName;
  uint16_t EngineNumber = 0;
  int32_t EngineSeconds = 0;
  std::array<int32_t, 3> EngineDistance{};
  int32_t FullLoadSeconds = 0;
  int32_t TotalRevs = 0;
  uint16_t MaxRpm = 0;
  int32_t OutingDistance = 0;
  std::array<LogbookLimit, 8> LogbookLimits{};
  std::array<LogbookBand, 8> LogbookBands{};
  std::array<ExpansionEntry, 16> ExpansionMap{};
  std::array<PulseInput, 8> PulseInputs{};
  int32_t DataEnd = 0;  // 1-based file position after the last block
  int64_t FileSize = 0;        // at load: bounds what a fetch may read
  int16_t OldVersion = 0;
  int16_t BandCount = 0;
  std::array<int32_t, 9> BandLimits{};
  uint16_t SystemFlags = 0;
  uint64_t StartFileTime = 0;
  // Tree and plot state
  int16_t LapNumberBase = 0;
  int16_t CurLap = 0;
  int16_t PrevLap = 0;
  uint16_t UnitsMask = 1;  // bit 0: distance in metres
  int16_t OutingHidden = 0;
  float BeaconShift = 0;
  // User Distances (frmUserSplits) for the qualifying table: from the lap's start, ascending,
  // the last one the lap's end. Empty when none were given.
  std::vector<float> UserSplits;
};
