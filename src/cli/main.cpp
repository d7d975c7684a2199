#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QApplication>
#include <QGuiApplication>
#include <cstring>
#include <memory>

#include "cli/Commands.h"

namespace {

// The window needs a widget application; pictures a GUI application for fonts, painted
// offscreen without a display; the other commands run without either.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc, char** argv) {
  bool paints = false, window = false, screenshots = false;
  for (int i = 1; i < argc; ++i) {
    paints = paints || std::strcmp(argv[i], "plot") == 0;
    window = window || std::strcmp(argv[i], "gui") == 0;
    screenshots = screenshots || std::strcmp(argv[i], "--screenshots") == 0;
  }
  // The pictures of the windows are made offscreen, display or not.
  if (window && screenshots) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (window) return std::make_unique<QApplication>(argc, argv);
  if (!paints) return std::make_unique<QCoreApplication>(argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
      qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  const auto app = MakeApplication(argc, argv);  // locale, codecs and file names as Qt expects them
  CLI::App cli{"Orlan Vector Analysis: outing files of racing-car data loggers"};
  cli.require_subcommand(1);
  CliContext context;
  cli.add_option("--home", context.home, "Home folder (default $ORLAN_HOME, else ~/Orlan Vector)");
  AddInfoCommand(cli, context);
  AddDemoCommand(cli, context);
  AddExportCommand(cli, context);
  AddTrackCommand(cli, context);
  AddSplitsCommand(cli, context);
  AddPlotCommand(cli, context);
  AddGuiCommand(cli, context);
  AddFitCommands(cli, context);
  AddSpectrumCommand(cli, context);
  try {
    cli.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return cli.exit(e);
  }
  return context.exit_code;
}
