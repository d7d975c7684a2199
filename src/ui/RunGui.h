#pragma once

// `orlan gui`: the windowed program on a home folder.

#include <QString>

// Starts the workspace, shows the main window with the last session and runs until it closes.
// Without CHANNEL.DSC the program ends after its message, with 1.
int RunGui(const QString& home);
