// Shift Beacons: frmShiftBeacon on the current outing.

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "core/app/Workspace.h"
#include "core/track/frmShiftBeacon.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

void ShiftBeacons(DialogHost& host) {
  Workspace& ws = host.ws;
  const auto slot = NeedOuting(ws, frmShiftBeacon::kTitle);
  if (!slot) return;
  frmShiftBeacon form(ws, *slot);
  Frame d(host.parent, QStringLiteral("frmShiftBeacon"), frmShiftBeacon::kTitle);
  auto* by_time = new QRadioButton(QStringLiteral("Shift by Time (secs)"));
  by_time->setObjectName(QStringLiteral("optTime"));
  auto* by_distance = new QRadioButton(QStringLiteral("Shift by Distance"));
  by_distance->setObjectName(QStringLiteral("optDistance"));
  by_time->setChecked(true);
  by_distance->setEnabled(form.HasDistance());
  auto* shift = new QLineEdit(QStringLiteral("0"));
  shift->setObjectName(QStringLiteral("txtShift"));
  auto* units = new QLabel(form.Units());
  units->setObjectName(QStringLiteral("lblUnits"));
  auto* offset = new QLabel(form.CurrentOffset());
  offset->setObjectName(QStringLiteral("lblOffset"));

  auto* rows = new QFormLayout;
  auto* offset_caption = new QLabel(QStringLiteral("&Current Offset :"));
  offset_caption->setBuddy(shift);
  rows->addRow(offset_caption, offset);
  rows->addRow(by_time);
  rows->addRow(by_distance);
  auto* amount = new QHBoxLayout;
  amount->addWidget(shift);
  amount->addWidget(units);
  rows->addRow(QStringLiteral("Shift"), amount);
  d.Body()->addLayout(rows);
  QObject::connect(by_time, &QRadioButton::toggled, [&](bool on) {
    form.optTime = on;
    units->setText(form.Units());
  });
  if (d.Run([&] {
        form.txtShift = shift->text();
        return form.cmdOK();
      })) {
    host.Changed();
  }
}
