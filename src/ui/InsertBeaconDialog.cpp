// Edit Beacons: frmInsertBeacon ("Insert/Delete Beacon") over the lap list of the current
// outing, with frmInsertLap and frmInsertDistance for a new beacon.

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Beacons.h"
#include "core/track/Laps.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

namespace channel_dialogs {

namespace {

// A line of text under a prompt; nothing when cancelled.
std::optional<QString> AskLine(QWidget* parent, const QString& name, const QString& title, const QString& prompt,
                               const QString& box_name, const QString& text) {
  Frame d(parent, name, title);
  d.Body()->addWidget(new QLabel(prompt));
  auto* box = new QLineEdit(text);
  box->setObjectName(box_name);
  box->selectAll();
  d.Body()->addWidget(box);
  if (!d.Run([] { return true; })) return std::nullopt;
  return box->text();
}

}  // namespace

std::optional<QString> AskInsertLap(QWidget* parent, const QString& default_time) {
  return AskLine(parent, QStringLiteral("frmInsertLap"), QStringLiteral("Insert Lap"),
                 QStringLiteral("Enter the new laptime using the format (00:00.000)"), QStringLiteral("txtLapTime"),
                 default_time);
}

std::optional<QString> AskInsertDistance(QWidget* parent, const QString& default_distance, const QString& lap_number) {
  return AskLine(parent, QStringLiteral("frmInsertDistance"), QStringLiteral("Insert Distance"),
                 QStringLiteral("Distance into lap %1 at which the new beacon lies").arg(lap_number),
                 QStringLiteral("txtDistance"), default_distance);
}

}  // namespace channel_dialogs

using namespace channel_dialogs;

namespace {

void ShowLaps(QListWidget* list, const frmInsertBeacon& form) {
  const QSignalBlocker quiet(list);  // refilling moves no selection of the form's
  list->clear();
  list->addItems(form.LapList());
  list->setCurrentRow(form.Selected);
}

// cmdInsert: a new beacon inside the selected lap, by its lap time or by a distance into it.
void Insert(QWidget* parent, Workspace& ws, int slot, frmInsertBeacon& form, bool by_distance) {
  if (form.Selected < 0 || form.Selected >= form.Count) return;
  const auto row = [&](int i) { return form.Rows[static_cast<std::size_t>(i)]; };
  if (by_distance) {
    // The message comes before the question when the outing has no distance.
    if (OutingAt(ws, slot).ChanDistance < 0) {
      form.InsertByDistance(QString());
      return;
    }
    const QString number = LapNumberText(OutingAt(ws, slot), form.Selected);
    const auto text = AskInsertDistance(parent, QString::number(RoundHalfEven(ws.TrackLength)), number);
    if (text) form.InsertByDistance(*text);
  } else {
    const auto text = AskInsertLap(parent, LapTimeText(row(form.Selected + 1) - row(form.Selected)));
    if (text) form.InsertByTime(*text);
  }
}

}  // namespace

void EditBeacons(DialogHost& host) {
  Workspace& ws = host.ws;
  const auto slot = NeedOuting(ws, QStringLiteral("Edit Beacons"));
  if (!slot) return;
  frmInsertBeacon form(ws, *slot);
  Frame d(host.parent, QStringLiteral("frmInsertBeacon"), QStringLiteral("Insert/Delete Beacon"),
          QStringLiteral("Save Changes"));
  auto* list = new QListWidget;
  list->setObjectName(QStringLiteral("lstLaps"));
  list->setMinimumSize(260, 300);
  auto* distance = new QCheckBox(QStringLiteral("Distance Based"));
  distance->setObjectName(QStringLiteral("chkDistance"));
  d.Body()->addWidget(list);
  d.Body()->addWidget(distance);
  QPushButton* insert = d.AddButton(QStringLiteral("cmdInsert"), QStringLiteral("&Insert"));
  QPushButton* remove = d.AddButton(QStringLiteral("cmdDelete"), QStringLiteral("&Delete"));
  ShowLaps(list, form);
  QObject::connect(list, &QListWidget::currentRowChanged, [&](int row) {
    if (row >= 0) form.Selected = row;
  });
  QObject::connect(insert, &QPushButton::clicked, [&] {
    Insert(&d, ws, *slot, form, distance->isChecked());
    ShowLaps(list, form);
  });
  QObject::connect(remove, &QPushButton::clicked, [&] {
    form.cmdDelete();
    ShowLaps(list, form);
  });
  // Saving makes the table the lap table, then rewrites the file's beacons; a failed write has
  // its message, and the laps in memory are the new ones either way.
  if (d.Run([&] {
        form.cmdOK();
        return true;
      })) {
    host.Changed();
  }
}
