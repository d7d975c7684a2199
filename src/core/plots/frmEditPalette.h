#pragma once

// frmEditPalette: the 20 colours that channels, laps and outings are drawn in. OK makes them the
// palette in force and saves them in "UserOptions\Palette".

#include <QString>
#include <array>

#include "core/app/Workspace.h"

class frmEditPalette {
 public:
  explicit frmEditPalette(const Workspace& ws) : Colors(ws.Palette) {}

  std::array<int, kPaletteSize> Colors;  // BGR

  // The colour's name, or empty.
  QString Name(int index) const;
  // A BGR colour for entry `index`; false for an index or a colour out of range.
  bool SetColor(int index, int color);
  // Back to the colours the program comes with.
  void cmdDefault();
  void cmdOK(Workspace& ws) const;
};
