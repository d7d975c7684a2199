#include "ui/Dialogs.h"

void LoadTrack(DialogHost&) {}
void NewTrackMap(DialogHost&) {}
void EditTrackData(DialogHost&) {}
void EditSplits(DialogHost&) {}
void EditUserSplits(DialogHost&) {}
void TrackScreenshots(DialogHost&, const Screenshot&) {}
