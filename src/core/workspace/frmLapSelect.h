#pragma once

// The lap list a person picks laps from ("Lap Select"): one row per lap of an outing, with its
// mean speed, its time, whether it is the out, in or fast lap, and its own colour.

#include <QString>
#include <QStringList>
#include <vector>

struct Workspace;

class frmLapSelect {
 public:
  static const QString kTitle;        // "Lap Select"
  static const QStringList kColumns;  // "Lap", "Speed", "Time", "Info", "Color"

  struct Row {
    int Lap = 0;  // index into the outing's Laps: what a choice returns
    QString Number, Speed, Time, Info, Color;
  };

  // Lists laps 0..LastLap-1 of `outing` of the folder in view.
  frmLapSelect(Workspace& ws, int outing);

  int Outing() const { return outing_; }
  const std::vector<Row>& Rows() const { return rows_; }
  // Gives the lap of row `row` its own palette colour (-1: none, it takes the outing's colour).
  void cmdColor(int row, int color);

 private:
  Row MakeRow(int lap) const;

  Workspace& ws_;
  int outing_;
  std::vector<Row> rows_;
};
