#pragma once

// Outing files for the benchmarks, written once into a temporary home.

#include <QString>
#include <memory>

#include "core/app/Messages.h"
#include "core/app/Workspace.h"

struct BenchHome {
  QString home;
  QString outing;  // the largest demo outing (Silverstone, 10 timed laps)
  RecordingMessages messages;
  std::unique_ptr<Workspace> ws;  // started on the home, nothing loaded
};

// Makes the demo installation in a temporary folder (once per process) and a started workspace.
BenchHome& TheBenchHome();

// WIDE.DAT in the home's data folder: 128 channels (64 analogue inputs named in the header, 64
// keyed), 40 beacons, 20 minutes at 100 Hz: 30 MB.
QString WideBenchOuting();

// The graph the plot benchmarks draw: the demo outing in slot 0 of folder 1, laps 2..5 shown
// with eight channels (speed, throttle, brake pressure, RPM, lateral and long G, steering, gear),
// each trace in a colour of its own, the view over a whole lap, the cursor at 30 s.
void ShowBenchGraph(Workspace& ws);
