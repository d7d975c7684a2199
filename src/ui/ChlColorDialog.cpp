// Channel Colour and the colour pick of the tree's commands: frmChlColor.

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include "core/app/Workspace.h"
#include "core/plots/frmChlColor.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

namespace channel_dialogs {

bool RunChlColor(QWidget* parent, frmChlColor& form) {
  Frame d(parent, QStringLiteral("frmChlColor"), form.Title());
  auto* grid = new QGridLayout;
  auto* group = new QButtonGroup(&d);
  auto* name = new QLabel;
  name->setObjectName(QStringLiteral("lblColorName"));
  for (int i = 0; i < kPaletteSize; ++i) {
    QToolButton* swatch = Swatch(form.SwatchColor(i), form.SwatchName(i));
    swatch->setObjectName(QStringLiteral("picColor%1").arg(i));
    swatch->setCheckable(true);
    swatch->setChecked(i == form.Selected);
    group->addButton(swatch, i);
    grid->addWidget(swatch, i / 5, i % 5);
  }
  d.Body()->addLayout(grid);
  d.Body()->addWidget(name);
  auto* by_default = new QCheckBox(frmChlColor::kDefaultCaption);
  by_default->setObjectName(QStringLiteral("chkDefault"));
  by_default->setVisible(form.HasChannel());
  d.Body()->addWidget(by_default);

  const auto show = [&] {
    name->setText(form.Selected >= 0 ? form.SwatchName(form.Selected) : QStringLiteral("Pick a colour"));
    d.Ok()->setEnabled(form.Selected >= 0);
  };
  show();
  QObject::connect(group, &QButtonGroup::idClicked, [&](int i) {
    form.Selected = i;
    show();
  });
  return d.Run([&] {
    form.chkDefault = by_default->isChecked();
    return form.cmdOK();
  });
}

}  // namespace channel_dialogs

using namespace channel_dialogs;

void EditChannelColor(DialogHost& host) {
  const auto trace = NeedChannel(host.ws, QStringLiteral("Channel Colour"));
  if (!trace) return;
  frmChlColor form(host.ws, trace->slot, trace->lap, trace->channel);
  if (RunChlColor(host.parent, form)) host.Changed();
}
