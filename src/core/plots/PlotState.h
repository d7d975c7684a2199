#pragma once

// What the plot windows share across folders: which axis the view commands act on, the band
// count of a tiled folder and the measure mode of the status line. The per-folder view (time
// and distance windows, cursor, zoom history) is in FolderRec.

#include <cstdint>

struct PlotState {
  int16_t ActivePlotType = 0;  // 0 time plot, 1 distance plot: the window last clicked
  int16_t TileCount = 0;       // bands of a tiled folder, from GetTileCount
  bool MeasureCursor = false;  // status line shows dX/dY against the measure mark; not saved
  bool LapSpeedDisplay = false;  // lap times shown as the lap's mean speed when a track is loaded
};
