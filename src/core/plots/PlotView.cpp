#include "core/plots/PlotView.h"

#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/DistanceTime.h"

namespace {

constexpr int kViewHistory = 10;

FolderRec& Folder(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }
bool TimeAxis(const Workspace& ws) { return ws.Plots.ActivePlotType == 0; }

// One axis's view as plain numbers: the command works on these and they go back to the folder,
// time views rounded to whole milliseconds.
struct View {
  double start, end, max, cursor;
};

View Current(Workspace& ws) {
  FolderRec& f = Folder(ws);
  if (TimeAxis(ws)) return {static_cast<double>(f.TimeStart), static_cast<double>(f.TimeEnd), GetMaxTime(ws), f.CursorTime};
  return {f.DistanceStart, f.DistanceEnd, GetMaxDistance(ws), f.CursorDistance};
}

void Store(Workspace& ws, double start, double end) {
  FolderRec& f = Folder(ws);
  if (TimeAxis(ws)) {
    f.TimeStart = static_cast<int32_t>(std::nearbyint(start));
    f.TimeEnd = static_cast<int32_t>(std::nearbyint(end));
  } else {
    f.DistanceStart = static_cast<float>(start);
    f.DistanceEnd = static_cast<float>(end);
  }
}

template <class T>
void Push(int16_t& depth, std::array<T, 11>& starts, std::array<T, 11>& ends, T start, T end) {
  if (depth < kViewHistory) {
    ++depth;
  } else {
    std::copy(starts.begin() + 2, starts.end(), starts.begin() + 1);
    std::copy(ends.begin() + 2, ends.end(), ends.begin() + 1);
  }
  starts[static_cast<std::size_t>(depth)] = start;
  ends[static_cast<std::size_t>(depth)] = end;
}

double ZoomHalf(const Workspace& ws, double r) { return (r - (1 - ws.Options.ZoomPercent / 100) * r) / 2; }

}  // namespace

float GetMaxDistance(Workspace& ws) {
  const FolderRec& folder = Folder(ws);
  const int slot = folder.DatumOuting >= 0 ? folder.DatumOuting : ws.CurOuting;
  const OutingRec& o = OutingAt(ws, slot);
  const int lap = folder.DatumOuting >= 0 ? folder.DatumLap : o.CurLap;
  if (lap < 0 || lap >= static_cast<int>(o.Laps.size())) return 0;
  const int end = std::min(lap + folder.LapsDisplayed, static_cast<int>(o.LastLap));
  if (end < 0 || end >= static_cast<int>(o.Laps.size())) return 0;
  return o.Laps[static_cast<std::size_t>(end)].StartDistance - o.Laps[static_cast<std::size_t>(lap)].StartDistance;
}

void PushView(Workspace& ws) {
  FolderRec& f = Folder(ws);
  if (TimeAxis(ws)) {
    Push(f.TimeZoomDepth, f.TimeZoomStart, f.TimeZoomEnd, f.TimeStart, f.TimeEnd);
  } else {
    Push(f.DistanceZoomDepth, f.DistanceZoomStart, f.DistanceZoomEnd, f.DistanceStart, f.DistanceEnd);
  }
}

void ZoomIn(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  const double d = ZoomHalf(ws, v.end - v.start);
  Store(ws, v.start + d, v.end - d);
  RefreshPlots(ws);
}

void ZoomOut(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  const double r = v.end - v.start;
  const double d = (r / (1 - ws.Options.ZoomPercent / 100) - r) / 2;
  const double start = std::max(0.0, v.start - d);
  Store(ws, start, std::min(v.max, start + r + 2 * d));
  RefreshPlots(ws);
}

void ZoomCursor(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  const double d = ZoomHalf(ws, v.end - v.start);
  Store(ws, std::max(0.0, v.cursor - d), std::min(v.max, v.cursor + d));
  RefreshPlots(ws);
}

void ZoomAll(Workspace& ws) {
  const View v = Current(ws);
  Store(ws, 0, v.max);
  FolderRec& f = Folder(ws);
  (TimeAxis(ws) ? f.TimeZoomDepth : f.DistanceZoomDepth) = 0;
  RefreshPlots(ws);
}

void UndoZoom(Workspace& ws) {
  FolderRec& f = Folder(ws);
  if (TimeAxis(ws)) {
    if (f.TimeZoomDepth <= 0) return;
    const auto at = static_cast<std::size_t>(f.TimeZoomDepth--);
    f.TimeStart = f.TimeZoomStart[at];
    f.TimeEnd = f.TimeZoomEnd[at];
  } else {
    if (f.DistanceZoomDepth <= 0) return;
    const auto at = static_cast<std::size_t>(f.DistanceZoomDepth--);
    f.DistanceStart = f.DistanceZoomStart[at];
    f.DistanceEnd = f.DistanceZoomEnd[at];
  }
  RefreshPlots(ws);
}

void ScrollLeft(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  const double r = v.end - v.start;
  const double start = std::max(0.0, v.start - ws.Options.ScrollPercent / 100 * r);
  Store(ws, start, start + r);
  RefreshPlots(ws);
}

void ScrollRight(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  const double r = v.end - v.start;
  const double end = std::min(v.max, v.end + ws.Options.ScrollPercent / 100 * r);
  Store(ws, end - r, end);
  RefreshPlots(ws);
}

void GotoStart(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  Store(ws, 0, v.end - v.start);
  RefreshPlots(ws);
}

void GotoEnd(Workspace& ws) {
  PushView(ws);
  const View v = Current(ws);
  Store(ws, v.max - (v.end - v.start), v.max);
  RefreshPlots(ws);
}
