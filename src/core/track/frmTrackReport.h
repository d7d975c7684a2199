#pragma once

// The graphic report of a lap: the map coloured by the bands of a channel (or in the map's own
// colours with banding off), each segment's start marked, and a label per segment with its
// number, kind, speed and time. Labels can be hidden one by one and stand beside their segment
// or in a column at the right.

#include <QString>
#include <vector>

class Surface;
struct Workspace;

struct SegmentLabel {
  int Segment = 0;     // 0-based
  int Point = 0;       // the map point where it starts
  QString Text;        // "001 : Corner - Speed : 87 - Time : 4.512"
  bool Hidden = false;
  double X = 0, Y = 0;  // where it was printed (top left), twips
};

class frmTrackReport {
 public:
  frmTrackReport(Workspace& ws, Surface& surface) : ws_(ws), s_(&surface) {}
  void SetSurface(Surface& surface) { s_ = &surface; }

  void DrawTrackReport();
  // The map point of each segment's start, each marked with a small square.
  std::vector<int> MarkSegments();
  void DrawDataLabels();

  // mnuTRHide: the label printed nearest (x, y) is hidden; false when none is near.
  bool HideLabelAt(double x, double y);
  // mnuTRHiddenLabels: every hidden label shows again.
  void ShowHiddenLabels();
  // mnuTRLabelPos: labels in a column at the right, the segment's number at the map (the
  // labels of a map's short segments would overlap beside it), or beside their segments.
  bool LabelsInColumn = true;

  QString Caption;  // "Graphic Report (SYSTEM SPEED) : SILV0101 - Silverstone : Lap (003) (01:39.871)"
  std::vector<SegmentLabel> Labels;

 private:
  void MakeLabels(int slot, int lap, const std::vector<float>& times);

  Workspace& ws_;
  Surface* s_;
  bool warned_ = false;
};
