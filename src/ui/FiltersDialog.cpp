// Filters: frmFilters ("Digital Filters") for the channel selected in the folder in view.

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include "core/app/Workspace.h"
#include "core/compute/frmFilters.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

namespace {

QComboBox* List(const char* name, const QStringList& items) {
  auto* box = new QComboBox;
  box->setObjectName(QString::fromLatin1(name));
  box->addItems(items);
  return box;
}

QLineEdit* CutoffBox(const char* name, const QString& text) {
  auto* box = new QLineEdit(text);
  box->setObjectName(QString::fromLatin1(name));
  return box;
}

// Shows the number the form holds, added to the list when it is none of the list's.
void ShowNumber(QComboBox* box, const QString& text) {
  if (box->findText(text) < 0) box->addItem(text);
  box->setCurrentText(text);
}

}  // namespace

void EditFilters(DialogHost& host) {
  Workspace& ws = host.ws;
  const QString title = QStringLiteral("Digital Filters");
  if (!NeedChannel(ws, title)) return;
  frmFilters form;
  form.Form_Load(ws);
  Frame d(host.parent, QStringLiteral("frmFilters"), title);
  QComboBox* type = List("cboType", frmFilters::kTypes);
  QComboBox* window = List("cboWindow", frmFilters::kWindows);
  QComboBox* kernel = List("cboKernel", frmFilters::kKernels);
  QComboBox* points = List("cboPoints", frmFilters::kPoints);
  QLineEdit* low = CutoffBox("txtLow", form.txtLow);
  QLineEdit* high = CutoffBox("txtHigh", form.txtHigh);
  type->setCurrentIndex(form.cboType);
  window->setCurrentIndex(form.cboWindow);
  ShowNumber(kernel, form.cboKernel);
  ShowNumber(points, form.cboPoints);

  auto* rows = new QFormLayout;
  rows->addRow(QStringLiteral("Filter &type"), type);
  rows->addRow(QStringLiteral("&Window"), window);
  rows->addRow(QStringLiteral("&Kernel length"), kernel);
  rows->addRow(QStringLiteral("Smoothing &points"), points);
  rows->addRow(QStringLiteral("Low cutoff  (Hz)"), low);
  rows->addRow(QStringLiteral("High cutoff  (Hz)"), high);
  d.Body()->addLayout(rows);

  const auto validate = [&] {
    form.cboType = type->currentIndex();
    const frmFilters::Enabled e = form.ValidateFilter();
    points->setEnabled(e.cboPoints);
    window->setEnabled(e.cboWindow);
    kernel->setEnabled(e.cboKernel);
    low->setEnabled(e.txtLow);
    high->setEnabled(e.txtHigh);
  };
  validate();
  QObject::connect(type, &QComboBox::currentIndexChanged, validate);
  QObject::connect(low, &QLineEdit::editingFinished, [&] {
    form.txtLow = low->text();
    form.txtLow_LostFocus();
    low->setText(form.txtLow);
  });
  QObject::connect(high, &QLineEdit::editingFinished, [&] {
    form.txtHigh = high->text();
    form.txtHigh_LostFocus();
    high->setText(form.txtHigh);
  });
  const bool ok = d.Run([&] {
    form.cboType = type->currentIndex();
    form.cboWindow = window->currentIndex();
    form.cboKernel = kernel->currentText();
    form.cboPoints = points->currentText();
    form.txtLow = low->text();
    form.txtHigh = high->text();
    return form.cmdOK(ws);
  });
  if (ok) host.Changed();
}
