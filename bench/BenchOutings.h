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
