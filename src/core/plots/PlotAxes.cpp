#include "core/plots/PlotAxes.h"

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotFormats.h"
#include "core/plots/PlotScale.h"
#include "core/plots/Surface.h"

namespace {

struct Range {
  double min, max;
};

Range ChannelRange(const ChannelRec& c, AxisKind kind) {
  if (kind == AxisKind::Distance) return {c.DistanceMin, c.DistanceMax};
  return {c.TimeMin, c.TimeMax};
}

void DottedLine(Surface& s, double x1, double y, double x2) {
  s.DrawStyle = kDotted;
  s.Line(x1, y, x2, y, kGridColor);
  s.DrawStyle = kSolid;
}

// A label right-aligned to end 250 left of the axis, centred on its tick.
void PrintScaleLabel(Surface& s, const QString& text, double y) {
  s.CurrentX = kPlotLeft - 250 - s.TextWidth(text);
  s.CurrentY = y - s.TextHeight(QStringLiteral("0")) / 2;
  s.Print(text);
}

}  // namespace

int BackgroundColor(const Workspace& ws) {
  switch (ws.Options.ColorTheme) {
    case 1: return 0;
    case 2: return ws.Options.CustomBackground;
    default: return 16777215;
  }
}

int ForegroundColor(const Workspace& ws) {
  switch (ws.Options.ColorTheme) {
    case 1: return 16777215;
    case 2: return ws.Options.CustomForeground;
    default: return 0;
  }
}

namespace {

// One 50-step scale: ticks from the axis line towards the labels, a label every fifth tick, the
// units above the last label, and the grid across the data area when there is one to cross.
struct ScaleLayout {
  double axis_x;       // where the axis line stands
  double direction;    // -1: ticks to the left of the line, +1: to the right
  double label_edge;   // labels start here, or end here when right-aligned
  bool align_right;
  double grid_right;   // 0: no grid on this surface
};

void DrawScale50(Workspace& ws, Surface& s, const ScaleLayout& at, AxisKind kind, double h, int slot, int lap, int channel) {
  const ChannelRec& c = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)];
  const Range r = ChannelRange(c, kind);
  const double step = (r.max - r.min) / 50;
  double spacing = (h - 1050) / 50;
  if (FolderTiled(ws)) spacing = (c.TileTop - c.TileBottom) * spacing / 100;
  const double offset = GetTileOffset(ws, slot, lap, channel, h - 1050);
  const int color = GetChannelColor(ws, slot, lap, channel);
  s.ForeColor = color;
  double label_x = at.label_edge, last_y = h - kPlotBottom;
  for (int i = 1; i <= 49; ++i) {
    const double y = h - kPlotBottom - offset - i * spacing;
    last_y = y;
    s.Line(at.axis_x, y, at.axis_x + at.direction * 75, y, color);
    if (i % 5 != 0) continue;
    s.Line(at.axis_x, y, at.axis_x + at.direction * 150, y, color);
    const QString text = FormatAuto(i * step + r.min);
    label_x = at.align_right ? at.label_edge - s.TextWidth(text) : at.label_edge;
    s.CurrentX = label_x;
    s.CurrentY = y - s.TextHeight(QStringLiteral("0")) / 2;
    s.Print(text);
    if (at.grid_right > 0 && ws.Options.HorizontalGrid) DottedLine(s, at.axis_x, y, at.grid_right);
  }
  s.CurrentX = label_x + 75;
  s.CurrentY = last_y - 100;
  s.Print(c.Units.trimmed());
  s.Line(at.axis_x, kPlotTop, at.axis_x, h - kPlotBottom, color);
}

}  // namespace

QString DrawAxisSingle(Workspace& ws, Surface& s, AxisKind kind, int slot, int lap, int channel) {
  const ChannelRec& c = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)];
  const QString caption = c.Name.trimmed() + (kind == AxisKind::Distance ? QStringLiteral(" vs Distance") : QStringLiteral(" vs Time"));
  if (FolderTiled(ws) && ws.Options.AutoTileMode) return QString();  // each band has its own name
  const ScaleLayout at{kPlotLeft, -1, kPlotLeft - 250, true, s.ScaleWidth() - RightMargin(ws)};
  DrawScale50(ws, s, at, kind, s.ScaleHeight(), slot, lap, channel);
  return caption;
}

void DrawAxisPanel(Workspace& ws, Surface& panel, int side, int column, AxisKind kind, int slot, int lap, int channel) {
  // The left panel holds two scales side by side, labels from x = 75 and 925, each line at its
  // column's right edge; the right panel holds one, its line next to the plot and its labels
  // ending at the panel's right margin. Ticks point to the labels.
  const ScaleLayout at = side == 0 ? ScaleLayout{kPanelColumn * (column + 1) - 100, -1, 75 + kPanelColumn * column, false, 0}
                                   : ScaleLayout{100, +1, panel.ScaleWidth() - 75, true, 0};
  DrawScale50(ws, panel, at, kind, panel.ScaleHeight(), slot, lap, channel);
}

void DrawAxisPanels(Workspace& ws, Surface* left, Surface* right, AxisKind kind) {
  for (Surface* panel : {left, right}) {
    if (panel == nullptr) continue;
    panel->BackColor = BackgroundColor(ws);
    panel->Cls();
  }
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const int slot = folder.SelOuting;
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
  if (o.Loaded == 0 || o.CurLap < 0 || o.CurLap >= static_cast<int>(o.Laps.size())) return;
  const auto& caches = o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels;
  for (int k = 0; k < kPanelScales; ++k) {
    Surface* panel = k < 2 ? left : right;
    const QString& name = folder.AxisPanelChannels[static_cast<std::size_t>(k)];
    if (panel == nullptr || name.trimmed().isEmpty()) continue;
    // A scale only for a channel drawn in the lap on the axis: its range comes from that trace.
    const int c = FindChannelByName(ws, ws.CurFolder, slot, name);
    if (c < 0 || c >= static_cast<int>(caches.size()) || caches[static_cast<std::size_t>(c)].Shown == 0) continue;
    DrawAxisPanel(ws, *panel, k < 2 ? 0 : 1, k % 2, kind, slot, o.CurLap, c);
  }
}

void DrawAxisTile(Workspace& ws, Surface& s, int slot, int lap, int channel, AxisKind kind) {
  const ChannelRec& c = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)];
  const int count = ws.Plots.TileCount;
  if (count <= 0) return;
  const double w = s.ScaleWidth(), h = s.ScaleHeight();
  const Range r = ChannelRange(c, kind);
  const double step = (r.max - r.min) / 25;
  const double spacing = (h - 1050) / (count * 25.0);
  const double offset = GetTileOffset(ws, slot, lap, channel, h - 1050);
  const int color = GetChannelColor(ws, slot, lap, channel);
  s.ForeColor = color;
  for (int i = 0; i < 25; ++i) {
    const double y = h - kPlotBottom - offset - i * spacing;
    s.Line(kPlotLeft, y, 675, y, color);
    if (i % 5 != 0) continue;
    s.Line(kPlotLeft, y, 600, y, color);
    PrintScaleLabel(s, FormatAuto(i * step + r.min), y);
    if (ws.Options.HorizontalGrid && i > 0) DottedLine(s, kPlotLeft, y, w - RightMargin(ws));
  }
  // The name just inside the top of the band, and a line between this band and the next.
  const double top = h - kPlotBottom - offset - 25 * spacing;
  s.CurrentX = kPlotLeft + 100;
  s.CurrentY = top + 50;
  s.Print(c.Name.trimmed());
  s.Line(0, top, w, top, 0);
}
