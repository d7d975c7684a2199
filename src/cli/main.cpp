#include <CLI/CLI.hpp>
#include <QCoreApplication>

#include "cli/Commands.h"

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);  // locale, codecs and file names as Qt expects them
  CLI::App cli{"Orlan Vector Analysis: outing files of racing-car data loggers"};
  cli.require_subcommand(1);
  CliContext context;
  cli.add_option("--home", context.home, "Home folder (default $ORLAN_HOME, else ~/Orlan Vector)");
  AddInfoCommand(cli, context);
  AddDemoCommand(cli, context);
  AddExportCommand(cli, context);
  AddTrackCommand(cli, context);
  AddSplitsCommand(cli, context);
  try {
    cli.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return cli.exit(e);
  }
  return context.exit_code;
}
