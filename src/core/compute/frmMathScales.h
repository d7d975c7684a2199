#pragma once

// The logic of the window that sets how a math channel is shown: its units, its fixed scale (or
// a scale found from the lap), its decimals and its colour. The settings go to the channel's
// record in CHANNEL.DSC, so every outing, loaded now or later, shows the channel the same way.

#include <QString>

#include "core/workspace/OutingModel.h"

struct Workspace;

class frmMathScales {
 public:
  static const QString kTitle;  // "Math Scales"
  static constexpr int kMaxDecimals = 6;

  // The math channel called `name` as a loaded outing holds it, the selected outing of the
  // folder in view first. A definition that no loaded outing holds yet (new, renamed, or no
  // outing loaded) has no record to show: false, with the message.
  bool Form_Load(Workspace& ws, const QString& name);

  QString Caption() const;  // "Math Scales - " and the channel's name

  // Checks the boxes: two numbers, the maximum above the minimum. Then writes CHANNEL.DSC and
  // gives every loaded outing's channel of the same record the new settings. False, with the
  // message, when a box is wrong or the file cannot be written; nothing changes then.
  bool cmdOK(Workspace& ws);

  QString txtUnits;
  QString txtMin;
  QString txtMax;
  bool chkAutoScale = false;
  int cboDecimals = 1;
  int Color = 0;  // index into the palette

 private:
  ChannelRec channel_;
};
