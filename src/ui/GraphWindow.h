#pragma once

// The time graph or the distance plot in a child window: the plot, the channels' captions above
// it, the side panels with further scales, and the numeric panel beyond a sizing bar. The
// window forwards paint, size, mouse and keys to frmGraph or frmDistance, which draw on a
// QtSurface over the canvases' pictures. A click moves the cursor by exclusive-or on the picture
// already drawn; only a change of view redraws the traces.

#include <functional>
#include <memory>

#include "core/plots/LinePlot.h"
#include "core/plots/RecordingSurface.h"
#include "ui/AxisPanels.h"
#include "ui/PlotWindowBase.h"

class PlotCanvas;
class QLabel;
class QSplitter;
struct Workspace;

class GraphWindow : public PlotWindowBase {
 public:
  // `kind` is PlotWindow::Graph (the time graph) or PlotWindow::Distance.
  GraphWindow(Workspace& ws, int folder, PlotWindow kind = PlotWindow::Graph, QWidget* parent = nullptr);

  LinePlot& Graph() { return *graph_; }
  PlotCanvas* Plot() { return plot_; }
  // The side panels of further scales: 0 left, 1 right; shown only when they have one.
  PlotCanvas* Panel(int side) { return panels_.Panel(side); }
  QSplitter* Splitter() { return split_; }
  // The channels' captions above the plot (lblChannel), each in its trace's colour.
  QLabel* Captions() { return captions_; }

  // The full redraw (DrawLineGraphs); the folder's RefreshPlots calls it.
  void Redraw() override;
  // The cursor moved in another window of the folder: it moves here by exclusive-or.
  void FollowCursor() override;
  // Drawing in answer to an event (a click, a key, a menu's go-to): `draw` paints on the picture
  // as it stands, and a redraw it asked for meanwhile (a zoom at the end of a drag) runs after.
  void Event(const std::function<void()>& draw);

  // A channel dropped from the tree: outing slot and channel index.
  std::function<void(int slot, int channel)> ChannelDropped;
  // Right button: the zoom tools over the data area, the axis menu left of it.
  std::function<void(QPoint global, bool over_axis)> ContextMenu;

  static constexpr char kChannelMime[] = "application/x-orlan-channel";

 protected:
  bool event(QEvent* e) override;
  void keyPressEvent(QKeyEvent* e) override;
  void dragEnterEvent(QDragEnterEvent* e) override;
  void dropEvent(QDropEvent* e) override;

 private:
  // Runs `draw` with the graph painting on the plot's picture, then shows the picture.
  void Paint(const std::function<void()>& draw);
  void PaintNumerics();
  void ShowCaptions();
  void OnMouse(int kind, QMouseEvent* e);

  RecordingSurface idle_{1, 1};  // the graph's surface between events; nothing draws on it
  std::unique_ptr<LinePlot> graph_;
  QString title_;
  AxisPanels panels_;
  PlotCanvas* plot_;
  PlotCanvas* numeric_;
  QLabel* captions_;
  QSplitter* split_;
  bool painting_ = false;
  bool redraw_pending_ = false;
  int button_ = 0;  // the button held since the press, 1 left
};
