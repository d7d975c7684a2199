// The main window's menus and what they open: the commands by name (mnuEditBeacon, ...), the
// dialogs run over the window, the arrangement of its child windows, the guide, and the tree's
// popup menus and support nodes.

#include <QAction>
#include <QDesktopServices>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QUrl>

#include "core/app/Workspace.h"
#include "core/plots/PlotView.h"
#include "core/track/TrackFile.h"
#include "core/workspace/frmGroupLaps.h"
#include "ui/GraphWindow.h"
#include "ui/TrackWindows.h"
#include "ui/TreeWindow.h"
#include "ui/frmMDIForm.h"

namespace {

QString Plain(QString text) { return text.remove(QLatin1Char('&')).remove(QStringLiteral("...")); }

FolderRec& FolderInView(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

QString SelectedTag(const frmChlTree& tree) {
  const int node = tree.SelectedNode();
  return node >= 0 && node < static_cast<int>(tree.Nodes().size()) ? tree.Nodes()[static_cast<std::size_t>(node)].Tag
                                                                   : QString();
}

// The commands of a support node of the tree, the one a double click runs first.
std::vector<const char*> SupportCommands(const QString& tag) {
  if (tag == QLatin1String("MATH")) return {"Math Channels"};
  if (tag == QLatin1String("CNST")) return {"Constants"};
  if (tag == QLatin1String("TRAK")) return {"Load Track", "Track Data", "Edit Splits", "New Map", "Unload Track"};
  return {};
}

}  // namespace

QAction* frmMDIForm::AddAction(QMenu* menu, const char* name, const QString& text, std::function<void()> run,
                               const QKeySequence& key) {
  QAction* a = menu->addAction(text);
  a->setObjectName(QString::fromLatin1(name));
  if (!key.isEmpty()) a->setShortcut(key);
  connect(a, &QAction::triggered, this, [run = std::move(run)] { run(); });
  actions_[Plain(text)] = a;
  return a;
}

void frmMDIForm::BuildMenus() {
  const auto tree = [this](bool (frmChlTree::*command)()) {
    return [this, command] { Run([&] { (tree_.*command)(); }); };
  };
  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  AddAction(file, "mnuAddOuting", QStringLiteral("Add New &Outing(s)..."), tree(&frmChlTree::AddAnotherOuting),
            QKeySequence::Open);
  AddAction(file, "mnuAddGlobalOuting", QStringLiteral("Add Outing(s) to all Folders..."),
            tree(&frmChlTree::AddGlobalOuting));
  AddAction(file, "mnuReplaceOuting", QStringLiteral("&Replace Outing..."), tree(&frmChlTree::ReplaceCurrentOuting));
  AddAction(file, "mnuReplaceAllOutings", QStringLiteral("Replace All Outings..."),
            tree(&frmChlTree::ReplaceAllOutings));
  AddAction(file, "mnuReplaceGlobalOuting", QStringLiteral("Replace Outing in All Folders..."),
            tree(&frmChlTree::ReplaceGlobalOuting));
  AddAction(file, "mnuDeleteOuting", QStringLiteral("&Delete Outing"),
            [this] { Run([&] { tree_.DeleteCurrentOuting(ws_.CurOuting); }); });
  file->addSeparator();
  AddAction(file, "mnuAddFolder", QStringLiteral("Add New &Folder..."), tree(&frmChlTree::AddAnotherFolder));
  AddAction(file, "mnuEditFolder", QStringLiteral("&Edit Folder Name..."), tree(&frmChlTree::mnuEditFolder));
  AddAction(file, "mnuDeleteFolder", QStringLiteral("Delete Folder"), tree(&frmChlTree::DeleteCurrentFolder));
  file->addSeparator();
  AddAction(file, "mnuOptions", QStringLiteral("&Options..."), [this] { RunDialog(&EditOptions); });
  file->addSeparator();
  AddAction(
      file, "mnuExit", QStringLiteral("E&xit"), [this] { close(); }, QKeySequence::Quit);

  QMenu* laps = menuBar()->addMenu(QStringLiteral("&Laps"));
  AddAction(laps, "mnuAddLap", QStringLiteral("Add &Lap(s)..."), tree(&frmChlTree::AddAnotherLap));
  AddAction(laps, "mnuAddNextLap", QStringLiteral("Add &Next Lap"), tree(&frmChlTree::AddNextLap),
            Qt::CTRL | Qt::Key_N);
  AddAction(laps, "mnuAddPreviousLap", QStringLiteral("Add &Previous Lap"), tree(&frmChlTree::AddPreviousLap),
            Qt::CTRL | Qt::Key_P);
  AddAction(laps, "mnuReplaceLap", QStringLiteral("&Replace Lap..."), tree(&frmChlTree::ReplaceCurrentLap));
  AddAction(laps, "mnuReplaceNextLap", QStringLiteral("Replace with Next Lap"), tree(&frmChlTree::ReplaceWithNextLap),
            Qt::CTRL | Qt::SHIFT | Qt::Key_N);
  AddAction(laps, "mnuReplacePreviousLap", QStringLiteral("Replace with Previous Lap"),
            tree(&frmChlTree::ReplaceWithPrevious), Qt::CTRL | Qt::SHIFT | Qt::Key_P);
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
  AddAction(laps, "mnuUndoOutingColor", QStringLiteral("Undo Outing Colour"),
            [this] { Run([&] { tree_.UndoOutingColor(); }); });
  laps->addSeparator();
  AddAction(laps, "mnuEditBeacon", QStringLiteral("Edit &Beacons..."), [this] { RunDialog(&EditBeacons); });
  AddAction(laps, "mnuShiftBeacon", QStringLiteral("&Shift Beacons..."), [this] { RunDialog(&ShiftBeacons); });

  QMenu* channels = menuBar()->addMenu(QStringLiteral("&Channels"));
  AddAction(channels, "mnuAddChannel", QStringLiteral("Add &Channel(s)..."), tree(&frmChlTree::AddAnotherChannel),
            Qt::CTRL | Qt::Key_H);
  AddAction(channels, "mnuAddGlobalChannel", QStringLiteral("Add Channel(s) to all Outings..."),
            tree(&frmChlTree::AddGlobalChannels));
  AddAction(channels, "mnuReplaceChannel", QStringLiteral("&Replace Channel..."),
            tree(&frmChlTree::ReplaceCurrentChannel));
  AddAction(channels, "mnuReplaceGlobalChannel", QStringLiteral("Replace Channel in all Outings..."),
            tree(&frmChlTree::ReplaceGlobalChannel));
  AddAction(channels, "mnuReplaceAllChannels", QStringLiteral("Replace All Channels..."),
            tree(&frmChlTree::ReplaceAllChannels));
  AddAction(channels, "mnuDeleteChannel", QStringLiteral("&Delete Channel"), tree(&frmChlTree::DeleteCurrentChannel));
  AddAction(channels, "mnuDeleteGlobalChannel", QStringLiteral("Delete Channel from all Outings"),
            tree(&frmChlTree::DeleteGlobalChannel));
  channels->addSeparator();
  AddAction(channels, "mnuFilters", QStringLiteral("&Filters..."), [this] { RunDialog(&EditFilters); });
  AddAction(channels, "mnuChannelColor", QStringLiteral("Channel Co&lour..."),
            [this] { RunDialog(&EditChannelColor); });
  AddAction(channels, "mnuEvents", QStringLiteral("&Events..."), [this] { RunDialog(&EditEvents); });
  AddAction(channels, "mnuEditPalette", QStringLiteral("&Palette..."), [this] { RunDialog(&EditPalette); });

  QMenu* math = menuBar()->addMenu(QStringLiteral("&Math"));
  AddAction(
      math, "mnuEditMath", QStringLiteral("&Math Channels..."), [this] { RunDialog(&EditMathChannels); },
      Qt::CTRL | Qt::Key_M);
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
  track->addSeparator();
  AddAction(track, "mnuShowTrack", QStringLiteral("Show &Track"), [this] { OpenPlotWindow(PlotWindow::ViewTrack); });
  AddAction(track, "mnuTrackReport", QStringLiteral("&Graphic Report"), [this] { OpenPlotWindow(PlotWindow::TrackReport); });
  QAction* bands = AddAction(track, "mnuTrackBands", QStringLiteral("Colour by &Bands"), [this] {
    FolderInView(ws_).Options.DoBanding = !FolderInView(ws_).Options.DoBanding;
    AfterChange();
  });
  bands->setCheckable(true);
  AddAction(track, "mnuTrackEditBands", QStringLiteral("Band &Colors..."), [this] { RunDialog(&EditBands); });
  AddAction(track, "mnuCopyTracktoClip", QStringLiteral("Cop&y Track to Clipboard"), [this] { CopyTrackToClipboard(); });

  QMenu* datum = menuBar()->addMenu(QStringLiteral("&Datum"));
  AddAction(datum, "mnuDatumOuting", QStringLiteral("Select Datum &Outing..."), tree(&frmChlTree::SelectDatumOuting));
  AddAction(datum, "mnuDatumLap", QStringLiteral("Select Datum &Lap..."), tree(&frmChlTree::ReplaceDatumLap));
  AddAction(datum, "mnuDeleteDatum", QStringLiteral("&Delete Datum"), [this] { Run([&] { tree_.DeleteDatum(); }); });

  QMenu* plots = menuBar()->addMenu(QStringLiteral("&Plots"));
  AddAction(
      plots, "mnuTimePlot", QStringLiteral("&Time Plot"), [this] { OpenGraphWindow(); }, Qt::Key_F2);
  AddAction(
      plots, "mnuDistancePlot", QStringLiteral("&Distance Plot"), [this] { OpenDistanceWindow(); }, Qt::Key_F3);
  AddAction(
      plots, "mnuXYPlot", QStringLiteral("&XY Plot"), [this] { OpenPlotWindow(PlotWindow::XYPlot); }, Qt::Key_F4);
  AddAction(
      plots, "mnuHistogram", QStringLiteral("&Histogram"), [this] { OpenPlotWindow(PlotWindow::Histo); }, Qt::Key_F5);
  AddAction(
      plots, "mnuFrequencyPlot", QStringLiteral("&Frequency"), [this] { OpenPlotWindow(PlotWindow::Frequency); }, Qt::Key_F6);
  AddAction(plots, "mnuSpectrogram", QStringLiteral("&Spectrogram"), [this] { OpenPlotWindow(PlotWindow::Spectrogram); });
  AddAction(
      plots, "mnuContourPlot", QStringLiteral("&Contour"), [this] { OpenPlotWindow(PlotWindow::Contour); }, Qt::Key_F7);
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
    AddAction(zoom, maximum ? "mnuGotoMinMax(1)" : "mnuGotoMinMax(0)",
              maximum ? QStringLiteral("Go to Ma&ximum") : QStringLiteral("Go to Mi&nimum"), [this, maximum] {
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
  AddAction(
      help, "mnuHelpContents", QStringLiteral("&Contents"), [this] { ShowHelp(); }, QKeySequence::HelpContents);
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
    ws_.messages.Show(QStringLiteral("Warning : No HTML Help file found"), QStringLiteral("Load Help"),
                      MessageIcon::Exclamation);
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
  if (level == kLevelOuting)
    names = {"Outing Colour", "Undo Outing Colour", "Hide Outing", "Hide Laps", "Delete Outing"};
  if (level == kLevelLap) names = {"Add Next Lap", "Add Previous Lap", "Lap Colour", "Undo Lap Colour", "Delete Lap"};
  if (level == kLevelChannel)
    names = {"Add Channel(s) to all Outings", "Delete Channel", "Delete Channel from all Outings"};
  if (level == kLevelRoot) names = {"Edit Folder Name", "Group Laps", "Entire Outing"};
  if (level == kLevelSupport) names = SupportCommands(SelectedTag(tree_));
  for (const char* name : names) menu.addAction(Action(QString::fromLatin1(name)));
  if (!menu.isEmpty()) menu.exec(global);  // "Def : Channel Setup" has no command
}

void frmMDIForm::OpenSupportNode() {
  const std::vector<const char*> commands = SupportCommands(SelectedTag(tree_));
  if (!commands.empty()) Action(QString::fromLatin1(commands.front()))->trigger();
}
