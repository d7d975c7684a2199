#include "ui/frmMDIForm.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "core/app/LastState.h"
#include "core/app/Options.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/plots/PlotScale.h"
#include "core/plots/PlotView.h"
#include "core/plots/frmGraph.h"
#include "core/plots/RefreshPlots.h"
#include "core/track/DistanceTime.h"
#include "core/track/TrackFile.h"
#include "core/workspace/frmGroupLaps.h"
#include "ui/FrequencyWindow.h"
#include "ui/GraphWindow.h"
#include "ui/HistoWindow.h"
#include "ui/TrackWindows.h"
#include "ui/TreeWindow.h"
#include "ui/XYWindow.h"

namespace {

FolderRec& FolderInView(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

// The plot windows the program has: those of the buttons in their order, then those of the menus.
constexpr PlotWindow kPlotKinds[] = {PlotWindow::Graph,     PlotWindow::Distance,   PlotWindow::Frequency,
                                     PlotWindow::XYPlot,    PlotWindow::Histo,      PlotWindow::Contour,
                                     PlotWindow::ViewTrack, PlotWindow::TrackReport, PlotWindow::Spectrogram};

// The map windows open small, at the right of the area, the rest of the area left to the plots.
bool IsMapWindow(PlotWindow kind) { return kind == PlotWindow::ViewTrack; }

// What the views span: the Datum's laps, or without a Datum the current outing's lap; and
// whether there is any outing at all.
std::array<int, 4> Comparison(Workspace& ws, int folder) {
  const FolderRec& f = ws.FolderTable[static_cast<std::size_t>(folder)];
  const int slot = f.DatumOuting >= 0 ? f.DatumOuting : f.SelOuting;
  const int lap = f.DatumOuting >= 0 ? f.DatumLap : f.Outings[static_cast<std::size_t>(slot)].CurLap;
  return {slot, lap, f.LapsDisplayed, AnyOutingLoaded(ws, folder) ? 1 : 0};
}

}  // namespace

frmMDIForm::frmMDIForm(Workspace& ws, std::unique_ptr<QtTreeHost> host)
    : ws_(ws),
      dialogs_{ws, this, [this] { AfterChange(); }},
      host_(host ? std::move(host) : std::make_unique<QtTreeHost>(ws)),
      tree_(ws, *host_) {
  host_->SetWindows(this, *this);
  ws_.progress = &progress_;
  setWindowTitle(ws_.Title);
  auto* central = new QWidget;
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  tabs_ = new QTabBar;
  tabs_->setExpanding(false);
  mdi_ = new QMdiArea;
  layout->addWidget(tabs_);
  layout->addWidget(mdi_, 1);
  setCentralWidget(central);

  tree_view_ = new TreeWindow(tree_);
  tree_window_ = mdi_->addSubWindow(tree_view_);
  tree_window_->resize(300, 520);
  tree_window_->installEventFilter(this);
  tree_view_->PopupMenu = [this](QPoint at) { TreeMenu(at); };
  tree_view_->SupportNodeOpened = [this] { OpenSupportNode(); };

  BuildMenus();
  BuildToolBar();
  statusBar()->showMessage(QStringLiteral("Ready"));

  // Folder 1 is in use from the start.
  AddFolderTab(0, ws_.FolderTable[0].Name);
  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    if (!switching_tabs_ && index >= 0) ShowFolder(tabs_->tabData(index).toInt());
  });
  connect(&timer1_, &QTimer::timeout, this, [this] { PollNewData(); });
  timer1_.start(1000);
  resize(1280, 800);
  AfterChange();
}

frmMDIForm::~frmMDIForm() {
  timer1_.stop();
  ws_.progress = nullptr;
  // The plot windows unregister from the folders while the workspace is still there.
  for (QMdiSubWindow* w : mdi_->subWindowList()) delete w;
}

QAction* frmMDIForm::Action(const QString& name) const {
  const auto it = actions_.find(name);
  return it == actions_.end() ? nullptr : it->second;
}

void frmMDIForm::BuildToolBar() {
  QToolBar* bar = addToolBar(QStringLiteral("Plots"));
  bar->setObjectName(QStringLiteral("PlotButtons"));
  static const char* const kShort[] = {"Time", "Dist", "Freq", "XY", "Histo", "Contour", "3D", "Bits", "Num"};
  for (std::size_t i = 0; i < kPlotButtonToolTips.size(); ++i) {
    QAction* a = bar->addAction(QString::fromLatin1(kShort[i]));
    a->setToolTip(QString::fromLatin1(kPlotButtonToolTips[i]));
    // The buttons of windows not built yet stay greyed rather than do nothing.
    static const std::pair<std::size_t, PlotWindow> kBuilt[] = {
        {0, PlotWindow::Graph}, {1, PlotWindow::Distance}, {2, PlotWindow::Frequency},
        {3, PlotWindow::XYPlot}, {4, PlotWindow::Histo},   {5, PlotWindow::Contour}};
    a->setEnabled(false);
    for (const auto& [button, kind] : kBuilt) {
      if (button != i) continue;
      a->setEnabled(true);
      connect(a, &QAction::triggered, this, [this, kind = kind] {
        if (kind == PlotWindow::Distance) {
          OpenDistanceWindow();
        } else {
          OpenPlotWindow(kind);
        }
      });
    }
    actions_[QStringLiteral("Button ") + QString::fromLatin1(kPlotButtonToolTips[i])] = a;
  }
  bar->addSeparator();
  for (const char* name : {"Zoom In", "Zoom Out", "Zoom All", "Undo Zoom", "Entire Outing", "Event Markers"}) {
    bar->addAction(Action(QString::fromLatin1(name)));
  }
}

void frmMDIForm::Run(const std::function<void()>& command) {
  busy_ = true;
  command();
  busy_ = false;
  AfterChange(false);  // the command rebuilt the tree and redrew its folder
}

bool frmMDIForm::ResetViewIfNeeded() {
  FolderRec& folder = FolderInView(ws_);
  // The views span the Datum's laps: a new Datum or other displayed laps show all of the new
  // span, in time and in distance, as does a folder that just got its first outing. Nothing
  // else resets them: a view narrowed to 10 ms stays.
  const std::array<int, 4> comparison = Comparison(ws_, ws_.CurFolder);
  auto& seen = comparison_[static_cast<std::size_t>(ws_.CurFolder)];
  const bool changed = seen != comparison;
  seen = comparison;
  if (!changed || !AnyOutingLoaded(ws_, ws_.CurFolder)) return false;
  folder.TimeStart = 0;
  folder.TimeEnd = static_cast<int32_t>(GetMaxTime(ws_));
  folder.TimeZoomDepth = 0;
  folder.DistanceStart = 0;
  folder.DistanceEnd = GetMaxDistance(ws_);
  folder.DistanceZoomDepth = 0;
  return true;
}

void frmMDIForm::AfterChange(bool redraw) {
  FolderRec& folder = FolderInView(ws_);
  redraw = ResetViewIfNeeded() || redraw;
  if (redraw) tree_.LoadTreeData();
  tree_view_->Show();
  ShowCurrentTab();
  Action(QStringLiteral("Entire Outing"))->setChecked(folder.LapsDisplayed == frmGroupLaps::kEntireOuting);
  Action(QStringLiteral("Tile Graphs"))->setChecked(folder.Options.TileGraphs);
  Action(QStringLiteral("Event Markers"))->setChecked(ws_.Options.EventMarkers);
  Action(QStringLiteral("Measure Cursor"))->setChecked(ws_.Plots.MeasureCursor);
  Action(QStringLiteral("Unload Track"))->setEnabled(ws_.TrackLoaded);
  Action(QStringLiteral("Colour by Bands"))->setChecked(folder.Options.DoBanding);
  int outings = 0;
  for (const OutingRec& o : folder.Outings) outings += o.Loaded != 0;
  statusBar()->showMessage(QStringLiteral("Folder - %1    %2 outing(s)").arg(folder.Name.trimmed()).arg(outings));
  if (redraw) RefreshPlots(ws_);
}

void frmMDIForm::ShowCurrentTab() {
  // A command may have moved to another folder (a folder deleted, a new one added): the tab and
  // the windows in view follow the folder the workspace is on.
  switching_tabs_ = true;
  for (int i = 0; i < tabs_->count(); ++i) {
    if (tabs_->tabData(i).toInt() == ws_.CurFolder) tabs_->setCurrentIndex(i);
  }
  switching_tabs_ = false;
  for (QMdiSubWindow* w : mdi_->subWindowList()) {
    if (auto* p = dynamic_cast<PlotWindowBase*>(w->widget())) w->setVisible(p->Folder() == ws_.CurFolder);
  }
}

PlotWindowBase* frmMDIForm::WindowOf(int folder, PlotWindow kind) const {
  for (QMdiSubWindow* w : mdi_->subWindowList()) {
    auto* p = dynamic_cast<PlotWindowBase*>(w->widget());
    if (p != nullptr && p->Folder() == folder && p->Kind() == kind) return p;
  }
  return nullptr;
}

GraphWindow* frmMDIForm::ActiveLinePlot() const {
  const PlotWindow kind = ws_.Plots.ActivePlotType == 1 ? PlotWindow::Distance : PlotWindow::Graph;
  auto* g = static_cast<GraphWindow*>(WindowOf(ws_.CurFolder, kind));
  return g != nullptr ? g : static_cast<GraphWindow*>(WindowOf(ws_.CurFolder, PlotWindow::Graph));
}

QMdiSubWindow* frmMDIForm::SubWindowOf(QWidget* widget) const {
  for (QMdiSubWindow* w : mdi_->subWindowList()) {
    if (w->widget() == widget) return w;
  }
  return nullptr;
}

PlotWindowBase* frmMDIForm::MakePlotWindow(PlotWindow kind) {
  PlotWindowBase* p = nullptr;
  const int folder = ws_.CurFolder;
  if (kind == PlotWindow::XYPlot) {
    p = new XYWindow(dialogs_, folder);
  } else if (kind == PlotWindow::Histo) {
    p = new HistoWindow(dialogs_, folder);
  } else if (kind == PlotWindow::Frequency) {
    auto* f = new FrequencyWindow(dialogs_, folder);
    f->OpenSpectrogram = [this] { OpenPlotWindow(PlotWindow::Spectrogram); };
    p = f;
  } else if (kind == PlotWindow::Spectrogram) {
    p = new SpectrogramWindow(dialogs_, folder);
  } else if (kind == PlotWindow::ViewTrack) {
    p = new TrackViewWindow(ws_, folder);
  } else if (kind == PlotWindow::Contour) {
    p = new ContourWindow(ws_, folder);
  } else if (kind == PlotWindow::TrackReport) {
    p = new TrackReportWindow(dialogs_, folder);
  } else {
    auto* g = new GraphWindow(ws_, ws_.CurFolder, kind);
    g->ChannelDropped = [this](int slot, int channel) { DropChannel(slot, channel); };
    g->ContextMenu = [this](QPoint at, bool over_axis) { PlotMenu(at, over_axis); };
    p = g;
  }
  // The cursor links the folder's windows: moved in one, it moves in the others.
  p->CursorMoved = [this, p] {
    for (PlotWindow k : kPlotKinds) {
      PlotWindowBase* other = WindowOf(p->Folder(), k);
      if (other != nullptr && other != p) other->FollowCursor();
    }
    if (p->Kind() == PlotWindow::Graph) KeepTrackInSight();
  };
  return p;
}

PlotWindowBase* frmMDIForm::OpenPlotWindow(PlotWindow kind, bool show) {
  if (PlotWindowBase* p = WindowOf(ws_.CurFolder, kind)) {
    if (show) mdi_->setActiveSubWindow(SubWindowOf(p));
    return p;
  }
  if (!show) return nullptr;
  PlotWindowBase* p = MakePlotWindow(kind);
  QMdiSubWindow* w = mdi_->addSubWindow(p);
  w->setAttribute(Qt::WA_DeleteOnClose);
  // Beside the tree, over the rest of the area; each further window a step down and right.
  int open = 0;
  for (PlotWindow k : kPlotKinds) open += k != kind && WindowOf(ws_.CurFolder, k) != nullptr;
  if (IsMapWindow(kind)) {
    w->resize(480, 400);
    w->move(std::max(0, mdi_->width() - 484), 0);
  } else {
    w->move(tree_window_->width() + 10 + 30 * open, 30 * open);
    w->resize(std::max(600, mdi_->width() - tree_window_->width() - 12 - 30 * open), std::max(400, mdi_->height() - 4 - 30 * open));
  }
  w->show();
  AfterChange();  // its redraw draws the new window too
  p->setFocus();
  return p;
}

void frmMDIForm::KeepTrackInSight() {
  auto* track = WindowOf(ws_.CurFolder, PlotWindow::ViewTrack);
  QMdiSubWindow* w = track != nullptr ? SubWindowOf(track) : nullptr;
  if (w == nullptr) return;
  // The click raised the graph: the map comes back over it (TrackOnTop) and, when it lies under
  // the pointer, goes to the pointer's far side, 500 twips clear of it (AutoMoveTrack).
  if (ws_.Options.TrackOnTop) w->raise();
  if (!ws_.Options.AutoMoveTrack) return;
  const QPoint pointer = mdi_->viewport()->mapFromGlobal(QCursor::pos());
  if (!w->geometry().contains(pointer)) return;
  constexpr int kClear = 500 / 15;
  const bool left_half = pointer.x() < w->geometry().center().x();
  w->move(left_half ? pointer.x() + kClear : pointer.x() - kClear - w->width(), w->y());
}

void frmMDIForm::CopyTrackToClipboard() {
  for (PlotWindow kind : {PlotWindow::ViewTrack, PlotWindow::Contour, PlotWindow::TrackReport}) {
    if (auto* map = dynamic_cast<MapWindowBase*>(WindowOf(ws_.CurFolder, kind))) {
      map->CopyToClipboard();
      return;
    }
  }
}

GraphWindow* frmMDIForm::OpenGraphWindow(bool show) {
  if (show) ws_.Plots.ActivePlotType = 0;
  return static_cast<GraphWindow*>(OpenPlotWindow(PlotWindow::Graph, show));
}

GraphWindow* frmMDIForm::OpenDistanceWindow(bool show) {
  FolderRec& folder = FolderInView(ws_);
  if (show && !(folder.DistanceEnd > folder.DistanceStart)) {
    folder.DistanceStart = 0;
    folder.DistanceEnd = GetMaxDistance(ws_);
  }
  if (show) ws_.Plots.ActivePlotType = 1;
  return static_cast<GraphWindow*>(OpenPlotWindow(PlotWindow::Distance, show));
}

void frmMDIForm::DropChannel(int slot, int channel) {
  // The dropped channel joins every lap compared in the folder, by its name, and takes the axis.
  FolderRec& folder = FolderInView(ws_);
  if (slot < 0 || slot >= kOutingsPerFolder || folder.Outings[static_cast<std::size_t>(slot)].Loaded == 0) return;
  const auto& dropped = folder.Outings[static_cast<std::size_t>(slot)].Channels;
  if (channel < 0 || channel >= static_cast<int>(dropped.size())) return;
  const QString name = dropped[static_cast<std::size_t>(channel)].ShortName;
  for (int s = 0; s < kOutingsPerFolder; ++s) {
    OutingRec& o = folder.Outings[static_cast<std::size_t>(s)];
    const int c = o.Loaded != 0 ? FindChannelByName(ws_, ws_.CurFolder, s, name) : -1;
    if (c < 0) continue;
    for (LapRec& lap : o.Laps) {
      if (lap.Shown != 0 && c < static_cast<int>(lap.LapChannels.size()))
        lap.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
    }
  }
  folder.SelOuting = static_cast<int16_t>(slot);
  folder.ActiveChannel = static_cast<int16_t>(channel);
  AfterChange();
}

void frmMDIForm::PlotMenu(QPoint global, bool over_axis) {
  QMenu menu;
  const auto axis = [this](LinePlot::Key key) {
    if (GraphWindow* g = ActiveLinePlot()) g->Event([&] { g->Graph().KeyDown(key, false, false, false); });
  };
  if (over_axis) {
    QAction* next = menu.addAction(QStringLiteral("Next Channel"), [axis] { axis(LinePlot::Key::Down); });
    next->setObjectName(QStringLiteral("mnuAxisChannel(0)"));
    QAction* previous = menu.addAction(QStringLiteral("Previous Channel"), [axis] { axis(LinePlot::Key::Up); });
    previous->setObjectName(QStringLiteral("mnuAxisChannel(1)"));
    menu.addSeparator();
    // Scales of further channels beside the plot: two in the left panel, one in the right.
    const char* places[] = {"Left Panel Scale...", "Second Left Panel Scale...", "Right Panel Scale..."};
    for (int k = 0; k < 3; ++k) {
      menu.addAction(QString::fromLatin1(places[k]), [this, k] { ChooseAxisPanelChannel(k); });
    }
    menu.addAction(QStringLiteral("Clear Panel Scales"), [this] {
      FolderInView(ws_).AxisPanelChannels = {};
      AfterChange();
    });
  } else {
    for (const char* name : {"Zoom In", "Zoom Out", "Zoom All", "Zoom to Cursor", "Undo Zoom", "Go to Minimum", "Go to Maximum"}) {
      menu.addAction(Action(QString::fromLatin1(name)));
    }
  }
  menu.exec(global);
}

void frmMDIForm::ChooseAxisPanelChannel(int place) {
  FolderRec& folder = FolderInView(ws_);
  const int chosen = ChooseAxisChannel(dialogs_, folder.SelOuting);
  if (chosen < 0) return;
  OutingRec& o = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  const std::size_t c = static_cast<std::size_t>(chosen);
  folder.AxisPanelChannels[static_cast<std::size_t>(place)] = o.Channels.at(c).ShortName.trimmed();
  // A scale stands beside its trace: the channel is drawn in the lap on the axis.
  if (o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size()) && c < o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels.size()) {
    o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[c].Shown = -1;
  }
  AfterChange();
}

void frmMDIForm::ShowFolder(int folder) {
  ws_.CurFolder = static_cast<int16_t>(folder);
  ws_.CurOuting = FolderInView(ws_).SelOuting;
  LoadFolderTrack(ws_);  // one map in memory: the one of the folder in view
  AfterChange();  // each folder's plot windows show only while its tab is in view
}

int frmMDIForm::FolderTabCount() { return tabs_->count(); }

void frmMDIForm::AddFolderTab(int folder, const QString& caption) {
  switching_tabs_ = true;
  const int index = tabs_->addTab(caption.trimmed());
  tabs_->setTabData(index, folder);
  tabs_->setCurrentIndex(index);
  switching_tabs_ = false;
  ShowFolder(folder);
}

void frmMDIForm::SetFolderTabCaption(int folder, const QString& caption) {
  for (int i = 0; i < tabs_->count(); ++i) {
    if (tabs_->tabData(i).toInt() == folder) tabs_->setTabText(i, caption.trimmed());
  }
}

void frmMDIForm::RemoveFolderTab(int folder) {
  for (PlotWindow kind : kPlotKinds) {
    if (PlotWindowBase* p = WindowOf(folder, kind)) delete SubWindowOf(p);
  }
  switching_tabs_ = true;
  for (int i = tabs_->count() - 1; i >= 0; --i) {
    if (tabs_->tabData(i).toInt() == folder) tabs_->removeTab(i);
  }
  switching_tabs_ = false;
  if (tabs_->count() > 0) ShowFolder(tabs_->tabData(tabs_->currentIndex()).toInt());
}

void frmMDIForm::CloseOpenWindows() {
  // With no outing left in the folder its plots have nothing to show.
  if (AnyOutingLoaded(ws_, ws_.CurFolder)) return;
  for (PlotWindow kind : kPlotKinds) {
    if (PlotWindowBase* p = WindowOf(ws_.CurFolder, kind)) delete SubWindowOf(p);
  }
}

void frmMDIForm::PollNewData() {
  // Never inside a command, a dialog, a menu or another load: the announcement waits for the
  // next tick ("New" stays True until then).
  if (busy_ || polling_ || QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr) return;
  polling_ = true;
  DownloadHandler handler;
  handler.HoldsOuting = [this](int folder) { return AnyOutingLoaded(ws_, folder); };
  handler.LoadNewFile = [this](int folder, const QString& path) {
    const int16_t folder_before = ws_.CurFolder, outing_before = ws_.CurOuting;
    ws_.CurFolder = static_cast<int16_t>(folder);
    ws_.CurOuting = FolderInView(ws_).SelOuting;
    tree_.LoadNewOuting(path);
    ws_.CurFolder = folder_before;
    ws_.CurOuting = outing_before;
    statusBar()->showMessage(QStringLiteral("New data: ") + path);
  };
  const int loads = Timer1Poll(ws_, handler);
  polling_ = false;
  if (loads > 0) AfterChange();
}

void frmMDIForm::SaveGeometry(const QString& section, QWidget* window, bool active) {
  SettingsStore& s = ws_.Settings;
  s.WriteBool(kAppAnalysis, section, "Active", active);
  if (window == nullptr) return;
  // The normal place and size, so that a maximized window comes back maximized and restores to
  // where it was; a window closed minimized comes back as it was before.
  const QRect normal = window->isMaximized() || window->isMinimized() ? window->normalGeometry() : window->geometry();
  s.WriteInt(kAppAnalysis, section, "Top", normal.y());
  s.WriteInt(kAppAnalysis, section, "Left", normal.x());
  s.WriteInt(kAppAnalysis, section, "Height", normal.height());
  s.WriteInt(kAppAnalysis, section, "Width", normal.width());
  s.WriteInt(kAppAnalysis, section, "State", window->isMaximized() ? 2 : 0);
}

void frmMDIForm::RestoreGeometry(const QString& section, QWidget* window) {
  const SettingsStore& s = ws_.Settings;
  const int w = s.ReadInt(kAppAnalysis, section, "Width", 0), h = s.ReadInt(kAppAnalysis, section, "Height", 0);
  if (w > 0 && h > 0) {
    window->move(s.ReadInt(kAppAnalysis, section, "Left", 0), s.ReadInt(kAppAnalysis, section, "Top", 0));
    window->resize(w, h);
  }
  const int state = s.ReadInt(kAppAnalysis, section, "State", 0);
  if (state == 2) window->showMaximized();
  if (state == 1) window->showMinimized();
}

void frmMDIForm::SaveLastState() {
  SaveFolderState(ws_);
  SaveGeometry(QStringLiteral("MDIForm"), this, true);
  SaveGeometry(QStringLiteral("Channels"), tree_window_, tree_window_->isVisible());
  for (int f = 0; f < kFolderCount; ++f) {
    for (PlotWindow kind : kPlotKinds) {
      PlotWindowBase* p = WindowOf(f, kind);
      const QString section = FolderSection(PlotWindowBase::SectionBase(kind), f);
      SaveGeometry(section, p != nullptr ? SubWindowOf(p) : nullptr, p != nullptr);
      // The numeric panel's width beyond its sizing bar.
      if (auto* g = dynamic_cast<GraphWindow*>(p)) ws_.Settings.WriteInt(kAppAnalysis, section, "vDivider", g->Splitter()->sizes().value(1));
    }
  }
  ws_.Settings.WriteInt(kAppAnalysis, QStringLiteral("MDIForm"), "Folder", ws_.CurFolder);
  ws_.Settings.Sync(kAppAnalysis);
}

void frmMDIForm::ReadLastState() {
  RestoreGeometry(QStringLiteral("MDIForm"), this);
  RestoreGeometry(QStringLiteral("Channels"), tree_window_);
  if (!ws_.Settings.ReadBool(kAppAnalysis, QStringLiteral("Channels"), "Active", true)) tree_window_->hide();
  const std::vector<int> folders = ReadFolderState(ws_);
  for (int f : folders) comparison_[static_cast<std::size_t>(f)] = Comparison(ws_, f);
  switching_tabs_ = true;
  while (tabs_->count() > 0) tabs_->removeTab(0);
  for (int f : folders) tabs_->setTabData(tabs_->addTab(ws_.FolderTable[static_cast<std::size_t>(f)].Name.trimmed()), f);
  switching_tabs_ = false;
  for (int f : folders) {
    for (PlotWindow kind : kPlotKinds) {
      const QString section = FolderSection(PlotWindowBase::SectionBase(kind), f);
      if (!ws_.Settings.ReadBool(kAppAnalysis, section, "Active", false)) continue;
      ws_.CurFolder = static_cast<int16_t>(f);
      PlotWindowBase* p = kind == PlotWindow::Distance ? OpenDistanceWindow() : OpenPlotWindow(kind);
      RestoreGeometry(section, SubWindowOf(p));
      const int numeric = ws_.Settings.ReadInt(kAppAnalysis, section, "vDivider", 0);
      auto* g = dynamic_cast<GraphWindow*>(p);
      if (g != nullptr && numeric > 0) g->Splitter()->setSizes({std::max(100, g->width() - numeric), numeric});
    }
  }
  const int current = ws_.Settings.ReadInt(kAppAnalysis, QStringLiteral("MDIForm"), "Folder", 0);
  int index = 0;
  for (int i = 0; i < tabs_->count(); ++i) index = tabs_->tabData(i).toInt() == current ? i : index;
  switching_tabs_ = true;
  tabs_->setCurrentIndex(index);
  switching_tabs_ = false;
  ShowFolder(tabs_->tabData(index).toInt());
}

bool frmMDIForm::eventFilter(QObject* watched, QEvent* e) {
  // Closing the tree unloads the folder's outings, when the person says so; the window comes
  // back from the Window menu.
  if (watched == tree_window_ && e->type() == QEvent::Close && !closing_) {
    if (!tree_.QueryUnload()) {
      e->ignore();
      return true;
    }
    AfterChange();
  }
  return QMainWindow::eventFilter(watched, e);
}

void frmMDIForm::closeEvent(QCloseEvent* e) {
  closing_ = true;
  timer1_.stop();
  SaveLastState();
  ShutDown(ws_);
  e->accept();
}
