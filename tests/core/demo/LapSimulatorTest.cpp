#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

#include "core/app/Files.h"
#include "core/demo/Centreline.h"
#include "core/demo/LapSimulator.h"

namespace {

constexpr double kG = 9.81;
constexpr double kPi = 3.14159265358979323846;
const QString kSharedTracks = QStringLiteral(ORLAN_SHARED_DIR "/data/tracks");
const QString kShippedTracks = QStringLiteral(ORLAN_SOURCE_DATA_DIR "/tracks");

// One row of the measured figures that come with the circuits.
struct Reference {
  int Points = 0;
  double CentrelineM = 0, RacelineM = 0, TurnDeg = 0;
};

std::map<QString, Reference> ReadReferences() {
  std::map<QString, Reference> rows;
  QFile f(kSharedTracks + QStringLiteral("/reference_lengths.csv"));
  if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return rows;
  QTextStream in(&f);
  in.readLine();  // column names
  while (!in.atEnd()) {
    const QStringList c = in.readLine().split(QLatin1Char(','));
    if (c.size() < 5) continue;
    rows[c[0]] = {c[1].toInt(), c[2].toDouble(), c[3].toDouble(), c[4].toDouble()};
  }
  return rows;
}

TEST(Centreline, EveryMeasuredCircuitReadsWithItsPointCountAndLength) {
  const auto refs = ReadReferences();
  ASSERT_GE(refs.size(), 17u);
  for (const auto& [name, ref] : refs) {
    Centreline centre, race;
    QString error;
    ASSERT_TRUE(ReadCentreline(kSharedTracks + "/" + name + ".csv", centre, &error)) << qPrintable(error);
    ASSERT_TRUE(ReadCentreline(kSharedTracks + "/racelines/" + name + ".csv", race, &error)) << qPrintable(error);
    EXPECT_EQ(static_cast<int>(centre.X.size()), ref.Points) << qPrintable(name);
    EXPECT_EQ(centre.X.size(), centre.Y.size());
    EXPECT_NEAR(centre.Length, ref.CentrelineM, 0.06) << qPrintable(name);
    EXPECT_NEAR(race.Length, ref.RacelineM, 0.06) << qPrintable(name);
    EXPECT_EQ(centre.Name, name);
  }
  // The shipped circuits are driven on their racing line; without one, on the centreline.
  Centreline line;
  ASSERT_TRUE(ReadDrivenLine(kShippedTracks, "Hockenheim", line));
  EXPECT_NEAR(line.Length, refs.at("Hockenheim").RacelineM, 0.06);
  QTemporaryDir dir;
  QFile::copy(kSharedTracks + "/Norisring.csv", dir.filePath("Norisring.csv"));
  ASSERT_TRUE(ReadDrivenLine(dir.path(), "Norisring", line));
  EXPECT_NEAR(line.Length, refs.at("Norisring").CentrelineM, 0.06);
}

// Each circuit is simulated once for all the tests that look at its outing.
constexpr int kFlyingLaps = 3;

const SimulatedOuting& Outing(const QString& name) {
  static std::map<QString, std::unique_ptr<SimulatedOuting>> cache;
  auto& slot = cache[name];
  if (!slot) {
    Centreline line;
    QString dir = FileExists(kShippedTracks + "/" + name + ".csv") ? kShippedTracks : kSharedTracks;
    EXPECT_TRUE(ReadDrivenLine(dir, name, line));
    SimulationOptions options;
    options.flying_laps = kFlyingLaps;
    slot = std::make_unique<SimulatedOuting>(SimulateOuting(line, CarModel{}, options));
  }
  return *slot;
}

struct CircuitCase {
  const char* name;
  double min_lap_s, max_lap_s;  // around known times of cars of this class
};
// Silverstone ~1:39, Spielberg ~1:14, Hockenheim ~1:26 for this class; Norisring is the
// anticlockwise one and has no entry in the GPS table.
const CircuitCase kCircuits[] = {
    {"Silverstone", 92, 106}, {"Spielberg", 69, 80}, {"Hockenheim", 78, 90}, {"Norisring", 40, 55}};

TEST(LapSimulator, LapsHaveTheCircuitsLengthTurnAndARealisticTime) {
  const auto refs = ReadReferences();
  for (const CircuitCase& c : kCircuits) {
    SCOPED_TRACE(c.name);
    const SimulatedOuting& o = Outing(c.name);
    const Reference& ref = refs.at(c.name);
    ASSERT_EQ(o.BeaconTimesMs.size(), static_cast<size_t>(kFlyingLaps + 1));
    ASSERT_EQ(o.LapTimesMs.size(), static_cast<size_t>(kFlyingLaps));
    EXPECT_NEAR(o.LineLengthM, ref.RacelineM, 0.1);
    EXPECT_GT(o.BeaconTimesMs.front(), 10000);  // standing, then most of an out lap
    EXPECT_LT(o.BeaconTimesMs.back(), o.EndTimeMs - 20000);
    for (int l = 0; l < kFlyingLaps; ++l) {
      const int from = o.BeaconTimesMs[l], to = o.BeaconTimesMs[l + 1];
      ASSERT_LT(from, to);
      EXPECT_EQ(o.LapTimesMs[l], to - from);
      EXPECT_NEAR(o.DistanceM[to] - o.DistanceM[from], ref.RacelineM, 0.005 * ref.RacelineM);
      EXPECT_GT(o.LapTimesMs[l], c.min_lap_s * 1000);
      EXPECT_LT(o.LapTimesMs[l], c.max_lap_s * 1000);
      double heading = 0;
      for (int i = from; i < to; ++i) heading += o.YawRateDegS[i] * 0.001;
      EXPECT_NEAR(heading, ref.TurnDeg, 3.0) << "lap " << l;
      // Each beacon is where the line crosses the start/finish line through the origin.
      EXPECT_LT(std::hypot(o.XM[from], o.YM[from]), 15.0);
    }
    const auto fastest = std::min_element(o.LapTimesMs.begin(), o.LapTimesMs.end());
    EXPECT_EQ(o.FastLapIndex, fastest - o.LapTimesMs.begin());
    const auto slowest = std::max_element(o.LapTimesMs.begin(), o.LapTimesMs.end());
    EXPECT_GE(*slowest - *fastest, 50);
    EXPECT_LE(*slowest - *fastest, 1500);
    for (int l = 0; l < kFlyingLaps; ++l) {
      if (l != o.FastLapIndex) {
        EXPECT_GE(o.LapTimesMs[l] - *fastest, 20) << "one lap clearly fastest";
      }
    }
  }
}

TEST(LapSimulator, ChannelsAgreeWithEachOther) {
  for (const CircuitCase& c : kCircuits) {
    SCOPED_TRACE(c.name);
    const SimulatedOuting& o = Outing(c.name);
    const size_t n = static_cast<size_t>(o.EndTimeMs) + 1;
    ASSERT_EQ(o.SpeedKmh.size(), n);
    ASSERT_EQ(o.DamperMm[3].size(), n);
    ASSERT_EQ(o.GpsLatDeg.size(), n);
    EXPECT_EQ(o.SpeedKmh.front(), 0.0f);
    EXPECT_EQ(o.SpeedKmh.back(), 0.0f);

    // Speed integrates to distance; distance never runs backwards.
    double integrated = 0, lat_error = 0;
    int cornering = 0;
    for (size_t i = 1; i < n; ++i) {
      integrated += 0.5 * (o.SpeedKmh[i - 1] + o.SpeedKmh[i]) / 3.6 * 0.001;
      ASSERT_GE(o.DistanceM[i], o.DistanceM[i - 1]) << i;
      // Lateral acceleration is speed times yaw rate, signs included.
      const double v = o.SpeedKmh[i] / 3.6, yaw = o.YawRateDegS[i] * kPi / 180;
      if (v > 20) {
        lat_error += std::fabs(o.LatG[i] - v * yaw / kG);
        ++cornering;
      }
    }
    EXPECT_NEAR(integrated, o.DistanceM.back(), 1e-4 * o.DistanceM.back());
    EXPECT_LT(lat_error / cornering, 0.03);
    const double laps_driven = o.DistanceM.back() / o.LineLengthM;
    EXPECT_NEAR(laps_driven, (1 - 0.65) + kFlyingLaps + 0.90, 0.01);
  }
}

// Left-hand corners: positive g, steering left, right wheels on the outside turn faster and their
// dampers compress. Braking: pressure, no throttle, the nose dives. Sensor noise and pedal lag
// make single samples disagree, so shares are counted; a wrong sign gives none.
TEST(LapSimulator, SignsFollowTheCorner) {
  const CarModel car;
  const double static_pitch = car.damper_static_mm[0] - car.damper_static_mm[1];
  for (const CircuitCase& c : kCircuits) {
    SCOPED_TRACE(c.name);
    const SimulatedOuting& o = Outing(c.name);
    int corner = 0, steer = 0, yaw = 0, front_wheels = 0, rear_wheels = 0, dampers = 0;
    int braking = 0, pressure = 0, lifted = 0, dive = 0;
    for (size_t i = 0; i < o.SpeedKmh.size(); ++i) {
      const double side = o.LatG[i] > 1.2 ? 1 : o.LatG[i] < -1.2 ? -1 : 0;
      if (side != 0 && std::fabs(o.LongG[i]) < 0.3) {
        ++corner;
        steer += o.SteeringDeg[i] * side > 0;
        yaw += o.YawRateDegS[i] * side > 0;
        front_wheels += (o.WheelSpeedKmh[1][i] - o.WheelSpeedKmh[0][i]) * side > 0;
        rear_wheels += (o.WheelSpeedKmh[3][i] - o.WheelSpeedKmh[2][i]) * side > 0;
        dampers += (o.DamperMm[1][i] - o.DamperMm[0][i]) * side > 0;
      }
      if (o.LongG[i] < -2.0) {
        ++braking;
        pressure += o.BrakeBar[i] > 20;
        lifted += o.ThrottlePct[i] < 5;
        const double pitch = 0.5 * (o.DamperMm[0][i] + o.DamperMm[1][i] - o.DamperMm[2][i] - o.DamperMm[3][i]);
        dive += pitch > static_pitch + 5;
      }
    }
    ASSERT_GT(corner, 1000);
    ASSERT_GT(braking, 1000);
    EXPECT_GT(steer, 0.99 * corner);
    EXPECT_GT(yaw, 0.99 * corner);
    EXPECT_GT(front_wheels, 0.97 * corner);
    EXPECT_GT(rear_wheels, 0.97 * corner);
    EXPECT_GT(dampers, 0.97 * corner);
    EXPECT_GT(pressure, 0.9 * braking);
    EXPECT_GT(lifted, 0.9 * braking);
    EXPECT_GT(dive, 0.9 * braking);
  }
}

TEST(LapSimulator, OutingShapeFollowsTheOptions) {
  Centreline line;
  ASSERT_TRUE(ReadDrivenLine(kShippedTracks, "Spielberg", line));
  // A file that begins elsewhere on the lap: beacons stay at the start/finish line through the origin.
  Centreline rotated = line;
  std::rotate(rotated.X.begin(), rotated.X.begin() + rotated.X.size() / 3, rotated.X.end());
  std::rotate(rotated.Y.begin(), rotated.Y.begin() + rotated.Y.size() / 3, rotated.Y.end());
  ASSERT_GT(std::hypot(rotated.X[0], rotated.Y[0]), 500);
  struct Case {
    int flying_laps;
    const Centreline* line;
    size_t beacons;
    int fast_lap;
  };
  for (const Case& c : {Case{0, &line, 1, -1}, Case{-3, &line, 1, -1}, Case{1, &rotated, 2, 0}}) {
    SCOPED_TRACE(c.flying_laps);
    SimulationOptions options;
    options.flying_laps = c.flying_laps;
    options.idle_start_ms = 2000;
    options.idle_end_ms = 3000;
    const SimulatedOuting o = SimulateOuting(*c.line, CarModel{}, options);
    EXPECT_EQ(o.BeaconTimesMs.size(), c.beacons);
    for (int beacon : o.BeaconTimesMs) EXPECT_LT(std::hypot(o.XM[beacon], o.YM[beacon]), 15.0);
    EXPECT_EQ(o.LapTimesMs.size(), c.beacons - 1);
    EXPECT_EQ(o.FastLapIndex, c.fast_lap);
    // Standing still for exactly the idle times, in neutral, at both ends.
    EXPECT_EQ(o.DistanceM[2000], 0.0f);
    EXPECT_GT(o.DistanceM[2100], 0.0f);
    EXPECT_EQ(o.Gear[1999], 0.0f);
    EXPECT_EQ(o.SpeedKmh[o.EndTimeMs - 3000], 0.0f);
    EXPECT_GT(o.SpeedKmh[o.EndTimeMs - 3100], 0.0f);
    EXPECT_EQ(o.Gear[o.EndTimeMs], 0.0f);
    // The pit lane's speed limit holds for its first 250 m.
    for (size_t i = 0; o.DistanceM[i] < 250; ++i) ASSERT_LE(o.SpeedKmh[i], options.pit_speed_kmh + 0.01);
  }
  Centreline too_short;
  too_short.X = too_short.Y = {0, 1, 2};
  EXPECT_EQ(SimulateOuting(too_short, CarModel{}, SimulationOptions{}).EndTimeMs, 0);
}

}  // namespace
