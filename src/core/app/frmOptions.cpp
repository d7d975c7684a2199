#include "core/app/frmOptions.h"

#include <optional>

#include "core/app/Workspace.h"

const std::vector<frmOptions::Check> frmOptions::kChecks = {
    {"chkVerticalGrid", "&Vertical Grid", "Graphs", &AnalysisOptions::VerticalGrid},
    {"chkHorizontalGrid", "&Horizontal Grid", "Graphs", &AnalysisOptions::HorizontalGrid},
    {"chkAutoTileMode", "Automatic T&iling", "Graphs", &AnalysisOptions::AutoTileMode},
    {"chkEventMarkers", "&Event Markers", "Graphs", &AnalysisOptions::EventMarkers},
    {"chkVerticalCursor", "Vertical &Cursor", "Cursor", &AnalysisOptions::VerticalCursor},
    {"chkHorizontalCursor", "Hori&zontal Cursor", "Cursor", &AnalysisOptions::HorizontalCursor},
    {"chkShowStatistics", "Show &Statistics", "Cursor", &AnalysisOptions::ShowStatistics},
    {"chkNumericCursor", "&Numeric Cursor", "Cursor", &AnalysisOptions::NumericCursor},
    {"chkAutoSizeNumeric", "&Auto Size Numeric Panel", "Cursor", &AnalysisOptions::AutoSizeNumeric},
    {"chkMaskBeacons", "&Mask Lap Beacons", "Outings", &AnalysisOptions::ProcessBeacon, true,
     "Outings opened from now on are one lap each"},
    {"chkAlwaysConvert", "Alwa&ys Convert Old Outings", "Outings", &AnalysisOptions::AlwaysConvert, false,
     "Old outings are converted without asking"},
    {"chkAutoFilterET", "Smooth &Delta Time", "Outings", &AnalysisOptions::AutoFilterET, false,
     "The time difference to the Datum is smoothed as it is computed"},
};
const QStringList frmOptions::kThemes = {"White background", "Black background", "Custom colours"};
const QString frmOptions::kTitle = QStringLiteral("Options");

namespace {

// A whole or decimal percent in [low, high]; nothing otherwise.
std::optional<double> Percent(const QString& text, double low, double high) {
  bool ok = false;
  const double v = text.trimmed().toDouble(&ok);
  if (!ok || !(v >= low && v <= high)) return std::nullopt;
  return v;
}

}  // namespace

frmOptions::frmOptions(const Workspace& ws)
    : Values(ws.Options),
      txtZoomPercent(QString::number(ws.Options.ZoomPercent)),
      txtScrollPercent(QString::number(ws.Options.ScrollPercent)) {
  if (Values.ColorTheme < 0 || Values.ColorTheme >= static_cast<int>(kThemes.size())) Values.ColorTheme = 0;
}

bool frmOptions::cmdOK(Workspace& ws) {
  // A zoom of 100 percent would leave no window, and zooming out divides by what is left.
  const auto zoom = Percent(txtZoomPercent, 1, 99);
  const auto scroll = Percent(txtScrollPercent, 1, 100);
  const auto refuse = [&](const char* text) {
    ws.messages.Show(QString::fromLatin1(text), kTitle, MessageIcon::Exclamation);
    return false;
  };
  if (!zoom) return refuse("Zoom percent must be between 1 and 99");
  if (!scroll) return refuse("Scroll percent must be between 1 and 100");
  if (Values.ColorTheme == kCustomTheme && Values.CustomBackground == Values.CustomForeground) {
    return refuse("Background and foreground must differ");  // nothing would show
  }
  Values.ZoomPercent = *zoom;
  Values.ScrollPercent = *scroll;
  ws.Options = Values;
  SaveRegistryData(ws);
  return true;
}
