#include "core/track/frmContour.h"

#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/Surface.h"
#include "core/track/Laps.h"
#include "core/track/MapValues.h"
#include "core/track/TrackDrawing.h"
#include "core/track/TrackFile.h"
#include "core/track/frmViewTrack.h"

namespace {

constexpr int kGrey = 0x808080;
constexpr double kScaleWidth = 300, kScaleSteps = 50;

int Bgr(double r, double g, double b) {
  const auto c = [](double v) { return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
  return c(r) | c(g) << 8 | c(b) << 16;
}

}  // namespace

int ContourColor(double share) {
  const double t = std::clamp(share, 0.0, 1.0) * 4;
  if (t < 1) return Bgr(0, t, 1);
  if (t < 2) return Bgr(0, 1, 2 - t);
  if (t < 3) return Bgr(t - 2, 1, 0);
  return Bgr(1, 4 - t, 0);
}

void frmContour::DrawTrack() {
  TrackDrawOptions plain;
  plain.ShowSplits = false;
  plain.RightMargin = 1200;  // the colour scale
  DrawTrackMap(ws_, *s_, plain);
  DrawCurrentPlot();
  CursorPoint = CursorTrackPoint(ws_);
  ToggleTrackMark(ws_, *s_, CursorPoint);
}

void frmContour::DrawCurrentPlot() {
  Caption = QStringLiteral("Distance Plot");
  int slot = 0, lap = 0;
  if (ws_.Track.TrackPoints.empty() || !MapLap(ws_, slot, lap)) return;
  const OutingRec& o = OutingAt(ws_, slot);
  if (!HasDistance(ws_, o, Caption, warned_)) return;
  const int channel = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].ActiveChannel;
  if (channel < 0 || channel >= static_cast<int>(o.Channels.size())) return;
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  Caption = QStringLiteral("Contour Plot - ") + c.Name.trimmed() + QStringLiteral(" - (") + LapNumberText(o, lap) +
            QLatin1Char(' ') + LapLabel(o, lap) + QStringLiteral(")");
  const std::vector<float> values = ValuesAlongMap(ws_, slot, lap, channel, TimesAlongMap(ws_, slot, lap));
  bool any = false;
  for (float v : values) {
    if (std::isnan(v)) continue;
    Min = any ? std::min(Min, v) : v;
    Max = any ? std::max(Max, v) : v;
    any = true;
  }
  if (!any) return;
  s_->DrawWidth = 4;
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (std::isnan(values[i])) continue;
    const TrackXY a = TrackPointPosition(ws_, static_cast<int>(i) - 1), b = TrackPointPosition(ws_, static_cast<int>(i));
    const double share = Max > Min ? (values[i] - Min) / (Max - Min) : 0.5;
    s_->Line(a.x, a.y, b.x, b.y, ContourColor(share));
  }
  s_->DrawWidth = 1;
  DrawScale(c.Units.trimmed());
}

// A bar at the right edge, red at the top, with the range's ends and middle written beside it.
void frmContour::DrawScale(const QString& units) {
  const double right = s_->ScaleWidth() - 200, top = 400, bottom = s_->ScaleHeight() - 400;
  if (bottom <= top) return;
  const double step = (bottom - top) / kScaleSteps, left = right - kScaleWidth;
  for (int k = 0; k < kScaleSteps; ++k) {
    const double y = bottom - (k + 1) * step;
    s_->Line(left, y, right, y + step, ContourColor((k + 0.5) / kScaleSteps), LineKind::FilledBox);
  }
  s_->Line(left, top, right, bottom, kGrey, LineKind::Box);
  s_->ForeColor = ForegroundColor(ws_);
  const double h = s_->TextHeight(QStringLiteral("0"));
  for (double share : {1.0, 0.5, 0.0}) {
    const QString text = FormatAuto(Min + share * (Max - Min));
    s_->CurrentX = left - 100 - s_->TextWidth(text);
    s_->CurrentY = bottom - share * (bottom - top) - h / 2;
    s_->Print(text);
  }
  s_->CurrentX = left;
  s_->CurrentY = top - h - 50;
  s_->Print(units);
}

void frmContour::DoTrackCursor() {
  const int point = CursorTrackPoint(ws_);
  if (point == CursorPoint) return;
  ToggleTrackMark(ws_, *s_, CursorPoint);
  CursorPoint = point;
  ToggleTrackMark(ws_, *s_, CursorPoint);
}
