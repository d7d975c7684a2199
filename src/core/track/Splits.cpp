#include "core/track/Splits.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackFile.h"
#include "core/track/TrackFormat.h"

namespace {

const QString kEditTitle = QStringLiteral("Edit Splits");

bool Metric(const Workspace& ws) {
  return (ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Outings[static_cast<std::size_t>(ws.CurOuting)].UnitsMask & 1) != 0;
}

}  // namespace

std::vector<SoftSplit> CalcSoftSplits(Workspace& ws, int slot, int lap) {
  std::vector<SoftSplit> out;
  const OutingRec& o = OutingAt(ws, slot);
  if (o.ChanDistance < 0 || lap < 0 || lap >= o.LastLap) return out;
  GetChannelData(ws, slot, lap, o.ChanDistance);
  const LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
  const auto& D = row.LapChannels[static_cast<std::size_t>(o.ChanDistance)].Samples;
  const double r = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
  if (D.empty() || !(r > 0)) return out;
  const int64_t first = RoundHalfEven(r * row.StartTime);
  const int64_t last = std::min<int64_t>(RoundHalfEven(r * o.Laps[static_cast<std::size_t>(lap + 1)].StartTime) - first,
                                         static_cast<int64_t>(D.size()) - 1);
  const auto& points = ws.Track.SplitPoints;
  const int targets = ws.TrackLoaded ? std::min<int>(ws.Track.SplitCount, static_cast<int>(points.size()) - 1) : 0;
  // The fetch has already stretched the lap's distance to the map: the samples are map distances.
  auto rel = [&](int64_t i) { return D[static_cast<std::size_t>(i)] - row.StartDistance; };
  int k = 0;
  for (int64_t i = 0; i <= last && k < targets; ++i) {
    const double target = points[static_cast<std::size_t>(k + 1)];
    if (rel(i) < target) continue;
    // At the lap's first sample there is none before it: the sample itself, fraction 0.
    const int64_t p = i > 0 ? i - 1 : 0;
    const double d = rel(i) - rel(p);
    const double fraction = d <= 0 ? 0 : (target - rel(p)) / d;
    out.push_back({static_cast<float>(target), static_cast<float>((static_cast<double>(p) + fraction) / r / 1000)});
    ++k;
  }
  out.push_back({ws.TrackLoaded ? ws.TrackLength : static_cast<float>(rel(std::max<int64_t>(last, 0))),
                 static_cast<float>(static_cast<double>(std::max<int64_t>(last, 0)) / r / 1000)});
  const double T = LapTimeMs(o, lap) / 1000.0;
  const double E = out.back().Seconds;
  const double factor = E == 0 ? 1.0 : T / E;
  for (SoftSplit& s : out) s.Seconds = static_cast<float>(s.Seconds * factor);
  return out;
}

void SortSplitEntries(std::vector<int32_t>& table, int last) {
  last = std::min(last, static_cast<int>(table.size()) - 2);
  bool swapped = true;
  while (swapped) {
    swapped = false;
    for (int k = 0; k <= last; ++k) {
      auto& a = table[static_cast<std::size_t>(k)];
      auto& b = table[static_cast<std::size_t>(k + 1)];
      if (a > b) std::swap(a, b), swapped = true;
    }
  }
}

frmTrackSplits::frmTrackSplits(Workspace& ws) : ws_(ws), saved_(ws.Track.SplitPoints), saved_count_(ws.Track.SplitCount) {}

bool frmTrackSplits::AddNewSplit(int point, double value) {
  TrackState& t = ws_.Track;
  if (point <= 0 || !(value > 0) || value > ws_.TrackLength || t.SplitCount + 1 >= kMaxSegments) return false;
  ++t.SplitCount;
  t.SplitPoints.resize(static_cast<std::size_t>(t.SplitCount) + 1);
  t.SplitPoints.back() = SaturateInt32(RoundHalfEven(value));
  ShuffleSplits();
  return true;
}

void frmTrackSplits::ShuffleSplits() { SortSplitEntries(ws_.Track.SplitPoints, ws_.Track.SplitCount - 1); }

bool frmTrackSplits::ClearAllSplits() {
  if (!ws_.messages.Ask(QStringLiteral("Delete all currently defined Splits"), kEditTitle)) return false;
  ws_.Track.SplitCount = 1;
  ws_.Track.SplitPoints.resize(2);
  ws_.Track.SplitPoints[0] = 0;
  return true;
}

bool frmTrackSplits::RestoreAllSplits() {
  if (!ws_.messages.Ask(QStringLiteral("Restore all default Splits"), kEditTitle)) return false;
  ReloadTrackSegments();
  return true;
}

void frmTrackSplits::ReloadTrackSegments() {
  ws_.Track.SplitCount = ws_.Track.SegmentCount;
  ws_.Track.SplitPoints = ws_.Track.SegmentStart;
}

void frmTrackSplits::SaveAllSplits() {
  SortSplitEntries(ws_.Track.SplitPoints, ws_.Track.SplitCount - 2);
  SaveNewSplits();
}

bool frmTrackSplits::SaveNewSplits() {
  TrackState& t = ws_.Track;
  if (t.SplitCount < 1) {
    ReloadTempSplits();
    return false;
  }
  const QString path = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].TrackFile;
  return UpdateTrackHeader(ws_, path, kEditTitle, [&](TrackHeader& h) {
    h.SplitCount = t.SplitCount;
    h.SplitPoints.fill(0);
    for (std::size_t k = 0; k < std::min<std::size_t>(t.SplitPoints.size(), h.SplitPoints.size()); ++k) {
      h.SplitPoints[k] = t.SplitPoints[k];
    }
  });
}

void frmTrackSplits::ReloadTempSplits() {
  ws_.Track.SplitPoints = saved_;
  ws_.Track.SplitCount = saved_count_;
}

QString frmTrackSplits::DrawSplitCursor(int point) const { return TrackPointText(ws_, Metric(ws_), point); }

frmUserSplits::frmUserSplits(Workspace& ws, int slot) : ws_(ws), slot_(slot) {
  const OutingRec& o = OutingAt(ws, slot);
  const int lap = o.CurLap;
  if (lap >= 0 && lap + 1 < static_cast<int>(o.Laps.size())) {
    const LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
    lap_distance_ = (o.Laps[static_cast<std::size_t>(lap) + 1].StartDistance - row.StartDistance) * row.DistanceScale;
  }
  // A stored table shorter than the boxes ended on the lap's end: that entry isn't shown.
  const std::vector<float>& kept = o.UserSplits;
  const std::size_t shown =
      !kept.empty() && kept.size() < Boxes.size() ? kept.size() - 1 : std::min(kept.size(), Boxes.size());
  std::copy_n(kept.begin(), shown, Boxes.begin());
}

QString frmUserSplits::Head() const {
  return QStringLiteral("Lap Distance :  ") + QString::number(RoundHalfEven(lap_distance_)) +
         (Metric(ws_) ? QStringLiteral("  (mtrs)") : QStringLiteral("  (feet)"));
}

bool frmUserSplits::LeaveBox(int k, double value) {
  if (k < 0 || k >= static_cast<int>(Boxes.size())) return false;
  float v = static_cast<float>(RoundHalfEven(value));
  if (v > lap_distance_) v = lap_distance_;
  if (k == 0 && v < 1) {
    ws_.messages.Show(QStringLiteral("D1 split distance cannot be a zero."), QStringLiteral("User Splits"),
                      MessageIcon::Exclamation);
    return false;
  }
  Boxes[static_cast<std::size_t>(k)] = v;
  return true;
}

std::vector<float> frmUserSplits::cmdOK() {
  std::vector<float> out;
  for (float v : Boxes) {
    if (!out.empty() && !(v > out.back())) {
      out.push_back(lap_distance_);  // the first out of order ends the table at the lap's end
      break;
    }
    out.push_back(v);
  }
  OutingAt(ws_, slot_).UserSplits = out;
  return out;
}
