#pragma once

// `orlan demo`: a complete installation in a home folder, for someone who has no data yet:
// the directories, a factory CHANNEL.DSC, math definitions and constants, simulated outings, and
// a map of Silverstone made from one of them.

#include <QString>
#include <QStringList>

#include "core/track/TrackSettings.h"

class Messages;
struct PathSettings;

// Where the shipped data (circuit centrelines) lies: $ORLAN_DATA_DIR, the installed share
// folder beside the program, or the source tree.
QString ShippedDataDirectory();

// The demo's map of Silverstone in the track directory, and the settings it is made with.
QString DemoMapPath(const PathSettings& paths);
TrackSettings DemoMapSettings();

struct DemoResult {
  QStringList Written;  // files made by this run
  QStringList Kept;     // files that were there already and are left as they are
  QStringList Outings;  // every demo outing, made or kept
};

// Makes what is missing of the demo installation in `home`; never overwrites a file that is
// there (the map is left out when its outing is a file of the person's own). False, with the
// reason in `error`, when a file cannot be made. A `laps_cap` above 0 shortens every outing to
// that many timed laps (for quick checks).
bool CreateDemoInstallation(const QString& home, Messages& messages, DemoResult& result, QString* error,
                            int laps_cap = 0);
