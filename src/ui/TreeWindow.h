#pragma once

// The channel tree's window: the nodes of frmChlTree in a tree control, with an image per
// channel class. A click makes the node current; a channel node can be dragged onto a plot; the
// right button opens the commands of the node's level. A click's plots follow through the
// tree's own redraw.

#include <QTreeWidget>
#include <functional>

class frmChlTree;
class QMenu;

class TreeWindow : public QTreeWidget {
 public:
  TreeWindow(frmChlTree& tree, QWidget* parent = nullptr);

  // Shows the tree's nodes again, the selected one selected; the tree must be loaded first.
  void Show();

  // The popup menu of the selected node's level.
  std::function<void(QPoint global)> PopupMenu;
  // A double click on a node of the "Support" branch: its editor opens.
  std::function<void()> SupportNodeOpened;

 protected:
  void mousePressEvent(QMouseEvent* e) override;
  void mouseDoubleClickEvent(QMouseEvent* e) override;
  QMimeData* mimeData(const QList<QTreeWidgetItem*>& items) const override;
  QStringList mimeTypes() const override;

 private:
  frmChlTree& tree_;
  bool showing_ = false;
};
