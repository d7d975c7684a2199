#pragma once

// Editing the beacons of an outing: insert by lap time or by distance, delete, shift by time or
// by distance, and the write-back of the beacon table into the outing file.

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

struct Workspace;

// frmInsertLap: "m:ss.fff" or seconds alone, in ms; nothing when the text is no time.
std::optional<double> ParseLapTime(const QString& text);

// frmInsertDistance: the ms into the lap from `start` to `end` (ms of the recording) at which
// its distance, stretched as the lap will be, reaches the whole distance in `text`; 0 after the
// message "Error: Unable to calculate laptime from data".
double RowDistanceTime(Workspace& ws, int slot, int32_t start, int32_t end, const QString& text);

// frmInsertBeacon ("Insert/Delete Beacon") on the outing in `slot`: a copy of its lap table.
class frmInsertBeacon {
 public:
  frmInsertBeacon(Workspace& ws, int slot);
  std::vector<int32_t> Rows;  // 0..Count: lap starts and the closing row, ms
  int Count = 0;              // laps
  int Selected = 0;
  // "001  01:39.871" for each lap.
  QStringList LapList() const;
  void cmdDelete();
  // cmdInsert with "Distance Based" checked: false after its message.
  bool InsertByDistance(const QString& text);
  // cmdInsert by lap time from frmInsertLap's text.
  bool InsertByTime(const QString& text);
  // A new beacon `ms` into the selected lap; ignored unless it lies inside it.
  bool Insert(double ms);
  // cmdOK ("Save Changes"): the table becomes the lap table and the file's beacons.
  bool cmdOK();

 private:
  Workspace& ws_;
  int slot_;
};

// Writes the outing's lap table back as its beacons: only the header's beacon fields change,
// the file is replaced whole or not at all. False after "Error updating beacon data".
bool WriteBeacons(Workspace& ws, int slot);

// frmShiftBeacon: every beacon but the first and the last two moved by `seconds` (in memory only).
void ShiftTime(Workspace& ws, int slot, double seconds);
// "Error shifting beacons" (title "Shift Beacon"); false.
bool ShiftFailed(Workspace& ws);
// Moved by a distance along the lap: false after "Error shifting beacons".
bool ShiftDistance(Workspace& ws, int slot, double distance);
// "(feet)", "(mtrs)" or, for a shift by time, "(secs)".
QString ShiftUnits(const Workspace& ws, int slot, bool by_time);
