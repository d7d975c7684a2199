#pragma once

// frmChlColor: the palette as 20 swatches, each with its colour's name, and the pick of one.
// For the trace of a channel in a lap, OK gives the trace that colour; with chkDefault ("Set as
// channel default") the channel takes it as well, in CHANNEL.DSC and in every loaded outing.
// Without a channel the dialog only picks: a lap's or an outing's colour.

#include <QString>

struct Workspace;

class frmChlColor {
 public:
  static const QString kDefaultCaption;  // chkDefault

  // A pick alone.
  explicit frmChlColor(Workspace& ws);
  // The trace of `channel` in lap `lap` of outing `slot` in the folder in view; the trace's
  // colour is the one picked at first.
  frmChlColor(Workspace& ws, int slot, int lap, int channel);

  bool HasChannel() const { return channel_ >= 0; }
  QString Title() const;
  // The palette entry's colour (BGR) and its name, or "Colour" and its number without a name.
  int SwatchColor(int index) const;
  QString SwatchName(int index) const;

  // Palette index picked; -1: none yet.
  int Selected = -1;
  bool chkDefault = false;

  // Stores the pick. False with nothing changed when nothing is picked or CHANNEL.DSC can't be
  // written.
  bool cmdOK();

 private:
  Workspace& ws_;
  int slot_ = -1, lap_ = -1, channel_ = -1;
};
