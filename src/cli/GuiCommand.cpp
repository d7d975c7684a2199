// `orlan gui [--home DIR] [--screenshots DIR]`: the main window on the home's settings and data,
// or a picture of each of its windows and dialogs.

#include "cli/Commands.h"
#include "core/app/Paths.h"
#include "ui/RunGui.h"
#include "ui/Screenshots.h"

void AddGuiCommand(CLI::App& cli, CliContext& context) {
  CLI::App* sub = cli.add_subcommand("gui", "Open the analysis window");
  AddHomeOption(*sub, context);
  auto shots = std::make_shared<std::string>();
  sub->add_option("--screenshots", *shots,
                  "Write a PNG of every window and dialog of the demo session into this folder and exit "
                  "(offscreen; in --home when it holds the demo or nothing yet, else in a demo of its own)");
  sub->callback([&context, shots] {
    if (shots->empty()) {
      context.exit_code = RunGui(ResolveHome(QString::fromStdString(context.home)));
      return;
    }
    const QString home = context.home.empty() ? QString() : ResolveHome(QString::fromStdString(context.home));
    context.exit_code = RunScreenshots(home, QString::fromStdString(*shots));
  });
}
