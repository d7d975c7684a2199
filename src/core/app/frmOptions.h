#pragma once

// frmOptions: the options of section "UserOptions" that an engineer sets for the plots, the
// cursor, the colours and the opening of outings. OK puts them in force and writes them to the
// settings store; the caller redraws.

#include <QString>
#include <QStringList>
#include <vector>

#include "core/app/Options.h"

struct Workspace;

class frmOptions {
 public:
  // A check box: its control name, caption, group, and the option it shows; `inverted` shows
  // the option's negation ("Mask Lap Beacons" is ProcessBeacon off); `Tip` says when it acts.
  struct Check {
    const char* Name;
    const char* Caption;
    const char* Group;
    bool AnalysisOptions::*Field;
    bool Inverted = false;
    const char* Tip = nullptr;
  };
  static const std::vector<Check> kChecks;  // in the order they are shown
  static const QStringList kThemes;         // cboColorTheme, in ColorTheme order
  static const QString kTitle;
  static constexpr int kCustomTheme = 2;

  explicit frmOptions(const Workspace& ws);

  AnalysisOptions Values;  // as the dialog shows them
  QString txtZoomPercent;
  QString txtScrollPercent;

  bool Checked(const Check& check) const { return (Values.*check.Field) != check.Inverted; }
  void SetChecked(const Check& check, bool on) { Values.*check.Field = on != check.Inverted; }

  // False after its message for a zoom percent outside 1..99 or a scroll percent outside
  // 1..100, and for custom colours that are the same for background and foreground.
  bool cmdOK(Workspace& ws);
};
