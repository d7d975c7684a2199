#pragma once

// The subcommands of `orlan`. Each adds itself to the parser and runs from its callback.

#include <CLI/CLI.hpp>
#include <QString>
#include <string>

struct CliContext {
  std::string home;  // --home, given before or after the subcommand
  int exit_code = 0;
};

// Adds --home to a subcommand, so it can stand after the subcommand's name too.
void AddHomeOption(CLI::App& sub, CliContext& context);

// The setup directory as the home's settings store says, without creating anything.
QString SetupDirectoryOf(const CliContext& context);

void AddInfoCommand(CLI::App& cli, CliContext& context);
void AddDemoCommand(CLI::App& cli, CliContext& context);
void AddExportCommand(CLI::App& cli, CliContext& context);
void AddTrackCommand(CLI::App& cli, CliContext& context);
void AddSplitsCommand(CLI::App& cli, CliContext& context);
void AddPlotCommand(CLI::App& cli, CliContext& context);
void AddGuiCommand(CLI::App& cli, CliContext& context);
void AddFitCommands(CLI::App& cli, CliContext& context);
void AddSpectrumCommand(CLI::App& cli, CliContext& context);
