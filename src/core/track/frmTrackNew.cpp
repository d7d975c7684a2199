#include "core/track/frmTrackNew.h"

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackFile.h"

bool CanMakeNewMap(Workspace& ws) {
  if (AnyOutingLoaded(ws, ws.CurFolder)) return true;
  ws.messages.Show(QStringLiteral("No Outing Loaded"), QStringLiteral("New Track"), MessageIcon::Exclamation);
  return false;
}

frmTrackNew::frmTrackNew(Workspace& ws, int slot) : Settings(ReadTrackSettings(ws)), ws_(ws), slot_(slot) {
  lap_ = OutingAt(ws, slot).CurLap;
  Make();
}

QString frmTrackNew::Title() const {
  return QStringLiteral("Create Track : Lap (") + LapNumberText(OutingAt(ws_, slot_), lap_) + QLatin1Char(')');
}

bool frmTrackNew::Make() {
  created_ = CreateTrack(ws_, slot_, lap_, Settings);
  return created_;
}

bool frmTrackNew::Remake(const std::function<void()>& change) {
  const int lap = lap_;
  const TrackSettings settings = Settings;
  const bool created = created_;
  change();
  if (Make() || !ws_.Track.Stopped) return created_;
  // Cancelled: the map before it stands, and with it its lap and settings.
  lap_ = lap;
  Settings = settings;
  created_ = created;
  return false;
}

bool frmTrackNew::Recreate(const TrackSettings& typed) {
  return Remake([&] { SaveTrackData(Settings, typed); });
}

bool frmTrackNew::mnuNextLap() { return mnuSelectLap(lap_ + 1); }
bool frmTrackNew::mnuPreviousLap() { return mnuSelectLap(lap_ - 1); }

bool frmTrackNew::mnuSelectLap(int lap) {
  if (lap < 0 || lap >= OutingAt(ws_, slot_).LastLap) return false;  // the ends stay where they are
  return Remake([&] { lap_ = lap; });
}

bool frmTrackNew::mnuReset() {
  return Remake([&] { Settings = SetDefaults(); });
}

void frmTrackNew::mnuCorner(int from, int to) { MarkPoints(ws_, from, to, true); }
void frmTrackNew::mnuStraight(int from, int to) { MarkPoints(ws_, from, to, false); }

bool frmTrackNew::cmdSave(const QString& name, const QString& comment) {
  return created_ && SaveNewTrack(ws_, slot_, name, comment);
}

QString frmTrackNew::CursorText(int point) const {
  return TrackPointText(ws_, (OutingAt(ws_, slot_).UnitsMask & 1) != 0, point);
}

void frmTrackNew::Close() { WriteTrackSettings(ws_, Settings); }
