#include "ui/Dialogs.h"

void EditMathChannels(DialogHost&) {}
void EditConstants(DialogHost&) {}
void MathScreenshots(DialogHost&, const Screenshot&) {}
