// frmTrackSplits (Edit Splits): the loaded map with its splits; a click on the map adds one
// there, Clear and Restore start the table over, Save writes it into the map file and Cancel
// puts back the table the window opened with.

#include <QDialog>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/track/Splits.h"
#include "ui/Dialogs.h"
#include "ui/TrackDialogs.h"
#include "ui/TrackPicture.h"

namespace {

const QString kTitle = QStringLiteral("Edit Splits");

class TrackSplitsDialog : public QDialog {
 public:
  TrackSplitsDialog(Workspace& ws, QWidget* parent) : QDialog(parent), ws_(ws), form_(ws) {
    setObjectName(QStringLiteral("frmTrackSplits"));
    setWindowTitle(ws.Track.TrackName.isEmpty() ? kTitle : kTitle + QStringLiteral(" - ") + ws.Track.TrackName);
    picture_ = new TrackPicture(ws);
    picture_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) { OnMouse(kind, e); };
    list_ = new QListWidget;
    list_->setObjectName(QStringLiteral("lstSplits"));
    list_->setFixedWidth(150);
    cursor_ = new QLabel(QStringLiteral("Click the map to add a split there"));
    cursor_->setObjectName(QStringLiteral("lblCursor"));
    auto* top = new QHBoxLayout;
    top->addWidget(picture_, 1);
    top->addWidget(list_);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(cursor_, 1);
    bottom->addWidget(Button("cmdClear", QStringLiteral("C&lear All"), [this] { Redone(form_.ClearAllSplits()); }));
    bottom->addWidget(Button("cmdRestore", QStringLiteral("&Restore Defaults"), [this] { Redone(form_.RestoreAllSplits()); }));
    bottom->addWidget(Button("cmdSave", QStringLiteral("&Save"), [this] {
      form_.SaveAllSplits();
      accept();
    }));
    bottom->addWidget(Button("cmdCancel", QStringLiteral("Cancel"), [this] { reject(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
    resize(900, 600);
    FillList();
  }

  // Every way out but Save (Cancel, Escape, the window's close box) leaves the table as it was.
  void reject() override {
    form_.ReloadTempSplits();
    QDialog::reject();
  }

 private:
  QPushButton* Button(const char* name, const QString& text, const std::function<void()>& run) {
    auto* b = new QPushButton(text);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, run);
    return b;
  }

  void Redone(bool changed) {
    if (!changed) return;
    FillList();
    picture_->Redraw();
  }

  void FillList() {
    list_->clear();
    const auto& splits = ws_.Track.SplitPoints;
    const int last = std::min<int>(ws_.Track.SplitCount, static_cast<int>(splits.size()) - 1);
    for (int k = 1; k <= last; ++k) list_->addItem(QStringLiteral("%1 :  %2").arg(k).arg(splits[static_cast<std::size_t>(k)]));
  }

  // DrawSplitCursor for the point under the mouse; a click on the map adds a split there.
  void OnMouse(PlotCanvas::MouseKind kind, QMouseEvent* e) {
    const int point = picture_->PointAt(e->position());
    if (kind == PlotCanvas::MouseKind::Move && point != picture_->Options.Highlight) {
      picture_->Options.Highlight = point;
      if (point >= 0) cursor_->setText(form_.DrawSplitCursor(point));
      picture_->Redraw();
    } else if (kind == PlotCanvas::MouseKind::Press && e->button() == Qt::LeftButton && point > 0) {
      AddSplitAt(point);
    }
  }

  // AddNewSplit: the point's distance, as the person corrects it; the table takes only a
  // distance within the lap.
  void AddSplitAt(int point) {
    QInputDialog d(this);
    d.setWindowTitle(kTitle);
    d.setLabelText(QStringLiteral("Split Distance :"));
    d.setTextValue(QString::number(ws_.Track.TrackPoints[static_cast<std::size_t>(point)].Distance));
    if (d.exec() != QDialog::Accepted) return;
    bool ok = false;
    const double value = QLocale().toDouble(d.textValue().trimmed(), &ok);
    Redone(form_.AddNewSplit(point, ok ? value : d.textValue().trimmed().toDouble()));
  }

  Workspace& ws_;
  frmTrackSplits form_;
  TrackPicture* picture_;
  QListWidget* list_;
  QLabel* cursor_;
};

}  // namespace

void EditSplits(DialogHost& host) {
  if (!NeedTrack(host.ws, kTitle)) return;
  TrackSplitsDialog d(host.ws, host.parent);
  if (d.exec() == QDialog::Accepted && host.Changed) host.Changed();
}
