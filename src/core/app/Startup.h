#pragma once

// Start-up and shutdown of the program, the recent files, the help file, and the poll for new
// data from the downloader and the telemetry receiver.

#include <QString>
#include <QStringList>
#include <array>
#include <functional>

struct Workspace;

inline constexpr std::array<const char*, 9> kPlotButtonToolTips = {
    "Time Plot", "Distance", "Frequency", "XY Plot", "Histogram", "Contour", "3D Plot", "Bit Indicator", "Numeric Data"};

inline constexpr std::array<int, 20> kDefaultPalette = {
    8388736, 16711680, 4227072, 255, 4210816, 33023,   128,      0,       16711935, 16744576,
    65280,   8421632,  10485760, 4227327, 16512, 8421504, 12632256, 4194304, 4227200, 8421631};

// "8.0.0": the program's three version numbers joined by ".", as a converted header holds it.
QString ProgramVersionText();

// The start-up in its order, up to showing the windows: version and title, help file, paths
// and their directories, options, CHANNEL.DSC, math definitions and constants, palette, reports,
// user levels, and the 16 folders with folder 1 in use. False when CHANNEL.DSC is missing: the
// program ends there, after its message. A command-line start (`for_window` false) makes no
// directory or file, looks for no help file, and never converts an outing on its own.
bool StartUp(Workspace& ws, bool for_window = true);

// At the end: the options and the ten paths are written back.
void ShutDown(Workspace& ws);

// The help file of a program of the family: "Tallyrun2.chm" for "Data Analysis" and
// "Configuration", "VantorHelp.chm" for "System Editor", in the home folder. Without that file
// the analysis program's help is the HTML guide it ships, installed into the home's "Help"
// folder (InstallHelp). When there is none, a warning and an empty result; the program goes on
// without help.
QString HelpFile(Workspace& ws, const QString& program_name);
// Where the shipped guide is: $ORLAN_HELP_DIR, the installed share/orlan/help, or the sources.
QString ShippedHelpDirectory();
// Copies the shipped guide into the home's "Help" folder where it is missing or older; the
// path of its index.html, or empty when there is no guide.
QString InstallHelp(Workspace& ws);

// Section "UserOptions\Palette", keys "Color00".."Color19".
void ReadPalette(Workspace& ws);
void SavePalette(Workspace& ws);

// Section "RecentFiles": "RecentFile1" is the newest.
void AddRecentFile(Workspace& ws, const QString& path);
QStringList ReadRecentFiles(const Workspace& ws);

// What the poll needs of the windows: whether a folder holds an outing, and the load of a new
// file into the folder's current slot (with the redraw of its windows).
struct DownloadHandler {
  std::function<bool(int folder)> HoldsOuting;
  std::function<void(int folder, const QString& path)> LoadNewFile;
};

// One tick of Timer1: a new file announced by the downloader goes into every folder in use that
// holds an outing and asks for new data; then the same for the telemetry receiver. A "New" flag
// found True is set back to False. Returns the number of loads.
int Timer1Poll(Workspace& ws, const DownloadHandler& handler);
