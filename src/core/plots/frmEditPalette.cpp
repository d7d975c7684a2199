#include "core/plots/frmEditPalette.h"

#include "core/app/Startup.h"
#include "core/plots/PlotFormats.h"

namespace {
constexpr int kWhite = 0xFFFFFF;
}

QString frmEditPalette::Name(int index) const { return ColorName(Colors.at(static_cast<std::size_t>(index))); }

bool frmEditPalette::SetColor(int index, int color) {
  if (index < 0 || index >= kPaletteSize || color < 0 || color > kWhite) return false;
  Colors[static_cast<std::size_t>(index)] = color;
  return true;
}

void frmEditPalette::cmdDefault() { std::copy(kDefaultPalette.begin(), kDefaultPalette.end(), Colors.begin()); }

void frmEditPalette::cmdOK(Workspace& ws) const {
  ws.Palette = Colors;
  SavePalette(ws);
  ws.Settings.Sync(kAppAnalysis);
}
