#include "ui/TreeWindow.h"

#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

#include "core/workspace/frmChlTree.h"
#include "ui/GraphWindow.h"

namespace {

// A small coloured square with the class's letter: enough to tell analog inputs from ECU words
// or math channels at a glance.
QIcon ClassIcon(ChannelClass c) {
  static const struct {
    QColor colour;
    const char* letter;
  } looks[] = {{Qt::transparent, ""}, {QColor(40, 120, 200), "A"}, {QColor(60, 160, 60), "D"},
               {QColor(200, 140, 0), "T"}, {QColor(160, 60, 160), "E"}, {QColor(120, 90, 40), "O"},
               {QColor(0, 150, 150), "G"}, {QColor(200, 60, 60), "P"},   {QColor(90, 90, 90), "M"}};
  const auto& look = looks[static_cast<int>(c)];
  QPixmap pixmap(14, 14);
  pixmap.fill(Qt::transparent);
  if (c != ChannelClass::None) {
    QPainter p(&pixmap);
    p.fillRect(0, 0, 14, 14, look.colour);
    p.setPen(Qt::white);
    QFont f = p.font();
    f.setPixelSize(10);
    f.setBold(true);
    p.setFont(f);
    p.drawText(QRect(0, 0, 14, 14), Qt::AlignCenter, QString::fromLatin1(look.letter));
  }
  return QIcon(pixmap);
}

}  // namespace

TreeWindow::TreeWindow(frmChlTree& tree, QWidget* parent) : QTreeWidget(parent), tree_(tree) {
  setWindowTitle(QStringLiteral("Channels"));
  setHeaderHidden(true);
  setDragEnabled(true);
  setDragDropMode(QAbstractItemView::DragOnly);
  setSelectionMode(QAbstractItemView::SingleSelection);
  connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (showing_ || item == nullptr) return;
    tree_.SelectNode(item->data(0, Qt::UserRole).toInt());
  });
}

void TreeWindow::Show() {
  showing_ = true;
  clear();
  const std::vector<TreeNode>& nodes = tree_.Nodes();
  std::vector<QTreeWidgetItem*> items(nodes.size(), nullptr);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const TreeNode& n = nodes[i];
    QTreeWidgetItem* parent = n.Parent >= 0 ? items[static_cast<std::size_t>(n.Parent)] : nullptr;
    auto* item = parent != nullptr ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    item->setText(0, n.Text);
    item->setData(0, Qt::UserRole, static_cast<int>(i));
    item->setIcon(0, ClassIcon(n.Icon));
    // Only a channel can be dragged onto a plot.
    if (n.Level != kLevelChannel) item->setFlags(item->flags() & ~Qt::ItemIsDragEnabled);
    items[i] = item;
  }
  expandAll();
  const int selected = tree_.SelectedNode();
  if (selected >= 0 && selected < static_cast<int>(items.size())) setCurrentItem(items[static_cast<std::size_t>(selected)]);
  showing_ = false;
}

void TreeWindow::mousePressEvent(QMouseEvent* e) {
  QTreeWidget::mousePressEvent(e);
  if (e->button() == Qt::RightButton && PopupMenu) PopupMenu(e->globalPosition().toPoint());
}

void TreeWindow::mouseDoubleClickEvent(QMouseEvent* e) {
  QTreeWidget::mouseDoubleClickEvent(e);
  if (e->button() == Qt::LeftButton && tree_.Level() == kLevelSupport && SupportNodeOpened) SupportNodeOpened();
}

QStringList TreeWindow::mimeTypes() const { return {QString::fromLatin1(GraphWindow::kChannelMime)}; }

QMimeData* TreeWindow::mimeData(const QList<QTreeWidgetItem*>& items) const {
  if (items.isEmpty()) return nullptr;
  const int index = items.front()->data(0, Qt::UserRole).toInt();
  const TreeTagParts parts = ParseTreeTag(tree_.Nodes()[static_cast<std::size_t>(index)].Tag);
  if (parts.Channel < 0) return nullptr;
  auto* data = new QMimeData;
  data->setData(QString::fromLatin1(GraphWindow::kChannelMime), QStringLiteral("%1:%2").arg(parts.Outing).arg(parts.Channel).toLatin1());
  return data;
}
