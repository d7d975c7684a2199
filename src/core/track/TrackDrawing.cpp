#include "core/track/TrackDrawing.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/Surface.h"
#include "core/track/TrackFile.h"

namespace {

constexpr double kSplitRadius = 75;  // twips: 5 pixels
constexpr double kStartHalf = 45;
constexpr double kHighlightHalf = 75;

int PointCount(const Workspace& ws) { return static_cast<int>(ws.Track.TrackPoints.size()); }

int LineColor(const Workspace& ws, int point) {
  return ws.Track.TrackPoints[static_cast<std::size_t>(point)].Corner == -1 ? ws.Options.ColorOfTurns
                                                                           : ws.Options.ColorOfStraights;
}

void Square(Surface& s, TrackXY at, double half, int color) {
  s.Line(at.x - half, at.y - half, at.x + half, at.y + half, color, LineKind::FilledBox);
}

// Under the map: the marked stretch, wide, so the map's own colours still show along it.
void DrawStretch(const Workspace& ws, Surface& s, int from, int to) {
  if (from < 0 || to < 0) return;
  if (from > to) std::swap(from, to);
  to = std::min(to, PointCount(ws) - 1);
  s.DrawWidth = 6;
  for (int i = std::max(from, 0) + 1; i <= to; ++i) {
    const TrackXY a = TrackPointPosition(ws, i - 1), b = TrackPointPosition(ws, i);
    s.Line(a.x, a.y, b.x, b.y, kTrackMarkColor, LineKind::Line);
  }
}

void DrawLines(const Workspace& ws, Surface& s) {
  s.DrawWidth = 2;
  TrackXY last = TrackPointPosition(ws, 0);
  for (int i = 1; i < PointCount(ws); ++i) {
    const TrackXY here = TrackPointPosition(ws, i);
    s.Line(last.x, last.y, here.x, here.y, LineColor(ws, i), LineKind::Line);
    last = here;
  }
}

// Entry 0 is the lap's start, marked apart; entries 1..SplitCount are numbered.
void DrawSplits(const Workspace& ws, Surface& s, int color) {
  const auto& splits = ws.Track.SplitPoints;
  const int last = std::min<int>(ws.Track.SplitCount, static_cast<int>(splits.size()) - 1);
  s.ForeColor = color;
  for (int k = 1; k <= last; ++k) {
    const TrackXY at = TrackPointPosition(ws, TrackPointAtDistance(ws, splits[static_cast<std::size_t>(k)]));
    s.Circle(at.x, at.y, kSplitRadius, color);
    s.CurrentX = at.x + kSplitRadius;
    s.CurrentY = at.y - kSplitRadius - s.TextHeight(QStringLiteral("0"));
    s.Print(QString::number(k));
  }
}

}  // namespace

void DrawTrackMap(Workspace& ws, Surface& s, const TrackDrawOptions& o) {
  s.BackColor = BackgroundColor(ws);
  s.DrawMode = kDrawCopy;
  s.DrawStyle = kSolid;
  s.Cls();
  if (PointCount(ws) == 0) return;
  FitTrackToArea(ws, std::max(s.ScaleWidth() - o.RightMargin, 1.0), s.ScaleHeight());
  const int fore = ForegroundColor(ws);
  DrawStretch(ws, s, o.MarkFrom, o.MarkTo);
  DrawLines(ws, s);
  s.DrawWidth = 1;
  Square(s, TrackPointPosition(ws, 0), kStartHalf, fore);
  if (o.ShowSplits) DrawSplits(ws, s, fore);
  if (o.Highlight >= 0 && o.Highlight < PointCount(ws)) {
    Square(s, TrackPointPosition(ws, o.Highlight), kHighlightHalf, kTrackMarkColor);
  }
}

TrackXY TrackPointPosition(const Workspace& ws, int point) {
  const TrackState& t = ws.Track;
  if (point < 0 || point >= PointCount(ws)) return {};
  const TrackPoint& p = t.TrackPoints[static_cast<std::size_t>(point)];
  return {static_cast<double>(RoundHalfEven(t.TrackScale * p.X + t.TrackOffsetX)),
          static_cast<double>(RoundHalfEven(t.TrackScale * p.Y + t.TrackOffsetY))};
}

int NearestTrackPoint(const Workspace& ws, double x, double y, double reach) {
  int best = -1;
  double best_sq = reach * reach;
  for (int i = 0; i < PointCount(ws); ++i) {
    const TrackXY p = TrackPointPosition(ws, i);
    const double d = (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y);
    if (d <= best_sq) best = i, best_sq = d;
  }
  return best;
}

int TrackPointAtDistance(const Workspace& ws, double distance) {
  const auto& pts = ws.Track.TrackPoints;
  for (int i = 0; i < PointCount(ws); ++i) {
    if (pts[static_cast<std::size_t>(i)].Distance >= distance) return i;
  }
  return PointCount(ws) - 1;
}
