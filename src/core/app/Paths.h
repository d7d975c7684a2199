#pragma once

// The family's directories, section "Paths" of application "Orlan Vector". On Windows the
// defaults lie under "C:\Orlan Vector"; elsewhere under the home folder.

#include <QString>

struct Workspace;

struct PathSettings {
  QString HexDirectory;
  QString DataDirectory;
  QString SetupDirectory;
  QString TrackDirectory;
  QString ReportDirectory;
  QString MapDirectory;
  QString LibsDirectory;
  QString PathDirectory;
  QString MathDirectory;
  QString TelemDirectory;
};

// The home folder: `override_dir` when given, else $ORLAN_HOME, else "~/Orlan Vector"
// ("C:\Orlan Vector" on Windows).
QString ResolveHome(const QString& override_dir = QString());

// The ten paths as they are when the store holds none.
PathSettings DefaultPaths(const QString& home);

// Reads the ten keys (defaults under ws.Home) and, unless told not to, makes sure the
// directories exist, with "Sample" under the home. A directory that cannot be made is left;
// the open that needs it fails with its own message.
void ReadPaths(Workspace& ws, bool create_directories = true);
// Writes the ten keys back.
void WritePaths(Workspace& ws);
