#pragma once

// The view commands of the plots: zoom, scroll and go to, on the axis of the window last
// clicked (time or distance), each keeping the view it leaves in a ten-deep history for Undo.
// Each changes the folder's view and redraws its windows (RefreshPlots).

struct Workspace;

// Length of the distance axis: the Datum span's distance (as GetMaxTime for time).
float GetMaxDistance(Workspace& ws);

void ZoomIn(Workspace& ws);
void ZoomOut(Workspace& ws);
void ZoomCursor(Workspace& ws);
void ZoomAll(Workspace& ws);
void UndoZoom(Workspace& ws);
void ScrollLeft(Workspace& ws);
void ScrollRight(Workspace& ws);
void GotoStart(Workspace& ws);
void GotoEnd(Workspace& ws);

// Keeps the current view of the active axis for Undo; past ten views the oldest is lost.
void PushView(Workspace& ws);
