// frmUserSplits (User Distances): up to eight distances into the current lap, D1 to D8, kept on
// the outing for the qualifying table.

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "core/app/Workspace.h"
#include "core/track/Splits.h"
#include "ui/Dialogs.h"
#include "ui/TrackDialogs.h"

namespace {

class UserSplitsDialog : public QDialog {
 public:
  UserSplitsDialog(Workspace& ws, int slot, QWidget* parent) : QDialog(parent), form_(ws, slot) {
    setObjectName(QStringLiteral("frmUserSplits"));
    setWindowTitle(QStringLiteral("User Distances"));
    auto* head = new QLabel(form_.Head());
    head->setObjectName(QStringLiteral("lblHead"));
    auto* rows = new QFormLayout;
    for (std::size_t k = 0; k < boxes_.size(); ++k) {
      boxes_[k] = new QLineEdit(Text(form_.Boxes[k]));
      boxes_[k]->setObjectName(QStringLiteral("txtD%1").arg(k + 1));
      connect(boxes_[k], &QLineEdit::editingFinished, this, [this, k] {
        if (boxes_[k]->isModified()) Leave(static_cast<int>(k));
      });
      rows->addRow(QStringLiteral("D%1 :").arg(k + 1), boxes_[k]);
    }
    auto* buttons = new QDialogButtonBox;
    auto* ok = buttons->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(ok, &QPushButton::clicked, this, [this] { OK(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(head);
    layout->addLayout(rows);
    layout->addWidget(buttons);
  }

 private:
  // An unused box stays empty rather than showing a 0.
  static QString Text(float v) { return v == 0 ? QString() : QString::number(static_cast<double>(v), 'f', 0); }

  // Leaving a box: the value rounded and kept within the lap; a refused D1 keeps the focus.
  bool Leave(int k) {
    QLineEdit* box = boxes_[static_cast<std::size_t>(k)];
    box->setModified(false);
    const QString text = box->text().trimmed();
    bool ok = false;
    double v = QLocale().toDouble(text, &ok);
    if (!ok) v = text.toDouble(&ok);
    if (!ok) v = 0;  // an empty box ends the table
    if (!form_.LeaveBox(k, v)) {
      box->setText(Text(form_.Boxes[static_cast<std::size_t>(k)]));
      box->setFocus();
      return false;
    }
    box->setText(Text(form_.Boxes[static_cast<std::size_t>(k)]));
    return true;
  }

  void OK() {
    for (int k = 0; k < static_cast<int>(boxes_.size()); ++k) {
      if (!Leave(k)) return;
    }
    form_.cmdOK();
    accept();
  }

  frmUserSplits form_;
  std::array<QLineEdit*, 8> boxes_{};
};

}  // namespace

void EditUserSplits(DialogHost& host) {
  Workspace& ws = host.ws;
  const int slot = TrackOuting(ws);
  if (slot < 0) {
    ws.messages.Show(QStringLiteral("No Outing Loaded"), QStringLiteral("User Splits"), MessageIcon::Exclamation);
    return;
  }
  UserSplitsDialog d(ws, slot, host.parent);
  d.exec();
}
