#include "core/track/frmViewTrack.h"

#include "core/app/Workspace.h"
#include "core/plots/Surface.h"
#include "core/track/TrackDrawing.h"

namespace {

constexpr double kMarkHalf = 90;  // twips: a square of 12 pixels
constexpr int kWhite = 16777215;

}  // namespace

int CursorTrackPoint(Workspace& ws) {
  if (ws.Track.TrackPoints.empty()) return -1;
  return TrackPointAtDistance(ws, ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].CursorDistance);
}

void ToggleTrackMark(Workspace& ws, Surface& s, int point) {
  if (point < 0 || point >= static_cast<int>(ws.Track.TrackPoints.size())) return;
  const TrackXY at = TrackPointPosition(ws, point);
  s.DrawMode = kDrawXor;
  s.Line(at.x - kMarkHalf, at.y - kMarkHalf, at.x + kMarkHalf, at.y + kMarkHalf, kWhite, LineKind::FilledBox);
  s.DrawMode = kDrawCopy;
}

void frmViewTrack::ToggleMark(int point) { ToggleTrackMark(ws_, *s_, point); }

void frmViewTrack::DrawTrack() {
  DrawTrackMap(ws_, *s_);
  Caption = ws_.Track.TrackName.trimmed();
  CursorPoint = CursorTrackPoint(ws_);
  ToggleMark(CursorPoint);
}

void frmViewTrack::DoTrackCursor() {
  const int point = CursorTrackPoint(ws_);
  if (point == CursorPoint) return;
  ToggleMark(CursorPoint);
  CursorPoint = point;
  ToggleMark(CursorPoint);
}
