#include "core/track/TrackBands.h"

#include <gtest/gtest.h>

#include "core/app/Options.h"

namespace {

// Limits 0, 50, 100, 150, 200, 250: a value on a limit takes the lower band.
TEST(TrackBands, ValueOnALimitTakesTheLowerBand) {
  const TrackReportOptions bands;
  const std::pair<float, int> cases[] = {
      {-0.5f, kButtonShadowColor}, {0, bands.BandColor[0]},   {50, bands.BandColor[0]},
      {50.5f, bands.BandColor[1]}, {100, bands.BandColor[1]}, {199.9f, bands.BandColor[3]},
      {250, bands.BandColor[4]},   {250.1f, kButtonShadowColor}};
  for (const auto& [value, colour] : cases) EXPECT_EQ(GetBandColor(bands, value), colour) << value;
}

}  // namespace
