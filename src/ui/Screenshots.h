#pragma once

// `orlan gui --screenshots DIR`: a picture of every window and dialog of the program, one PNG
// each, named after its class, made offscreen on the demo session.

#include <QString>
#include <functional>

#include "ui/Dialogs.h"

// Makes the pictures into `dir`, always of the demo session: in `home` when it holds the demo
// session or no installation yet (the demo is installed there), else (and without a home) in a
// demo installation of its own that is removed afterwards. Nothing of the session changes. 0
// when every picture was written.
int RunScreenshots(const QString& home, const QString& dir);

// Runs `open`, which shows a modal dialog: the first modal window that shows while `open` runs
// is saved under `name`, then `inside` runs on it (the sub-dialogs it opens are shot from
// there), and it is closed as by Cancel, so `open` returns as after a Cancel. When no dialog
// showed, `shot` is given no window: the picture is missing.
void ShootModal(const Screenshot& shot, const QString& name, const std::function<void()>& open,
                const std::function<void(QWidget*)>& inside = {});
