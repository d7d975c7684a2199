#pragma once

// The main window: title, menus, the tool bar with the plot buttons, the folder tabs, the area
// of child windows (the channel tree and the plots) and the status bar. It starts after the
// workspace's start-up (StartUp), reopens the last session, polls for new data on Timer1, and
// saves the session and the options when it closes.

#include <QMainWindow>
#include <QTimer>
#include <array>
#include <map>
#include <memory>

#include "core/plots/RefreshPlots.h"
#include "core/workspace/FolderTable.h"
#include "core/workspace/frmChlTree.h"
#include "ui/Dialogs.h"
#include "ui/QtProgress.h"
#include "ui/QtTreeHost.h"

class GraphWindow;
class PlotWindowBase;
class QMdiArea;
class QMdiSubWindow;
class QTabBar;
class TreeWindow;
struct Workspace;

class frmMDIForm : public QMainWindow, public FolderWindows {
 public:
  // `host` answers the tree commands' dialogs; null: Qt's dialogs over this window.
  explicit frmMDIForm(Workspace& ws, std::unique_ptr<QtTreeHost> host = nullptr);
  ~frmMDIForm() override;

  // The session: the folders with their outings, and the windows with their geometry.
  void ReadLastState();
  void SaveLastState();

  // The menu and tool bar commands by their text without "&" and "...", e.g. "Time Plot".
  QAction* Action(const QString& name) const;
  frmChlTree& Tree() { return tree_; }
  TreeWindow* TreeView() { return tree_view_; }
  QTabBar* Tabs() { return tabs_; }
  QMdiArea* Area() { return mdi_; }
  // The plot window of this kind of the folder in view, opened when it isn't; `show` false:
  // only the open one.
  PlotWindowBase* OpenPlotWindow(PlotWindow kind, bool show = true);
  // The time graph, or the distance plot.
  GraphWindow* OpenGraphWindow(bool show = true);
  GraphWindow* OpenDistanceWindow(bool show = true);
  // A channel of the outing on the axis for side-panel scale `place` (0, 1 left, 2 right).
  void ChooseAxisPanelChannel(int place);
  // One tick of Timer1 (also run by the timer every second).
  void PollNewData();
  // What the dialogs need of the window.
  DialogHost& Dialogs() { return dialogs_; }
  // Opens the user's guide in the system's browser; false when there is none.
  bool ShowHelp();

  // FolderWindows
  int FolderTabCount() override;
  void AddFolderTab(int folder, const QString& caption) override;
  void SetFolderTabCaption(int folder, const QString& caption) override;
  void RemoveFolderTab(int folder) override;
  void CloseOpenWindows() override;

 protected:
  void closeEvent(QCloseEvent* e) override;
  bool eventFilter(QObject* watched, QEvent* e) override;

 private:
  void BuildMenus();
  void BuildToolBar();
  // A menu command named `name` (mnuEditBeacon; an entry of a command array as mnuZoomGraph(0)).
  QAction* AddAction(QMenu* menu, const char* name, const QString& text, std::function<void()> run,
                     const QKeySequence& key = {});
  // Runs a tree command and shows what it changed: tree, tabs, plots.
  void Run(const std::function<void()>& command);
  void ShowFolder(int folder);
  // Shows what changed: the view reset when the comparison changed, tree, tab, menus, status;
  // with `redraw` the tree is rebuilt and the plots redrawn (a tree command did both already).
  void AfterChange(bool redraw = true);
  bool ResetViewIfNeeded();
  void ShowCurrentTab();
  void DropChannel(int slot, int channel);
  void PlotMenu(QPoint global, bool over_axis);
  void TreeMenu(QPoint global);
  // The editor of a support node of the tree ("Math Channels", "Constants", the track).
  void OpenSupportNode();
  // Child windows side by side (vertical) or one above the other.
  void TileWindows(bool vertical);
  // Runs a dialog of the main window: no poll meanwhile, and the changes shown afterwards.
  void RunDialog(void (*open)(DialogHost&));
  void SaveGeometry(const QString& section, QWidget* window, bool active);
  void RestoreGeometry(const QString& section, QWidget* window);
  PlotWindowBase* WindowOf(int folder, PlotWindow kind) const;
  // The line plot the view commands act on: the distance plot after a click in it, else the
  // time graph.
  GraphWindow* ActiveLinePlot() const;
  PlotWindowBase* MakePlotWindow(PlotWindow kind);
  // After a click in the time graph: the track window over the graph (TrackOnTop) and out of the
  // pointer's way (AutoMoveTrack).
  void KeepTrackInSight();
  // mnuCopyTracktoClip: the picture of the open map window (track, contour or report).
  void CopyTrackToClipboard();
  QMdiSubWindow* SubWindowOf(QWidget* w) const;

  Workspace& ws_;
  QtProgress progress_{this};
  DialogHost dialogs_;
  std::unique_ptr<QtTreeHost> host_;
  frmChlTree tree_;
  QMdiArea* mdi_;
  QTabBar* tabs_;
  TreeWindow* tree_view_;
  QMdiSubWindow* tree_window_;
  std::map<QString, QAction*> actions_;
  QTimer timer1_;
  bool switching_tabs_ = false;
  bool closing_ = false;  // the main window goes: its children close without asking
  bool busy_ = false;     // a command is running (its dialogs run their own event loops)
  bool polling_ = false;  // a Timer1 load is running
  // Per folder, the outing and lap the views span, LapsDisplayed, and whether it held an
  // outing, when the views were last made for them.
  std::array<std::array<int, 4>, kFolderCount> comparison_{};
};
