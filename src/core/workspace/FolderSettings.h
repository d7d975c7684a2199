#pragma once

// The window settings each folder keeps in the settings store under "<window>\F<n>".

class SettingsStore;

// The per-folder sections of every window kind, in the order they are moved.
inline constexpr const char* kFolderWindowSections[] = {
    "Graph", "Distance", "Frequency", "XYPlot", "Histo", "Plot3D", "Contour", "TrackReport", "Logbook",
};

// After folder `folder` (0-based) went: the sections of the folders behind it move down one
// place, so folder n + 1's settings become folder n's, and the last folder's sections are emptied.
void MoveFolderSettingsDown(SettingsStore& store, int folder);
