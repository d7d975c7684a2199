#pragma once

// frmShiftBeacon ("Shift Beacons"): moves the beacons between the out lap and the in lap of an
// outing, by a time or by a distance along each lap, when the beacon's place on the track is off.
// Only the lap table in memory changes.

#include <QString>

struct Workspace;

class frmShiftBeacon {
 public:
  static const QString kTitle;  // the window's caption; a failure's title is "Shift Beacon"

  frmShiftBeacon(Workspace& ws, int slot);

  bool optTime = true;  // "Shift by Time (secs)"; false: "Shift by Distance"
  QString txtShift;

  // "&Current Offset :" shows the distance the beacons were last shifted by, in its units.
  QString CurrentOffset() const;
  // "(secs)", or "(mtrs)" / "(feet)" for a shift by distance.
  QString Units() const;
  bool HasDistance() const;

  // Shifts. False after "Error shifting beacons" when the shift is no number, would move a
  // beacon past its neighbour (by time), or can't be found along a lap (by distance); the laps
  // stay as they were.
  bool cmdOK();

 private:
  Workspace& ws_;
  int slot_;
};
