#include "core/plots/frmFrequency.h"

#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/compute/Frequency.h"
#include "core/outing/ChannelData.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/ChannelDefaults.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/Laps.h"

namespace {

const QString kTitle = QStringLiteral("Edit FFT Scalings");

LapChannelRec& CacheOf(Workspace& ws, int slot, int lap, int channel) {
  return OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
}

// Labels of the frequency axis: more decimals the narrower the range.
QString HzText(double hz, double max_hz) {
  const int decimals = max_hz >= 100 ? 1 : max_hz >= 10 ? 2 : 3;
  return QString::number(hz, 'f', decimals);
}

}  // namespace

FolderRec& frmFrequency::Folder() const { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)]; }

void frmFrequency::Span(double& start_ms, double& end_ms) const {
  const FolderRec& f = Folder();
  const bool own = f.FftEnd > f.FftStart;
  start_ms = own ? f.FftStart : f.TimeStart;
  end_ms = own ? f.FftEnd : f.TimeEnd;
}

void frmFrequency::CalcFreqData() {
  double start = 0, end = 0;
  Span(start, end);
  FetchScope scope(ws_);
  ForEachTrace(ws_, [&](int slot, int lap, int channel) {
    GetChannelData(ws_, slot, lap, channel);
    LapChannelRec& cache = CacheOf(ws_, slot, lap, channel);
    const float rate = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].Rate;
    const FftSpan span = SpanSamples(static_cast<int64_t>(cache.Samples.size()) - 1, rate, start, end);
    cache.SpectrumPoints = span.N;
    cache.Spectrum = span.N > 0 ? Spectrum(cache.Samples, span.Start, span.N) : std::vector<float>{};
  });
}

double frmFrequency::FindMaxFrequency() const {
  double max = 0;
  ForEachTrace(ws_, [&](int slot, int, int channel) {
    max = std::max(max, OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].Rate * 1000.0);
  });
  return max;
}

double frmFrequency::AxisMax() const {
  const double all = FindMaxFrequency(), view = ws_.Options.FreqPlotView;
  return view > 0 && view < all ? view : all;
}

double frmFrequency::XOfFrequency(double hz) const {
  const double max = AxisMax(), width = s_->ScaleWidth() - kPlotLeft - RightMargin(ws_);
  return max > 0 ? kPlotLeft + hz / max * width : kPlotLeft;
}

double frmFrequency::FrequencyOfX(double x) const {
  const double width = s_->ScaleWidth() - kPlotLeft - RightMargin(ws_);
  return width > 0 ? (x - kPlotLeft) / width * AxisMax() : 0;
}

void frmFrequency::Scale(int slot, int channel, double& min, double& max) const {
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  min = c.FftScaleMin;
  max = c.FftScaleMax;
  if (c.FftAutoScale == 0) return;
  // The range of every spectrum of this channel that is shown, so its laps share one scale.
  float lo = 0, hi = 0;
  bool any = false;
  ForEachTrace(ws_, [&](int s, int lap, int ch) {
    if (s != slot || ch != channel) return;
    for (float v : OutingAt(ws_, s).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(ch)].Spectrum) {
      lo = any ? std::min(lo, v) : v;
      hi = any ? std::max(hi, v) : v;
      any = true;
    }
  });
  if (any) {
    min = lo;
    max = hi;
  }
}

double frmFrequency::YOfValue(int slot, int lap, int channel, double value) const {
  const double h = s_->ScaleHeight(), usable = h - 1050;
  double min = 0, max = 0;
  Scale(slot, channel, min, max);
  double height = usable;
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  if (FolderTiled(ws_) && ws_.Plots.TileCount > 0) {
    height = ws_.Options.AutoTileMode ? usable / ws_.Plots.TileCount : (c.TileTop - c.TileBottom) * usable / 100;
  }
  const double offset = GetTileOffset(ws_, slot, lap, channel, usable);
  const double floor = h - kPlotBottom - offset, scale = max > min ? height / (max - min) : 0;
  return std::clamp(floor - (value - min) * scale, kPlotTop, floor);
}

void frmFrequency::DrawTrace(int slot, int lap, int channel) {
  const LapChannelRec& cache = CacheOf(ws_, slot, lap, channel);
  const float rate = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].Rate;
  if (cache.Spectrum.empty() || !(rate > 0)) return;
  const double bin_hz = rate * 1000.0 / cache.SpectrumPoints;
  // The bins up to the axis's end, thinned as a time trace is.
  const int64_t n = std::min(static_cast<int64_t>(cache.Spectrum.size()), static_cast<int64_t>(AxisMax() / bin_hz) + 1);
  const int64_t step = TraceStep(n);
  std::vector<PixelPoint> points;
  points.reserve(static_cast<std::size_t>(n / step + 1));
  for (int64_t i = 0; i < n; i += step) {
    const double y = YOfValue(slot, lap, channel, cache.Spectrum[static_cast<std::size_t>(i)]);
    points.push_back(s_->ToPixels(XOfFrequency(static_cast<double>(i) * bin_hz), y));
  }
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  s_->DrawWidth = 1;
  s_->Polyline(points);
}

void frmFrequency::DrawLeftAxis() {
  const FolderRec& f = Folder();
  const OutingRec& o = f.Outings[static_cast<std::size_t>(f.SelOuting)];
  const int channel = f.ActiveChannel, lap = o.CurLap;
  if (o.Loaded == 0 || channel < 0 || channel >= static_cast<int>(o.Channels.size())) return;
  double min = 0, max = 0;
  Scale(f.SelOuting, channel, min, max);
  const double h = s_->ScaleHeight(), spacing = (h - 1050) / 50, floor = h - kPlotBottom;
  const int colour = GetChannelColor(ws_, f.SelOuting, lap, channel);
  s_->ForeColor = colour;
  double label_x = kPlotLeft;
  for (int i = 1; i <= 49; ++i) {
    const double y = floor - i * spacing;
    s_->Line(kPlotLeft, y, kPlotLeft - (i % 5 == 0 ? 150 : 75), y, colour);
    if (i % 5 != 0) continue;
    const QString text = FormatAuto(min + i * (max - min) / 50);
    label_x = kPlotLeft - 250 - s_->TextWidth(QStringLiteral("00.00"));
    s_->CurrentX = kPlotLeft - 250 - s_->TextWidth(text);
    s_->CurrentY = y - s_->TextHeight(QStringLiteral("0")) / 2;
    s_->Print(text);
    if (ws_.Options.HorizontalGrid) {
      s_->DrawStyle = kDotted;
      s_->Line(kPlotLeft, y, s_->ScaleWidth() - RightMargin(ws_), y, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  s_->CurrentX = label_x + 75;
  s_->CurrentY = floor - 49 * spacing - 100 - s_->TextHeight(QStringLiteral("0"));
  s_->Print(o.Channels[static_cast<std::size_t>(channel)].Units.trimmed());
  s_->Line(kPlotLeft, kPlotTop, kPlotLeft, floor, colour);
}

void frmFrequency::DrawTileAxis(int slot, int lap, int channel) {
  double min = 0, max = 0;
  Scale(slot, channel, min, max);
  const double h = s_->ScaleHeight(), usable = h - 1050;
  const double spacing = usable / (std::max<int>(1, ws_.Plots.TileCount) * 25.0);
  const double base = h - kPlotBottom - GetTileOffset(ws_, slot, lap, channel, usable);
  const int colour = GetChannelColor(ws_, slot, lap, channel);
  s_->ForeColor = colour;
  for (int i = 0; i <= 25; ++i) {
    const double y = base - i * spacing;
    s_->Line(kPlotLeft, y, kPlotLeft - (i % 5 == 0 ? 150 : 75), y, colour);
    if (i % 5 != 0) continue;
    const QString text = FormatAuto(min + i * (max - min) / 25);
    s_->CurrentX = kPlotLeft - 250 - s_->TextWidth(text);
    s_->CurrentY = y - s_->TextHeight(QStringLiteral("0")) / 2;
    s_->Print(text);
    if (ws_.Options.HorizontalGrid && i > 0) {
      s_->DrawStyle = kDotted;
      s_->Line(kPlotLeft, y, s_->ScaleWidth() - RightMargin(ws_), y, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  const double top = base - 25 * spacing;
  s_->CurrentX = kPlotLeft + 100;
  s_->CurrentY = top + 50;
  s_->Print(OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].Name.trimmed());
  s_->Line(0, top, s_->ScaleWidth(), top, 0);
}

void frmFrequency::DrawFreqAxis() {
  const double h = s_->ScaleHeight(), floor = h - kPlotBottom, right = s_->ScaleWidth() - RightMargin(ws_);
  const double max = AxisMax();
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  s_->Line(kPlotLeft, floor, right, floor, fg);
  if (!(max > 0)) {
    Caption = QStringLiteral("No Frequency");
    s_->CurrentX = kPlotLeft + 100;
    s_->CurrentY = floor + 175;
    s_->Print(Caption);
    return;
  }
  Caption = QStringLiteral("PSD") + QStringLiteral(" vs Frequency");
  for (int i = 0; i <= 50; ++i) {
    const double x = kPlotLeft + i * (right - kPlotLeft) / 50;
    s_->Line(x, floor, x, floor + (i % 5 == 0 ? 150 : 75), fg);
    if (i % 5 != 0) continue;
    const QString text = HzText(max * i / 50, max);
    if (x + s_->TextWidth(text) / 2 > right - 250 - s_->TextWidth(QStringLiteral("Hz"))) continue;
    s_->CurrentX = x - s_->TextWidth(text) / 2;
    s_->CurrentY = floor + 200;
    s_->Print(text);
    if (ws_.Options.VerticalGrid && i > 0) {
      s_->DrawStyle = kDotted;
      s_->Line(x, kPlotTop, x, floor, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  s_->CurrentX = right - s_->TextWidth(QStringLiteral("Hz"));
  s_->CurrentY = floor + 200;
  s_->Print(QStringLiteral("Hz"));
}

void frmFrequency::DrawCursorLine(double hz) {
  if (hz < 0) return;
  const double x = XOfFrequency(hz);
  s_->DrawMode = kDrawXor;
  s_->Line(x, kPlotTop, x, s_->ScaleHeight() - kPlotBottom, 16777215);
  s_->DrawMode = kDrawCopy;
}

void frmFrequency::MoveFreqCursor(double x) {
  const double right = s_->ScaleWidth() - RightMargin(ws_);
  if (x < kPlotLeft || x > right) return;
  DrawCursorLine(CursorHz);
  CursorHz = FrequencyOfX(x);
  DrawCursorLine(CursorHz);
  LoadDataLabels();
}

void frmFrequency::LoadDataLabels() {
  StatusLine.clear();
  const FolderRec& f = Folder();
  const int slot = f.SelOuting, channel = f.ActiveChannel;
  const OutingRec& o = f.Outings[static_cast<std::size_t>(slot)];
  const int lap = o.CurLap;
  if (CursorHz < 0 || o.Loaded == 0 || lap < 0 || lap + 1 >= static_cast<int>(o.Laps.size()) || channel < 0 ||
      channel >= static_cast<int>(o.Channels.size())) {
    return;
  }
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const LapChannelRec& cache = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
  if (cache.Spectrum.empty() || !(c.Rate > 0)) return;
  const double bin_hz = c.Rate * 1000.0 / cache.SpectrumPoints;
  const auto bin = std::clamp<int64_t>(static_cast<int64_t>(std::nearbyint(CursorHz / bin_hz)), 0,
                                       static_cast<int64_t>(cache.Spectrum.size()) - 1);
  const QString blanks(4, QLatin1Char(' '));
  StatusLine = QStringLiteral("Frequency :") + QLatin1Char(' ') + HzText(bin * bin_hz, AxisMax()) +
               QStringLiteral(" Hz") + blanks + LeftTrimmed(FormatFftValue(c, cache.Spectrum[static_cast<std::size_t>(bin)])) +
               blanks + QStringLiteral("Lap Time : ") + FormatLapTime(ws_, LapTimeMs(o, lap)) + blanks +
               QStringLiteral("Filter : ") + QString::fromLatin1(FilterKindName(c.FilterKind)) + blanks +
               QStringLiteral("Rate : ") + QString::number(std::nearbyint(c.Rate * 1000.0)) + QStringLiteral(" Hz");
}

void frmFrequency::DoFrequencyPlot() {
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  CalcFreqData();
  const bool tiled = FolderTiled(ws_) && ws_.Options.AutoTileMode;
  ForEachTrace(ws_, [&](int slot, int lap, int channel) {
    DrawTrace(slot, lap, channel);
    if (tiled) DrawTileAxis(slot, lap, channel);
  });
  if (!tiled) DrawLeftAxis();
  DrawFreqAxis();
  DrawCursorLine(CursorHz);
  LoadDataLabels();
  s_->ForeColor = ForegroundColor(ws_);
  s_->CurrentX = 1250;
  s_->CurrentY = 60;
  s_->Print(StatusLine);
}

frmFFTEdit::frmFFTEdit(Workspace& ws, int slot, int channel) : ws_(ws), slot_(slot), channel_(channel) {
  const ChannelRec& c = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)];
  txtChannel = c.Name.trimmed();
  txtFFTscaleMin = QString::number(c.FftScaleMin);
  txtFFTscaleMax = QString::number(c.FftScaleMax);
  chkFFTAuto = c.FftAutoScale != 0;
  cboFFTDec = std::clamp<int>(c.FftDecimals, 0, 4);
}

bool frmFFTEdit::cmdOK() {
  bool ok_min = false, ok_max = false;
  const float min = txtFFTscaleMin.trimmed().toFloat(&ok_min), max = txtFFTscaleMax.trimmed().toFloat(&ok_max);
  if (!ok_min || !ok_max || !std::isfinite(min) || !std::isfinite(max) || !(max > min)) {
    ws_.messages.Show(QStringLiteral("Invalid scale values"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  const ChannelRec& channel = OutingAt(ws_, slot_).Channels[static_cast<std::size_t>(channel_)];
  const QString name = channel.ShortName;
  const auto apply = [&](auto& r) {
    r.FftScaleMin = min;
    r.FftScaleMax = max;
    r.FftAutoScale = chkFFTAuto ? -1 : 0;
    r.FftDecimals = static_cast<uint16_t>(cboFFTDec);
  };
  // The file first: when it can't be written, nothing changes.
  if (chkGlobal && !EditDescriptor(ws_, channel.DscIndex, [&](ChannelDescriptor& d) { apply(d); })) return false;
  ForEachChannelNamed(ws_, chkGlobal ? -1 : ws_.CurFolder, name, [&](ChannelRec& c) { apply(c); });
  RefreshPlots(ws_);
  return true;
}
