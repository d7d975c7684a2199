#include <gtest/gtest.h>

#include "GraphFixture.h"
#include "core/plots/PlotScale.h"

namespace {

using namespace test_outings;

// The automatic scale: the spread of the samples in view grown by a quarter, brought to a nice
// step of its decade (a boundary value takes the lower step), the bottom on a tenth of it.
TEST(ChannelScale, NiceRangeOfTheSamplesInView) {
  const struct {
    float min, max, bottom, top;
  } cases[] = {
      {0, 1.4375f, 0, 2},         {0, 0.625f, 0, 1},        // 1.797 -> 2; 0.781 -> 1
      {0, 7.2f, 0, 10},           {10, 15.5f, 9.75f, 17.25f},  // 9 -> 10; 6.875 -> 7.5
      {2, 5, 2, 4.5f},            {-5, 0, -5, 0},           // exactly 3.75 -> 2.5; 6.25 -> 5
      {100, 107, 99.75f, 107.25f}, {0, 18, 0, 20},          // 8.75 -> 7.5; 22.5 -> 2.25 -> 2 x 10
      {0, 14, 0, 10},             {0, 0.59375f, 0, 0.5f},   // 17.5 -> 1.75 -> 1 x 10; 0.742 -> 0.5
      {0.5f, 0.6875f, 0.5f, 0.625f}, {-2.2f, 1, -2.5f, 2.5f},  // 0.234 -> 0.125; 4 -> 5, floor below 0
      {1000, 1400, 1000, 1500}, {5, 5, 5, 5.125f},          // 500 -> 5 x 100; no spread: 0.125 around it
  };
  for (const auto& c : cases) {
    GraphFixture f;
    ChannelRec& channel = f.b.Outing().Channels[0];
    channel.AutoScale = -1;
    // Only samples 1 and 2 lie in the view: the ones around them must not widen the scale.
    f.b.Outing().Laps[0].LapChannels[0].Samples = {-1e6f, c.min, c.max, 1e6f};
    f.folder().TimeStart = 1;
    f.folder().TimeEnd = 2;
    const double scale = ComputeChannelScale(f.b.ws, 0, 0, 6000, false, false);
    EXPECT_EQ(channel.TimeMin, c.bottom) << c.min << ".." << c.max;
    EXPECT_EQ(channel.TimeMax, c.top) << c.min << ".." << c.max;
    EXPECT_DOUBLE_EQ(scale, 6000 / (static_cast<double>(c.top) - c.bottom)) << c.min << ".." << c.max;
  }
}

}  // namespace
