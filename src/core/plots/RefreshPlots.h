#pragma once

// The one routine that redraws the plot windows of the folder in view, in a fixed order.

struct Workspace;

// The plot windows in the order they redraw: an index into FolderRec.Redraw.
enum class PlotWindow {
  Graph, Distance, Frequency, Histo, XYPlot, Contour, TrackReport, Plot3D, ViewTrack, BitIndicator, DataDisplay,
  Spectrogram,  // after the others: it reads the cursor they set
};
inline constexpr int kPlotWindowKinds = 12;

// A time view narrower than 10 ms is widened to 10 ms and nothing is drawn in this call; else,
// when the folder has an outing, each open window of the folder redraws. Windows of other
// folders are not touched.
void RefreshPlots(Workspace& ws);
