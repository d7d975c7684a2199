#include "core/plots/frmDistance.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/track/DistanceTime.h"

namespace {

double Round(double v) { return std::nearbyint(v); }

}  // namespace

double frmDistance::ViewStart() const { return Folder().DistanceStart; }
double frmDistance::ViewEnd() const { return Folder().DistanceEnd; }
double frmDistance::Cursor() const { return Folder().CursorDistance; }
QString frmDistance::PositionText(double distance) const { return FormatAuto(distance); }

int frmDistance::SpanSlot() const {
  const FolderRec& folder = Folder();
  return folder.DatumOuting >= 0 ? folder.DatumOuting : folder.SelOuting;
}

void frmDistance::SetCursor(double position) {
  FolderRec& folder = Folder();
  folder.CursorDistance = static_cast<float>(position);
  // The time graph and the track follow: the time at which the lap on the axis got there.
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ActiveSlot())];
  if (o.Loaded != 0 && o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    folder.CursorTime = DistanceToTime(ws_, ActiveSlot(), o.CurLap, folder.CursorDistance);
  }
}

double frmDistance::CursorTimeIn(int slot, int lap) { return DistanceToTime(ws_, slot, lap, Folder().CursorDistance); }

double frmDistance::PositionOfTime(int slot, int lap, double ms) { return TimeToDistance(ws_, slot, lap, static_cast<float>(ms)); }

void frmDistance::DrawLineGraphs() {
  const OutingRec& span = OutingAt(ws_, SpanSlot());
  if (span.Loaded != 0 && span.ChanDistance >= 0) return LinePlot::DrawLineGraphs();
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  s_->ForeColor = ForegroundColor(ws_);
  s_->CurrentX = kPlotLeft;
  s_->CurrentY = kPlotTop;
  s_->Print(QStringLiteral("No distance data"));
  Caption = QStringLiteral("Distance Plot");
  ChannelLabels.clear();
  Numerics.clear();
}

void frmDistance::DoDistancePlot(int slot, int lap, int channel) {
  const FolderRec& folder = Folder();
  const OutingRec& o = OutingAt(ws_, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const double view = folder.DistanceEnd - folder.DistanceStart;
  if (o.ChanDistance < 0 || !(c.Rate > 0) || view <= 0) return;
  GetChannelData(ws_, slot, lap, o.ChanDistance);
  const LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
  const std::vector<float>& v = row.LapChannels[static_cast<std::size_t>(channel)].Samples;
  const std::vector<float>& dist = row.LapChannels[static_cast<std::size_t>(o.ChanDistance)].Samples;
  if (v.empty() || dist.empty()) return;
  const double w = s_->ScaleWidth(), h = s_->ScaleHeight(), right = DataRight();
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  const double t0 = DistanceToTime(ws_, slot, lap, folder.DistanceStart);
  const double t1 = DistanceToTime(ws_, slot, lap, folder.DistanceEnd);
  FirstIndex = std::min<int64_t>(Floor(t0 * c.Rate), static_cast<int64_t>(v.size()) - 1);
  LastIndex = std::min<int64_t>(Floor(t1 * c.Rate), static_cast<int64_t>(v.size()) - 1);
  const double r = static_cast<double>(o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate) / c.Rate;
  IndexStep = TraceStep(LastIndex - FirstIndex);
  XScale = (w - kPlotLeft - RightMargin(ws_)) / view;
  YScale = ComputeChannelScale(ws_, slot, channel, Round(h - 1050), true, true);
  const double offset = GetTileOffset(ws_, slot, lap, channel, Round(h - 1050));
  const double floor = FolderTiled(ws_) ? Round(h - kPlotBottom - offset) : Round(h - kPlotBottom);
  const double min = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].DistanceMin;
  const int64_t last_d = static_cast<int64_t>(dist.size()) - 1;
  double P = 0, L = -1, a = 0;
  points_.clear();
  for (int64_t i = std::max<int64_t>(FirstIndex, 0); i <= LastIndex; i += IndexStep) {
    const double at = static_cast<double>(i) * r;
    const int64_t k = std::min<int64_t>(Floor(at), last_d);
    const double frac = at - static_cast<double>(k);
    const double dk = dist[static_cast<std::size_t>(k)];
    const double step_d = k + 1 <= last_d ? dist[static_cast<std::size_t>(k + 1)] - dk : 0;
    const double d = dk - row.StartDistance + step_d * frac;
    if (d != L && d >= P) {
      P = L = d;
      // The advance while the distance channel holds its value: the last step it moved on by.
      if (step_d > 0) a = r * step_d * c.Rate * 20;
    } else if (d == L) {
      P += a;
    }  // a distance below P leaves the point where it was: a trace never runs backwards
    if (points_.empty()) P = folder.DistanceStart;
    const double x = std::clamp((P - folder.DistanceStart) * XScale + kPlotLeft, kPlotLeft, right);
    const double y = std::clamp(h - kPlotBottom - offset - (v[static_cast<std::size_t>(i)] - min) * YScale, kPlotTop, floor);
    points_.push_back(s_->ToPixels(x, y));
  }
  if (!points_.empty()) s_->Polyline(points_);
}

void frmDistance::DrawXAxis() {
  DistanceAxis();
  ShowCorners();
}

void frmDistance::DistanceAxis() {
  const FolderRec& folder = Folder();
  const double view = folder.DistanceEnd - folder.DistanceStart;
  if (!(view > 0)) {
    s_->ForeColor = ForegroundColor(ws_);
    s_->CurrentX = kPlotLeft;
    s_->CurrentY = s_->ScaleHeight() - kPlotBottom + 175;
    s_->Print(QStringLiteral("No distance"));
    return;
  }
  const OutingRec& span = OutingAt(ws_, SpanSlot());
  const QString unit = (span.UnitsMask & 1) != 0 ? QStringLiteral("mtrs") : QStringLiteral("feet");
  DrawTicks(view, folder.DistanceStart, folder.DistanceEnd, [](double d) { return FormatAuto(d); },
            s_->TextWidth(QStringLiteral("00000")), unit);
  if (folder.LapsDisplayed < 2) return;
  const int first = folder.DatumOuting >= 0 ? folder.DatumLap : span.CurLap;
  if (first < 0 || first >= static_cast<int>(span.Laps.size())) return;
  std::vector<double> starts;
  for (int l = first + 1; l <= std::min<int>(first + folder.LapsDisplayed, span.LastLap) && l < static_cast<int>(span.Laps.size()); ++l) {
    starts.push_back(span.Laps[static_cast<std::size_t>(l)].StartDistance - span.Laps[static_cast<std::size_t>(first)].StartDistance);
  }
  DrawLapStarts(starts);
}

void frmDistance::ShowCorners() {
  const FolderRec& folder = Folder();
  if (!ws_.TrackLoaded || !ws_.Options.TurnMarkerOn || !(folder.DistanceEnd > folder.DistanceStart)) return;
  const OutingRec& span = OutingAt(ws_, SpanSlot());
  const int first = folder.DatumOuting >= 0 ? folder.DatumLap : span.CurLap;
  if (first < 0 || first >= static_cast<int>(span.Laps.size())) return;
  const TrackState& t = ws_.Track;
  const double right = DataRight(), axis_y = s_->ScaleHeight() - kPlotBottom;
  const double x_scale = (right - kPlotLeft) / (folder.DistanceEnd - folder.DistanceStart);
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  // The segments alternate straight and corner: a lap that starts on a straight has its
  // corners at the odd entries, one that starts in a corner at the even ones.
  const int first_corner = t.FirstSegmentKind == 1 ? 0 : 1;
  for (int l = first; l < std::min<int>(first + folder.LapsDisplayed, span.LastLap); ++l) {
    const double base = span.Laps[static_cast<std::size_t>(l)].StartDistance - span.Laps[static_cast<std::size_t>(first)].StartDistance;
    int number = 0;
    for (int k = first_corner; k <= t.SegmentCount && k < static_cast<int>(t.SegmentStart.size()); k += 2) {
      const double d = base + t.SegmentStart[static_cast<std::size_t>(k)];
      ++number;
      if (d < folder.DistanceStart || d > folder.DistanceEnd) continue;
      const double x = (d - folder.DistanceStart) * x_scale + kPlotLeft;
      s_->Line(x, axis_y, x, axis_y - 150, fg);
      const QString name = QStringLiteral("T%1").arg(number);
      const double left = x - s_->TextWidth(name) / 2;
      if (left + s_->TextWidth(name) > right) continue;
      s_->CurrentX = left;
      s_->CurrentY = kPlotTop + 20;
      s_->Print(name);
    }
  }
}
