#include "core/plots/frmGraph.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/DistanceTime.h"
#include "core/track/Laps.h"

namespace {

double Round(double v) { return std::nearbyint(v); }

// Seconds of a tick label, as finely as the view needs.
QString SecondsText(double t_ms, double view_ms) {
  const int decimals = view_ms < 1000 ? 3 : view_ms <= 10000 ? 2 : 1;
  return QString::number(t_ms / 1000, 'f', decimals);
}

// Every trace of the folder in the order of drawing: loaded, visible outings, their shown laps
// that aren't hidden, the channels shown in each.
template <typename Visit>
void ForEachTrace(const FolderRec& folder, Visit visit) {
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0 || o.OutingHidden != 0) continue;
    for (int lap = 0; lap < static_cast<int>(o.Laps.size()); ++lap) {
      const LapRec& l = o.Laps[static_cast<std::size_t>(lap)];
      if (l.Shown == 0 || l.Hidden != 0) continue;
      for (int c = 0; c < static_cast<int>(l.LapChannels.size()); ++c) {
        if (l.LapChannels[static_cast<std::size_t>(c)].Shown != 0) visit(slot, lap, c);
      }
    }
  }
}

// The channel's value at a time by linear interpolation between its neighbouring samples; the
// last sample has no neighbour and stands. False past the lap's end.
bool ValueAt(const std::vector<float>& v, double rate, double time, float& value) {
  const double x = rate * time;
  const int64_t i = Floor(x);
  const int64_t upper = static_cast<int64_t>(v.size()) - 1;
  if (i < 0 || i > upper) return false;
  const float at = v[static_cast<std::size_t>(i)];
  value = i < upper ? static_cast<float>(at + (v[static_cast<std::size_t>(i + 1)] - at) * (x - static_cast<double>(i))) : at;
  return true;
}

}  // namespace

double frmGraph::DataRight() const { return s_->ScaleWidth() - RightMargin(ws_); }

int frmGraph::ActiveSlot() const { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].SelOuting; }

void frmGraph::DrawLineGraphs() {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  LoadDataLabels();
  ChannelLabels.clear();
  const bool tile_axes = FolderTiled(ws_) && ws_.Options.AutoTileMode;
  FetchScope scope(ws_);  // one open file per outing for the whole redraw
  ForEachTrace(folder, [&](int slot, int lap, int c) {
    GetChannelData(ws_, slot, lap, c);
    DoTimePlot(slot, lap, c);
    if (tile_axes) DrawAxisTile(ws_, *s_, slot, lap, c);
    const OutingRec& o = OutingAt(ws_, slot);
    const std::size_t band = static_cast<std::size_t>(o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].TileIndex);
    if (ChannelLabels.size() <= band) ChannelLabels.resize(band + 1);
    if (ChannelLabels[band].Text.isEmpty()) {
      ChannelLabels[band] = {ChannelLabel(o.Channels[static_cast<std::size_t>(c)]), GetChannelColor(ws_, slot, lap, c)};
    }
  });
  DrawTimeAxis();
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  Caption.clear();
  if (o.Loaded != 0 && folder.ActiveChannel >= 0 && folder.ActiveChannel < static_cast<int>(o.Channels.size()) &&
      o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    Caption = DrawAxisSingle(ws_, *s_, AxisKind::Time, slot, o.CurLap, folder.ActiveChannel);
  }
  if (!FolderTiled(ws_)) DrawAxisPanels();
  DrawDatumPoint();
  UpdateCursorValues();
  CursorY = DrawCursor(0, -1000);  // the old cursor went with the clear
}

void frmGraph::SetAxisPanels(Surface* left, Surface* right) {
  panels_[0] = left;
  panels_[1] = right;
}

void frmGraph::DrawAxisPanels() {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  for (Surface* panel : panels_) {
    if (panel == nullptr) continue;
    panel->BackColor = BackgroundColor(ws_);
    panel->Cls();
  }
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size())) return;
  const auto& caches = o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels;
  for (int k = 0; k < kPanelScales; ++k) {
    Surface* panel = panels_[k < 2 ? 0 : 1];
    const QString& name = folder.AxisPanelChannels[static_cast<std::size_t>(k)];
    if (panel == nullptr || name.trimmed().isEmpty()) continue;
    // A scale only for a channel drawn in the lap on the axis: its range comes from that trace.
    const int c = FindChannelByName(ws_, ws_.CurFolder, slot, name);
    if (c < 0 || c >= static_cast<int>(caches.size()) || caches[static_cast<std::size_t>(c)].Shown == 0) continue;
    DrawAxisPanel(ws_, *panel, k < 2 ? 0 : 1, k % 2, AxisKind::Time, slot, o.CurLap, c);
  }
}

void frmGraph::LoadDataLabels() {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  Numerics.assign(1, NumericRow{QStringLiteral("Time :"), QString(), ForegroundColor(ws_), 100});
  ForEachTrace(folder, [&](int slot, int lap, int c) {
    const OutingRec& o = OutingAt(ws_, slot);
    const QString lap_number = QStringLiteral("%1").arg(o.LapNumberBase + lap, 3, 10, QLatin1Char('0'));
    Numerics.push_back({ChannelLabel(o.Channels[static_cast<std::size_t>(c)]) + QStringLiteral("  ") + lap_number, QString(),
                        GetChannelColor(ws_, slot, lap, c), 100 + 260.0 * static_cast<double>(Numerics.size())});
  });
  if (ws_.Options.AutoSizeNumeric) NumericHeight = 200 + 260.0 * static_cast<double>(Numerics.size());
}

void frmGraph::DrawNumerics() {
  if (!ws_.Options.NumericCursor || Numerics.empty()) return;
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  Numerics[0].Value = FormatTime(folder.CursorTime);
  std::size_t row = 1;
  ForEachTrace(folder, [&](int slot, int lap, int c) {
    if (row >= Numerics.size()) return;  // traces came after the last LoadDataLabels
    const OutingRec& o = OutingAt(ws_, slot);
    const ChannelRec& channel = o.Channels[static_cast<std::size_t>(c)];
    const auto& samples = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
    float value = 0;
    NumericRow& label = Numerics[row++];
    label.Value = ValueAt(samples, channel.Rate, folder.CursorTime, value) ? FormatChannelValue(channel, value) : QString();
    label.Color = GetChannelColor(ws_, slot, lap, c);
  });
}

void frmGraph::PaintNumerics(Surface& panel) const {
  panel.BackColor = BackgroundColor(ws_);
  panel.Cls();
  const double w = panel.ScaleWidth();
  for (const NumericRow& row : Numerics) {
    panel.ForeColor = row.Color;
    panel.CurrentX = 100;
    panel.CurrentY = row.Top;
    panel.Print(row.Caption);
    panel.CurrentX = w - 100 - panel.TextWidth(row.Value);
    panel.CurrentY = row.Top;
    panel.Print(row.Value);
  }
}

void frmGraph::ManualMinMaxMove(bool is_maximum) {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const int slot = ActiveSlot(), channel = folder.ActiveChannel;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size()) || channel < 0 ||
      channel >= static_cast<int>(o.Channels.size())) {
    return;
  }
  ComputeTimeStats(ws_, slot, o.CurLap, channel);
  const ChannelStats& st = o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(channel)].TimeStats;
  const double rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  if (st.Valid == 0 || !(rate > 0)) return;
  ManualMove(Round((is_maximum ? st.MaxIndex : st.MinIndex) / rate));
}

void frmGraph::ManualMove(double time) {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  if (folder.TimeEnd <= folder.TimeStart) return;
  MoveCursor(time);
  if (MovePointer) MovePointer(CursorX());
}

void frmGraph::DoTimePlot(int slot, int lap, int channel) {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
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
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double h = s_->ScaleHeight(), right = DataRight(), axis_y = h - kPlotBottom;
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  const double view = folder.TimeEnd - folder.TimeStart;
  if (view <= 0) {
    s_->CurrentX = kPlotLeft;
    s_->CurrentY = axis_y + 175;
    s_->Print(QStringLiteral("No time"));
    return;
  }
  double r = view;
  int exponent = 0;
  while (r >= 10) r /= 10, ++exponent;
  const double base = r <= 1.5 ? 1 : r <= 3.5 ? 2.5 : r <= 7.5 ? 5 : 10;
  const double step = base * std::pow(10.0, exponent - 1) / 5;
  const double x_scale = (right - kPlotLeft) / view;
  const double label_limit = right - s_->TextWidth(QStringLiteral("0.00")) - 250;
  // Ticks lie on multiples of the step from the lap's start; those before the view are skipped.
  for (int64_t k = static_cast<int64_t>(std::ceil(folder.TimeStart / step)); k * step <= folder.TimeEnd; ++k) {
    const double t = static_cast<double>(k) * step;
    const double x = (t - folder.TimeStart) * x_scale + kPlotLeft;
    const bool major = static_cast<int64_t>(Round(t * 10)) % std::max<int64_t>(1, static_cast<int64_t>(Round(step * 50))) == 0;
    s_->Line(x, axis_y, x, axis_y + (major ? 150 : 75), fg);
    if (!major) continue;
    if (x <= label_limit) {
      const QString text = SecondsText(t, view);
      s_->CurrentX = x - s_->TextWidth(text) / 2;
      s_->CurrentY = axis_y + 175;
      s_->Print(text);
    }
    if (ws_.Options.VerticalGrid && x > kPlotLeft) {
      s_->DrawStyle = kDotted;
      s_->Line(x, kPlotTop, x, axis_y, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  s_->Line(kPlotLeft, axis_y, right, axis_y, fg);
  s_->CurrentX = right - 250;
  s_->CurrentY = axis_y + 175;
  s_->Print(QStringLiteral("secs"));
  // Further laps of the Datum span start at these times.
  if (folder.LapsDisplayed >= 2 && folder.DatumOuting >= 0) {
    const OutingRec& d = OutingAt(ws_, folder.DatumOuting);
    const int first = folder.DatumLap;
    for (int l = first + 1; l <= std::min<int>(first + folder.LapsDisplayed, d.LastLap) && l < static_cast<int>(d.Laps.size()); ++l) {
      const double t = d.Laps[static_cast<std::size_t>(l)].StartTime - d.Laps[static_cast<std::size_t>(first)].StartTime;
      if (t < folder.TimeStart || t > folder.TimeEnd) continue;
      const double x = (t - folder.TimeStart) * x_scale + kPlotLeft;
      s_->Line(x, kPlotTop, x, axis_y, fg);
    }
  }
}

void frmGraph::UpdateCursorValues() {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  StatusLine.clear();
  const int lap = o.CurLap, channel = folder.ActiveChannel;
  if (o.Loaded == 0 || lap < 0 || lap + 1 >= static_cast<int>(o.Laps.size()) || channel < 0 ||
      channel >= static_cast<int>(o.Channels.size())) {
    DrawNumerics();
    return;
  }
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const LapChannelRec& cache = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
  if (ValueAt(cache.Samples, c.Rate, folder.CursorTime, folder.CursorValue)) {
    const QString blanks(4, QLatin1Char(' '));
    StatusLine = QStringLiteral("Lap Time : ") + FormatLapTime(ws_, LapTimeMs(o, lap)) + blanks;
    if (ws_.Plots.MeasureCursor) {
      StatusLine += QStringLiteral("(dX : ") + LeftTrimmed(FormatTime(folder.CursorTime - MarkTime)) + blanks +
                    QStringLiteral("dY : ") + LeftTrimmed(FormatChannelValue(c, folder.CursorValue - MarkValue)) +
                    QLatin1Char(')');
    } else if (ws_.Options.ShowStatistics) {
      ComputeTimeStats(ws_, slot, lap, channel);
      const ChannelStats& st = OutingAt(ws_, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].TimeStats;
      StatusLine += QStringLiteral("Min : ") + FormatChannelValue(c, st.Min) + blanks + QStringLiteral("Max : ") +
                    FormatChannelValue(c, st.Max) + blanks + QStringLiteral("Avg : ") + FormatChannelValue(c, st.Avg) + blanks +
                    QStringLiteral("Dev : ") + FormatChannelValue(c, st.Dev) + blanks + QStringLiteral("Filter : ") +
                    QString::fromLatin1(FilterKindName(c.FilterKind)) + blanks + QStringLiteral("Rate : ") +
                    QString::number(std::nearbyint(c.Rate * 1000.0)) + QStringLiteral(" Hz");
    }
  }
  s_->Line(0, 0, s_->ScaleWidth(), 315, BackgroundColor(ws_), LineKind::FilledBox);
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  s_->CurrentX = 1250;
  s_->CurrentY = 100;
  s_->Print(StatusLine);
  DrawNumerics();
}

void frmGraph::DrawDatumPoint() {
  if (!ws_.Plots.MeasureCursor) return;
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size()) || folder.ActiveChannel < 0 ||
      folder.ActiveChannel >= static_cast<int>(o.Channels.size())) {
    return;
  }
  MarkX = std::max(CursorX(), kPlotLeft);
  MarkY = ChannelValueToY(ws_, s_->ScaleHeight(), slot, o.CurLap, folder.ActiveChannel, folder.CursorValue);
  s_->Line(MarkX - 190, MarkY, MarkX + 190, MarkY, 0);
  s_->Line(MarkX, MarkY - 190, MarkX, MarkY + 190, 0);
  s_->Circle(MarkX, MarkY, 100, 0);
  MarkTime = folder.CursorTime;
  MarkValue = folder.CursorValue;
}

double frmGraph::CursorX() const {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double view = folder.TimeEnd - folder.TimeStart;
  if (view <= 0) return kPlotLeft;
  return (folder.CursorTime - folder.TimeStart) / view * (DataRight() - kPlotLeft) + kPlotLeft;
}

double frmGraph::DrawCursor(double old_x, double old_y) {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double h = s_->ScaleHeight();
  const double new_x = CursorX();
  double new_y = -1000;
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded != 0 && o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size()) && folder.ActiveChannel >= 0 &&
      folder.ActiveChannel < static_cast<int>(o.Channels.size())) {
    if (ws_.Plots.ActivePlotType == 0) new_y = ChannelValueToY(ws_, h, slot, o.CurLap, folder.ActiveChannel, folder.CursorValue);
    if (ws_.Plots.ActivePlotType == 1) new_y = DistanceValueToY(ws_, h, slot, o.CurLap, folder.ActiveChannel, folder.CursorValue);
  }
  // Exclusive-or: drawing the old cursor again takes it away.
  s_->DrawMode = kDrawXor;
  s_->DrawWidth = 1;
  const int white = 16777215;
  if (ws_.Options.VerticalCursor) {
    if (old_x > 0) s_->Line(old_x, kPlotTop, old_x, h - kPlotBottom, white);
    s_->Line(new_x, kPlotTop, new_x, h - kPlotBottom, white);
  }
  if (ws_.Options.HorizontalCursor) {
    if (old_x > 0) s_->Line(old_x - 250, old_y, old_x + 250, old_y, white);
    s_->Line(new_x - 250, new_y, new_x + 250, new_y, white);
  }
  s_->DrawMode = kDrawCopy;
  return new_y;
}

double frmGraph::TimeAt(double x) const {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  return folder.TimeStart + (folder.TimeEnd - folder.TimeStart) * (x - kPlotLeft) / (DataRight() - kPlotLeft);
}

void frmGraph::MoveCursor(double time) {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double old_x = CursorX();
  folder.CursorTime = static_cast<float>(time);
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ActiveSlot())];
  if (o.Loaded != 0 && o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    folder.CursorDistance = TimeToDistance(ws_, ActiveSlot(), o.CurLap, folder.CursorTime);
  }
  UpdateCursorValues();
  CursorY = DrawCursor(old_x, CursorY);
}

void frmGraph::DrawBand(double x1, double x2) {
  s_->DrawMode = kDrawXor;
  s_->Line(std::min(x1, x2), kPlotTop, std::max(x1, x2), s_->ScaleHeight() - kPlotBottom, 16777215, LineKind::FilledBox);
  s_->DrawMode = kDrawCopy;
}

void frmGraph::MouseDown(int button, double x, double y) {
  if (button != 1 || x < kPlotLeft || x > DataRight()) return;
  ws_.Plots.ActivePlotType = 0;
  MoveCursor(TimeAt(x));
  DownX = LastX = x;
  DownY = LastY = y;
}

void frmGraph::MouseMove(int button, double x, double y) {
  if (button != 1 || DownX == -1000) return;
  // The band from the press to the pointer; drawn again where it was, it goes away.
  if (LastX != DownX) DrawBand(DownX, LastX);
  LastX = std::clamp(x, kPlotLeft, DataRight());
  LastY = y;
  if (LastX != DownX) DrawBand(DownX, LastX);
}

void frmGraph::MouseUp(int button, double x, double) {
  if (button != 1 || DownX == -1000) return;
  if (LastX != DownX) DrawBand(DownX, LastX);
  const double down = DownX;
  DownX = LastX = DownY = LastY = -1000;
  if (x < kPlotLeft) return ScrollLeft(ws_);
  if (x > DataRight()) return ScrollRight(ws_);
  if (std::fabs(x - down) <= s_->ScaleWidth() / 100) return;
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double t = TimeAt(x);
  if (std::fabs(t - folder.CursorTime) < 10) return;
  PushView(ws_);
  // Dragged either way, the span between press and release becomes the view.
  folder.TimeStart = static_cast<int32_t>(Round(std::min<double>(folder.CursorTime, t)));
  folder.TimeEnd = static_cast<int32_t>(Round(std::max<double>(folder.CursorTime, t)));
  RefreshPlots(ws_);
}

void frmGraph::NextChannel(int direction) {
  // The channels shown in the current lap of the outing on the axis, in table order.
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ActiveSlot())];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size())) return;
  const auto& caches = o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels;
  const int n = static_cast<int>(caches.size());
  for (int k = 1; k <= n; ++k) {
    const int c = ((folder.ActiveChannel + direction * k) % n + n) % n;
    if (caches[static_cast<std::size_t>(c)].Shown != 0) {
      folder.ActiveChannel = static_cast<int16_t>(c);
      RefreshPlots(ws_);
      return;
    }
  }
}

void frmGraph::KeyDown(Key key, bool shift, bool ctrl, bool alt) {
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  switch (key) {
    case Key::Down: return NextChannel(1);
    case Key::Up: return NextChannel(-1);
    case Key::Enter: return shift || ctrl || alt ? ZoomOut(ws_) : ZoomCursor(ws_);
    case Key::Home: return GotoStart(ws_);
    case Key::End: return GotoEnd(ws_);
    case Key::Left:
    case Key::Right: break;
  }
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ActiveSlot())];
  if (o.Loaded == 0 || folder.ActiveChannel < 0 || folder.ActiveChannel >= static_cast<int>(o.Channels.size())) return;
  const double rate = o.Channels[static_cast<std::size_t>(folder.ActiveChannel)].Rate;
  if (!(rate > 0)) return;
  const double samples = shift ? 100 : ctrl ? 10 : 1;
  const double step = Round(1 / rate) * samples;
  const double sample = folder.CursorTime * rate;
  double t = 0;
  // Rates such as 0.1 a ms are not exact in binary: within a thousandth of a sample is on it.
  if (std::fabs(sample - Round(sample)) > 1e-3) {
    // Between two samples the first press only goes onto the neighbouring one.
    t = (key == Key::Right ? std::ceil(sample) : std::floor(sample)) / rate;
  } else {
    t = folder.CursorTime + (key == Key::Right ? step : -step);
  }
  if (t < folder.TimeStart || t > folder.TimeEnd) return;
  MoveCursor(t);
}
