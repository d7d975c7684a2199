#pragma once

// The list of the current outing's laps in which a person marks the laps to leave out of the
// plots. The laps stay in the tree; only their traces go.

#include <QString>
#include <vector>

struct Workspace;

class frmLapHide {
 public:
  struct Row {
    int Lap = 0;
    QString Text;           // "012 - (01:39.871)"
    bool Selected = false;  // selected = hidden
  };

  // Lists the laps of `outing` of the folder in view; a hidden lap starts selected.
  frmLapHide(Workspace& ws, int outing);
  int Outing() const { return outing_; }
  std::vector<Row>& Rows() { return rows_; }
  // Selected rows hide their laps, the others show theirs again; then every window redraws.
  void cmdOK();

 private:
  Workspace& ws_;
  int outing_;
  std::vector<Row> rows_;
};
