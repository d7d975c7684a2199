#include "core/plots/LinePlot.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/Laps.h"

namespace {

double Round(double v) { return std::nearbyint(v); }

}  // namespace

bool ValueAt(const std::vector<float>& v, double rate, double time, float& value) {
  const double x = rate * time;
  const int64_t i = Floor(x);
  const int64_t upper = static_cast<int64_t>(v.size()) - 1;
  if (i < 0 || i > upper) return false;
  const float at = v[static_cast<std::size_t>(i)];
  value = i < upper ? static_cast<float>(at + (v[static_cast<std::size_t>(i + 1)] - at) * (x - static_cast<double>(i))) : at;
  return true;
}

FolderRec& LinePlot::Folder() const { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)]; }

double LinePlot::DataRight() const { return s_->ScaleWidth() - RightMargin(ws_); }

int LinePlot::ActiveSlot() const { return Folder().SelOuting; }

double LinePlot::PositionAt(double x) const {
  return ViewStart() + (ViewEnd() - ViewStart()) * (x - kPlotLeft) / (DataRight() - kPlotLeft);
}

double LinePlot::ValueY(int slot, int lap, int channel, double value) const {
  const double h = s_->ScaleHeight();
  return Kind() == AxisKind::Distance ? DistanceValueToY(ws_, h, slot, lap, channel, value)
                                      : ChannelValueToY(ws_, h, slot, lap, channel, value);
}

void LinePlot::ComputeViewStats(int slot, int lap, int channel) {
  if (Kind() == AxisKind::Distance) {
    ComputeDistanceStats(ws_, slot, lap, channel);
  } else {
    ComputeTimeStats(ws_, slot, lap, channel);
  }
}

const ChannelStats& LinePlot::ViewStats(const LapChannelRec& cache) const {
  return Kind() == AxisKind::Distance ? cache.DistanceStats : cache.TimeStats;
}

void LinePlot::DrawLineGraphs() {
  FolderRec& folder = Folder();
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  LoadDataLabels();
  ChannelLabels.clear();
  const bool tile_axes = FolderTiled(ws_) && ws_.Options.AutoTileMode;
  FetchScope scope(ws_);  // one open file per outing for the whole redraw
  ForEachTrace(ws_, [&](int slot, int lap, int c) {
    GetChannelData(ws_, slot, lap, c);
    DoPlot(slot, lap, c);
    if (tile_axes) DrawAxisTile(ws_, *s_, slot, lap, c, Kind());
    const OutingRec& o = OutingAt(ws_, slot);
    const std::size_t band = static_cast<std::size_t>(o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].TileIndex);
    if (ChannelLabels.size() <= band) ChannelLabels.resize(band + 1);
    if (ChannelLabels[band].Text.isEmpty()) {
      ChannelLabels[band] = {ChannelLabel(o.Channels[static_cast<std::size_t>(c)]), GetChannelColor(ws_, slot, lap, c)};
    }
  });
  DrawXAxis();
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  Caption.clear();
  if (o.Loaded != 0 && folder.ActiveChannel >= 0 && folder.ActiveChannel < static_cast<int>(o.Channels.size()) &&
      o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    Caption = DrawAxisSingle(ws_, *s_, Kind(), slot, o.CurLap, folder.ActiveChannel);
  }
  if (!FolderTiled(ws_)) DrawAxisPanels();
  DrawDatumPoint();
  UpdateCursorValues();
  CursorY = DrawCursor(0, -1000);  // the old cursor went with the clear
}

void LinePlot::SetAxisPanels(Surface* left, Surface* right) {
  panels_[0] = left;
  panels_[1] = right;
}

void LinePlot::DrawAxisPanels() { ::DrawAxisPanels(ws_, panels_[0], panels_[1], Kind()); }

void LinePlot::LoadDataLabels() {
  Numerics.assign(1, NumericRow{PositionCaption(), QString(), ForegroundColor(ws_), 100});
  ForEachTrace(ws_, [&](int slot, int lap, int c) {
    const OutingRec& o = OutingAt(ws_, slot);
    Numerics.push_back({ChannelLabel(o.Channels[static_cast<std::size_t>(c)]) + QStringLiteral("  ") + LapNumberText(o, lap), QString(),
                        GetChannelColor(ws_, slot, lap, c), 100 + 260.0 * static_cast<double>(Numerics.size())});
  });
  if (ws_.Options.AutoSizeNumeric) NumericHeight = 200 + 260.0 * static_cast<double>(Numerics.size());
}

void LinePlot::DrawNumerics() {
  if (!ws_.Options.NumericCursor || Numerics.empty()) return;
  Numerics[0].Value = PositionText(Cursor());
  std::size_t row = 1;
  ForEachTrace(ws_, [&](int slot, int lap, int c) {
    if (row >= Numerics.size()) return;  // traces came after the last LoadDataLabels
    const OutingRec& o = OutingAt(ws_, slot);
    const ChannelRec& channel = o.Channels[static_cast<std::size_t>(c)];
    const auto& samples = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
    float value = 0;
    NumericRow& label = Numerics[row++];
    label.Value = ValueAt(samples, channel.Rate, CursorTimeIn(slot, lap), value) ? FormatChannelValue(channel, value) : QString();
    label.Color = GetChannelColor(ws_, slot, lap, c);
  });
}

void LinePlot::PaintNumerics(Surface& panel) const {
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

void LinePlot::ManualMinMaxMove(bool is_maximum) {
  const FolderRec& folder = Folder();
  const int slot = ActiveSlot(), channel = folder.ActiveChannel;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size()) || channel < 0 ||
      channel >= static_cast<int>(o.Channels.size())) {
    return;
  }
  ComputeViewStats(slot, o.CurLap, channel);
  const ChannelStats& st = ViewStats(o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(channel)]);
  const double rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  if (st.Valid == 0 || !(rate > 0)) return;
  ManualMove(PositionOfTime(slot, o.CurLap, Round((is_maximum ? st.MaxIndex : st.MinIndex) / rate)));
}

void LinePlot::ManualMove(double position) {
  if (ViewEnd() <= ViewStart()) return;
  MoveCursor(position);
  if (MovePointer) MovePointer(CursorX());
}

void LinePlot::DrawTicks(double view, double start, double end, const std::function<QString(double)>& label,
                         double label_width, const QString& unit) {
  const double h = s_->ScaleHeight(), right = DataRight(), axis_y = h - kPlotBottom;
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  double r = view;
  int exponent = 0;
  while (r >= 10) r /= 10, ++exponent;
  const double base = r <= 1.5 ? 1 : r <= 3.5 ? 2.5 : r <= 7.5 ? 5 : 10;
  const double step = base * std::pow(10.0, exponent - 1) / 5;
  const double x_scale = (right - kPlotLeft) / view;
  // Ticks lie on multiples of the step from the lap's start; those before the view are skipped.
  for (int64_t k = static_cast<int64_t>(std::ceil(start / step)); static_cast<double>(k) * step <= end; ++k) {
    const double t = static_cast<double>(k) * step;
    const double x = (t - start) * x_scale + kPlotLeft;
    const bool major = static_cast<int64_t>(Round(t * 10)) % std::max<int64_t>(1, static_cast<int64_t>(Round(step * 50))) == 0;
    s_->Line(x, axis_y, x, axis_y + (major ? 150 : 75), fg);
    if (!major) continue;
    const QString text = label(t);
    if (x <= right - label_width - 250) {
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
  s_->Print(unit);
}

void LinePlot::DrawLapStarts(const std::vector<double>& positions) {
  const double axis_y = s_->ScaleHeight() - kPlotBottom;
  const double x_scale = (DataRight() - kPlotLeft) / (ViewEnd() - ViewStart());
  for (double p : positions) {
    if (p < ViewStart() || p > ViewEnd()) continue;
    const double x = (p - ViewStart()) * x_scale + kPlotLeft;
    s_->Line(x, kPlotTop, x, axis_y, ForegroundColor(ws_));
  }
}

void LinePlot::UpdateCursorValues() {
  FolderRec& folder = Folder();
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
  if (ValueAt(cache.Samples, c.Rate, CursorTimeIn(slot, lap), folder.CursorValue)) {
    const QString blanks(4, QLatin1Char(' '));
    StatusLine = QStringLiteral("Lap Time : ") + FormatLapTime(ws_, LapTimeMs(o, lap)) + blanks;
    if (ws_.Plots.MeasureCursor) {
      StatusLine += QStringLiteral("(dX : ") + LeftTrimmed(PositionText(Cursor() - MarkTime)) + blanks +
                    QStringLiteral("dY : ") + LeftTrimmed(FormatChannelValue(c, folder.CursorValue - MarkValue)) +
                    QLatin1Char(')');
    } else if (ws_.Options.ShowStatistics) {
      ComputeViewStats(slot, lap, channel);
      const ChannelStats& st = ViewStats(OutingAt(ws_, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)]);
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

void LinePlot::DrawDatumPoint() {
  if (!ws_.Plots.MeasureCursor) return;
  const FolderRec& folder = Folder();
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size()) || folder.ActiveChannel < 0 ||
      folder.ActiveChannel >= static_cast<int>(o.Channels.size())) {
    return;
  }
  MarkX = std::max(CursorX(), kPlotLeft);
  MarkY = ValueY(slot, o.CurLap, folder.ActiveChannel, folder.CursorValue);
  s_->Line(MarkX - 190, MarkY, MarkX + 190, MarkY, 0);
  s_->Line(MarkX, MarkY - 190, MarkX, MarkY + 190, 0);
  s_->Circle(MarkX, MarkY, 100, 0);
  MarkTime = Cursor();
  MarkValue = folder.CursorValue;
}

double LinePlot::CursorX() const {
  const double view = ViewEnd() - ViewStart();
  if (view <= 0) return kPlotLeft;
  return (Cursor() - ViewStart()) / view * (DataRight() - kPlotLeft) + kPlotLeft;
}

double LinePlot::DrawCursor(double old_x, double old_y) {
  FolderRec& folder = Folder();
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
  drawn_x_ = new_x;
  return new_y;
}

void LinePlot::MoveCursor(double position) {
  SetCursor(position);
  FollowCursor();
  if (Kind() == AxisKind::Time) SetSpectrumSpan();
  if (CursorMoved) CursorMoved();
}

// With the measure cursor on, the spectra span the time from its mark to the cursor; else the
// time view.
void LinePlot::SetSpectrumSpan() {
  FolderRec& folder = Folder();
  const bool measured = ws_.Plots.MeasureCursor && MarkTime != Cursor();
  folder.FftStart = measured ? static_cast<int32_t>(std::lround(std::min(MarkTime, Cursor()))) : 0;
  folder.FftEnd = measured ? static_cast<int32_t>(std::lround(std::max(MarkTime, Cursor()))) : 0;
}

void LinePlot::FollowCursor() {
  UpdateCursorValues();
  CursorY = DrawCursor(drawn_x_, CursorY);
}

void LinePlot::DrawBand(double x1, double x2) {
  s_->DrawMode = kDrawXor;
  s_->Line(std::min(x1, x2), kPlotTop, std::max(x1, x2), s_->ScaleHeight() - kPlotBottom, 16777215, LineKind::FilledBox);
  s_->DrawMode = kDrawCopy;
}

void LinePlot::MouseDown(int button, double x, double y) {
  if (button != 1 || x < kPlotLeft || x > DataRight()) return;
  ws_.Plots.ActivePlotType = Kind() == AxisKind::Distance ? 1 : 0;
  MoveCursor(PositionAt(x));
  DownX = LastX = x;
  DownY = LastY = y;
}

void LinePlot::MouseMove(int button, double x, double y) {
  if (button != 1 || DownX == -1000) return;
  // The band from the press to the pointer; drawn again where it was, it goes away.
  if (LastX != DownX) DrawBand(DownX, LastX);
  LastX = std::clamp(x, kPlotLeft, DataRight());
  LastY = y;
  if (LastX != DownX) DrawBand(DownX, LastX);
}

void LinePlot::MouseUp(int button, double x, double) {
  if (button != 1 || DownX == -1000) return;
  if (LastX != DownX) DrawBand(DownX, LastX);
  const double down = DownX;
  DownX = LastX = DownY = LastY = -1000;
  if (x < kPlotLeft) return ScrollLeft(ws_);
  if (x > DataRight()) return ScrollRight(ws_);
  if (std::fabs(x - down) <= s_->ScaleWidth() / 100) return;
  const double at = PositionAt(x), cursor = Cursor();
  if (std::fabs(at - cursor) < MinimumZoom()) return;
  PushView(ws_);
  // Dragged either way, the span between press and release becomes the view.
  FolderRec& folder = Folder();
  if (Kind() == AxisKind::Distance) {
    folder.DistanceStart = static_cast<float>(std::min(cursor, at));
    folder.DistanceEnd = static_cast<float>(std::max(cursor, at));
  } else {
    folder.TimeStart = static_cast<int32_t>(Round(std::min(cursor, at)));
    folder.TimeEnd = static_cast<int32_t>(Round(std::max(cursor, at)));
  }
  RefreshPlots(ws_);
}

void LinePlot::NextChannel(int direction) {
  // The channels shown in the current lap of the outing on the axis, in table order.
  FolderRec& folder = Folder();
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

void LinePlot::KeyDown(Key key, bool shift, bool ctrl, bool alt) {
  FolderRec& folder = Folder();
  switch (key) {
    case Key::Down: return NextChannel(1);
    case Key::Up: return NextChannel(-1);
    case Key::Enter: return shift || ctrl || alt ? ZoomOut(ws_) : ZoomCursor(ws_);
    case Key::Home: return GotoStart(ws_);
    case Key::End: return GotoEnd(ws_);
    case Key::Left:
    case Key::Right: break;
  }
  const int slot = ActiveSlot();
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || folder.ActiveChannel < 0 || folder.ActiveChannel >= static_cast<int>(o.Channels.size()) ||
      o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size())) {
    return;
  }
  const double rate = o.Channels[static_cast<std::size_t>(folder.ActiveChannel)].Rate;
  if (!(rate > 0)) return;
  // One sample of the active channel in time; the distance plot steps to where that sample lies.
  const double samples = shift ? 100 : ctrl ? 10 : 1;
  const double step = Round(1 / rate) * samples;
  const double time = CursorTimeIn(slot, o.CurLap);
  const double sample = time * rate;
  double t = 0;
  // Rates such as 0.1 a ms are not exact in binary: within a thousandth of a sample is on it.
  if (std::fabs(sample - Round(sample)) > 1e-3) {
    // Between two samples the first press only goes onto the neighbouring one.
    t = (key == Key::Right ? std::ceil(sample) : std::floor(sample)) / rate;
  } else {
    t = time + (key == Key::Right ? step : -step);
  }
  const double position = PositionOfTime(slot, o.CurLap, t);
  if (position < ViewStart() || position > ViewEnd()) return;
  MoveCursor(position);
}
