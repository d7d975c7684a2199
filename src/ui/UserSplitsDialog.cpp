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
#include "core/outing/HeaderProcessing.h"
#include "core/track/Splits.h"
#include "ui/Dialogs.h"
#include "ui/TrackDialogs.h"

namespace {

// The current lap's length as the distance plots show it: stretched to the map.
float LapDistance(const OutingRec& o) {
  const int lap = o.CurLap;
  if (lap < 0 || lap + 1 >= static_cast<int>(o.Laps.size())) return 0;
  const LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
  return (o.Laps[static_cast<std::size_t>(lap) + 1].StartDistance - row.StartDistance) * row.DistanceScale;
}

class UserSplitsDialog : public QDialog {
 public:
  UserSplitsDialog(Workspace& ws, OutingRec& outing, QWidget* parent)
      : QDialog(parent), outing_(outing), form_(ws, LapDistance(outing)) {
    setObjectName(QStringLiteral("frmUserSplits"));
    setWindowTitle(QStringLiteral("User Distances"));
    // The stored table ends on the lap's end, which cmdOK adds again: the boxes show the rest.
    const std::vector<float>& kept = outing.UserSplits;
    const std::size_t shown = kept.size() < form_.Boxes.size() && !kept.empty() ? kept.size() - 1 : std::min(kept.size(), form_.Boxes.size());
    for (std::size_t k = 0; k < shown; ++k) form_.Boxes[k] = kept[k];
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
    outing_.UserSplits = form_.cmdOK();
    accept();
  }

  OutingRec& outing_;
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
  UserSplitsDialog d(ws, OutingAt(ws, slot), host.parent);
  d.exec();
}
