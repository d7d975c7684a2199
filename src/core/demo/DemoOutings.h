#pragma once

// The outings of the demo installation: which circuit, how many laps, which recording mode, and
// the writer that turns a simulated outing into an outing file.

#include <QDateTime>
#include <QString>
#include <vector>

#include "core/demo/LapSimulator.h"
#include "core/outing/OutingHeader.h"

enum class DemoMode {
  Plain,      // a logger file as downloaded
  Cyclic,     // the logger ran in cyclic memory mode
  Converted,  // engineering values in f32 (serial 9999), as the conversion writes them
};

struct DemoOutingSpec {
  QString FileName;  // in the data directory
  QString Circuit;   // a centreline in the data's tracks folder
  int FlyingLaps = 8;
  uint32_t Seed = 1;
  DemoMode Mode = DemoMode::Plain;
  QString SystemName = QStringLiteral("ORLAN LOGGER");  // "ECU" in it: 8 KB pages
  uint16_t SystemFlags = 0;                              // non-zero: rate code 2 is 250 Hz
  bool WithConstants = false;
  QString Driver;
  QString Chassis;
  QString Comment;
  uint16_t Session = 1;
  uint16_t Run = 1;
  QDateTime Start;  // local wall clock of the logger
};

std::vector<DemoOutingSpec> DemoOutingSpecs();

// The outing's constants block, when it has one: values that differ from the global ones.
std::vector<std::pair<QString, float>> DemoOutingConstants();

// The header of a demo outing: identity, time stamp, beacons and calibrations. The channel
// table is laid out by the file writer.
OutingHeader DemoHeader(const DemoOutingSpec& spec, const SimulatedOuting& sim);

// Writes the outing file for `spec` from its simulation.
bool WriteDemoOuting(const DemoOutingSpec& spec, const SimulatedOuting& sim, const QString& path, QString* error);
