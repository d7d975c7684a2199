// Pictures of the track dialogs for `orlan gui --screenshots`, on the demo session. The demo
// has no map: the split and data dialogs are shown on one made from the current lap and kept in
// memory only, and everything is as before afterwards.

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMouseEvent>
#include <QTimer>

#include "core/app/Workspace.h"
#include "core/track/Splits.h"
#include "core/track/TrackCreate.h"
#include "core/track/frmTrackNew.h"
#include "ui/Dialogs.h"
#include "ui/Screenshots.h"
#include "ui/TrackDialogs.h"
#include "ui/TrackPicture.h"

namespace {

// As ShootModal, with `inside` run on the dialog after its picture and before it is closed: the
// sub-dialogs it opens are shot from there.
void ShootWithin(const Screenshot& shot, const QString& name, const std::function<void()>& open,
                 const std::function<void(QWidget*)>& inside) {
  QWidget* before = QApplication::activeModalWidget();
  auto* timer = new QTimer;
  auto tries = std::make_shared<int>(0);
  QObject::connect(timer, &QTimer::timeout, [=] {
    QWidget* modal = QApplication::activeModalWidget();
    if ((modal == nullptr || modal == before) && ++*tries < 200) return;
    timer->stop();
    timer->deleteLater();
    if (modal == nullptr || modal == before) return;
    QApplication::processEvents();
    shot(modal, name);
    inside(modal);
    if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
  });
  timer->start(25);
  open();
}

// A map of the current lap in memory, with its default splits, as if it had been loaded.
bool MakeMapInMemory(Workspace& ws) {
  const int slot = TrackOuting(ws);
  if (slot < 0) return false;
  frmTrackNew made(ws, slot);
  if (!made.Created()) return false;
  SaveSegmentData(ws);
  frmTrackSplits(ws).ReloadTrackSegments();
  ws.Track.TrackName = QStringLiteral("Demo");
  ws.Track.OfficialLength = ws.TrackLength / 1000;  // the demo runs in metres
  ws.TrackLoaded = true;
  return true;
}

// A click on the map a third of the way round opens the entry of a new split.
void ClickMap(QWidget* dialog, const Workspace& ws) {
  auto* picture = static_cast<TrackPicture*>(dialog->findChild<QWidget*>(QStringLiteral("picTrack")));
  if (picture == nullptr) return;
  const QPointF at = picture->PixelOf(static_cast<int>(ws.Track.TrackPoints.size() / 3));
  QMouseEvent press(QEvent::MouseButtonPress, at, picture->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(picture, &press);
}

}  // namespace

void TrackScreenshots(DialogHost& host, const Screenshot& shot) {
  Workspace& ws = host.ws;
  ShootModal(shot, QStringLiteral("SelectTrackFile"), [&] { LoadTrack(host); });
  ShootWithin(shot, QStringLiteral("frmTrackNew"), [&] { NewTrackMap(host); }, [&](QWidget* w) {
    ShootModal(shot, QStringLiteral("frmSelectLap"), [&] { w->findChild<QAction*>(QStringLiteral("mnuSelectLap"))->trigger(); });
  });

  const TrackState kept = ws.Track;
  const bool kept_loaded = ws.TrackLoaded;
  const float kept_length = ws.TrackLength;
  if (ws.TrackLoaded || MakeMapInMemory(ws)) {
    ShootModal(shot, QStringLiteral("frmTrackData"), [&] { EditTrackData(host); });
    ShootWithin(shot, QStringLiteral("frmTrackSplits"), [&] { EditSplits(host); }, [&](QWidget* w) {
      ShootModal(shot, QStringLiteral("frmSplitDistance"), [&] { ClickMap(w, ws); });
    });
  }
  ws.Track = kept;
  ws.TrackLoaded = kept_loaded;
  ws.TrackLength = kept_length;
  ShootModal(shot, QStringLiteral("frmUserSplits"), [&] { EditUserSplits(host); });
}
