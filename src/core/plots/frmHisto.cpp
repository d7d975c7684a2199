#include "core/plots/frmHisto.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RefreshPlots.h"

namespace {

constexpr double kHistoRight = 300;  // the bars' right margin, tiled or not

double Round(double v) { return std::nearbyint(v); }

const LapChannelRec& CacheOf(const Workspace& ws, int slot, int lap, int channel) {
  return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]
      .Outings[static_cast<std::size_t>(slot)]
      .Laps[static_cast<std::size_t>(lap)]
      .LapChannels[static_cast<std::size_t>(channel)];
}

}  // namespace

FolderRec& frmHisto::Folder() const { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)]; }

int frmHisto::Bins() const { return std::max(1, Folder().Options.HistoBins); }

double frmHisto::BarWidth() const { return (s_->ScaleWidth() - kPlotLeft - kHistoRight) / Bins(); }

void frmHisto::CalcHistogram(int slot, int lap, int channel) {
  FolderRec& folder = Folder();
  OutingRec& o = OutingAt(ws_, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  LapChannelRec& cache = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
  const int bins = Bins();
  const float width = (c.ScreenMax - c.ScreenMin) / static_cast<float>(bins);
  cache.Bins.assign(static_cast<std::size_t>(bins) + 1, HistoBin{});
  for (int b = 0; b < bins; ++b) {
    HistoBin& bin = cache.Bins[static_cast<std::size_t>(b)];
    bin.Low = c.ScreenMin + static_cast<float>(b) * width;
    bin.High = bin.Low + width;
  }
  cache.BinSamples = 0;
  const std::vector<float>& v = cache.Samples;
  const int64_t first = RoundHalfEven(folder.TimeStart * static_cast<double>(c.Rate));
  const int64_t n = RoundHalfEven(folder.TimeEnd * static_cast<double>(c.Rate)) - first;
  const int64_t last = std::min<int64_t>(first + n, static_cast<int64_t>(v.size()) - 1);
  if (n <= 0) return;
  // At most about 2,000 samples: a fractional step added up along the walk, each sample at the
  // truncated position. Added, not multiplied: the sum's rounding decides which samples count.
  const double step = n >= 2000 ? static_cast<double>(n) / 2000 : 1;
  cache.BinSamples = static_cast<int32_t>(std::floor(static_cast<double>(n) / step));
  double position = static_cast<double>(first);
  for (int32_t k = 0; k < cache.BinSamples; ++k, position += step) {
    const auto i = static_cast<int64_t>(position);
    if (i < 0 || i > last) break;  // a lap shorter than the view: the rest counts nowhere
    const float x = v[static_cast<std::size_t>(i)];
    for (int b = 0; b < bins; ++b) {
      HistoBin& bin = cache.Bins[static_cast<std::size_t>(b)];
      if (bin.Low <= x && x < bin.High) {
        ++bin.Count;
        break;
      }
    }
  }
  if (cache.BinSamples <= 0) return;
  for (int b = 0; b < bins; ++b) {
    folder.HistoPeak = std::max(folder.HistoPeak, static_cast<float>(cache.Bins[static_cast<std::size_t>(b)].Count) /
                                                      static_cast<float>(cache.BinSamples));
  }
}

double frmHisto::TwipsPerCount(double usable, double total) const {
  if (!(total > 0)) return 0;
  if (ws_.Options.HistoTimeScale) return usable / total;
  if (ws_.Options.HistoAutoScale) return Folder().HistoPeak > 0 ? usable / (total * Folder().HistoPeak) : 0;
  return Folder().Options.HistoScale > 0 ? usable / (total * Folder().Options.HistoScale / 100) : 0;
}

void frmHisto::DrawBars(const std::vector<int32_t>& counts, double total, double floor, double usable, int color) {
  const double per_count = TwipsPerCount(usable, total), width = BarWidth();
  for (int b = 0; b < Bins() && b < static_cast<int>(counts.size()); ++b) {
    const double left = kPlotLeft + b * width;
    const double top = std::max(kPlotTop, floor - counts[static_cast<std::size_t>(b)] * per_count);
    s_->Line(left, top, left + width, floor, color, LineKind::Box);
  }
}

void frmHisto::Band(int slot, int lap, int channel, double& floor, double& usable) const {
  const double h = s_->ScaleHeight();
  usable = h - 1050;
  floor = h - kPlotBottom;
  if (!FolderTiled(ws_) || ws_.Plots.TileCount <= 0 || ws_.Options.HistoTotal) return;
  // The channel's band stands for the whole height, its base as the floor.
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  floor -= GetTileOffset(ws_, slot, lap, channel, usable);
  usable = ws_.Options.AutoTileMode ? usable / ws_.Plots.TileCount : (c.TileTop - c.TileBottom) * usable / 100;
}

void frmHisto::DrawOneHisto(int slot, int lap, int channel) {
  const LapChannelRec& cache = CacheOf(ws_, slot, lap, channel);
  std::vector<int32_t> counts;
  for (const HistoBin& bin : cache.Bins) counts.push_back(bin.Count);
  double floor = 0, usable = 0;
  Band(slot, lap, channel, floor, usable);
  DrawBars(counts, cache.BinSamples, floor, usable, GetChannelColor(ws_, slot, lap, channel));
}

bool frmHisto::ActiveBins(std::vector<int32_t>& counts, double& total, int& slot, int& lap, int& channel) const {
  const FolderRec& folder = Folder();
  slot = folder.SelOuting;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  lap = o.CurLap;
  channel = folder.ActiveChannel;
  if (o.Loaded == 0 || lap < 0 || lap >= static_cast<int>(o.Laps.size()) || channel < 0 || channel >= static_cast<int>(o.Channels.size())) {
    return false;
  }
  if (ws_.Options.HistoTotal) {
    counts = folder.HistoTotals;
    total = folder.HistoTotalCount;
    return true;
  }
  const LapChannelRec& cache = CacheOf(ws_, slot, lap, channel);
  counts.clear();
  for (const HistoBin& bin : cache.Bins) counts.push_back(bin.Count);
  total = cache.BinSamples;
  return !counts.empty();
}

void frmHisto::DrawHistoTotal() {
  FolderRec& folder = Folder();
  folder.HistoPeak = 0;
  folder.HistoTotals.assign(static_cast<std::size_t>(Bins()) + 1, 0);
  folder.HistoTotalCount = 0;
  const OutingRec& active = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  if (active.Loaded == 0 || folder.ActiveChannel < 0 || folder.ActiveChannel >= static_cast<int>(active.Channels.size())) return;
  const QString name = active.Channels[static_cast<std::size_t>(folder.ActiveChannel)].ShortName.trimmed().toUpper();
  ForEachTrace(ws_, [&](int slot, int lap, int c) {
    if (OutingAt(ws_, slot).Channels[static_cast<std::size_t>(c)].ShortName.trimmed().toUpper() != name) return;
    const LapChannelRec& cache = CacheOf(ws_, slot, lap, c);
    for (std::size_t b = 0; b < cache.Bins.size() && b < folder.HistoTotals.size(); ++b) {
      folder.HistoTotals[b] += cache.Bins[b].Count;
      folder.HistoTotalCount += cache.Bins[b].Count;
    }
  });
  for (int32_t count : folder.HistoTotals) {
    if (folder.HistoTotalCount > 0) folder.HistoPeak = std::max(folder.HistoPeak, static_cast<float>(count) / folder.HistoTotalCount);
  }
  const double h = s_->ScaleHeight();
  const int color = GetChannelColor(ws_, folder.SelOuting, active.CurLap, folder.ActiveChannel);
  DrawBars(folder.HistoTotals, folder.HistoTotalCount, h - kPlotBottom, h - 1050, color);
  s_->ForeColor = color;
  s_->CurrentX = kPlotLeft + 100;
  s_->CurrentY = kPlotTop + 50;
  s_->Print(active.Channels[static_cast<std::size_t>(folder.ActiveChannel)].Name.trimmed());
}

void frmHisto::DrawTicks50(const std::function<QString(int)>& label) {
  const double h = s_->ScaleHeight(), floor = h - kPlotBottom, spacing = Round((h - 1050) / 50);
  const double right = s_->ScaleWidth() - kHistoRight;
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  for (int tick = 1; tick <= 50; ++tick) {
    const double y = floor - tick * spacing;
    s_->Line(kPlotLeft, y, kPlotLeft - (tick % 5 == 0 ? 150 : 75), y, fg);
    if (tick % 5 != 0) continue;
    const QString text = label(tick);
    s_->CurrentX = kPlotLeft - 150 - std::max(s_->TextWidth(text), s_->TextWidth(QStringLiteral("99.99")));
    s_->CurrentY = y - s_->TextHeight(QStringLiteral("0")) / 2;
    s_->Print(text);
    if (ws_.Options.HorizontalGrid) {
      s_->DrawStyle = kDotted;
      s_->Line(kPlotLeft, y, right, y, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  s_->Line(kPlotLeft, kPlotTop, kPlotLeft, floor, fg);
}

void frmHisto::DrawLeftAxis() {
  const FolderRec& folder = Folder();
  const double top = ws_.Options.HistoAutoScale ? folder.HistoPeak * 100 : folder.Options.HistoScale;
  DrawTicks50([top](int tick) { return QString::number(tick / 50.0 * top, 'f', 2) + QLatin1Char('%'); });
}

void frmHisto::DrawTimeAxis() {
  const double seconds = (Folder().TimeEnd - Folder().TimeStart) / 1000.0;
  DrawTicks50([seconds](int tick) { return QString::number(tick / 50.0 * seconds, 'f', 2); });
  s_->CurrentX = kPlotLeft - 600;
  s_->CurrentY = kPlotTop - 250;
  s_->Print(QStringLiteral("secs"));
}

void frmHisto::DrawBottomAxis() {
  const double h = s_->ScaleHeight(), floor = h - kPlotBottom, width = BarWidth(), w = s_->ScaleWidth();
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  s_->Line(kPlotLeft, floor, w - kHistoRight, floor, fg);
  std::vector<int32_t> counts;
  double total = 0;
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveBins(counts, total, slot, lap, channel)) return;
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  const double value_width = (c.ScreenMax - c.ScreenMin) / Bins();
  // A label where the last one leaves room for it.
  double free_from = 0;
  for (int b = 0; b <= Bins(); ++b) {
    const double x = kPlotLeft + b * width;
    s_->Line(x, floor, x, floor + 75, fg);
    const QString text = FormatAuto(c.ScreenMin + b * value_width);
    const double label_width = std::max(s_->TextWidth(text), s_->TextWidth(QStringLiteral("00.000")));
    if (x - label_width / 2 < free_from || x > w - kHistoRight - label_width - 250) continue;
    s_->CurrentX = x - s_->TextWidth(text) / 2;
    s_->CurrentY = floor + 175;
    s_->Print(text);
    free_from = x + label_width / 2 + 50;
  }
  // Beside each bar of the active channel: its share, or its seconds on the time scale.
  const double seconds = (Folder().TimeEnd - Folder().TimeStart) / 1000.0;
  double bar_floor = 0, usable = 0;
  Band(slot, lap, channel, bar_floor, usable);
  const double per_count = TwipsPerCount(usable, total);
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  for (int b = 0; b < Bins() && b < static_cast<int>(counts.size()) && total > 0; ++b) {
    const double share = counts[static_cast<std::size_t>(b)] / total;
    const QString text = ws_.Options.HistoTimeScale ? QString::number(share * seconds, 'f', 2) : QString::number(share * 100, 'f', 2);
    if (counts[static_cast<std::size_t>(b)] == 0 || s_->TextWidth(text) > width) continue;
    s_->CurrentX = kPlotLeft + b * width + (width - s_->TextWidth(text)) / 2;
    s_->CurrentY = std::max(kPlotTop, bar_floor - counts[static_cast<std::size_t>(b)] * per_count - s_->TextHeight(text) - 20);
    s_->Print(text);
  }
  Caption = c.Name.trimmed() + QStringLiteral(" - Histogram");
}

void frmHisto::LoadDataLabels() {
  Labels = {{QStringLiteral("Bin :"), QString()}, {QStringLiteral("Share :"), QString()}, {QStringLiteral("Time :"), QString()}};
}

void frmHisto::MouseDown(int button, double x, double y) {
  const double floor = s_->ScaleHeight() - kPlotBottom;
  if (button != 1 || x < kPlotLeft || x >= s_->ScaleWidth() - kHistoRight || y < kPlotTop || y > floor) return;
  std::vector<int32_t> counts;
  double total = 0;
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveBins(counts, total, slot, lap, channel)) return;
  const int b = static_cast<int>((x - kPlotLeft) / BarWidth());
  const LapChannelRec& cache = CacheOf(ws_, slot, lap, channel);
  if (b < 0 || b >= Bins() || b >= static_cast<int>(counts.size()) || b >= static_cast<int>(cache.Bins.size())) return;
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  const HistoBin& bin = cache.Bins[static_cast<std::size_t>(b)];
  const double share = total > 0 ? counts[static_cast<std::size_t>(b)] / total : 0;
  // The time in a bin is the view's length spread by the share of samples.
  const double ms = share * (Folder().TimeEnd - Folder().TimeStart);
  LoadDataLabels();
  Labels[0].Value = FormatChannelValue(c, bin.Low).trimmed() + QStringLiteral(" to ") + FormatChannelValue(c, bin.High).trimmed();
  Labels[1].Value = LeftTrimmed(FormatAuto(share * 100)) + QLatin1Char('%');
  Labels[2].Value = LeftTrimmed(FormatTime(ms));
  DrawCursorBin();  // takes the mark off the bin it was on
  CursorBin = b;
  DrawCursorBin();
}

void frmHisto::DrawCursorBin() {
  if (CursorBin < 0 || CursorBin >= Bins()) return;
  // Exclusive-or, as the plots' cursor: drawn again on the same bin, it goes away.
  const double x = kPlotLeft + (CursorBin + 0.5) * BarWidth();
  s_->DrawMode = kDrawXor;
  s_->Line(x, kPlotTop, x, s_->ScaleHeight() - kPlotBottom, 16777215);
  s_->DrawMode = kDrawCopy;
}

void frmHisto::DrawHistograms() {
  FolderRec& folder = Folder();
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  folder.HistoPeak = 0;
  Caption.clear();
  {
    FetchScope scope(ws_);
    ForEachTrace(ws_, [&](int slot, int lap, int c) {
      GetChannelData(ws_, slot, lap, c);
      CalcHistogram(slot, lap, c);
    });
  }
  if (ws_.Options.HistoTotal) {
    DrawHistoTotal();
  } else {
    ForEachTrace(ws_, [&](int slot, int lap, int c) { DrawOneHisto(slot, lap, c); });
  }
  DrawBottomAxis();
  if (ws_.Options.HistoTimeScale) {
    DrawTimeAxis();
  } else {
    DrawLeftAxis();
  }
  DrawCursorBin();  // the clear took it away
}

void frmHistoScale::Form_Load(const Workspace& ws) {
  chkAuto = ws.Options.HistoAutoScale;
  txtDataIn = QString::number(static_cast<double>(ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Options.HistoScale));
}

bool frmHistoScale::cmdOK(Workspace& ws) {
  bool ok = false;
  const float value = txtDataIn.trimmed().toFloat(&ok);
  if (!ok) return false;  // not a number: nothing to store
  ws.Options.HistoAutoScale = chkAuto;
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Options.HistoScale = value;
  RefreshPlots(ws);
  return true;
}
