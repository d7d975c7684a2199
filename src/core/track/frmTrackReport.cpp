#include "core/track/frmTrackReport.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotScale.h"
#include "core/plots/Surface.h"
#include "core/track/Laps.h"
#include "core/track/MapValues.h"
#include "core/track/TrackBands.h"
#include "core/track/TrackDrawing.h"
#include "core/track/TrackFile.h"

namespace {

constexpr double kColumnWidth = 4200;  // twips kept at the right for the column of labels
constexpr double kSegmentHalf = 45;
constexpr double kReach = 300;         // twips: how near a click must be to a label

FolderRec& Folder(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

// A corner's slowest speed, a straight's fastest: what an engineer reads off a segment.
QString SegmentSpeed(const std::vector<float>& speeds, int from, int to, bool corner) {
  bool any = false;
  float best = 0;
  for (int i = from; i < to && i < static_cast<int>(speeds.size()); ++i) {
    const float v = speeds[static_cast<std::size_t>(i)];
    if (std::isnan(v)) continue;
    best = !any ? v : corner ? std::min(best, v) : std::max(best, v);
    any = true;
  }
  return any ? QString::number(std::lround(best)) : QStringLiteral("-");
}

}  // namespace

void frmTrackReport::DrawTrackReport() {
  TrackDrawOptions o;
  o.ShowSplits = false;
  o.RightMargin = LabelsInColumn ? kColumnWidth : 0;
  DrawTrackMap(ws_, *s_, o);
  Caption = QStringLiteral("Track Report");
  int slot = 0, lap = 0;
  if (ws_.Track.TrackPoints.empty() || !MapLap(ws_, slot, lap)) return;
  const OutingRec& outing = OutingAt(ws_, slot);
  if (!HasDistance(ws_, outing, Caption, warned_)) return;
  const FolderOptions& options = Folder(ws_).Options;
  Caption = QStringLiteral("Graphic Report (") + options.BandChannel.trimmed() + QStringLiteral(") : ") +
            QFileInfo(outing.FileName).completeBaseName() + QStringLiteral(" - ") + ws_.Track.TrackName.trimmed() +
            QStringLiteral(" : Lap (") + LapNumberText(outing, lap) + QStringLiteral(")") + QStringLiteral(" (") +
            LapTimeText(LapTimeMs(outing, lap)) + QStringLiteral(")");
  const std::vector<float> times = TimesAlongMap(ws_, slot, lap);
  if (options.DoBanding) {
    const int band = FindChannelByName(ws_, ws_.CurFolder, slot, options.BandChannel);
    const std::vector<float> values = ValuesAlongMap(ws_, slot, lap, band, times);
    s_->DrawWidth = 4;
    for (std::size_t i = 1; i < values.size(); ++i) {
      const TrackXY a = TrackPointPosition(ws_, static_cast<int>(i) - 1), b = TrackPointPosition(ws_, static_cast<int>(i));
      s_->Line(a.x, a.y, b.x, b.y, GetBandColor(ws_.TrackReport, values[i]));
    }
    s_->DrawWidth = 1;
  }
  MakeLabels(slot, lap, times);
  MarkSegments();
  DrawDataLabels();
}

std::vector<int> frmTrackReport::MarkSegments() {
  std::vector<int> points;
  const TrackState& t = ws_.Track;
  const int last = std::min<int>(t.SegmentCount, static_cast<int>(t.SegmentStart.size()) - 1);
  const int fore = ForegroundColor(ws_);
  for (int k = 0; k <= last; ++k) {
    const int p = TrackPointAtDistance(ws_, t.SegmentStart[static_cast<std::size_t>(k)]);
    points.push_back(p);
    const TrackXY at = TrackPointPosition(ws_, p);
    s_->Line(at.x - kSegmentHalf, at.y - kSegmentHalf, at.x + kSegmentHalf, at.y + kSegmentHalf, fore, LineKind::FilledBox);
  }
  return points;
}

void frmTrackReport::MakeLabels(int slot, int lap, const std::vector<float>& times) {
  const OutingRec& o = OutingAt(ws_, slot);
  const std::vector<float> speeds = ValuesAlongMap(ws_, slot, lap, o.ChanSpeed > 0 ? o.ChanSpeed : -1, times);
  const TrackState& t = ws_.Track;
  const int last = std::min<int>(t.SegmentCount, static_cast<int>(t.SegmentStart.size()) - 1);
  const int points = static_cast<int>(t.TrackPoints.size());
  std::vector<SegmentLabel> labels;
  for (int k = 0; k <= last; ++k) {
    const int from = TrackPointAtDistance(ws_, t.SegmentStart[static_cast<std::size_t>(k)]);
    const int to = k < last ? TrackPointAtDistance(ws_, t.SegmentStart[static_cast<std::size_t>(k + 1)]) : points - 1;
    const bool corner = t.TrackPoints[static_cast<std::size_t>(from)].Corner == -1;
    const float t0 = times.empty() ? NAN : times[static_cast<std::size_t>(from)];
    const float t1 = k < last ? (times.empty() ? NAN : times[static_cast<std::size_t>(to)]) : static_cast<float>(LapTimeMs(o, lap));
    const QString time = std::isnan(t0) || std::isnan(t1) ? QStringLiteral("-") : QString::number((t1 - t0) / 1000.0, 'f', 3);
    SegmentLabel l;
    l.Segment = k;
    l.Point = from;
    l.Text = QStringLiteral("%1").arg(k + 1, 3, 10, QLatin1Char('0')) + QStringLiteral(" : ") +
             (corner ? QStringLiteral("Corner") : QStringLiteral("Straight")) + QStringLiteral(" - Speed : ") +
             SegmentSpeed(speeds, from, std::max(to, from + 1), corner) + QStringLiteral(" - Time : ") + time;
    // A label hidden before stays hidden while its segment is there.
    for (const SegmentLabel& old : Labels) l.Hidden |= old.Segment == k && old.Hidden;
    labels.push_back(l);
  }
  Labels = std::move(labels);
}

void frmTrackReport::DrawDataLabels() {
  s_->ForeColor = ForegroundColor(ws_);
  const double h = s_->TextHeight(QStringLiteral("0")), column_x = s_->ScaleWidth() - kColumnWidth + 200;
  double column_y = 300;
  for (SegmentLabel& l : Labels) {
    if (l.Hidden) continue;
    const TrackXY at = TrackPointPosition(ws_, l.Point);
    if (LabelsInColumn) {
      // The number at the segment, the whole label in the column.
      s_->CurrentX = at.x + 80;
      s_->CurrentY = at.y - h;
      s_->Print(l.Text.left(3));
      l.X = column_x, l.Y = column_y;
      column_y += h * 1.2;
    } else {
      l.X = at.x + 80, l.Y = at.y - h;
    }
    s_->CurrentX = l.X;
    s_->CurrentY = l.Y;
    s_->Print(l.Text);
  }
}

bool frmTrackReport::HideLabelAt(double x, double y) {
  const double h = s_->TextHeight(QStringLiteral("0"));
  SegmentLabel* best = nullptr;
  double best_d = kReach;
  for (SegmentLabel& l : Labels) {
    if (l.Hidden) continue;
    // How far the click is from the label's box: 0 inside it.
    const double dx = std::max({l.X - x, 0.0, x - (l.X + s_->TextWidth(l.Text))});
    const double dy = std::max({l.Y - y, 0.0, y - (l.Y + h)});
    const double d = std::hypot(dx, dy);
    if (d <= best_d) best = &l, best_d = d;
  }
  if (best == nullptr) return false;
  best->Hidden = true;
  return true;
}

void frmTrackReport::ShowHiddenLabels() {
  for (SegmentLabel& l : Labels) l.Hidden = false;
}
