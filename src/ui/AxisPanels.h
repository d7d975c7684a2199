#pragma once

// The side panels beside a plot with the scales of further channels: two columns at the left,
// one at the right, each shown only when the folder has a channel for it and isn't tiled. The
// time graph, the distance plot and the XY plot put them on either side of their picture.

#include <functional>

class PlotCanvas;
class QHBoxLayout;
class QWidget;
class Surface;
struct FolderRec;

class AxisPanels {
 public:
  AxisPanels();
  // The left panel, `plot` (taking the spare width) and the right panel, into `row`.
  void AddAround(QHBoxLayout* row, QWidget* plot);
  // Shows the panels the folder has scales for.
  void Show(const FolderRec& folder);
  // Runs `draw` with a surface over each shown panel (null for a hidden one), then shows them.
  void Paint(const std::function<void(Surface* left, Surface* right)>& draw);
  // 0 left, 1 right.
  PlotCanvas* Panel(int side) const { return side == 0 ? left_ : right_; }

 private:
  PlotCanvas* left_;
  PlotCanvas* right_;
};
