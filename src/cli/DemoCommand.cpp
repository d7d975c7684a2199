// `orlan demo [--home DIR]`: makes the demo installation, and the session its first start opens.

#include <cstdio>

#include "cli/Commands.h"
#include "core/app/Messages.h"
#include "core/app/Paths.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoSession.h"

void AddDemoCommand(CLI::App& cli, CliContext& context) {
  auto* sub = cli.add_subcommand("demo", "Make a demo installation in the home folder (what is there is kept)");
  AddHomeOption(*sub, context);
  sub->callback([&context] {
    const QString home = ResolveHome(QString::fromStdString(context.home));
    StderrMessages messages;
    DemoResult result;
    QString error;
    if (!CreateDemoInstallation(home, messages, result, &error)) {
      std::fprintf(stderr, "demo: %s\n", qUtf8Printable(error));
      context.exit_code = 1;
      return;
    }
    if (!WriteDemoSession(home, messages)) {
      context.exit_code = 1;
      return;
    }
    std::printf("Demo installation in %s\n", qUtf8Printable(home));
    for (const QString& f : result.Written) std::printf("  made  %s\n", qUtf8Printable(f));
    for (const QString& f : result.Kept) std::printf("  kept  %s\n", qUtf8Printable(f));
  });
}
