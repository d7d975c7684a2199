#pragma once

// Loading, writing and fitting the track map held in ws.Track, and the frmTrackData logic.

#include <QByteArray>
#include <QString>
#include <functional>

struct Workspace;
struct TrackState;
struct TrackHeader;

// Loads the map at `path` into ws.Track (the older layout through LoadOldTrackFile). On failure
// the folder's TrackFile is cleared, no map is loaded and the message has the title "Load Track".
bool LoadTrackFile(Workspace& ws, const QString& path);
bool LoadOldTrackFile(Workspace& ws, const QString& path);

// The folder's map chosen in the file dialog: remembered, loaded and applied to its outings.
bool SelectTrackFile(Workspace& ws, const QString& path);
// The map of the folder in view in memory, as a tab is chosen, the session is read or a new
// map was saved (TrackChanged): loaded when it isn't held yet, none when the folder names none;
// the lap scales follow.
void LoadFolderTrack(Workspace& ws);
// Lap scales of every loaded outing of the folder follow the map; where a stretch changed, the
// distance channels refetch.
void ApplyTrackToOutings(Workspace& ws);
// mnuUnloadTrack: forgets the folder's map.
void UnloadTrack(Workspace& ws);

// TrackScale and the offsets that fit the map into a surface of width by height.
void FitTrackToArea(Workspace& ws, double width, double height);

// The point under the mouse: "Distance : 1234 mtrs" (or " feet"), and for a GPS map its
// "Lat : " and "Long : " in degrees; empty off the map.
QString TrackPointText(const Workspace& ws, bool metric, int point);

// The whole file for the map in ws.Track, its header stamped with `outing_name`.
QByteArray TrackFileBytes(const Workspace& ws, const QString& outing_name);

// Rewrites the header of the map file at `path` with `change` applied, keeping every other byte;
// false after a message with `title`.
bool UpdateTrackHeader(Workspace& ws, const QString& path, const QString& title,
                       const std::function<void(TrackHeader&)>& change);

// frmTrackData ("Track Data"): the map's name, official length, comment and lap display, and the
// folder's correction and minimum lap time.
class frmTrackData {
 public:
  explicit frmTrackData(Workspace& ws);
  QString TrackName;
  float OfficialLength = 0;
  QString TrackComment;
  double Correction = 0;     // percent
  double MinLaptime = 0;     // seconds
  int LapDisplayMode = 0;
  // Units caption of the official length: "(km)" or "(miles)".
  QString LengthUnits() const;
  // Checks the name and copies the values to the folder and ws.Track; false leaves the dialog open.
  bool Accept();
  // cmdOK on a loaded map: Accept, then the four header fields rewritten in the map file.
  bool cmdOK();

 private:
  Workspace& ws_;
};
