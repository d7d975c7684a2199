#pragma once

// Laps from beacons: the lap table of an outing, its fast lap, and the distance at each lap's
// start with the stretch of each lap to the track map's length.

#include <QString>
#include <cstdint>

class QFile;
struct Workspace;
struct OutingRec;

// Rebuilds Laps and LastLap from the beacons in ws.OutingHdr, then FindFastLap.
void BuildLaps(Workspace& ws, int slot);
// The fastest of the laps between the out lap and the in lap that is longer than the folder's
// minimum lap time; 0 when none.
void FindFastLap(Workspace& ws, int slot);
// StartDistance of every lap from the distance channel in the file, then ComputeLapScales.
void ComputeLapDistances(Workspace& ws, int slot);
// DistanceScale of every lap: stretched to the loaded map when it differs by less than the
// folder's TrackCorrection percent.
void ComputeLapScales(Workspace& ws, int slot);
// The stretch of a lap of raw distance `d`: the map's length over it, or 1.
float LapDistanceScale(const Workspace& ws, float d);

// The outing's distance count at `ms` from the start of recording, read from its open file as
// a lap's StartDistance is; and its raw sample `n`. False when the file can't be read there.
bool DistanceCountAt(const OutingRec& o, QFile& f, double ms, float& count);
bool DistanceSampleAt(const OutingRec& o, QFile& f, int64_t n, double& value);

// Length of lap `lap` in ms (row lap + 1 minus row lap).
int LapTimeMs(const OutingRec& outing, int lap);
// "Out", "In", "Fast" or empty.
QString LapLabel(const OutingRec& outing, int lap);
// The lap's number as shown: LapNumberBase + index, "000".
QString LapNumberText(const OutingRec& outing, int lap);
// Minutes, seconds and thousandths: "01:39.871".
QString LapTimeText(int ms);
