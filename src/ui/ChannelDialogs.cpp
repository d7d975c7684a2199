#include "ui/Dialogs.h"

void EditBeacons(DialogHost&) {}
void ShiftBeacons(DialogHost&) {}
void EditFilters(DialogHost&) {}
void EditChannelColor(DialogHost&) {}
void EditEvents(DialogHost&) {}
void EditPalette(DialogHost&) {}
void EditOptions(DialogHost&) {}
int ChooseAxisChannel(DialogHost&, int) { return -1; }
void ChannelScreenshots(DialogHost&, const Screenshot&) {}
