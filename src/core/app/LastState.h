#pragma once

// What a start finds of the last session: the folders in use with their outings, the laps each
// outing shows and the channels on each lap, the Datum and the view. Section "LastState\F<n>"
// of the program's settings. The windows' geometry is the window's business (ui/).

#include <QStringList>
#include <vector>

struct Workspace;

// The outing files saved for `folder` (0..15), in the order of their slots.
QStringList SavedOutingFiles(const Workspace& ws, int folder);

// True when the settings hold a session of folder 1, as SaveFolderState leaves one.
bool HasFolderState(const Workspace& ws);

// Writes the state of all 16 folders; a folder not in use leaves an empty section.
void SaveFolderState(Workspace& ws);

// Opens again, through OpenOuting, the outings saved for each folder, in their slots, and shows
// what they showed. An outing whose file has gone is left out without a word; one that fails
// to load says why as any load does. Outings load one at a time, each whole: a cancel of the
// progress leaves out the ones not loaded yet. Returns the folders now in use, in order; folder
// 0 is in use whatever was saved.
std::vector<int> ReadFolderState(Workspace& ws);
