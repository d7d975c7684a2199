// frmChlXYAxis ("Select Channel"): a channel for the axis of a plot.

#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/plots/frmChlXYAxis.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

int ChooseAxisChannel(DialogHost& host, int outing) {
  frmChlXYAxis form(host.ws, outing);
  Frame d(host.parent, QStringLiteral("frmChlXYAxis"), frmChlXYAxis::kTitle);
  auto* list = new QListWidget;
  list->setObjectName(QStringLiteral("lstChannels"));
  list->setMinimumSize(280, 360);
  for (const frmChlXYAxis::Row& r : form.Rows) {
    list->addItem(r.Units.isEmpty() ? r.Name : QStringLiteral("%1  (%2)").arg(r.Name, r.Units));
  }
  list->setCurrentRow(form.Selected);
  d.Body()->addWidget(list);
  const auto show = [&] {
    form.Selected = list->currentRow();
    d.Ok()->setEnabled(form.Selected >= 0);
  };
  show();
  QObject::connect(list, &QListWidget::currentRowChanged, show);
  QObject::connect(list, &QListWidget::itemDoubleClicked, d.Ok(), &QPushButton::click);
  if (!d.Run([] { return true; })) return -1;
  return form.cmdOK();
}
