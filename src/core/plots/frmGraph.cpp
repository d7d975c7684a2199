#include "core/plots/frmGraph.h"

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

// Seconds of a tick label, as finely as the view needs.
QString SecondsText(double t_ms, double view_ms) {
  const int decimals = view_ms < 1000 ? 3 : view_ms <= 10000 ? 2 : 1;
  return QString::number(t_ms / 1000, 'f', decimals);
}

}  // namespace

double frmGraph::ViewStart() const { return Folder().TimeStart; }
double frmGraph::ViewEnd() const { return Folder().TimeEnd; }
double frmGraph::Cursor() const { return Folder().CursorTime; }
QString frmGraph::PositionText(double ms) const { return FormatTime(ms); }

void frmGraph::SetCursor(double position) {
  FolderRec& folder = Folder();
  folder.CursorTime = static_cast<float>(position);
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ActiveSlot())];
  if (o.Loaded != 0 && o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    folder.CursorDistance = TimeToDistance(ws_, ActiveSlot(), o.CurLap, folder.CursorTime);
  }
}

void frmGraph::DoTimePlot(int slot, int lap, int channel) {
  const FolderRec& folder = Folder();
  const OutingRec& o = OutingAt(ws_, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const std::vector<float>& v = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
  if (v.empty() || !(c.Rate > 0) || folder.TimeEnd <= folder.TimeStart) return;
  const double w = s_->ScaleWidth(), h = s_->ScaleHeight();
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  // One second past the view, so that a line leaves the area at its edge.
  const double e = std::min<double>(folder.TimeEnd + 1000.0, GetMaxTime(ws_));
  FirstIndex = Floor(static_cast<double>(c.Rate) * folder.TimeStart);
  FirstTime = static_cast<double>(c.Rate) * folder.TimeStart;
  LastIndex = std::min<int64_t>(Floor(e * c.Rate), static_cast<int64_t>(v.size()) - 1);
  IndexStep = TraceStep(LastIndex - FirstIndex);
  XScale = (w - kPlotLeft - RightMargin(ws_)) / ((folder.TimeEnd - folder.TimeStart) * static_cast<double>(c.Rate));
  YScale = ComputeChannelScale(ws_, slot, channel, Round(h - kPlotBottom - kPlotTop), true, false);
  const double offset = GetTileOffset(ws_, slot, lap, channel, Round(h - 1050));
  const double floor = FolderTiled(ws_) ? Round(h - kPlotBottom - offset) : Round(h - kPlotBottom);
  const double min = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].TimeMin;
  const double right = DataRight();
  points_.clear();
  for (int64_t i = std::max<int64_t>(FirstIndex, 0); i <= LastIndex; i += IndexStep) {
    const double x = std::clamp((static_cast<double>(i) - FirstTime) * XScale + kPlotLeft, kPlotLeft, right);
    const double y = std::clamp(h - kPlotBottom - offset - (v[static_cast<std::size_t>(i)] - min) * YScale, kPlotTop, floor);
    points_.push_back(s_->ToPixels(x, y));
  }
  if (!points_.empty()) s_->Polyline(points_);
  if (ws_.Options.EventMarkers && c.EventEnabled != 0) DoEventPlot(slot, lap, channel);
}

namespace {

// Whether the event condition (the low six bits of EventFlags) holds for a sample; false for a
// condition that isn't one of the six.
bool EventHolds(int condition, float v, float limit) {
  switch (condition) {
    case 1: return v > limit;
    case 2: return v < limit;
    case 4: return v == limit;
    case 8: return v != limit;
    case 16: return v >= 0.5f;
    case 32: return v < 0.5f;
    default: return false;
  }
}

}  // namespace

void frmGraph::DoEventPlot(int slot, int lap, int channel) {
  const OutingRec& o = OutingAt(ws_, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const LapChannelRec& cache = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
  const std::vector<float>& v = cache.Samples;
  const double h = s_->ScaleHeight(), right = DataRight();
  const int color = GetChannelColor(ws_, slot, lap, channel);
  const double bar = Round(h - kPlotBottom - 200 - cache.EventRow * 80.0);
  const int condition = c.EventFlags & 0x3F;
  double open = 0;  // x where the event in force began; 0: none
  for (int64_t i = std::max<int64_t>(FirstIndex, 0); i <= LastIndex && i < static_cast<int64_t>(v.size()); i += IndexStep) {
    const bool holds = EventHolds(condition, v[static_cast<std::size_t>(i)], c.EventLimit);
    const double x = (static_cast<double>(i) - FirstTime) * XScale + kPlotLeft;
    if (open == 0 && holds) {
      open = x;
    } else if (open != 0 && !holds) {
      s_->Line(open, bar, std::min(x, right), bar + 45, color, LineKind::FilledBox);
      open = 0;
    }
  }
  if (open != 0 && open < right) s_->Line(open, bar, right, bar + 45, color, LineKind::FilledBox);
  // The lap's minimum (bit 8) and maximum (bit 9) in the view, labelled where they lie.
  if ((c.EventFlags & 0x300) == 0) return;
  ComputeTimeStats(ws_, slot, lap, channel);
  const ChannelStats& st = OutingAt(ws_, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].TimeStats;
  for (const bool maximum : {false, true}) {
    if ((c.EventFlags & (maximum ? 0x200 : 0x100)) == 0 || st.Valid == 0) continue;
    const double value = maximum ? st.Max : st.Min;
    const QString text = FormatAuto(value);
    double x = (static_cast<double>(maximum ? st.MaxIndex : st.MinIndex) - FirstTime) * XScale + kPlotLeft;
    const double y = std::max(kPlotTop, ChannelValueToY(ws_, h, slot, lap, channel, value));
    s_->Line(x - 30, y, x + 30, y, color);
    if (x >= right - 50) x -= s_->TextWidth(text);
    s_->ForeColor = color;
    s_->CurrentX = x;
    s_->CurrentY = y;
    s_->Print(text);
  }
}

void frmGraph::DrawTimeAxis() {
  const FolderRec& folder = Folder();
  const double view = folder.TimeEnd - folder.TimeStart;
  if (view <= 0) {
    s_->ForeColor = ForegroundColor(ws_);
    s_->CurrentX = kPlotLeft;
    s_->CurrentY = s_->ScaleHeight() - kPlotBottom + 175;
    s_->Print(QStringLiteral("No time"));
    return;
  }
  DrawTicks(view, folder.TimeStart, folder.TimeEnd, [view](double t) { return SecondsText(t, view); },
            s_->TextWidth(QStringLiteral("0.00")), QStringLiteral("secs"));
  // Further laps of the Datum span start at these times.
  if (folder.LapsDisplayed < 2 || folder.DatumOuting < 0) return;
  const OutingRec& d = OutingAt(ws_, folder.DatumOuting);
  const int first = folder.DatumLap;
  std::vector<double> starts;
  for (int l = first + 1; l <= std::min<int>(first + folder.LapsDisplayed, d.LastLap) && l < static_cast<int>(d.Laps.size()); ++l) {
    starts.push_back(d.Laps[static_cast<std::size_t>(l)].StartTime - d.Laps[static_cast<std::size_t>(first)].StartTime);
  }
  DrawLapStarts(starts);
}
