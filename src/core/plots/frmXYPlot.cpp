#include "core/plots/frmXYPlot.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/LinePlot.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"

namespace {

double Round(double v) { return std::nearbyint(v); }

// The fits' numbers in general form: a 32-bit float's seven digits, a double's fifteen.
QString General(float v) { return GeneralNumber(static_cast<double>(v), 7); }
QString General(double v) { return GeneralNumber(v); }

// Half the arms of the cross at the cursor's point.
constexpr double kCursorArm = 100;

const char* const kLabelCaptions[] = {"X - Datum", "Y - Datum", "X - Cursor", "Y - Cursor", "X - Polynomial", "Y - Polynomial"};

static_assert(kOutingsPerFolder == 16, "XAxisChannel holds one index per outing slot");

}  // namespace

FolderRec& frmXYPlot::Folder() const { return ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)]; }

double frmXYPlot::DataRight() const { return s_->ScaleWidth() - RightMargin(ws_); }

void frmXYPlot::FindXChannels() {
  const FolderRec& folder = Folder();
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const int c = folder.Outings[static_cast<std::size_t>(slot)].Loaded != 0
                      ? FindChannelByName(ws_, ws_.CurFolder, slot, folder.Options.AxisXYChannel)
                      : -1;
    x_found_[static_cast<std::size_t>(slot)] = c >= 0;
    if (c >= 0) XAxisChannel[static_cast<std::size_t>(slot)] = c;
  }
}

int frmXYPlot::XChannel(int slot) const {
  if (slot < 0 || slot >= kOutingsPerFolder || !x_found_[static_cast<std::size_t>(slot)]) return -1;
  return XAxisChannel[static_cast<std::size_t>(slot)];
}

void frmXYPlot::SetAxisPanels(Surface* left, Surface* right) {
  panels_[0] = left;
  panels_[1] = right;
}

void frmXYPlot::DrawAxisPanels() { ::DrawAxisPanels(ws_, panels_[0], panels_[1], AxisKind::XY); }

bool frmXYPlot::ActiveTrace(int& slot, int& lap, int& channel) const {
  const FolderRec& folder = Folder();
  slot = folder.SelOuting;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  lap = o.CurLap;
  channel = folder.ActiveChannel;
  return o.Loaded != 0 && lap >= 0 && lap < static_cast<int>(o.Laps.size()) && channel >= 0 &&
         channel < static_cast<int>(o.Channels.size()) && XChannel(slot) >= 0;
}

void frmXYPlot::LoadDataLabels() {
  Labels.clear();
  for (const char* caption : kLabelCaptions) Labels.push_back({QString::fromLatin1(caption), QString()});
}

void frmXYPlot::SetLabel(const QString& caption, const QString& value) {
  for (DataLabel& l : Labels) {
    if (l.Caption == caption) l.Value = value;
  }
}

std::vector<XYPoint> frmXYPlot::TracePoints(int slot, int lap, int channel) {
  std::vector<XYPoint> out;
  const int xc = XChannel(slot);
  const OutingRec& o = OutingAt(ws_, slot);
  if (xc < 0 || channel < 0 || channel >= static_cast<int>(o.Channels.size())) return out;
  GetChannelData(ws_, slot, lap, xc);
  GetChannelData(ws_, slot, lap, channel);
  const auto& caches = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  const std::vector<float>& xs = caches[static_cast<std::size_t>(xc)].Samples;
  const std::vector<float>& ys = caches[static_cast<std::size_t>(channel)].Samples;
  const double rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  if (xs.empty() || ys.empty() || !(rate > 0)) return out;
  const FolderRec& folder = Folder();
  const int64_t first = std::max<int64_t>(Floor(rate * folder.TimeStart), 0);
  const int64_t last = std::min<int64_t>(Floor(rate * folder.TimeEnd), static_cast<int64_t>(ys.size()) - 1);
  const double r = static_cast<double>(o.Channels[static_cast<std::size_t>(xc)].Rate) / rate;
  const int64_t step = TraceStep(last - first);
  const int64_t x_last = static_cast<int64_t>(xs.size()) - 1;
  for (int64_t i = first; i <= last; i += step) {
    const double at = static_cast<double>(i) * r;
    const int64_t k = Floor(at);
    if (k > x_last) break;
    const double x0 = xs[static_cast<std::size_t>(k)];
    const double x = k < x_last ? x0 + (xs[static_cast<std::size_t>(k + 1)] - x0) * (at - static_cast<double>(k)) : x0;
    out.push_back({x, ys[static_cast<std::size_t>(i)]});
  }
  return out;
}

std::vector<XYPoint> frmXYPlot::ActivePoints() {
  std::vector<XYPoint> all;
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return all;
  const QString name = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)].ShortName;
  ForEachTrace(ws_, [&](int s, int l, int c) {
    if (OutingAt(ws_, s).Channels[static_cast<std::size_t>(c)].ShortName.trimmed().toUpper() != name.trimmed().toUpper()) return;
    const std::vector<XYPoint> points = TracePoints(s, l, c);
    all.insert(all.end(), points.begin(), points.end());
  });
  return all;
}

double frmXYPlot::XOf(int slot, double value) const {
  const int xc = XChannel(slot);
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(xc)];
  const double scale = StoredChannelScale(ws_, slot, xc, Round(DataRight() - kPlotLeft), false, false);
  return (value - c.TimeMin) * scale + kPlotLeft;
}

double frmXYPlot::ValueOfX(int slot, double x) const {
  const int xc = XChannel(slot);
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(xc)];
  const double scale = StoredChannelScale(ws_, slot, xc, Round(DataRight() - kPlotLeft), false, false);
  return scale == 0 ? c.TimeMin : (x - kPlotLeft) / scale + c.TimeMin;
}

double frmXYPlot::YOf(int slot, int lap, int channel, double value) const {
  const double h = s_->ScaleHeight();
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  const double scale = StoredChannelScale(ws_, slot, channel, Round(h - 1050), true, false);
  const double offset = GetTileOffset(ws_, slot, lap, channel, Round(h - 1050));
  return h - kPlotBottom - offset - (value - c.TimeMin) * scale;
}

double frmXYPlot::ValueOfY(int slot, int lap, int channel, double y) const {
  const double h = s_->ScaleHeight();
  const ChannelRec& c = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(channel)];
  const double scale = StoredChannelScale(ws_, slot, channel, Round(h - 1050), true, false);
  const double offset = GetTileOffset(ws_, slot, lap, channel, Round(h - 1050));
  return scale == 0 ? c.TimeMin : (h - kPlotBottom - offset - y) / scale + c.TimeMin;
}

void frmXYPlot::DrawOneXY(int slot, int lap, int channel) {
  const int xc = XChannel(slot);
  if (xc < 0) return;
  const std::vector<XYPoint> points = TracePoints(slot, lap, channel);
  const double w = s_->ScaleWidth(), h = s_->ScaleHeight(), right = DataRight();
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  // The scales come from the outing's current lap, as every plot's do.
  const int cur = OutingAt(ws_, slot).CurLap;
  GetChannelData(ws_, slot, cur, xc);
  GetChannelData(ws_, slot, cur, channel);
  ComputeChannelScale(ws_, slot, xc, Round(w - kPlotLeft - RightMargin(ws_)), false, false);
  ComputeChannelScale(ws_, slot, channel, Round(h - 1050), true, false);
  const double offset = GetTileOffset(ws_, slot, lap, channel, Round(h - 1050));
  const double floor = FolderTiled(ws_) ? Round(h - kPlotBottom - offset) : Round(h - kPlotBottom);
  points_.clear();
  for (const XYPoint& p : points) {
    const double x = std::clamp(XOf(slot, p.x), kPlotLeft, right);
    const double y = std::clamp(YOf(slot, lap, channel, p.y), kPlotTop, floor);
    if (Folder().Options.XYConnected) {
      points_.push_back(s_->ToPixels(x, y));
    } else {
      // A small cross of two pixels each way.
      const double dx = 2 * s_->TwipsPerPixelX(), dy = 2 * s_->TwipsPerPixelY();
      s_->Line(x, y - dy, x, y + dy, s_->ForeColor);
      s_->Line(x - dx, y, x + dx, y, s_->ForeColor);
    }
  }
  if (!points_.empty()) s_->Polyline(points_);
}

void frmXYPlot::DrawBottomAxis() {
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return;
  const ChannelRec& x = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(XChannel(slot))];
  const double h = s_->ScaleHeight(), right = DataRight(), axis_y = h - kPlotBottom;
  const int fg = ForegroundColor(ws_);
  s_->ForeColor = fg;
  const double step = (x.TimeMax - x.TimeMin) / 50, spacing = (right - kPlotLeft) / 50;
  for (int i = 0; i <= 50; ++i) {
    const double px = kPlotLeft + i * spacing;
    const bool major = i % 5 == 0;
    s_->Line(px, axis_y, px, axis_y + (major ? 150 : 75), fg);
    if (!major) continue;
    const QString text = FormatAuto(x.TimeMin + i * step);
    s_->CurrentX = px - s_->TextWidth(text) / 2;
    s_->CurrentY = axis_y + 175;
    s_->Print(text);
    if (ws_.Options.VerticalGrid && i > 0) {
      s_->DrawStyle = kDotted;
      s_->Line(px, kPlotTop, px, axis_y, kGridColor);
      s_->DrawStyle = kSolid;
    }
  }
  s_->Line(kPlotLeft, axis_y, right, axis_y, fg);
  const QString name = x.Name.trimmed() + QStringLiteral(" (") + x.Units.trimmed() + QLatin1Char(')');
  s_->CurrentX = right - s_->TextWidth(name);
  s_->CurrentY = axis_y + 400;
  s_->Print(name);
}

void frmXYPlot::DrawCurve(int slot, int lap, int channel, const std::function<double(double)>& f, int pieces) {
  const ChannelRec& x = OutingAt(ws_, slot).Channels[static_cast<std::size_t>(XChannel(slot))];
  const double h = s_->ScaleHeight(), right = DataRight();
  const int color = GetChannelColor(ws_, slot, lap, channel);
  const double step = (x.TimeMax - x.TimeMin) / pieces;
  auto at = [&](double v) {
    return std::pair{std::clamp(XOf(slot, v), kPlotLeft, right), std::clamp(YOf(slot, lap, channel, f(v)), kPlotTop, h - kPlotBottom)};
  };
  auto from = at(x.TimeMin);
  for (int k = 1; k <= pieces; ++k) {
    const auto to = at(x.TimeMin + k * step);
    s_->Line(from.first, from.second, to.first, to.second, color);
    from = to;
  }
}

void frmXYPlot::PrintFit(const QString& text, double y) {
  int slot = 0, lap = 0, channel = 0;
  ActiveTrace(slot, lap, channel);
  s_->ForeColor = GetChannelColor(ws_, slot, lap, channel);
  s_->CurrentX = 1250;
  s_->CurrentY = y;
  s_->Print(text);
}

void frmXYPlot::LinearRegression() {
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return;
  const LineFit fit = ::LinearRegression(ActivePoints());
  if (!fit.Valid) return;  // fewer than two different x: the fit stands as it was, no line
  Slope = fit.Slope;
  Intercept = fit.Intercept;
  Correlation = fit.Correlation;
  DrawCurve(slot, lap, channel, [&](double x) { return Slope * x + Intercept; }, 1);
  LineText = QStringLiteral("Y = (") + General(Slope) + QStringLiteral(")X  + ") + General(Intercept) + QString(5, QLatin1Char(' ')) +
             QStringLiteral("Correlation Coeff = ") + General(Correlation);
  PrintFit(LineText, 20);
}

void frmXYPlot::PolynomialRegression() {
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return;
  const ParabolaFit fit = ::PolynomialRegression(ActivePoints());
  if (!fit.Valid) return;
  PolyA = fit.PolyA;
  PolyB = fit.PolyB;
  PolyC = fit.PolyC;
  PolyCorrelation = fit.Correlation;
  DrawCurve(slot, lap, channel, [&](double x) { return PolyA * x * x + PolyB * x + PolyC; }, 100);
  // The square of the first term is not printed: the caption beside the option says it.
  CurveText = QStringLiteral("Y = (") + General(PolyA) + QStringLiteral(")X") + QStringLiteral(" + (") + General(PolyB) +
              QStringLiteral(")X  + ") + General(PolyC) + QString(5, QLatin1Char(' ')) + QStringLiteral("Correlation Coeff = ") +
              General(PolyCorrelation);
  PrintFit(CurveText, 210);
}

void frmXYPlot::ManualRegression() {
  int slot = 0, lap = 0, channel = 0;
  if (!Manual[0].Set || !Manual[1].Set || !ActiveTrace(slot, lap, channel)) return;
  const double x1 = ValueOfX(slot, Manual[0].X), y1 = ValueOfY(slot, lap, channel, Manual[0].Y);
  const double x2 = ValueOfX(slot, Manual[1].X), y2 = ValueOfY(slot, lap, channel, Manual[1].Y);
  Manual = {};
  if (x2 == x1) return;
  Slope = static_cast<float>((y2 - y1) / (x2 - x1));
  Intercept = static_cast<float>(y1 - static_cast<double>(Slope) * x1);
  DrawCurve(slot, lap, channel, [&](double x) { return Slope * x + Intercept; }, 1);
  LineText = QStringLiteral("Y = (") + General(Slope) + QStringLiteral(")X  + ") + General(Intercept);
  PrintFit(LineText, 20);
}

bool frmXYPlot::ActivePairAt(double ms, float& x, float& y) {
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return false;
  const OutingRec& o = OutingAt(ws_, slot);
  const int xc = XChannel(slot);
  GetChannelData(ws_, slot, lap, xc);
  GetChannelData(ws_, slot, lap, channel);
  const auto& caches = o.Laps[static_cast<std::size_t>(lap)].LapChannels;
  return ValueAt(caches[static_cast<std::size_t>(xc)].Samples, o.Channels[static_cast<std::size_t>(xc)].Rate, ms, x) &&
         ValueAt(caches[static_cast<std::size_t>(channel)].Samples, o.Channels[static_cast<std::size_t>(channel)].Rate, ms, y);
}

void frmXYPlot::DrawDatumPoint() {
  float xv = 0, yv = 0;
  if (!ws_.Plots.MeasureCursor || !ActivePairAt(Folder().CursorTime, xv, yv)) return;
  int slot = 0, lap = 0, channel = 0;
  ActiveTrace(slot, lap, channel);
  const double x = XOf(slot, xv), y = YOf(slot, lap, channel, yv);
  s_->Line(x - 190, y, x + 190, y, 0);
  s_->Line(x, y - 190, x, y + 190, 0);
  s_->Circle(x, y, 100, 0);
  SetLabel(QStringLiteral("X - Datum"), FormatAuto(xv));
  SetLabel(QStringLiteral("Y - Datum"), FormatAuto(yv));
}

void frmXYPlot::SetCursorLabels(double x, double y) {
  SetLabel(QStringLiteral("X - Cursor"), FormatAuto(x));
  SetLabel(QStringLiteral("Y - Cursor"), FormatAuto(y));
  if (Folder().Options.XYCurveFit) {
    SetLabel(QStringLiteral("X - Polynomial"), FormatAuto(x));
    SetLabel(QStringLiteral("Y - Polynomial"), FormatAuto(PolyA * x * x + PolyB * x + PolyC));
  }
}

void frmXYPlot::FollowCursor() {
  // Exclusive-or: the cross drawn again where it was takes it away.
  s_->DrawMode = kDrawXor;
  const int white = 16777215;
  auto cross = [&](double x, double y) {
    s_->Line(x - kCursorArm, y, x + kCursorArm, y, white);
    s_->Line(x, y - kCursorArm, x, y + kCursorArm, white);
  };
  if (cursor_x_ >= 0) cross(cursor_x_, cursor_y_);
  cursor_x_ = cursor_y_ = -1;
  float xv = 0, yv = 0;
  int slot = 0, lap = 0, channel = 0;
  if (ActivePairAt(Folder().CursorTime, xv, yv) && ActiveTrace(slot, lap, channel)) {
    cursor_x_ = std::clamp(XOf(slot, xv), kPlotLeft, DataRight());
    cursor_y_ = std::clamp(YOf(slot, lap, channel, yv), kPlotTop, s_->ScaleHeight() - kPlotBottom);
    cross(cursor_x_, cursor_y_);
    SetCursorLabels(xv, yv);
  }
  s_->DrawMode = kDrawCopy;
}

void frmXYPlot::MouseDown(int button, double x, double y, bool manual) {
  int slot = 0, lap = 0, channel = 0;
  if (button != 1 || x < kPlotLeft || x > DataRight() || y < kPlotTop || y > s_->ScaleHeight() - kPlotBottom ||
      !ActiveTrace(slot, lap, channel)) {
    return;
  }
  if (manual) {
    ManualPoint& p = Manual[Manual[0].Set ? 1 : 0];
    p = {true, x, y};
    if (Manual[1].Set) ManualRegression();
    return;
  }
  SetCursorLabels(ValueOfX(slot, x), ValueOfY(slot, lap, channel, y));
}

void frmXYPlot::DrawXYPlots() {
  s_->BackColor = BackgroundColor(ws_);
  s_->Cls();
  cursor_x_ = cursor_y_ = -1;  // the cursor went with the clear
  LoadDataLabels();
  LineText.clear();
  CurveText.clear();
  Caption.clear();
  FindXChannels();
  const bool tile_axes = FolderTiled(ws_) && ws_.Options.AutoTileMode;
  FetchScope scope(ws_);
  ForEachTrace(ws_, [&](int slot, int lap, int c) {
    if (XChannel(slot) < 0) return;
    DrawOneXY(slot, lap, c);
    if (tile_axes) DrawAxisTile(ws_, *s_, slot, lap, c, AxisKind::XY);
  });
  int slot = 0, lap = 0, channel = 0;
  if (!ActiveTrace(slot, lap, channel)) return;
  DrawBottomAxis();
  DrawAxisSingle(ws_, *s_, AxisKind::XY, slot, lap, channel);
  if (!FolderTiled(ws_)) DrawAxisPanels();
  const OutingRec& o = OutingAt(ws_, slot);
  Caption = o.Channels[static_cast<std::size_t>(channel)].Name.trimmed() + QStringLiteral(" vs ") +
            o.Channels[static_cast<std::size_t>(XChannel(slot))].Name.trimmed();
  if (Folder().Options.XYLineFit) LinearRegression();
  if (Folder().Options.XYCurveFit) PolynomialRegression();
  DrawDatumPoint();
  FollowCursor();
}
