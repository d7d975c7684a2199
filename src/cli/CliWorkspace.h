#pragma once

// A workspace for the command line: the home's settings, CHANNEL.DSC and math definitions, read
// without making any directory or file, and an outing loaded into folder 1, slot 1.

#include <QString>
#include <memory>

#include "cli/Commands.h"
#include "core/app/Workspace.h"

// Null when the home has no CHANNEL.DSC (its message went to `messages`).
std::unique_ptr<Workspace> StartCliWorkspace(const CliContext& context, Messages& messages);

// Loads the outing into slot 0 of folder 0; false after its message.
bool LoadCliOuting(Workspace& ws, const QString& path);
