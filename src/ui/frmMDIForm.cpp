#include "ui/frmMDIForm.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QUrl>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
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
#include "ui/GraphWindow.h"
#include "ui/HistoWindow.h"
#include "ui/TreeWindow.h"
#include "ui/XYWindow.h"

namespace {

QString Plain(QString text) { return text.remove(QLatin1Char('&')).remove(QStringLiteral("...")); }

FolderRec& FolderInView(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

// The plot windows the program has, in the order their buttons stand.
constexpr PlotWindow kPlotKinds[] = {PlotWindow::Graph, PlotWindow::Distance, PlotWindow::XYPlot, PlotWindow::Histo};

QString SelectedTag(const frmChlTree& tree) {
  const int node = tree.SelectedNode();
  return node >= 0 && node < static_cast<int>(tree.Nodes().size()) ? tree.Nodes()[static_cast<std::size_t>(node)].Tag : QString();
}

// The commands of a support node of the tree, the one a double click runs first.
std::vector<const char*> SupportCommands(const QString& tag) {
  if (tag == QLatin1String("MATH")) return {"Math Channels"};
  if (tag == QLatin1String("CNST")) return {"Constants"};
  if (tag == QLatin1String("TRAK")) return {"Load Track", "Track Data", "Edit Splits", "New Map", "Unload Track"};
  return {};
}

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

QAction* frmMDIForm::AddAction(QMenu* menu, const char* name, const QString& text, std::function<void()> run,
                                const QKeySequence& key) {
  QAction* a = menu->addAction(text);
  a->setObjectName(QString::fromLatin1(name));
  if (!key.isEmpty()) a->setShortcut(key);
  connect(a, &QAction::triggered, this, [run = std::move(run)] { run(); });
  actions_[Plain(text)] = a;
  return a;
}

QAction* frmMDIForm::Action(const QString& name) const {
  const auto it = actions_.find(name);
  return it == actions_.end() ? nullptr : it->second;
}

void frmMDIForm::BuildMenus() {
  const auto tree = [this](bool (frmChlTree::*command)()) { return [this, command] { Run([&] { (tree_.*command)(); }); }; };
  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  AddAction(file, "mnuAddOuting", QStringLiteral("Add New &Outing(s)..."), tree(&frmChlTree::AddAnotherOuting), QKeySequence::Open);
  AddAction(file, "mnuAddGlobalOuting", QStringLiteral("Add Outing(s) to all Folders..."), tree(&frmChlTree::AddGlobalOuting));
  AddAction(file, "mnuReplaceOuting", QStringLiteral("&Replace Outing..."), tree(&frmChlTree::ReplaceCurrentOuting));
  AddAction(file, "mnuReplaceAllOutings", QStringLiteral("Replace All Outings..."), tree(&frmChlTree::ReplaceAllOutings));
  AddAction(file, "mnuReplaceGlobalOuting", QStringLiteral("Replace Outing in All Folders..."), tree(&frmChlTree::ReplaceGlobalOuting));
  AddAction(file, "mnuDeleteOuting", QStringLiteral("&Delete Outing"), [this] { Run([&] { tree_.DeleteCurrentOuting(ws_.CurOuting); }); });
  file->addSeparator();
  AddAction(file, "mnuAddFolder", QStringLiteral("Add New &Folder..."), tree(&frmChlTree::AddAnotherFolder));
  AddAction(file, "mnuEditFolder", QStringLiteral("&Edit Folder Name..."), tree(&frmChlTree::mnuEditFolder));
  AddAction(file, "mnuDeleteFolder", QStringLiteral("Delete Folder"), tree(&frmChlTree::DeleteCurrentFolder));
  file->addSeparator();
  AddAction(file, "mnuOptions", QStringLiteral("&Options..."), [this] { RunDialog(&EditOptions); });
  file->addSeparator();
  AddAction(file, "mnuExit", QStringLiteral("E&xit"), [this] { close(); }, QKeySequence::Quit);

  QMenu* laps = menuBar()->addMenu(QStringLiteral("&Laps"));
  AddAction(laps, "mnuAddLap", QStringLiteral("Add &Lap(s)..."), tree(&frmChlTree::AddAnotherLap));
  AddAction(laps, "mnuAddNextLap", QStringLiteral("Add &Next Lap"), tree(&frmChlTree::AddNextLap), Qt::CTRL | Qt::Key_N);
  AddAction(laps, "mnuAddPreviousLap", QStringLiteral("Add &Previous Lap"), tree(&frmChlTree::AddPreviousLap), Qt::CTRL | Qt::Key_P);
  AddAction(laps, "mnuReplaceLap", QStringLiteral("&Replace Lap..."), tree(&frmChlTree::ReplaceCurrentLap));
  AddAction(laps, "mnuReplaceNextLap", QStringLiteral("Replace with Next Lap"), tree(&frmChlTree::ReplaceWithNextLap), Qt::CTRL | Qt::SHIFT | Qt::Key_N);
  AddAction(laps, "mnuReplacePreviousLap", QStringLiteral("Replace with Previous Lap"), tree(&frmChlTree::ReplaceWithPrevious), Qt::CTRL | Qt::SHIFT | Qt::Key_P);
  AddAction(laps, "mnuDeleteLap", QStringLiteral("&Delete Lap"), tree(&frmChlTree::DeleteCurrentLap));
  laps->addSeparator();
  QAction* entire = AddAction(laps, "mnuEntireOuting", QStringLiteral("&Entire Outing"), [this] {
    Run([&] {
      // Between the whole outing and the group of laps last asked for.
      frmGroupLaps form(ws_);
      form.chkEntireOuting = FolderInView(ws_).LapsDisplayed != frmGroupLaps::kEntireOuting;
      form.txtLaps = QString::number(FolderInView(ws_).GroupCount);
      form.cmdOK();
      tree_.LoadTreeData();
      ZoomAll(ws_);
    });
  });
  entire->setCheckable(true);
  AddAction(laps, "mnuGroupLaps", QStringLiteral("&Group Laps..."), tree(&frmChlTree::mnuGroupLaps));
  AddAction(laps, "mnuHideLaps", QStringLiteral("&Hide Laps..."), tree(&frmChlTree::mnuHideLaps));
  AddAction(laps, "mnuHideOuting", QStringLiteral("Hide Outing"), [this] { Run([&] { tree_.ToggleOutingHidden(); }); });
  laps->addSeparator();
  AddAction(laps, "mnuSetLapColor", QStringLiteral("Lap Colour..."), tree(&frmChlTree::ChangeLapColor));
  AddAction(laps, "mnuSetOutingColor", QStringLiteral("Outing Colour..."), tree(&frmChlTree::ChangeOutingColor));
  AddAction(laps, "mnuUndoLapColor", QStringLiteral("Undo Lap Colour"), [this] { Run([&] { tree_.UndoLapColor(); }); });
  AddAction(laps, "mnuUndoOutingColor", QStringLiteral("Undo Outing Colour"), [this] { Run([&] { tree_.UndoOutingColor(); }); });
  laps->addSeparator();
  AddAction(laps, "mnuEditBeacon", QStringLiteral("Edit &Beacons..."), [this] { RunDialog(&EditBeacons); });
  AddAction(laps, "mnuShiftBeacon", QStringLiteral("&Shift Beacons..."), [this] { RunDialog(&ShiftBeacons); });

  QMenu* channels = menuBar()->addMenu(QStringLiteral("&Channels"));
  AddAction(channels, "mnuAddChannel", QStringLiteral("Add &Channel(s)..."), tree(&frmChlTree::AddAnotherChannel), Qt::CTRL | Qt::Key_H);
  AddAction(channels, "mnuAddGlobalChannel", QStringLiteral("Add Channel(s) to all Outings..."), tree(&frmChlTree::AddGlobalChannels));
  AddAction(channels, "mnuReplaceChannel", QStringLiteral("&Replace Channel..."), tree(&frmChlTree::ReplaceCurrentChannel));
  AddAction(channels, "mnuReplaceGlobalChannel", QStringLiteral("Replace Channel in all Outings..."), tree(&frmChlTree::ReplaceGlobalChannel));
  AddAction(channels, "mnuReplaceAllChannels", QStringLiteral("Replace All Channels..."), tree(&frmChlTree::ReplaceAllChannels));
  AddAction(channels, "mnuDeleteChannel", QStringLiteral("&Delete Channel"), tree(&frmChlTree::DeleteCurrentChannel));
  AddAction(channels, "mnuDeleteGlobalChannel", QStringLiteral("Delete Channel from all Outings"), tree(&frmChlTree::DeleteGlobalChannel));
  channels->addSeparator();
  AddAction(channels, "mnuFilters", QStringLiteral("&Filters..."), [this] { RunDialog(&EditFilters); });
  AddAction(channels, "mnuChannelColor", QStringLiteral("Channel Co&lour..."), [this] { RunDialog(&EditChannelColor); });
  AddAction(channels, "mnuEvents", QStringLiteral("&Events..."), [this] { RunDialog(&EditEvents); });
  AddAction(channels, "mnuEditPalette", QStringLiteral("&Palette..."), [this] { RunDialog(&EditPalette); });

  QMenu* math = menuBar()->addMenu(QStringLiteral("&Math"));
  AddAction(math, "mnuEditMath", QStringLiteral("&Math Channels..."), [this] { RunDialog(&EditMathChannels); }, Qt::CTRL | Qt::Key_M);
  AddAction(math, "mnuConstants", QStringLiteral("&Constants..."), [this] { RunDialog(&EditConstants); });

  QMenu* track = menuBar()->addMenu(QStringLiteral("&Track"));
  AddAction(track, "mnuLoadTrack", QStringLiteral("&Load Track..."), [this] { RunDialog(&LoadTrack); });
  AddAction(track, "mnuUnloadTrack", QStringLiteral("&Unload Track"), [this] {
    UnloadTrack(ws_);
    AfterChange();
  });
  AddAction(track, "mnuNewMap", QStringLiteral("&New Map..."), [this] { RunDialog(&NewTrackMap); });
  AddAction(track, "mnuTrackData", QStringLiteral("Track &Data..."), [this] { RunDialog(&EditTrackData); });
  track->addSeparator();
  AddAction(track, "mnuEditSplits", QStringLiteral("Edit &Splits..."), [this] { RunDialog(&EditSplits); });
  AddAction(track, "mnuUserSplits", QStringLiteral("&User Distances..."), [this] { RunDialog(&EditUserSplits); });

  QMenu* datum = menuBar()->addMenu(QStringLiteral("&Datum"));
  AddAction(datum, "mnuDatumOuting", QStringLiteral("Select Datum &Outing..."), tree(&frmChlTree::SelectDatumOuting));
  AddAction(datum, "mnuDatumLap", QStringLiteral("Select Datum &Lap..."), tree(&frmChlTree::ReplaceDatumLap));
  AddAction(datum, "mnuDeleteDatum", QStringLiteral("&Delete Datum"), [this] { Run([&] { tree_.DeleteDatum(); }); });

  QMenu* plots = menuBar()->addMenu(QStringLiteral("&Plots"));
  AddAction(plots, "mnuTimePlot", QStringLiteral("&Time Plot"), [this] { OpenGraphWindow(); }, Qt::Key_F2);
  AddAction(plots, "mnuDistancePlot", QStringLiteral("&Distance Plot"), [this] { OpenDistanceWindow(); }, Qt::Key_F3);
  AddAction(plots, "mnuXYPlot", QStringLiteral("&XY Plot"), [this] { OpenPlotWindow(PlotWindow::XYPlot); }, Qt::Key_F4);
  AddAction(plots, "mnuHistogram", QStringLiteral("&Histogram"), [this] { OpenPlotWindow(PlotWindow::Histo); }, Qt::Key_F5);
  plots->addSeparator();
  QAction* tile = AddAction(plots, "mnuTileGraphs", QStringLiteral("Tile &Graphs"), [this] {
    FolderInView(ws_).Options.TileGraphs = !FolderInView(ws_).Options.TileGraphs;
    AfterChange();
  });
  tile->setCheckable(true);
  QAction* events = AddAction(plots, "mnuEventMarkers", QStringLiteral("&Event Markers"), [this] {
    ws_.Options.EventMarkers = !ws_.Options.EventMarkers;
    AfterChange();
  });
  events->setCheckable(true);
  QAction* measure = AddAction(plots, "mnuMeasureCursor", QStringLiteral("&Measure Cursor"), [this] {
    ws_.Plots.MeasureCursor = !ws_.Plots.MeasureCursor;
    AfterChange();
  });
  measure->setCheckable(true);

  QMenu* zoom = menuBar()->addMenu(QStringLiteral("&Zoom"));
  const auto view = [this](void (*command)(Workspace&)) { return [this, command] { command(ws_); }; };
  AddAction(zoom, "mnuZoomGraph(0)", QStringLiteral("Zoom &In"), view(&ZoomIn), QKeySequence::ZoomIn);
  AddAction(zoom, "mnuZoomGraph(1)", QStringLiteral("Zoom &Out"), view(&ZoomOut), QKeySequence::ZoomOut);
  AddAction(zoom, "mnuZoomGraph(2)", QStringLiteral("Zoom &All"), view(&ZoomAll), Qt::CTRL | Qt::Key_A);
  AddAction(zoom, "mnuZoomGraph(3)", QStringLiteral("Zoom to &Cursor"), view(&ZoomCursor));
  // Not on the arrows: with Ctrl they step the cursor by ten samples.
  AddAction(zoom, "mnuScrollGraph(0)", QStringLiteral("Scroll &Left"), view(&ScrollLeft), Qt::ALT | Qt::Key_PageUp);
  AddAction(zoom, "mnuScrollGraph(1)", QStringLiteral("Scroll &Right"), view(&ScrollRight), Qt::ALT | Qt::Key_PageDown);
  AddAction(zoom, "mnuGoto(0)", QStringLiteral("Go to &Start"), view(&GotoStart));
  AddAction(zoom, "mnuGoto(1)", QStringLiteral("Go to &End"), view(&GotoEnd));
  for (const bool maximum : {false, true}) {
    AddAction(zoom, maximum ? "mnuGotoMinMax(1)" : "mnuGotoMinMax(0)", maximum ? QStringLiteral("Go to Ma&ximum") : QStringLiteral("Go to Mi&nimum"), [this, maximum] {
      if (GraphWindow* g = ActiveLinePlot()) g->Event([&] { g->Graph().ManualMinMaxMove(maximum); });
    });
  }
  zoom->addSeparator();
  AddAction(zoom, "mnuUndoLast", QStringLiteral("&Undo Zoom"), view(&UndoZoom), QKeySequence::Undo);

  QMenu* window = menuBar()->addMenu(QStringLiteral("&Window"));
  AddAction(window, "mnuTileHorizontal", QStringLiteral("Tile &Horizontally"), [this] { TileWindows(false); });
  AddAction(window, "mnuTileVertical", QStringLiteral("Tile &Vertically"), [this] { TileWindows(true); });
  AddAction(window, "mnuCascade", QStringLiteral("&Cascade"), [this] { mdi_->cascadeSubWindows(); });
  AddAction(window, "mnuChannelTree", QStringLiteral("Channel &Tree"), [this] {
    tree_window_->show();
    mdi_->setActiveSubWindow(tree_window_);
  });

  QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
  AddAction(help, "mnuHelpContents", QStringLiteral("&Contents"), [this] { ShowHelp(); }, QKeySequence::HelpContents);
}

void frmMDIForm::RunDialog(void (*open)(DialogHost&)) {
  busy_ = true;
  open(dialogs_);
  busy_ = false;
  LoadFolderTrack(ws_);  // a map chosen, unloaded or newly saved
  AfterChange();
}

bool frmMDIForm::ShowHelp() {
  if (ws_.HelpFilePath.isEmpty()) {
    ws_.messages.Show(QStringLiteral("Warning : No HTML Help file found"), QStringLiteral("Load Help"), MessageIcon::Exclamation);
    return false;
  }
  return QDesktopServices::openUrl(QUrl::fromLocalFile(ws_.HelpFilePath));
}

void frmMDIForm::TileWindows(bool vertical) {
  std::vector<QMdiSubWindow*> shown;
  for (QMdiSubWindow* w : mdi_->subWindowList()) {
    if (w->isVisible() && !w->isMinimized()) shown.push_back(w);
  }
  if (shown.empty()) return;
  const QRect area = mdi_->viewport()->rect();
  const int n = static_cast<int>(shown.size());
  for (int i = 0; i < n; ++i) {
    shown[static_cast<std::size_t>(i)]->showNormal();
    if (vertical) {
      shown[static_cast<std::size_t>(i)]->setGeometry(area.width() * i / n, 0, area.width() / n, area.height());
    } else {
      shown[static_cast<std::size_t>(i)]->setGeometry(0, area.height() * i / n, area.width(), area.height() / n);
    }
  }
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
        {0, PlotWindow::Graph}, {1, PlotWindow::Distance}, {3, PlotWindow::XYPlot}, {4, PlotWindow::Histo}};
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
  if (kind == PlotWindow::XYPlot) return new XYWindow(dialogs_, ws_.CurFolder);
  if (kind == PlotWindow::Histo) return new HistoWindow(dialogs_, ws_.CurFolder);
  auto* g = new GraphWindow(ws_, ws_.CurFolder, kind);
  g->ChannelDropped = [this](int slot, int channel) { DropChannel(slot, channel); };
  g->ContextMenu = [this](QPoint at, bool over_axis) { PlotMenu(at, over_axis); };
  return g;
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
  w->move(tree_window_->width() + 10 + 30 * open, 30 * open);
  w->resize(std::max(600, mdi_->width() - tree_window_->width() - 12 - 30 * open), std::max(400, mdi_->height() - 4 - 30 * open));
  w->show();
  AfterChange();  // its redraw draws the new window too
  p->setFocus();
  return p;
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
      if (lap.Shown != 0 && c < static_cast<int>(lap.LapChannels.size())) lap.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
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

void frmMDIForm::TreeMenu(QPoint global) {
  QMenu menu;
  // The add-or-replace entries act on what the clicked node is, as the tree's dispatchers say.
  const int16_t level = tree_.Level();
  if (level != kLevelSupport) {
    menu.addAction(QStringLiteral("Add/Replace Outing..."), [this] { Run([&] { tree_.AddReplaceOuting(); }); });
    menu.addAction(QStringLiteral("Add/Replace Lap..."), [this] { Run([&] { tree_.AddReplaceLap(); }); });
    menu.addAction(QStringLiteral("Add/Replace Channel..."), [this] { Run([&] { tree_.AddReplaceChannel(); }); });
    menu.addSeparator();
  }
  std::vector<const char*> names;
  if (level == kLevelDatum) names = {"Select Datum Outing", "Select Datum Lap", "Delete Datum"};
  if (level == kLevelOuting) names = {"Outing Colour", "Undo Outing Colour", "Hide Outing", "Hide Laps", "Delete Outing"};
  if (level == kLevelLap) names = {"Add Next Lap", "Add Previous Lap", "Lap Colour", "Undo Lap Colour", "Delete Lap"};
  if (level == kLevelChannel) names = {"Add Channel(s) to all Outings", "Delete Channel", "Delete Channel from all Outings"};
  if (level == kLevelRoot) names = {"Edit Folder Name", "Group Laps", "Entire Outing"};
  if (level == kLevelSupport) names = SupportCommands(SelectedTag(tree_));
  for (const char* name : names) menu.addAction(Action(QString::fromLatin1(name)));
  if (!menu.isEmpty()) menu.exec(global);  // "Def : Channel Setup" has no command
}

void frmMDIForm::OpenSupportNode() {
  const std::vector<const char*> commands = SupportCommands(SelectedTag(tree_));
  if (!commands.empty()) Action(QString::fromLatin1(commands.front()))->trigger();
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
