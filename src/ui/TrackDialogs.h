#pragma once

// What the track dialogs share: the Track Data dialog (a loaded map's, and the one that names a
// new map), the check for a map in memory, and the outing the commands work on.

#include <QString>
#include <functional>

class QWidget;
class frmTrackData;
struct Workspace;

// Shows frmTrackData; OK copies the boxes to `form` and runs `commit`, and the dialog stays
// until that succeeds (it showed its own message). For a new map the official length follows
// the lap and can't be typed. True when committed.
bool RunTrackData(QWidget* parent, frmTrackData& form, bool new_map, const std::function<bool()>& commit);

// A map must be in memory: otherwise "No Current Track Selected" with `title`.
bool NeedTrack(Workspace& ws, const QString& title);

// The outing of the folder in view that the track commands use: the current one when it is
// loaded, else the first loaded one; -1 when the folder has none.
int TrackOuting(const Workspace& ws);
