#pragma once

// Raw logger words to engineering values. The case is chosen once per array by the channel's
// key (and calibration type); each case is one plain loop over the samples, in double
// arithmetic rounded to float once per sample.

#include <cstdint>
#include <vector>

#include "core/outing/OutingFormat.h"

struct Workspace;

// Raw samples as read from the file: `count` samples of `type`, little-endian, at `bytes`.
struct RawSamples {
  SampleType type = SampleType::None;
  const uint8_t* bytes = nullptr;
  int64_t count = 0;
};

// Converts the raw samples of a logged channel in a lap into `out` (resized to the count).
void ScaleSamples(Workspace& ws, int slot, int lap, int channel, const RawSamples& raw, std::vector<float>& out);

// The raw values as they stand, converted to float (a converted outing needs no scaling).
void RawToFloat(const RawSamples& raw, std::vector<float>& out);
