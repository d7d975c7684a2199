#include "ui/PlotWindowBase.h"

#include "core/app/Workspace.h"

PlotWindowBase::PlotWindowBase(Workspace& ws, int folder, PlotWindow kind, QWidget* parent)
    : QWidget(parent), ws_(ws), folder_(folder), kind_(kind) {
  ws_.FolderTable[static_cast<std::size_t>(folder_)].Redraw[static_cast<std::size_t>(kind_)] = [this] { Redraw(); };
}

PlotWindowBase::~PlotWindowBase() {
  ws_.FolderTable[static_cast<std::size_t>(folder_)].Redraw[static_cast<std::size_t>(kind_)] = nullptr;
}

const char* PlotWindowBase::SectionBase(PlotWindow kind) {
  switch (kind) {
    case PlotWindow::Graph: return "Graph";
    case PlotWindow::Distance: return "Distance";
    case PlotWindow::Frequency: return "Frequency";
    case PlotWindow::Histo: return "Histo";
    case PlotWindow::XYPlot: return "XYPlot";
    case PlotWindow::Contour: return "Contour";
    case PlotWindow::TrackReport: return "TrackReport";
    case PlotWindow::Plot3D: return "Plot3D";
    case PlotWindow::ViewTrack: return "TrackMap";
    case PlotWindow::BitIndicator: return "Indicator";
    case PlotWindow::DataDisplay: return "DataDisplay";
    case PlotWindow::Spectrogram: return "Spectrogram";
  }
  return "";
}

const char* PlotWindowBase::ClassName(PlotWindow kind) {
  switch (kind) {
    case PlotWindow::Graph: return "frmGraph";
    case PlotWindow::Distance: return "frmDistance";
    case PlotWindow::Frequency: return "frmFrequency";
    case PlotWindow::Histo: return "frmHisto";
    case PlotWindow::XYPlot: return "frmXYPlot";
    case PlotWindow::Contour: return "frmContour";
    case PlotWindow::TrackReport: return "frmTrackReport";
    case PlotWindow::Plot3D: return "frmPlot3D";
    case PlotWindow::ViewTrack: return "frmViewTrack";
    case PlotWindow::BitIndicator: return "frmBitIndicator";
    case PlotWindow::DataDisplay: return "frmDataDisplay";
    case PlotWindow::Spectrogram: return "frmSpectrogram";
  }
  return "";
}
