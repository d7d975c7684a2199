#pragma once

// The windows that draw the map: the track with the cursor's mark, the contour of a channel, and
// the graphic report with its bands and labels.

#include "core/plots/RecordingSurface.h"
#include "core/track/frmContour.h"
#include "core/track/frmTrackReport.h"
#include "core/track/frmViewTrack.h"
#include "ui/Dialogs.h"
#include "ui/PlotWindowBase.h"

class PlotCanvas;
class QLabel;

// A map window: a canvas whose picture is copied to the clipboard by mnuCopyTracktoClip.
class MapWindowBase : public PlotWindowBase {
 public:
  MapWindowBase(Workspace& ws, int folder, PlotWindow kind, QWidget* parent);
  PlotCanvas* Canvas() { return canvas_; }
  void CopyToClipboard() const;

 protected:
  PlotCanvas* canvas_;
  RecordingSurface idle_{1, 1};
};

class TrackViewWindow : public MapWindowBase {
 public:
  TrackViewWindow(Workspace& ws, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  void FollowCursor() override;
  frmViewTrack& Plot() { return plot_; }

 private:
  frmViewTrack plot_;
};

class ContourWindow : public MapWindowBase {
 public:
  ContourWindow(Workspace& ws, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  void FollowCursor() override;
  frmContour& Plot() { return plot_; }

 private:
  frmContour plot_;
};

class TrackReportWindow : public MapWindowBase {
 public:
  TrackReportWindow(DialogHost& host, int folder, QWidget* parent = nullptr);
  void Redraw() override;
  frmTrackReport& Plot() { return plot_; }

 private:
  void LabelMenu(QPoint global, QPointF at);

  DialogHost& host_;
  frmTrackReport plot_;
};

// frmEditBands ("Band Colors") over the folder in view.
void EditBands(DialogHost& host);
