#include "core/app/Options.h"

#include "core/app/Workspace.h"

namespace {

// Reads or writes one key, by the type of the field it fills.
class Reader {
 public:
  Reader(const SettingsStore& s, QString section) : s_(s), section_(std::move(section)) {}
  void operator()(const QString& key, bool& v) const { v = s_.ReadBool(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, int& v) const { v = s_.ReadInt(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, int16_t& v) const {
    v = static_cast<int16_t>(std::clamp(s_.ReadInt(kAppAnalysis, section_, key, v), -32768, 32767));
  }
  void operator()(const QString& key, double& v) const { v = s_.ReadDouble(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, float& v) const { v = static_cast<float>(s_.ReadDouble(kAppAnalysis, section_, key, v)); }
  void operator()(const QString& key, QString& v) const { v = s_.Read(kAppAnalysis, section_, key, v); }

 private:
  const SettingsStore& s_;
  QString section_;
};

class Writer {
 public:
  Writer(SettingsStore& s, QString section) : s_(s), section_(std::move(section)) {}
  void operator()(const QString& key, bool v) const { s_.WriteBool(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, int v) const { s_.WriteInt(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, int16_t v) const { s_.WriteInt(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, double v) const { s_.WriteDouble(kAppAnalysis, section_, key, v); }
  void operator()(const QString& key, const QString& v) const { s_.Write(kAppAnalysis, section_, key, v); }

 private:
  SettingsStore& s_;
  QString section_;
};

// Every key of section "UserOptions". The defaults are the member initialisers.
template <class V, class O>
void VisitAnalysisOptions(const V& v, O& o) {
  v("PrintLegendCount", o.PrintLegendCount);
  v("PrintGridStyle", o.PrintGridStyle);
  v("PrintGridColor", o.PrintGridColor);
  v("PrintGridCompact", o.PrintGridCompact);
  v("ZoomPercent", o.ZoomPercent);
  v("ScrollPercent", o.ScrollPercent);
  v("VerticalGrid", o.VerticalGrid);
  v("HorizontalGrid", o.HorizontalGrid);
  v("TrackOnTop", o.TrackOnTop);
  v("TurnMarkerOn", o.TurnMarkerOn);
  v("VerticalCursor", o.VerticalCursor);
  v("HorizontalCursor", o.HorizontalCursor);
  v("ShowStatistics", o.ShowStatistics);
  v("NumericCursor", o.NumericCursor);
  v("StatusBar", o.StatusBar);
  v("ProcessBeacon", o.ProcessBeacon);
  v("OnlyFastLaps", o.OnlyFastLaps);
  v("EventMarkers", o.EventMarkers);
  v("ShowFastLap", o.ShowFastLap);
  v("HideTrackButtons", o.HideTrackButtons);
  v("AutoSizeNumeric", o.AutoSizeNumeric);
  v("AutoMoveNumeric", o.AutoMoveNumeric);
  v("AutoMoveTrack", o.AutoMoveTrack);
  v("ColorTheme", o.ColorTheme);
  v("HistoAutoScale", o.HistoAutoScale);
  v("HistoTimeScale", o.HistoTimeScale);
  v("HistoTotal", o.HistoTotal);
  v("AutoTileMode", o.AutoTileMode);
  v("FreqPlotView", o.FreqPlotView);
  v("AutoFilterET", o.AutoFilterET);
  v("CustomBackground", o.CustomBackground);
  v("CustomForeground", o.CustomForeground);
  v("ColorOfTurns", o.ColorOfTurns);
  v("ColorOfStraights", o.ColorOfStraights);
  v("AlwaysConvert", o.AlwaysConvert);
}

template <class V, class O>
void VisitChannelListOptions(const V& v, O& o) {
  v("xSelectAnalog", o.xSelectAnalog);
  v("xSelectDigital", o.xSelectDigital);
  v("xSelectTelltale", o.xSelectTelltale);
  v("xSelectECU", o.xSelectECU);
  v("xSelectOBM", o.xSelectOBM);
  v("xSelectGPS", o.xSelectGPS);
  v("xSelectPCU", o.xSelectPCU);
  v("xSelectMath", o.xSelectMath);
}

template <class V, class O>
void VisitReportOptions(const V& v, O& o) {
  v("Template", o.Template);
  v("AppPath", o.AppPath);
}

template <class V, class O>
void VisitPrintOptions(const V& v, O& o) {
  v("PrintLeftLegend", o.PrintLeftLegend);
  v("PrintRightLegend", o.PrintRightLegend);
  v("PrintTopLegend", o.PrintTopLegend);
  v("PrintBottomLegend", o.PrintBottomLegend);
}

template <class V, class O>
void VisitTrackReportOptions(const V& v, O& o) {
  for (int i = 0; i < 6; ++i) v(QStringLiteral("BandData%1").arg(i + 1), o.BandData[static_cast<std::size_t>(i)]);
  for (int i = 0; i < 5; ++i) v(QStringLiteral("BandColor%1").arg(i + 1), o.BandColor[static_cast<std::size_t>(i)]);
}

// Section "UserOptions\F<n>": the folder's own fields and its plot options.
template <class V, class F>
void VisitFolderUserOptions(const V& v, F& f) {
  v("GroupLaps", f.GroupCount);
  v("LapsDisplayed", f.LapsDisplayed);
  v("HistoBins", f.Options.HistoBins);
  v("HistoScale", f.Options.HistoScale);
  v("AxisXYChannel", f.Options.AxisXYChannel);
  v("XYConnected", f.Options.XYConnected);
  v("UpdateOnNewData", f.Options.UpdateOnNewData);
  v("UpdateOnTelemData", f.Options.UpdateOnTelemData);
  v("DoBanding", f.Options.DoBanding);
  v("BandChannel", f.Options.BandChannel);
  v("XYLineFit", f.Options.XYLineFit);
  v("XYCurveFit", f.Options.XYCurveFit);
  v("TileGraphs", f.Options.TileGraphs);
  v("Connected3D", f.Options.Connected3D);
  v("AxisX3DChannel", f.Options.AxisX3DChannel);
  v("AxisY3DChannel", f.Options.AxisY3DChannel);
  v("AxisZ3DChannel", f.Options.AxisZ3DChannel);
  v("GridLines", f.Options.GridLines);
  v("PaintGrid", f.Options.PaintGrid);
  v("ActiveSlice", f.Options.ActiveSlice);
  v("SpectrogramPoints", f.Options.SpectrogramPoints);
  v("SpectrogramOverlap", f.Options.SpectrogramOverlap);
  v("FolderName", f.Name);
}

template <class V, class F>
void VisitFolderTrack(const V& v, F& f) {
  v("CurrentTrack", f.TrackFile);
  v("TrackCorrection", f.TrackCorrection);
  v("MinimumLaptime", f.MinimumLaptime);
}

template <class V, class F>
void VisitFolderIndicators(const V& v, F& f) {
  v("IndicatorChannel", f.Options.IndicatorChannel);
  for (int b = 0; b < static_cast<int>(f.Options.Bits.size()); ++b) {
    auto& bit = f.Options.Bits[static_cast<std::size_t>(b)];
    v(QStringLiteral("Active\\B%1").arg(b), bit.Active);
    v(QStringLiteral("Name\\B%1").arg(b), bit.Name);
    v(QStringLiteral("OnColor\\B%1").arg(b), bit.OnColor);
    v(QStringLiteral("OffColor\\B%1").arg(b), bit.OffColor);
  }
}

// A folder's defaults before the store is read: "Folder" and its number, "Bit " and its number.
void SetFolderDefaults(FolderRec& f, int folder) {
  f.Name = QStringLiteral("Folder%1").arg(folder + 1);
  for (int b = 0; b < static_cast<int>(f.Options.Bits.size()); ++b) {
    f.Options.Bits[static_cast<std::size_t>(b)].Name = QStringLiteral("Bit %1").arg(b);
  }
}

}  // namespace

QString FolderSection(const char* base, int folder) {
  return QString::fromLatin1(base) + QStringLiteral("\\F%1").arg(folder + 1);
}

void ReadRegistryData(Workspace& ws) {
  const SettingsStore& s = ws.Settings;
  VisitAnalysisOptions(Reader(s, "UserOptions"), ws.Options);
  VisitChannelListOptions(Reader(s, "Channels"), ws.ChannelLists);
  VisitReportOptions(Reader(s, "Reports"), ws.ReportSettings);
  VisitPrintOptions(Reader(s, "Print"), ws.Print);
  VisitTrackReportOptions(Reader(s, "TrackReport"), ws.TrackReport);
  for (int f = 0; f < kFolderCount; ++f) {
    FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(f)];
    SetFolderDefaults(folder, f);
    VisitFolderUserOptions(Reader(s, FolderSection("UserOptions", f)), folder);
    VisitFolderTrack(Reader(s, FolderSection("Track", f)), folder);
    VisitFolderIndicators(Reader(s, FolderSection("Indicators", f)), folder);
    folder.GroupCount = std::clamp<int16_t>(folder.GroupCount, 1, 255);
    folder.LapsDisplayed = std::clamp<int16_t>(folder.LapsDisplayed, 1, 255);
    folder.Name = folder.Name.left(16);
  }
}

void SaveRegistryData(Workspace& ws) {
  SettingsStore& s = ws.Settings;
  VisitAnalysisOptions(Writer(s, "UserOptions"), ws.Options);
  VisitChannelListOptions(Writer(s, "Channels"), ws.ChannelLists);
  VisitReportOptions(Writer(s, "Reports"), ws.ReportSettings);
  VisitPrintOptions(Writer(s, "Print"), ws.Print);
  VisitTrackReportOptions(Writer(s, "TrackReport"), ws.TrackReport);
  for (int f = 0; f < kFolderCount; ++f) {
    FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(f)];
    VisitFolderUserOptions(Writer(s, FolderSection("UserOptions", f)), folder);
    VisitFolderTrack(Writer(s, FolderSection("Track", f)), folder);
    VisitFolderIndicators(Writer(s, FolderSection("Indicators", f)), folder);
  }
  s.Sync(kAppAnalysis);
}
