#include "ui/GraphWindow.h"

#include <QCursor>
#include <optional>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <QMimeData>
#include <QPainter>
#include <QScrollArea>
#include <QSplitter>

#include "core/app/Workspace.h"
#include "core/plots/PlotAxes.h"
#include "core/plots/PlotScale.h"
#include "core/plots/RefreshPlots.h"
#include "core/plots/frmDistance.h"
#include "core/plots/frmGraph.h"
#include "render/QtSurface.h"
#include "ui/PlotCanvas.h"

namespace {

constexpr double kTwips = 15;  // twips a pixel

FolderRec& FolderOf(Workspace& ws, int folder) { return ws.FolderTable[static_cast<std::size_t>(folder)]; }

// The keys the graph answers, whatever the modifiers: none when the key isn't one of them.
std::optional<LinePlot::Key> GraphKey(int qt_key) {
  static const std::pair<int, LinePlot::Key> keys[] = {
      {Qt::Key_Left, LinePlot::Key::Left}, {Qt::Key_Right, LinePlot::Key::Right}, {Qt::Key_Up, LinePlot::Key::Up},
      {Qt::Key_Down, LinePlot::Key::Down}, {Qt::Key_Return, LinePlot::Key::Enter}, {Qt::Key_Enter, LinePlot::Key::Enter},
      {Qt::Key_Home, LinePlot::Key::Home}, {Qt::Key_End, LinePlot::Key::End},
  };
  for (const auto& [qt, key] : keys) {
    if (qt == qt_key) return key;
  }
  return std::nullopt;
}

}  // namespace

GraphWindow::GraphWindow(Workspace& ws, int folder, PlotWindow kind, QWidget* parent)
    : PlotWindowBase(ws, folder, kind, parent),
      graph_(kind == PlotWindow::Distance ? std::unique_ptr<LinePlot>(std::make_unique<frmDistance>(ws, idle_))
                                          : std::make_unique<frmGraph>(ws, idle_)),
      title_(kind == PlotWindow::Distance ? QStringLiteral("Distance Plot") : QStringLiteral("Time Plot")) {
  setWindowTitle(title_);
  setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  plot_ = new PlotCanvas;
  numeric_ = new PlotCanvas;
  captions_ = new QLabel;
  captions_->setTextFormat(Qt::RichText);
  captions_->setContentsMargins(static_cast<int>(kPlotLeft / kTwips), 2, 4, 2);
  auto* area = new QWidget;
  auto* column = new QVBoxLayout(area);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(captions_);
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  panels_.AddAround(row, plot_);
  column->addLayout(row, 1);
  split_ = new QSplitter(Qt::Horizontal);  // the sizing bar to the numeric panel
  split_->addWidget(area);
  // The numeric panel is as tall as its rows need (AutoSizeNumeric) and scrolls past the
  // window's height.
  auto* numeric_scroll = new QScrollArea;
  numeric_scroll->setWidget(numeric_);
  numeric_scroll->setWidgetResizable(true);
  numeric_scroll->setFrameShape(QFrame::NoFrame);
  split_->addWidget(numeric_scroll);
  split_->setStretchFactor(0, 1);
  split_->setSizes({800, 220});
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(split_);
  panels_.Show(FolderOf(ws_, folder_));

  plot_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) { OnMouse(static_cast<int>(kind), e); };
  plot_->Resized = [this] { Redraw(); };
  numeric_->Resized = [this] { PaintNumerics(); };
  graph_->CursorMoved = [this] {
    if (CursorMoved) CursorMoved();
  };
  graph_->MovePointer = [this](double x) {
    QCursor::setPos(plot_->mapToGlobal(QPoint(static_cast<int>(x / kTwips), plot_->mapFromGlobal(QCursor::pos()).y())));
  };
}

void GraphWindow::Redraw() {
  if (painting_) {
    redraw_pending_ = true;
    return;
  }
  panels_.Show(FolderOf(ws_, folder_));
  panels_.Paint([this](Surface* left, Surface* right) {
    graph_->SetAxisPanels(left, right);
    Paint([this] { graph_->DrawLineGraphs(); });
    graph_->SetAxisPanels(nullptr, nullptr);
  });
  ShowCaptions();
  setWindowTitle(graph_->Caption.isEmpty() ? title_ : title_ + QStringLiteral(" - ") + graph_->Caption);
  if (redraw_pending_) {
    redraw_pending_ = false;
    Redraw();
  }
}

void GraphWindow::ShowCaptions() {
  QStringList parts;
  for (const LinePlot::ChannelCaption& c : graph_->ChannelLabels) {
    if (c.Text.isEmpty()) continue;
    parts << QStringLiteral("<span style=\"color:%1\">%2</span>").arg(QtSurface::ToQColor(c.Color).name(), c.Text.toHtmlEscaped());
  }
  captions_->setText(parts.join(QStringLiteral("&nbsp;&nbsp;&nbsp;&nbsp;")));
  const QColor back = QtSurface::ToQColor(BackgroundColor(ws_));
  captions_->setStyleSheet(QStringLiteral("background:%1").arg(back.name()));
}

void GraphWindow::FollowCursor() {
  Event([this] { graph_->FollowCursor(); });
}

void GraphWindow::Event(const std::function<void()>& draw) {
  Paint(draw);
  if (redraw_pending_) {
    redraw_pending_ = false;
    Redraw();
  }
}

void GraphWindow::Paint(const std::function<void()>& draw) {
  if (ws_.CurFolder != folder_) return;  // a window of a folder not in view waits for its tab
  plot_->FitImage();
  painting_ = true;
  {
    QPainter painter(&plot_->Image);
    QtSurface surface(painter, plot_->Image.size());
    graph_->SetSurface(surface);
    draw();
    graph_->SetSurface(idle_);
  }
  painting_ = false;
  plot_->update();
  PaintNumerics();
}

void GraphWindow::PaintNumerics() {
  const int rows_height = static_cast<int>(graph_->NumericHeight / kTwips);
  if (numeric_->minimumHeight() != rows_height) numeric_->setMinimumHeight(rows_height);
  numeric_->FitImage();
  QPainter painter(&numeric_->Image);
  QtSurface surface(painter, numeric_->Image.size());
  graph_->PaintNumerics(surface);
  numeric_->update();
}

void GraphWindow::OnMouse(int kind, QMouseEvent* e) {
  const double x = e->position().x() * kTwips, y = e->position().y() * kTwips;
  switch (static_cast<PlotCanvas::MouseKind>(kind)) {
    case PlotCanvas::MouseKind::Press:
      setFocus();
      if (e->button() == Qt::RightButton) {
        if (ContextMenu) ContextMenu(e->globalPosition().toPoint(), x < 750);
        return;
      }
      button_ = e->button() == Qt::LeftButton ? 1 : 0;
      if (button_ == 1) Event([&] { graph_->MouseDown(1, x, y); });
      return;
    case PlotCanvas::MouseKind::Move:
      if (button_ == 1) Event([&] { graph_->MouseMove(1, x, y); });
      return;
    case PlotCanvas::MouseKind::Release:
      if (button_ == 1 && e->button() == Qt::LeftButton) Event([&] { graph_->MouseUp(1, x, y); });
      button_ = 0;
      return;
    case PlotCanvas::MouseKind::DoubleClick:
      return;
  }
}

void GraphWindow::keyPressEvent(QKeyEvent* e) {
  const std::optional<LinePlot::Key> key = GraphKey(e->key());
  if (!key) return QWidget::keyPressEvent(e);
  const Qt::KeyboardModifiers m = e->modifiers();
  Event([&] { graph_->KeyDown(*key, m & Qt::ShiftModifier, m & Qt::ControlModifier, m & Qt::AltModifier); });
}

bool GraphWindow::event(QEvent* e) {
  // The graph's keys win over the menus' shortcuts while it has the focus.
  if (e->type() == QEvent::ShortcutOverride && GraphKey(static_cast<QKeyEvent*>(e)->key())) {
    e->accept();
    return true;
  }
  return QWidget::event(e);
}

void GraphWindow::dragEnterEvent(QDragEnterEvent* e) {
  if (!e->mimeData()->hasFormat(kChannelMime)) return;
  e->setDropAction(Qt::CopyAction);  // never a move: the tree keeps its node
  e->accept();
}

void GraphWindow::dropEvent(QDropEvent* e) {
  const QStringList parts = QString::fromLatin1(e->mimeData()->data(kChannelMime)).split(QLatin1Char(':'));
  if (parts.size() != 2 || !ChannelDropped) return;
  e->setDropAction(Qt::CopyAction);
  e->accept();
  ChannelDropped(parts[0].toInt(), parts[1].toInt());
}
