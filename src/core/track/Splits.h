#pragma once

// Splits: the map's split table edited on the drawn map, the user distances of the qualifying
// table, and the split times of a lap.

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

struct Workspace;

struct SoftSplit {
  float Distance = 0;  // from the lap's start
  float Seconds = 0;   // running time from the lap's start
};

// The split times of a lap at the map's split points, the last one the lap's end; scaled so
// that the last equals the lap's true time. Empty without a distance channel.
std::vector<SoftSplit> CalcSoftSplits(Workspace& ws, int slot, int lap);

// Bubble sort of entries 0..last+1, pairs (k, k+1) for k up to `last`, until a pass swaps nothing.
void SortSplitEntries(std::vector<int32_t>& table, int last);

class frmTrackSplits {
 public:
  explicit frmTrackSplits(Workspace& ws);  // keeps a copy for cancel
  // A split at `value` chosen at map point `point`; refused unless point > 0 and 0 < value <= TrackLength.
  bool AddNewSplit(int point, double value);
  void ShuffleSplits();
  bool ClearAllSplits();    // asks first
  bool RestoreAllSplits();  // asks first; the default splits are the segments
  void ReloadTrackSegments();
  void SaveAllSplits();     // cmdSave: sort, then SaveNewSplits
  bool SaveNewSplits();
  void ReloadTempSplits();  // cmdCancel
  // "Distance : 1234 mtrs", with the GPS position for a GPS map.
  QString DrawSplitCursor(int point) const;

 private:
  Workspace& ws_;
  std::vector<int32_t> saved_;
  int16_t saved_count_ = 0;
};

// frmUserSplits ("User Distances"): up to eight distances D1..D8 into the current lap of an
// outing, kept on the outing (UserSplits) for the qualifying table.
class frmUserSplits {
 public:
  // The boxes show the outing's distances without the lap's end, which cmdOK adds again.
  frmUserSplits(Workspace& ws, int slot);
  QString Head() const;  // "Lap Distance :  5791  (mtrs)"
  // Leaving box k (0 = D1): rounded, capped at the lap's distance. D1 below 1 is refused.
  bool LeaveBox(int k, double value);
  // cmdOK: the ascending distances from D1 on, the first out of order taking the lap's
  // distance, stored in the outing; they are also returned.
  std::vector<float> cmdOK();
  std::array<float, 8> Boxes{};

 private:
  Workspace& ws_;
  int slot_;
  float lap_distance_ = 0;  // as the distance plots show it: stretched to the map
};
