#include "core/app/Workspace.h"

#include "core/app/Files.h"

// On Windows the settings live in the registry; elsewhere in INI files under the home.
Workspace::Workspace(Messages& m, const QString& home)
    : messages(m), Home(home), Settings(JoinPath(home, QStringLiteral("Settings"))) {}
