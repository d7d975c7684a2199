#pragma once

// The logic of the "Digital Filters" window: the lists and boxes, which of them the filter type
// uses, the limits of the cut-off boxes, and OK, which sets the filter of the channel of the
// same name in every outing of the folder.

#include <QString>
#include <QStringList>

struct Workspace;

class frmFilters {
 public:
  static const QStringList kTypes;    // cboType, in FilterKind order
  static const QStringList kWindows;  // cboWindow, in FilterWindow order
  static const QStringList kKernels;  // cboKernel
  static const QStringList kPoints;   // cboPoints

  // Shows the stored settings of the channel selected in the folder in view.
  void Form_Load(Workspace& ws);

  struct Enabled {
    bool cboPoints = false, cboWindow = false, cboKernel = false, txtLow = false, txtHigh = false;
  };
  // What the type in cboType uses.
  Enabled ValidateFilter() const;

  // Leaving a cut-off box: a value that rounds below 0.1 becomes "0.1", above 500 "500".
  void txtLow_LostFocus();
  void txtHigh_LostFocus();

  // Writes the settings to the channel of the same name in every outing of the folder and
  // forgets their cached samples. Refuses, with a message, what the filter cannot run: a
  // smoothing width of 0 and a cut-off above 327.67 Hz (it does not fit the setting).
  bool cmdOK(Workspace& ws);

  int cboType = 0;
  int cboWindow = 0;
  QString cboKernel = QStringLiteral("10");
  QString cboPoints = QStringLiteral("1");
  QString txtLow;
  QString txtHigh;
};
