#pragma once

// frmTrackNew: the map made from a lap, stepped from lap to lap, its corners marked, and saved.

#include <QString>
#include <functional>

#include "core/track/TrackSettings.h"

struct Workspace;

// mnuNewMap on the main window: true when an outing is there to make a map from.
bool CanMakeNewMap(Workspace& ws);

class frmTrackNew {
 public:
  // Starts on the outing's CurLap with the stored settings, and makes the map.
  frmTrackNew(Workspace& ws, int slot);
  QString Title() const;  // "Create Track : Lap (007)"
  bool Created() const { return created_; }
  int Lap() const { return lap_; }
  TrackSettings Settings;

  // SaveTrackData from the dialog's values, then a new map of the same lap. These and the lap
  // commands give false when no map was made; a cancelled map leaves the lap and settings too.
  bool Recreate(const TrackSettings& typed);
  bool mnuNextLap();
  bool mnuPreviousLap();
  bool mnuSelectLap(int lap);
  bool mnuReset();  // SetDefaults
  void mnuCorner(int from, int to);
  void mnuStraight(int from, int to);
  // cmdSave: the file NAME.MAP; false after a message.
  bool cmdSave(const QString& name, const QString& comment);
  // The point nearest the mouse: "Distance : 1234 mtrs", with the position for a GPS map.
  QString CursorText(int point) const;
  // On closing the settings go back to section "Track".
  void Close();

 private:
  bool Make();
  // `change` (the lap, the settings), then a new map.
  bool Remake(const std::function<void()>& change);
  Workspace& ws_;
  int slot_;
  int lap_ = 0;
  bool created_ = false;
};
