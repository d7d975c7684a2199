#pragma once

// The program's options in the settings store (application "Orlan Vector\Analysis"), each
// declared once with its key and default in the Visit… tables of Options.cpp.

#include <QString>
#include <array>

class SettingsStore;
struct Workspace;

// Section "UserOptions": options of the whole program.
struct AnalysisOptions {
  int PrintLegendCount = 4;
  int PrintGridStyle = 0;
  int PrintGridColor = 12632256;
  bool PrintGridCompact = false;
  double ZoomPercent = 50;
  double ScrollPercent = 25;
  bool VerticalGrid = true;
  bool HorizontalGrid = true;
  bool TrackOnTop = true;
  bool TurnMarkerOn = true;
  bool VerticalCursor = true;
  bool HorizontalCursor = true;
  bool ShowStatistics = true;
  bool NumericCursor = true;
  bool StatusBar = true;
  bool ProcessBeacon = true;  // off: an outing is one lap
  bool OnlyFastLaps = false;
  bool EventMarkers = false;
  bool ShowFastLap = true;
  bool HideTrackButtons = false;
  bool AutoSizeNumeric = true;
  bool AutoMoveNumeric = true;
  bool AutoMoveTrack = true;
  int ColorTheme = 0;  // 0 white background, 1 black background, 2 the custom colours
  bool HistoAutoScale = false;
  bool HistoTimeScale = false;
  bool HistoTotal = false;
  bool AutoTileMode = true;
  int FreqPlotView = 0;
  bool AutoFilterET = true;
  int CustomBackground = 16777215;
  int CustomForeground = 0;
  int ColorOfTurns = 255;
  int ColorOfStraights = 16711680;
  bool AlwaysConvert = false;  // answers the conversion question of old outings in advance
};

// Section "Channels": which classes the channel lists show.
struct ChannelListOptions {
  bool xSelectAnalog = true;
  bool xSelectDigital = true;
  bool xSelectTelltale = true;
  bool xSelectECU = true;
  bool xSelectOBM = true;
  bool xSelectGPS = true;
  bool xSelectPCU = true;
  bool xSelectMath = true;
};

// Section "Reports".
struct ReportOptions {
  QString Template;
  QString AppPath;
};

// Section "Print": the four legends of a printed page.
struct PrintOptions {
  QString PrintLeftLegend;
  QString PrintRightLegend;
  QString PrintTopLegend;
  QString PrintBottomLegend;
};

// Section "TrackReport": six band limits and five colours of the track report.
struct TrackReportOptions {
  std::array<double, 6> BandData{0, 50, 100, 150, 200, 250};
  std::array<int, 5> BandColor{16711680, 65280, 65535, 33023, 255};
};

// Sections "UserOptions\F<n>" and "Indicators\F<n>": the per-folder options that the plot
// windows use. The folder's own fields (name, laps displayed, track) are in FolderRec.
struct FolderOptions {
  int HistoBins = 20;
  float HistoScale = 50;  // percent at the top of the histogram's axis
  QString AxisXYChannel = QStringLiteral("System Speed");
  bool XYConnected = false;
  bool UpdateOnNewData = false;
  bool UpdateOnTelemData = false;
  bool DoBanding = false;
  QString BandChannel = QStringLiteral("System Speed");
  bool XYLineFit = false;
  bool XYCurveFit = false;
  bool TileGraphs = false;
  bool Connected3D = false;
  QString AxisX3DChannel = QStringLiteral("RPM");
  QString AxisY3DChannel = QStringLiteral("System Speed");
  QString AxisZ3DChannel = QStringLiteral("Lateral G");
  bool GridLines = true;
  bool PaintGrid = false;
  int ActiveSlice = 0;
  int SpectrogramPoints = 256;  // samples a column of the spectrogram
  int SpectrogramOverlap = 50;  // percent of a column's window shared with the next

  QString IndicatorChannel = QStringLiteral("RPM");
  struct Bit {
    bool Active = true;
    QString Name;
    int OnColor = 65280;
    int OffColor = 8421504;
  };
  std::array<Bit, 16> Bits{};
};

// Reads every option of the program and of the 16 folders (the folders' FolderRec fields
// included) into the workspace.
void ReadRegistryData(Workspace& ws);
// Writes them all back.
void SaveRegistryData(Workspace& ws);

// "UserOptions\F" and the 1-based folder number, and the same for "Track" and "Indicators".
QString FolderSection(const char* base, int folder);
