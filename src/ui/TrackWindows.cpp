#include "ui/TrackWindows.h"

#include <QApplication>
#include <QClipboard>
#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/TrackBands.h"
#include "ui/ChannelDialogParts.h"
#include "ui/PlotCanvas.h"

using namespace channel_dialogs;

namespace {

constexpr double kTwips = 15;  // twips a pixel

}  // namespace

MapWindowBase::MapWindowBase(Workspace& ws, int folder, PlotWindow kind, QWidget* parent)
    : PlotWindowBase(ws, folder, kind, parent), canvas_(new PlotCanvas) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addWidget(canvas_, 1);
  canvas_->Resized = [this] { Redraw(); };
  resize(520, 420);
}

void MapWindowBase::CopyToClipboard() const { QApplication::clipboard()->setImage(canvas_->Image); }

TrackViewWindow::TrackViewWindow(Workspace& ws, int folder, QWidget* parent)
    : MapWindowBase(ws, folder, PlotWindow::ViewTrack, parent), plot_(ws, idle_) {
  setWindowTitle(QStringLiteral("Track"));
}

void TrackViewWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;
  PaintWith(canvas_, plot_, idle_, [this] { plot_.DrawTrack(); });
  setWindowTitle(plot_.Caption.isEmpty() ? QStringLiteral("Track") : QStringLiteral("Track - ") + plot_.Caption);
}

void TrackViewWindow::FollowCursor() {
  if (ws_.CurFolder == folder_) PaintWith(canvas_, plot_, idle_, [this] { plot_.DoTrackCursor(); });
}

ContourWindow::ContourWindow(Workspace& ws, int folder, QWidget* parent)
    : MapWindowBase(ws, folder, PlotWindow::Contour, parent), plot_(ws, idle_) {
  setWindowTitle(QStringLiteral("Contour Plot"));
}

void ContourWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;
  PaintWith(canvas_, plot_, idle_, [this] { plot_.DrawTrack(); });
  setWindowTitle(plot_.Caption);
}

void ContourWindow::FollowCursor() {
  if (ws_.CurFolder == folder_) PaintWith(canvas_, plot_, idle_, [this] { plot_.DoTrackCursor(); });
}

TrackReportWindow::TrackReportWindow(DialogHost& host, int folder, QWidget* parent)
    : MapWindowBase(host.ws, folder, PlotWindow::TrackReport, parent), host_(host), plot_(host.ws, idle_) {
  setWindowTitle(QStringLiteral("Track Report"));
  canvas_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind == PlotCanvas::MouseKind::Press && e->button() == Qt::RightButton) LabelMenu(e->globalPosition().toPoint(), e->position());
  };
}

void TrackReportWindow::LabelMenu(QPoint global, QPointF at) {
  QMenu menu;
  QAction* hide = menu.addAction(QStringLiteral("&Hide Label"), [this, at] {
    if (plot_.HideLabelAt(at.x() * kTwips, at.y() * kTwips)) Redraw();
  });
  hide->setObjectName(QStringLiteral("mnuTRHide"));
  QAction* hidden = menu.addAction(QStringLiteral("&Show Hidden Labels"), [this] {
    plot_.ShowHiddenLabels();
    Redraw();
  });
  hidden->setObjectName(QStringLiteral("mnuTRHiddenLabels"));
  QAction* column = menu.addAction(QStringLiteral("Labels in a &Column"), [this](bool on) {
    plot_.LabelsInColumn = on;
    Redraw();
  });
  column->setObjectName(QStringLiteral("mnuTRLabelPos"));
  column->setCheckable(true);
  column->setChecked(plot_.LabelsInColumn);
  menu.addSeparator();
  menu.addAction(QStringLiteral("&Band Colors..."), [this] { EditBands(host_); });
  menu.exec(global);
}

void TrackReportWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;
  PaintWith(canvas_, plot_, idle_, [this] { plot_.DrawTrackReport(); });
  setWindowTitle(plot_.Caption);
}

void EditBands(DialogHost& host) {
  frmEditBands form(host.ws);
  Frame d(host.parent, QStringLiteral("frmEditBands"), QStringLiteral("Band Colors"));
  auto* channel = new QComboBox;
  channel->setObjectName(QStringLiteral("cboChannel"));
  channel->setEditable(true);
  channel->addItems(form.ChannelNames);
  channel->setCurrentText(form.cboChannel);
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(QStringLiteral("Channel :")), 0, 0);
  grid->addWidget(channel, 0, 1, 1, 2);
  std::array<QLineEdit*, 6> limits{};
  for (int i = 0; i < 6; ++i) {
    QLineEdit* box = new QLineEdit(form.txtData[static_cast<std::size_t>(i)]);
    box->setObjectName(QStringLiteral("txtData(%1)").arg(i));
    limits[static_cast<std::size_t>(i)] = box;
    // Limits and colours alternate down the dialog: each colour between its two limits.
    grid->addWidget(box, 1 + 2 * i, 1);
    if (i == 5) break;
    QToolButton* swatch = Swatch(form.cmdColor[static_cast<std::size_t>(i)], QStringLiteral("Band %1").arg(i + 1));
    swatch->setObjectName(QStringLiteral("cmdColor(%1)").arg(i));
    grid->addWidget(new QLabel(QStringLiteral("Band %1").arg(i + 1)), 2 + 2 * i, 0);
    grid->addWidget(swatch, 2 + 2 * i, 2);
    QObject::connect(swatch, &QToolButton::clicked, &d, [&form, &d, swatch, i] {
      const QColor c = QColorDialog::getColor(ToQColor(form.cmdColor[static_cast<std::size_t>(i)]), &d);
      if (!c.isValid()) return;
      form.cmdColor[static_cast<std::size_t>(i)] = ToBgr(c);
      PaintSwatch(swatch, ToBgr(c));
    });
  }
  d.Body()->addLayout(grid);
  if (!d.Run([&] {
        form.cboChannel = channel->currentText().trimmed();
        for (std::size_t i = 0; i < limits.size(); ++i) form.txtData[i] = limits[i]->text();
        return form.cmdOK();
      })) {
    return;
  }
  if (host.Changed) host.Changed();
}
