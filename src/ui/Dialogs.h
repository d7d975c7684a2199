#pragma once

// The windows and dialogs the main window opens, by family, each family in files of its own.
// A command runs its dialog modally over the main window; a refusal shows its message through
// ws.messages. After a change the dialog calls DialogHost::Changed, which rebuilds the tree and
// redraws the folder's plots. Each family also shows its windows for `orlan gui --screenshots`.

#include <QString>
#include <functional>

class QWidget;
struct Workspace;

struct DialogHost {
  Workspace& ws;
  QWidget* parent = nullptr;
  std::function<void()> Changed;  // tree and plots show what changed
};

// Saves a picture of a window or dialog as it stands, named after its class ("frmEditMath"); no
// window: the dialog never showed, and the picture is missing.
using Screenshot = std::function<void(QWidget* window, const QString& name)>;

// Math channels and constants: frmEditMath with frmNewMath and frmChlMath; frmConstants with
// frmNewConst.
void EditMathChannels(DialogHost& host);
void EditConstants(DialogHost& host);
void MathScreenshots(DialogHost& host, const Screenshot& shot);

// Track maps and splits: Load Track (the file dialog), frmTrackNew (mnuNewMap), frmTrackData,
// frmTrackSplits (mnuEditSplits) and frmUserSplits.
void LoadTrack(DialogHost& host);
void NewTrackMap(DialogHost& host);
void EditTrackData(DialogHost& host);
void EditSplits(DialogHost& host);
void EditUserSplits(DialogHost& host);
void TrackScreenshots(DialogHost& host, const Screenshot& shot);

// Beacons (frmInsertBeacon with frmInsertLap and frmInsertDistance; frmShiftBeacon), the
// channel's filter (frmFilters), colour (frmChlColor) and event (frmEventEdit), the palette
// (frmEditPalette) and the options (frmOptions).
void EditBeacons(DialogHost& host);
void ShiftBeacons(DialogHost& host);
void EditFilters(DialogHost& host);
void EditChannelColor(DialogHost& host);
void EditEvents(DialogHost& host);
void EditPalette(DialogHost& host);
void EditOptions(DialogHost& host);
// frmChlXYAxis ("Select Channel"): a channel of outing `outing` of the folder in view; -1 when
// cancelled.
int ChooseAxisChannel(DialogHost& host, int outing);
void ChannelScreenshots(DialogHost& host, const Screenshot& shot);
