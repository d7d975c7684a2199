// Pictures of the track dialogs for `orlan gui --screenshots`, on the demo session and its map
// of Silverstone; each is closed as by Cancel, so the map and its file stay as they were.

#include <QAction>
#include <QApplication>
#include <QMouseEvent>

#include "core/app/Workspace.h"
#include "ui/Dialogs.h"
#include "ui/Screenshots.h"
#include "ui/TrackPicture.h"

namespace {

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
  ShootModal(shot, QStringLiteral("frmTrackNew"), [&] { NewTrackMap(host); }, [&](QWidget* w) {
    auto* select = w->findChild<QAction*>(QStringLiteral("mnuSelectLap"));
    ShootModal(shot, QStringLiteral("frmSelectLap"), [&] {
      if (select != nullptr) select->trigger();
    });
  });

  ShootModal(shot, QStringLiteral("frmTrackData"), [&] { EditTrackData(host); });
  ShootModal(shot, QStringLiteral("frmTrackSplits"), [&] { EditSplits(host); }, [&](QWidget* w) {
    ShootModal(shot, QStringLiteral("frmSplitDistance"), [&] { ClickMap(w, ws); });
  });
  ShootModal(shot, QStringLiteral("frmUserSplits"), [&] { EditUserSplits(host); });
}
