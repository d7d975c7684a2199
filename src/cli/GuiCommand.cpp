// `orlan gui [--home DIR]`: the main window on the home's settings and data.

#include "cli/Commands.h"
#include "core/app/Paths.h"
#include "ui/RunGui.h"

void AddGuiCommand(CLI::App& cli, CliContext& context) {
  CLI::App* sub = cli.add_subcommand("gui", "Open the analysis window");
  AddHomeOption(*sub, context);
  sub->callback([&context] { context.exit_code = RunGui(ResolveHome(QString::fromStdString(context.home))); });
}
