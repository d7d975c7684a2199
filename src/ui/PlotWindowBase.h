#pragma once

// What the main window knows of every plot window: its folder, its kind (the order in which
// RefreshPlots redraws it, and the section its geometry is saved under) and its full redraw.
// A window registers its redraw with its folder while it is open.

#include <QWidget>
#include <functional>

#include "core/plots/RefreshPlots.h"

struct Workspace;

class PlotWindowBase : public QWidget {
 public:
  PlotWindowBase(Workspace& ws, int folder, PlotWindow kind, QWidget* parent = nullptr);
  ~PlotWindowBase() override;

  int Folder() const { return folder_; }
  PlotWindow Kind() const { return kind_; }
  virtual void Redraw() = 0;
  // The folder's cursor moved in another of its windows: show it here without a full redraw.
  virtual void FollowCursor() {}
  // Set by the main window: this window moved the folder's cursor, the others follow.
  std::function<void()> CursorMoved;

  // The settings section of a kind's geometry ("Graph", "Distance", "XYPlot", "Histo", ...) and
  // the class it shows, which names its screenshot.
  static const char* SectionBase(PlotWindow kind);
  static const char* ClassName(PlotWindow kind);

 protected:
  Workspace& ws_;
  int folder_;
  PlotWindow kind_;
};
