#pragma once

// All state of the program in one object, made at start-up and passed by reference: the
// settings, paths and options, the channel descriptors, the math definitions and constants, the
// report list, the folders, and the one work copy of an outing header.

#include <QFile>
#include <QString>
#include <array>
#include <memory>
#include <vector>

#include "core/app/Messages.h"
#include "core/app/Progress.h"
#include "core/app/Options.h"
#include "core/app/Paths.h"
#include "core/app/SettingsStore.h"
#include "core/compute/MathDefinitions.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/OutingHeader.h"
#include "core/plots/PlotState.h"
#include "core/reports/ReportFile.h"
#include "core/track/TrackState.h"
#include "core/workspace/FolderTable.h"

inline constexpr int kPaletteSize = 20;

struct Workspace {
  // `home` is the folder that holds the settings files and the default directories.
  Workspace(Messages& messages, const QString& home);

  Messages& messages;
  Progress* progress = nullptr;  // the window's progress dialog; none on the command line
  QString Home;
  SettingsStore Settings;

  // Start-up
  QString VersionText;  // "8.0.0": stamps converted headers
  QString Title;
  QString HelpFilePath;  // empty when no help file was found
  PathSettings Paths;

  // Options
  AnalysisOptions Options;
  ChannelListOptions ChannelLists;
  ReportOptions ReportSettings;
  PrintOptions Print;
  TrackReportOptions TrackReport;
  std::array<int, kPaletteSize> Palette{};
  std::array<QString, 4> UserLevels;

  // Channel descriptors (CHANNEL.DSC)
  ChannelDscHead DscHead;
  std::vector<ChannelDescriptor> ChannelDsc;
  int ChannelDscCount = 0;
  std::array<QString, kChannelGroupCount> GroupNames;

  // Math definitions (MATHCHL.DEF) and global constants (CONSTANT.DEF)
  std::vector<MathDefRec> MathDefs;
  int MathCount = 0;
  std::array<QString, kMathFunctionCount> MathFunctions;
  std::vector<ConstantRec> GlobalConstants;
  int GlobalConstantCount = 0;

  // Report layouts (EXCEL.RPT)
  std::vector<ReportRec> Reports;

  // The track map in memory (one at a time): whether one is loaded and its length.
  bool TrackLoaded = false;
  float TrackLength = 0;
  // The rest of the map, and the work tables of track creation.
  TrackState Track;

  // False for a command-line start: a script's loads do not churn the person's recent files.
  bool KeepRecentFiles = true;

  // Raw bytes of the last fetch, kept so that a fetch reuses memory instead of mapping new pages.
  std::vector<uint8_t> FetchBuffer;
  // The outing file kept open while a FetchScope lasts.
  std::unique_ptr<QFile> FetchFile;
  int FetchScopeDepth = 0;

  // Rows of the math evaluator, reused from one evaluation to the next, and the math channels
  // being evaluated (folder, outing, lap, channel): a "Delta" that fetches the Datum can start
  // another evaluation, which must never come back to one in progress.
  std::vector<std::vector<float>> MathRows;
  std::vector<std::array<int, 4>> MathInProgress;

  // State the plot windows share
  PlotState Plots;

  // Set when a filter of a channel changed, so the tree and the plots fetch anew.
  bool FiltersChanged = false;

  // Folders and the outing being processed
  std::array<FolderRec, kFolderCount> FolderTable;
  int16_t CurFolder = 0;
  int16_t CurOuting = 0;

  // The one work copy of an outing header. Nothing may hold on to it across a load of
  // another header.
  OutingHeader OutingHdr;
};
