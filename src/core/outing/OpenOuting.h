#pragma once

// The only way an outing enters the workspace: its header is read into ws.OutingHdr, an old
// header is converted, and slot CurOuting of the folder in view becomes a loaded outing with its
// channels and laps.

#include <QString>

struct Workspace;

// Loads the file into slot ws.CurOuting of the folder in view. "Unable to open file …" (title
// "File Open") when it does not exist, "Unable to process header" (title "Process header")
// when the header cannot be used.
bool OpenOuting(Workspace& ws, const QString& path);

// The steps that turn ws.OutingHdr into the slot's records.
bool ProcessHeader(Workspace& ws, const QString& path);

// Converts the header of an outing whose version begins with a digit below 8, after asking
// (unless AlwaysConvert): the file is rewritten in place, atomically, stamped with the
// program's version, with temperatures and pulse readings brought to the tenths that later
// versions store, so it reads the same. False when the user declines or the write fails; the
// outing is then read as it stands.
bool UpgradeHeader(Workspace& ws, const QString& path);

// The math channel table of a load: a channel (key 1027 and up) for each definition, named after
// it. The outing's constants come before it and the compile after the descriptor copy.
void PrepareOutingMath(Workspace& ws, int slot);
