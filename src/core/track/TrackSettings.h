#pragma once

// Section "Track" of the settings: how a map is made from a lap.

#include <QString>

struct Workspace;

struct TrackSettings {
  bool Closed = true;
  bool Invert = true;
  int CreateMode = 0;  // 0 lateral G, 1 gyro, 2 GPS
  double LatGOffset = 0;
  double LatGIncrement = 0.3;
  double LatGStartLimit = 1.5;
  double LatGEndLimit = 0.5;
  double GlobalAngle = 180;  // degrees
  bool FigureOfEight = false;
  bool InvertCalibration = false;
};

// The values SetDefaults restores.
TrackSettings SetDefaults();
TrackSettings ReadTrackSettings(const Workspace& ws);
void WriteTrackSettings(Workspace& ws, const TrackSettings& s);

// SaveTrackData: the dialog's values into `s`. The three limits are taken as absolute values,
// and an angle outside 0..360 leaves the old one.
void SaveTrackData(TrackSettings& s, const TrackSettings& typed);

// Visits each key with its name, for the settings store and the command line alike.
template <class V>
void VisitTrackSettings(TrackSettings& s, V&& v) {
  v(QStringLiteral("Closed"), s.Closed);
  v(QStringLiteral("Invert"), s.Invert);
  v(QStringLiteral("CreateMode"), s.CreateMode);
  v(QStringLiteral("LatGOffset"), s.LatGOffset);
  v(QStringLiteral("LatGIncrement"), s.LatGIncrement);
  v(QStringLiteral("LatGStartLimit"), s.LatGStartLimit);
  v(QStringLiteral("LatGEndLimit"), s.LatGEndLimit);
  v(QStringLiteral("GlobalAngle"), s.GlobalAngle);
  v(QStringLiteral("FigureOfEight"), s.FigureOfEight);
  v(QStringLiteral("InvertCalibration"), s.InvertCalibration);
}
