// Events: frmEventEdit for the channel selected in the folder in view.

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/plots/frmEventEdit.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

namespace {

QCheckBox* Check(const char* name, const QString& caption, bool on) {
  auto* box = new QCheckBox(caption);
  box->setObjectName(QString::fromLatin1(name));
  box->setChecked(on);
  return box;
}

}  // namespace

void EditEvents(DialogHost& host) {
  if (!NeedChannel(host.ws, frmEventEdit::kTitle)) return;
  frmEventEdit form(host.ws);
  if (!form.HasChannel()) return;
  Frame d(host.parent, QStringLiteral("frmEventEdit"),
          frmEventEdit::kTitle + QStringLiteral(" - ") + form.ChannelName());

  auto* conditions = new QGroupBox(QStringLiteral("An event lasts while the value is"));
  auto* column = new QVBoxLayout(conditions);
  auto* group = new QButtonGroup(&d);
  for (const auto& k : frmEventEdit::kConditions) {
    auto* option = new QRadioButton(QString::fromLatin1(k.Caption));
    option->setObjectName(QStringLiteral("optCondition%1").arg(k.Flag));
    option->setChecked(k.Flag == form.Condition);
    group->addButton(option, k.Flag);
    column->addWidget(option);
  }
  d.Body()->addWidget(conditions);
  auto* limit = new QLineEdit(form.txtLimit);
  limit->setObjectName(QStringLiteral("txtLimit"));
  auto* rows = new QFormLayout;
  rows->addRow(QStringLiteral("L&imit"), limit);
  d.Body()->addLayout(rows);
  QCheckBox* enabled = Check("chkEnabled", QStringLiteral("Events e&nabled"), form.chkEnabled);
  QCheckBox* minimum = Check("chkMinimum", QStringLiteral("Label the &minimum"), form.chkMinimum);
  QCheckBox* maximum = Check("chkMaximum", QStringLiteral("Label the ma&ximum"), form.chkMaximum);
  for (QCheckBox* box : {enabled, minimum, maximum}) d.Body()->addWidget(box);

  const bool ok = d.Run([&] {
    form.Condition = static_cast<uint16_t>(group->checkedId());
    form.txtLimit = limit->text();
    form.chkEnabled = enabled->isChecked();
    form.chkMinimum = minimum->isChecked();
    form.chkMaximum = maximum->isChecked();
    return form.cmdOK();
  });
  if (ok) host.Changed();
}
