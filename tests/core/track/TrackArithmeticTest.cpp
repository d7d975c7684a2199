#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "../TestOutings.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackState.h"

namespace {

using namespace test_outings;

// The integration written out step by step as the map maker defines it, in 32-bit floats with
// the trigonometry on doubles, so a map is the same to the last bit wherever it is made.
struct Reference {
  std::vector<TrackPoint> points;
  float heading = 0, minx = 0, miny = 0, maxx = 1, maxy = 1;
};

Reference Integrate(const std::vector<SourceSample>& rows, const TrackSettings& s, bool imperial) {
  const float deg_to_rad = 0.017453292f, two_pi = 6.2831855f;
  const float h0 = static_cast<float>(s.GlobalAngle) * deg_to_rad;
  float heading_fix = 0, x_fix = 0, y_fix = 0;
  Reference out;
  for (int pass = s.Closed ? 0 : 2; pass < 4; ++pass) {
    float x = 0, y = 0, h = h0;
    out.minx = out.miny = 0, out.maxx = out.maxy = 1;
    int steps = 0, count = 0;
    int16_t flag = 0;
    auto bounds = [&] {
      out.minx = std::min(out.minx, x), out.maxx = std::max(out.maxx, x);
      out.miny = std::min(out.miny, y), out.maxy = std::max(out.maxy, y);
    };
    auto store = [&](int i) {
      if (pass == 3) out.points.push_back({x, y, static_cast<int16_t>(i), flag, count});
      ++count;
    };
    for (int i = 0; i + 1 < static_cast<int>(rows.size()); ++i) {
      const float sensor = rows[i].Sensor, a = std::fabs(sensor);
      if (a > s.LatGStartLimit) flag = -1;
      else if (a < s.LatGEndLimit) flag = 0;
      const int dt = rows[i + 1].Time - rows[i].Time, dist = rows[i + 1].Distance - rows[i].Distance;
      if (dist <= 0) continue;
      if (a < s.LatGIncrement) {
        for (int k = 0; k < dist; ++k) {
          x = x + static_cast<float>(std::cos(static_cast<double>(h)));
          y = y - static_cast<float>(std::sin(static_cast<double>(h)));
          store(i);
        }
        bounds();
        continue;
      }
      float r = 0;
      if (s.CreateMode == 0) {
        const float v = static_cast<float>(dist) / (static_cast<float>(dt) / 1000.0f);
        r = v * v / (std::fabs(static_cast<float>(s.LatGOffset) + sensor) * 9.8065f);
      } else {
        const float turned = (a + static_cast<float>(s.LatGOffset)) * static_cast<float>(dt) / 1000.0f;
        r = static_cast<float>(dist) / (turned * deg_to_rad);
      }
      if (imperial) r = r * 0.3048f;
      const float per_unit = 360.0f / (r * two_pi);
      const float step = per_unit * deg_to_rad, angle = (90.0f - per_unit / 2.0f) * deg_to_rad;
      const float chord = r * 2.0f * static_cast<float>(std::cos(static_cast<double>(angle)));
      for (int k = 0; k < dist; ++k) {
        if ((!s.Invert && sensor <= s.LatGOffset) || (s.Invert && sensor > s.LatGOffset)) {
          x = x + chord * static_cast<float>(std::sin(static_cast<double>(angle + h)));
          y = y + chord * static_cast<float>(std::cos(static_cast<double>(angle + h)));
          h = h - step;
        } else {
          x = x + chord * static_cast<float>(std::sin(static_cast<double>(angle - h)));
          y = y - chord * static_cast<float>(std::cos(static_cast<double>(angle - h)));
          h = h + step;
        }
        h = h + heading_fix, x = x - x_fix, y = y - y_fix;
        ++steps;
        bounds();
        store(i);
      }
    }
    if (pass == 0 && steps >= 1) {
      const float n = static_cast<float>(steps);
      heading_fix = s.FigureOfEight ? -(h - h0) / n : s.Invert ? ((h0 - two_pi) - h) / n : (h0 + (two_pi - h)) / n;
    } else if (pass == 1 && steps > 0) {
      x_fix = x / static_cast<float>(steps), y_fix = y / static_cast<float>(steps);
    }
    out.heading = h;
  }
  return out;
}

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

TEST(TrackArithmetic, EveryPointAsTheIntegrationDefinesIt) {
  const struct {
    int mode;
    bool invert, closed, figure_of_eight, imperial;
    double global_angle, offset;
  } cases[] = {
      {0, true, true, false, false, 180, 0},    {0, false, true, false, true, 90, 0.05},
      {1, true, true, true, false, 0, 0},       {1, false, true, false, false, 270, 0.4},
      {0, true, false, false, false, 180, 0},
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
    const Reference want = Integrate(b.ws.Track.Samples, s, c.imperial);
    const TrackState& t = b.ws.Track;
    ASSERT_EQ(t.PointCount, static_cast<int>(want.points.size()));
    for (std::size_t i = 0; i < want.points.size(); ++i) {
      const TrackPoint &got = t.TrackPoints[i], &p = want.points[i];
      if (got.X == p.X && got.Y == p.Y && got.SampleIndex == p.SampleIndex && got.Corner == p.Corner && got.Distance == p.Distance) continue;
      ADD_FAILURE() << "point " << i << " (" << got.X << ", " << got.Y << ") flag " << got.Corner << ", want (" << p.X
                    << ", " << p.Y << ") flag " << p.Corner;
      break;
    }
    EXPECT_EQ(t.TrackHeading, want.heading);
    EXPECT_EQ(t.TrackMinX, want.minx);
    EXPECT_EQ(t.TrackMinY, want.miny);
    EXPECT_EQ(t.TrackMaxX, want.maxx);
    EXPECT_EQ(t.TrackMaxY, want.maxy);
  }
}


TEST(TrackArithmetic, ZZPrintGolden) {
  const struct {
    int mode;
    bool invert, closed, figure_of_eight, imperial;
    double global_angle, offset;
  } cases[] = {
      {0, true, true, false, false, 180, 0},    {0, false, true, false, true, 90, 0.05},
      {1, true, true, true, false, 0, 0},       {1, false, true, false, false, 270, 0.4},
      {0, true, false, false, false, 180, 0},
  };
  for (const auto& c : cases) {
    const float scale = c.mode == 1 ? 20.0f : 1.0f;
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
    int corners = 0;
    for (const TrackPoint& p : t.TrackPoints) corners += p.Corner != 0;
    const TrackPoint& m = t.TrackPoints[t.TrackPoints.size() / 2];
    const TrackPoint& e = t.TrackPoints.back();
    std::printf("GOLDEN %d, %d, %.9gf, %.9gf, %.9gf, %.9gf, %.9gf, %.9gf, %.9gf, %.9gf, %.9gf\n", t.PointCount, corners,
                m.X, m.Y, e.X, e.Y, t.TrackHeading, t.TrackMinX, t.TrackMinY, t.TrackMaxX, t.TrackMaxY);
  }
}
}  // namespace
