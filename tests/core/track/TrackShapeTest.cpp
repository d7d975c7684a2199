// Maps made from the demo's lateral G, gyro and GPS against the line the simulated car drove:
// after the best rotation and shift, how far the map lies from the circuit, as a share of the lap.

#include <cstdio>
#include <numbers>
#include <string>

#include "../TestOutings.h"
#include "core/demo/Centreline.h"
#include "core/track/TrackCreate.h"

using namespace test_outings;

namespace {

struct Xy {
  double x, y;
};

// The point at `distance` along a closed polyline.
Xy PointAlong(const Centreline& line, double distance) {
  const std::size_t n = line.X.size();
  distance = std::fmod(distance, line.Length);
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = (i + 1) % n;
    const double seg = std::hypot(line.X[j] - line.X[i], line.Y[j] - line.Y[i]);
    if (distance <= seg || j == 0) {
      const double f = seg > 0 ? std::min(distance / seg, 1.0) : 0;
      return {line.X[i] + f * (line.X[j] - line.X[i]), line.Y[i] + f * (line.Y[j] - line.Y[i])};
    }
    distance -= seg;
  }
  return {line.X[0], line.Y[0]};
}

struct ShapeError {
  double rms_share = 0;    // RMS distance after the fit, over the lap length
  double max_share = 0;
  double closure_share = 0;  // gap between the last point and the first, over the lap length
};

// Points of the map against the line at the same share of the lap (by the points' distances), in the map's frame (y down,
// so the line's north is flipped), after the rotation and shift that fit best (least squares).
ShapeError Compare(const std::vector<Xy>& map, const std::vector<double>& share, const Centreline& line) {
  const std::size_t n = map.size();
  std::vector<Xy> ref(n);
  for (std::size_t i = 0; i < n; ++i) {
    const Xy p = PointAlong(line, line.Length * share[i]);
    ref[i] = {p.x, -p.y};
  }
  Xy cm{0, 0}, cr{0, 0};
  for (std::size_t i = 0; i < n; ++i) cm.x += map[i].x, cm.y += map[i].y, cr.x += ref[i].x, cr.y += ref[i].y;
  cm.x /= n, cm.y /= n, cr.x /= n, cr.y /= n;
  double dot = 0, cross = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Xy a{map[i].x - cm.x, map[i].y - cm.y}, b{ref[i].x - cr.x, ref[i].y - cr.y};
    dot += a.x * b.x + a.y * b.y;
    cross += a.x * b.y - a.y * b.x;
  }
  const double th = std::atan2(cross, dot), c = std::cos(th), s = std::sin(th);
  ShapeError e;
  double sum = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Xy a{map[i].x - cm.x, map[i].y - cm.y};
    const double d = std::hypot(c * a.x - s * a.y - (ref[i].x - cr.x), s * a.x + c * a.y - (ref[i].y - cr.y));
    sum += d * d;
    e.max_share = std::max(e.max_share, d);
  }
  e.rms_share = std::sqrt(sum / n) / line.Length;
  e.max_share /= line.Length;
  e.closure_share = std::hypot(map.back().x - map.front().x, map.back().y - map.front().y) / line.Length;
  return e;
}

struct ShapeCase {
  const char* file;
  int mode;
};

// Twice the worst of the three circuits as measured (bench/README.md): lateral G suffers from the
// speed it squares, gyro is cleanest; a GPS map stops one sample short of the line, hence its gap.
struct Bounds {
  double rms, max, gap;
};
constexpr Bounds kBounds[] = {{0.012, 0.018, 0.001}, {0.004, 0.006, 0.001}, {0.004, 0.006, 0.006}};

class TrackShapeTest : public ::testing::TestWithParam<ShapeCase> {};

TEST_P(TrackShapeTest, MapHasTheCircuitsShapeAndLength) {
  const ShapeCase& c = GetParam();
  TestHome home;
  const DemoOuting& demo = SharedDemoOuting(QString::fromLatin1(c.file), 2);
  ASSERT_TRUE(home.Load(0, demo.path));
  TrackSettings s;
  s.CreateMode = c.mode;
  // The demo logs left-hand corners as positive; the default side takes right-hand ones so.
  s.InvertCalibration = true;
  Workspace& ws = home.ws();
  ASSERT_TRUE(CreateTrack(ws, 0, 1, s)) << LastMessage(home.messages).text.toStdString();
  Centreline line;
  ASSERT_TRUE(ReadDrivenLine(JoinPath(ShippedDataDirectory(), "tracks"), demo.recipe.Circuit, line));
  EXPECT_NEAR(ws.TrackLength, demo.sim.LineLengthM, 0.002 * demo.sim.LineLengthM);

  std::vector<Xy> map;
  std::vector<double> share;
  const double lat0 = demo.sim.ReferenceLatDeg * std::numbers::pi / 180;
  const double m_per_deg = 6371000.0 * std::numbers::pi / 180;
  for (const TrackPoint& p : ws.Track.TrackPoints) {
    // A GPS map is in degrees, latitude along x; at the default angle of 180 the axes stay put.
    if (c.mode == 2) map.push_back({p.X * m_per_deg, p.Y * m_per_deg * std::cos(lat0)});
    else map.push_back({p.X, p.Y});
    share.push_back(p.Distance / static_cast<double>(ws.TrackLength));
  }
  const ShapeError e = Compare(map, share, line);
  std::printf("%s mode %d: points %d, length %.1f m (line %.1f m), rms %.4f%%, max %.4f%%, gap %.4f%%\n", c.file, c.mode,
              ws.Track.PointCount, ws.TrackLength, line.Length, 100 * e.rms_share, 100 * e.max_share,
              100 * e.closure_share);
  const Bounds& b = kBounds[c.mode];
  EXPECT_LT(e.rms_share, b.rms);
  EXPECT_LT(e.max_share, b.max);
  EXPECT_LT(e.closure_share, b.gap);
}

INSTANTIATE_TEST_SUITE_P(Demo, TrackShapeTest,
                         ::testing::Values(ShapeCase{"SILV0101.DAT", 0}, ShapeCase{"SPIE0201.DAT", 1},
                                           ShapeCase{"HOCK0301.DAT", 2}),
                         // Names ctest can find again: the case's mode, not its bytes.
                         [](const auto& info) { return "Mode" + std::to_string(info.param.mode); });

}  // namespace
