#include "../TestOutings.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackState.h"

namespace {

using namespace test_outings;

// A lap of a thousand-odd units: straights with a little noise, corners either way, a row that
// doesn't move, and sensor values exactly on the corner flag's limits.
std::vector<SourceSample> Lap(float scale) {
  const struct {
    int rows, units;
    float sensor;
  } segments[] = {{40, 5, 0.1f}, {12, 4, 0.8f}, {25, 4, 1.6f},  {6, 4, 0.5f},  {30, 6, -0.2f}, {20, 3, -1.5f},
                  {10, 3, -2.2f}, {1, 0, -1.0f}, {35, 7, 0.25f}, {30, 4, 1.2f}, {20, 5, -0.9f}};
  std::vector<SourceSample> rows{{0, 0, 0}};
  for (const auto& seg : segments) {
    for (int k = 0; k < seg.rows; ++k) {
      const SourceSample last = rows.back();
      rows.push_back({last.Distance + seg.units + (seg.units > 0 ? k % 2 : 0), last.Time + 100 + k % 3, seg.sensor * scale});
    }
  }
  return rows;
}

// The map maker's integration is defined step by step in 32-bit floats with the trigonometry on
// doubles, so a map is the same to the last bit wherever it is made: pinned here by a point half
// way, the last point (the closing passes bring it back to the start), the heading, the bounds
// and the number of points flagged as corners, for each mode and side.
TEST(TrackArithmetic, MapsAreTheSameToTheLastBit) {
  const struct {
    int mode;
    bool invert, closed, figure_of_eight, imperial;
    double global_angle, offset;
    float mid_x, mid_y, last_x, last_y, heading, min_x, min_y, max_x, max_y;
  } cases[] = {
      {0, true, true, false, false, 180, 0, -132.724487f, -93.9744186f, 0.00251960754f, 0.00117829442f, -3.14159012f,
       -345.02179f, -134.4814f, 194.38652f, 1.05013609f},
      {0, false, true, false, true, 90, 0.05, 82.7063217f, -305.513f, 0.000256977975f, 0.00477880239f, 7.85404778f,
       -78.7333603f, -309.298615f, 147.937958f, 55.6818695f},
      {1, true, true, true, false, 0, 0, 25.2418118f, 187.105972f, -0.00205028057f, -0.000840187073f, 3.40398401e-07f,
       -77.9208908f, -33.366703f, 224.0f, 200.966125f},
      {1, false, true, false, false, 270, 0.4, 27.6266937f, 134.551102f, -2.83718109e-05f, 0.00250470638f, 10.9957542f,
       -18.1161308f, -200.25705f, 157.788254f, 318.85141f},
      {0, true, false, false, false, 180, 0, -447.393097f, -276.434021f, -1013.01361f, -306.967468f, 2.9234643f,
       -1013.01361f, -325.425232f, 1.0f, 1.0f},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "mode " << c.mode << " invert " << c.invert << " closed " << c.closed);
    const float scale = c.mode == 1 ? 20.0f : 1.0f;  // the gyro reads degrees per second
    TrackSettings s;
    s.CreateMode = c.mode, s.Invert = c.invert, s.Closed = c.closed, s.FigureOfEight = c.figure_of_eight;
    s.GlobalAngle = c.global_angle, s.LatGOffset = c.offset;
    s.LatGIncrement *= scale, s.LatGStartLimit *= scale, s.LatGEndLimit *= scale;
    BareWorkspace b;
    b.Outing().UnitsMask = c.imperial ? 0 : 1;
    b.ws.Track.Samples = Lap(scale);
    b.ws.Track.SampleLast = static_cast<int>(b.ws.Track.Samples.size()) - 1;
    ASSERT_TRUE(CalculateTrack(b.ws, 0, 1, s));
    const TrackState& t = b.ws.Track;
    ASSERT_EQ(t.PointCount, 1220);
    int corners = 0;
    for (const TrackPoint& p : t.TrackPoints) corners += p.Corner != 0;
    EXPECT_EQ(corners, 180);  // the rows exactly on the start limit are no corner
    EXPECT_EQ(t.TrackPoints[610].X, c.mid_x);
    EXPECT_EQ(t.TrackPoints[610].Y, c.mid_y);
    EXPECT_EQ(t.TrackPoints.back().X, c.last_x);
    EXPECT_EQ(t.TrackPoints.back().Y, c.last_y);
    EXPECT_EQ(t.TrackHeading, c.heading);
    EXPECT_EQ(t.TrackMinX, c.min_x);
    EXPECT_EQ(t.TrackMinY, c.min_y);
    EXPECT_EQ(t.TrackMaxX, c.max_x);
    EXPECT_EQ(t.TrackMaxY, c.max_y);
  }
}

}  // namespace
