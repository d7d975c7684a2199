#pragma once

// Time and distance within a lap, from the lap's distance channel.

struct Workspace;

// Length in ms of the axes: the Datum span of the folder (LapsDisplayed laps from the Datum
// lap), or of lap 0 of the first outing when there is no Datum.
float GetMaxTime(Workspace& ws);
// Length in ms of `LapsDisplayed` laps from `lap` of the outing.
float GetLapDuration(Workspace& ws, int slot, int lap);

// Distance from the lap's start at `ms` after it; 0 without a distance channel.
float TimeToDistance(Workspace& ws, int slot, int lap, float ms);
// The ms from the lap's start at which the lap's distance first passes `distance`: sought over the
// Datum span's length, by twenty strides and then sample by sample, and interpolated between two
// samples. At most the lap's duration (a distance it never reaches), at least 0; 0 without a
// distance channel.
float DistanceToTime(Workspace& ws, int slot, int lap, float distance);
// The same time sought over all the lap's samples, whatever the axes' length: for moving a
// beacon by distance, where the lap may be longer than the Datum span.
float TimeAtDistance(Workspace& ws, int slot, int lap, float distance);
