#pragma once

// frmChlXYAxis ("Select Channel"): the channels of an outing with data, in the order of their
// names, for the axis of a plot. The folder's XY channel is the one chosen at first.

#include <QString>
#include <vector>

struct Workspace;

class frmChlXYAxis {
 public:
  static const QString kTitle;

  struct Row {
    QString Name;
    QString Units;
    int Channel;  // index in the outing
  };

  // Outing `outing` of the folder in view; no rows when the slot holds none.
  frmChlXYAxis(const Workspace& ws, int outing);

  std::vector<Row> Rows;
  int Selected = -1;  // row; -1: none

  // The row of the channel whose name matches `name` as channels match by name; -1 when none.
  int Find(const QString& name) const;
  // The chosen channel's index in the outing; -1 when none is chosen.
  int cmdOK() const;
};
