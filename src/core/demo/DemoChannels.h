#pragma once

// The channels a demo outing logs: for each, its key, rate, word size, calibration and the
// simulated signal it records. The raw words are made by inverting the calibration, so a reader
// that applies the calibration gets the simulated value back within the word's quantisation.

#include <QString>
#include <functional>
#include <vector>

#include "core/demo/LapSimulator.h"
#include "core/outing/OutingHeader.h"

// How a logged engineering value becomes a raw word.
enum class DemoScaling {
  Analog,       // through InputCalibrations[key]
  Tenths,       // stored x 10
  Hundredths,   // stored x 100
  Raw,          // stored as it is
  GainOffset,   // (value - offset) / gain: ECU and linear channels
  UnsignedGain  // as GainOffset, in an unsigned 16-bit word (the fuel channel)
};

struct DemoChannel {
  uint16_t Key = 0;
  const char* InputName = "";  // the header's name of an analogue input (keys 0..63)
  uint8_t RateCode = 0;
  uint8_t WordSize = 2;
  DemoScaling Scaling = DemoScaling::Raw;
  float Gain = 1;    // GainOffset channels
  float Offset = 0;
  std::function<double(const SimulatedOuting&, int ms)> Signal;
};

// The channel list of a demo outing, in storage order.
const std::vector<DemoChannel>& DemoChannelList();

// The calibrations, expansion map and pulse flags that go with DemoChannelList().
void SetDemoCalibrations(OutingHeader& header);

// The raw word that reads back as `value` under the header's calibration of the channel.
double RawFromEngineering(const OutingHeader& header, const DemoChannel& channel, double value);
