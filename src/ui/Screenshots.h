#pragma once

// `orlan gui --screenshots DIR`: a picture of every window and dialog of the program, one PNG
// each, named after its class, made offscreen on the demo session.

#include <QString>
#include <functional>

#include "ui/Dialogs.h"

// Makes the pictures into `dir`; the home is made a demo installation when it holds none. The
// session is left as it was. 0 when every picture was written.
int RunScreenshots(const QString& home, const QString& dir);

// Runs `open`, which shows a modal dialog: the first modal window that shows is saved under
// `name` and closed as by Cancel, so `open` returns as after a Cancel.
void ShootModal(const Screenshot& shot, const QString& name, const std::function<void()>& open);
