#pragma once

// The choice of the outing that holds the Datum lap ("Datum Outing"): one row per loaded outing
// of the folder in view, with its fast lap. Confirming takes the outing's fast lap as the Datum.

#include <QString>
#include <QStringList>
#include <vector>

struct Workspace;

class frmDatumFile {
 public:
  static const QString kTitle;        // "Datum Outing"
  static const QStringList kColumns;  // "Outing", "Driver", "Fast", "Lap Time"

  struct Row {
    int Outing = 0;  // slot of the folder: what a choice returns
    QString File, Driver, Fast, LapTime;
  };

  explicit frmDatumFile(Workspace& ws);
  const std::vector<Row>& Rows() const { return rows_; }
  // Makes the fast lap of `outing` the folder's Datum; false for a slot that holds no outing.
  bool cmdOK(int outing);

 private:
  Workspace& ws_;
  std::vector<Row> rows_;
};
