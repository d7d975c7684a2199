#pragma once

// A time graph over one outing for tests: a ramp channel at 1 kHz (0, 1, 2, ... per sample),
// lap 0 of 10 s shown with it, drawn on a recording surface.

#include "../TestOutings.h"
#include "core/plots/RecordingSurface.h"
#include "core/plots/frmGraph.h"

namespace test_outings {

struct GraphFixture {
  BareWorkspace b;
  RecordingSurface surface{15000, 7050};  // data area 750..14250 x 400..6400
  frmGraph graph{b.ws, surface};

  explicit GraphFixture(int samples = 10000) {
    OutingRec& o = b.Outing();
    o.Loaded = -1;
    o.Channels.resize(2);
    o.LastChannel = 1;
    ChannelRec& c = o.Channels[0];
    c.Name = c.ShortName = QStringLiteral("RAMP");
    c.Units = QStringLiteral("m");
    c.Rate = 1.0f;
    c.AutoScale = 0;
    c.ScreenMin = 0;
    c.ScreenMax = 10000;
    c.Decimals = 1;
    o.Laps.resize(2);
    o.Laps[1].StartTime = 10000;
    o.LastLap = 1;
    for (LapRec& lap : o.Laps) lap.LapChannels.resize(2);
    o.Laps[0].Shown = -1;
    LapChannelRec& cache = o.Laps[0].LapChannels[0];
    cache.Shown = -1;
    cache.Loaded = -1;
    for (int i = 0; i <= samples; ++i) cache.Samples.push_back(static_cast<float>(i));
    FolderRec& f = b.ws.FolderTable[0];
    f.TimeStart = 0;
    f.TimeEnd = 10000;
    f.ActiveChannel = 0;
    b.ws.Palette[0] = 255;
  }
  FolderRec& folder() { return b.ws.FolderTable[0]; }
};

}  // namespace test_outings
