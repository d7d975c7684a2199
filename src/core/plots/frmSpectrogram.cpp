#include "core/plots/frmSpectrogram.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/Surface.h"
#include "core/track/DistanceTime.h"
#include "core/track/Laps.h"
#include "core/track/MapValues.h"
#include "core/track/frmContour.h"

namespace {

constexpr double kScaleWidth = 250;  // the colour scale at the right
constexpr int kWhite = 16777215;

FolderRec& Folder(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

double Decibels(float magnitude) { return 20 * std::log10(std::max<double>(magnitude, 1e-12)); }

}  // namespace

int frmSpectrogram::WindowPoints() const {
  const int asked = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].Options.SpectrogramPoints;
  return FftPoints(std::clamp(asked, 16, 4096));
}

int frmSpectrogram::OverlapPercent() const {
  return std::clamp(ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].Options.SpectrogramOverlap, 0, 90);
}

int frmSpectrogram::StepSamples() const {
  return std::max(1, static_cast<int>(std::lround(WindowPoints() * (100 - OverlapPercent()) / 100.0)));
}

double frmSpectrogram::XOfTime(double ms) const {
  const FolderRec& f = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double width = s_->ScaleWidth() - kPlotLeft - RightMargin(ws_) - kScaleWidth;
  const double span = static_cast<double>(f.TimeEnd) - f.TimeStart;
  return span > 0 ? kPlotLeft + (ms - f.TimeStart) / span * width : kPlotLeft;
}

double frmSpectrogram::TimeOfX(double x) const {
  const FolderRec& f = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  const double width = s_->ScaleWidth() - kPlotLeft - RightMargin(ws_) - kScaleWidth;
  return width > 0 ? f.TimeStart + (x - kPlotLeft) / width * (static_cast<double>(f.TimeEnd) - f.TimeStart) : f.TimeStart;
}

void frmSpectrogram::DrawSpectrogram() {
  s_->BackColor = BackgroundColor(ws_);
  s_->DrawMode = kDrawCopy;
  s_->Cls();
  cursor_drawn_ = -1;
  Data = {};
  Caption = QStringLiteral("No Frequency");
  StatusLine.clear();
  int slot = 0, lap = 0;
  const int channel = Folder(ws_).ActiveChannel;
  if (MapLap(ws_, slot, lap) && channel >= 0 && channel < static_cast<int>(OutingAt(ws_, slot).Channels.size())) {
    const OutingRec& o = OutingAt(ws_, slot);
    Rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
    GetChannelData(ws_, slot, lap, channel);
    const auto& samples = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
    const FolderRec& f = Folder(ws_);
    const int64_t start = std::max<int64_t>(0, RoundHalfEven(f.TimeStart * Rate));
    const int64_t end = std::min<int64_t>(static_cast<int64_t>(samples.size()) - 1, RoundHalfEven(f.TimeEnd * Rate));  // inclusive
    if (Rate > 0) Data = MakeSpectrogram(samples, start, end, WindowPoints(), StepSamples());
    if (!Data.Columns.empty()) {
      Caption = QStringLiteral("Spectrogram - ") + o.Channels[static_cast<std::size_t>(channel)].Name.trimmed() +
                QStringLiteral(" - (") + LapNumberText(o, lap) + QLatin1Char(' ') + LapLabel(o, lap) + QStringLiteral(")");
      StatusLine = QStringLiteral("Window : %1 samples    Step : %2    Bin : %3 Hz")
                       .arg(WindowPoints())
                       .arg(StepSamples())
                       .arg(QString::number(Rate * 1000.0 / WindowPoints(), 'f', 3));
    }
  }
  DrawCells();
  DrawAxes();
  cursor_drawn_ = DrawCursorLine(Folder(ws_).CursorTime) ? Folder(ws_).CursorTime : -1;
}

// Each column a box per bin from its window's start to the next one's, the colour of its level.
void frmSpectrogram::DrawCells() {
  if (Data.Columns.empty()) return;
  PeakDb = -1e300;
  for (const auto& column : Data.Columns) {
    for (std::size_t b = 1; b < column.size(); ++b) PeakDb = std::max(PeakDb, Decibels(column[b]));
  }
  const double floor = s_->ScaleHeight() - kPlotBottom, height = floor - kPlotTop;
  const std::size_t bins = Data.Columns.front().size();
  const double bin_h = height / static_cast<double>(bins);
  for (std::size_t c = 0; c < Data.Columns.size(); ++c) {
    const double t0 = static_cast<double>(Data.Starts[c]) / Rate;
    const double t1 = (static_cast<double>(Data.Starts[c]) + StepSamples()) / Rate;
    const double x0 = std::max(kPlotLeft, XOfTime(t0)), x1 = XOfTime(t1);
    for (std::size_t b = 0; b < bins; ++b) {
      const double level = (Decibels(Data.Columns[c][b]) - PeakDb + kRangeDb) / kRangeDb;
      const double y1 = floor - static_cast<double>(b) * bin_h;
      s_->Line(x0, y1 - bin_h, x1, y1, ContourColor(level), LineKind::FilledBox);
    }
  }
}

void frmSpectrogram::DrawAxes() {
  const int fg = ForegroundColor(ws_);
  const double floor = s_->ScaleHeight() - kPlotBottom, right = s_->ScaleWidth() - RightMargin(ws_) - kScaleWidth;
  const double th = s_->TextHeight(QStringLiteral("0"));
  s_->ForeColor = fg;
  s_->Line(kPlotLeft, floor, right, floor, fg);
  s_->Line(kPlotLeft, kPlotTop, kPlotLeft, floor, fg);
  const FolderRec& f = Folder(ws_);
  for (int i = 0; i <= 10; ++i) {  // time, as the time graph writes it
    const double x = kPlotLeft + i * (right - kPlotLeft) / 10;
    s_->Line(x, floor, x, floor + 150, fg);
    const QString text = FormatTime(f.TimeStart + i * (static_cast<double>(f.TimeEnd) - f.TimeStart) / 10).trimmed();
    s_->CurrentX = std::min(x - s_->TextWidth(text) / 2, right - s_->TextWidth(text));
    s_->CurrentY = floor + 200;
    s_->Print(text);
  }
  const double nyquist = Rate * 500.0;  // the top of the picture: half the rate, in hertz
  for (int i = 0; i <= 10 && nyquist > 0; ++i) {
    const double y = floor - i * (floor - kPlotTop) / 10;
    s_->Line(kPlotLeft, y, kPlotLeft - 150, y, fg);
    const QString text = QString::number(nyquist * i / 10, 'f', nyquist >= 100 ? 0 : 1);
    s_->CurrentX = kPlotLeft - 200 - s_->TextWidth(text);
    s_->CurrentY = y - th / 2;
    s_->Print(text);
  }
  s_->CurrentX = 100;
  s_->CurrentY = kPlotTop - th - 100;
  s_->Print(QStringLiteral("Hz"));
  if (Data.Columns.empty()) return;
  // The colour scale: 0 dB at the top is the loudest cell.
  const double left = right + 80, width = kScaleWidth - 160;
  for (int k = 0; k < 30; ++k) {
    const double y0 = floor - (k + 1) * (floor - kPlotTop) / 30, y1 = floor - k * (floor - kPlotTop) / 30;
    s_->Line(left, y0, left + width, y1, ContourColor((k + 0.5) / 30), LineKind::FilledBox);
  }
  s_->CurrentX = s_->ScaleWidth() - s_->TextWidth(QStringLiteral("0 dB")) - 50;
  s_->CurrentY = kPlotTop - th - 100;
  s_->Print(QStringLiteral("0 dB"));
  const QString bottom = QString::number(-kRangeDb) + QStringLiteral(" dB");
  s_->CurrentX = s_->ScaleWidth() - s_->TextWidth(bottom) - 50;
  s_->CurrentY = floor + 200;
  s_->Print(bottom);
}

// Exclusive-or: drawn a second time at the same place, the line goes. False off the view.
bool frmSpectrogram::DrawCursorLine(double ms) {
  if (ms < Folder(ws_).TimeStart || ms > Folder(ws_).TimeEnd) return false;
  const double x = XOfTime(ms);
  s_->DrawMode = kDrawXor;
  s_->Line(x, kPlotTop, x, s_->ScaleHeight() - kPlotBottom, kWhite);
  s_->DrawMode = kDrawCopy;
  return true;
}

void frmSpectrogram::FollowCursor() {
  const double now = Folder(ws_).CursorTime;
  if (now == cursor_drawn_) return;
  if (cursor_drawn_ >= 0) DrawCursorLine(cursor_drawn_);
  cursor_drawn_ = DrawCursorLine(now) ? now : -1;
}

bool frmSpectrogram::MouseDown(double x) {
  const double right = s_->ScaleWidth() - RightMargin(ws_) - kScaleWidth;
  if (x < kPlotLeft || x > right) return false;
  FolderRec& f = Folder(ws_);
  f.CursorTime = static_cast<float>(TimeOfX(x));
  int slot = 0, lap = 0;
  if (MapLap(ws_, slot, lap)) f.CursorDistance = TimeToDistance(ws_, slot, lap, f.CursorTime);
  FollowCursor();
  return true;
}
