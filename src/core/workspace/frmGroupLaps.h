#pragma once

// How many laps form one comparison unit in the folder in view, or the whole outing.

#include <QString>
#include <cstdint>

struct Workspace;

class frmGroupLaps {
 public:
  static constexpr int16_t kEntireOuting = 255;  // LapsDisplayed of a folder that compares whole outings

  // Starts with the folder's GroupCount and whether it compares whole outings.
  explicit frmGroupLaps(Workspace& ws);

  QString txtLaps;              // the number typed
  bool chkEntireOuting = false;  // "&Entire Outing"

  // The typed number as GroupCount keeps it: 1..255, anything unreadable as 1.
  static int16_t ClampGroupCount(const QString& typed);

  // Stores GroupCount and LapsDisplayed. Comparing whole outings (the box, or 255 typed) leaves
  // one unit per outing, starting at lap 0 with the channels its current lap had. The tree
  // command that opened the form rebuilds and redraws.
  void cmdOK();

 private:
  Workspace& ws_;
};
