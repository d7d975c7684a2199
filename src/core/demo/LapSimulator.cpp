#include "core/demo/LapSimulator.h"

#include <algorithm>
#include <random>

#include "core/app/Numbers.h"

namespace {

constexpr double kG = 9.81;
constexpr double kPi = 3.14159265358979323846;
constexpr double kDegPerRad = 180.0 / kPi;
constexpr double kEarthRadiusM = 6371000.0;
constexpr double kStepM = 1.0;              // resampling step of the driven line
constexpr int kHeadingSmoothHalfWidth = 7;  // three passes of a 15 m box: curvature without kinks
constexpr double kPitZoneM = 250;
constexpr double kOutLapPushM = 600;     // the out lap's last metres are driven at full pace
constexpr double kInLapPushM = 300;      // and the in lap's first, so the timed laps end cleanly
constexpr double kVariationNodeM = 120;  // spacing of the within-lap grip-use wander
constexpr double kLaunchRpm = 6500;
constexpr double kDt = 0.001;
constexpr int kMaxFlyingLaps = 50;
constexpr int kMinShiftGapMs = 60;

// mt19937 is defined bit for bit by the standard; the library distributions are not, so the
// outing would change with the standard library. These draw from it directly.
class Random {
 public:
  explicit Random(uint32_t seed) : engine_(seed) {}
  double Uniform() { return (static_cast<double>(engine_()) + 0.5) * (1.0 / 4294967296.0); }
  double Normal() {  // Box-Muller
    if (has_spare_) {
      has_spare_ = false;
      return spare_;
    }
    const double r = std::sqrt(-2.0 * std::log(Uniform()));
    const double a = 2.0 * kPi * Uniform();
    spare_ = r * std::sin(a);
    has_spare_ = true;
    return r * std::cos(a);
  }
  // Unit variance, zero mean, cheap: for sensor noise that is low-pass filtered anyway.
  double Noise() { return (Uniform() + Uniform() - 1.0) * 2.449489742783178; }

 private:
  std::mt19937 engine_;
  bool has_spare_ = false;
  double spare_ = 0;
};

// First-order low-pass of white noise scaled back to unit standard deviation: sensor noise with
// a bandwidth instead of sample-to-sample hash.
class BandNoise {
 public:
  explicit BandNoise(double tau_s) {
    alpha_ = tau_s <= kDt ? 1.0 : kDt / tau_s;
    gain_ = 1.0 / std::sqrt(alpha_ / (2.0 - alpha_));
  }
  double Next(Random& random) {
    state_ += alpha_ * (random.Noise() - state_);
    return state_ * gain_;
  }

 private:
  double alpha_ = 1, gain_ = 1, state_ = 0;
};

class LowPass {
 public:
  LowPass(double tau_s, double start) : alpha_(kDt / tau_s), state_(start) {}
  double Next(double input) { return state_ += alpha_ * (input - state_); }
  double Value() const { return state_; }

 private:
  double alpha_, state_;
};

double WrapPi(double a) {
  while (a > kPi) a -= 2 * kPi;
  while (a < -kPi) a += 2 * kPi;
  return a;
}

void SmoothCircular(std::vector<double>& v, int half_width, int passes) {
  const int n = static_cast<int>(v.size());
  std::vector<double> tmp(n);
  for (int p = 0; p < passes; ++p) {
    double sum = 0;
    for (int o = -half_width; o <= half_width; ++o) sum += v[((o % n) + n) % n];
    for (int i = 0; i < n; ++i) {
      tmp[i] = sum / (2 * half_width + 1);
      sum += v[(i + half_width + 1) % n] - v[((i - half_width) % n + n) % n];
    }
    v.swap(tmp);
  }
}

// The driven line resampled to equal steps from the start/finish line, with its curvature.
struct LapPath {
  int Steps = 0;
  double Ds = 0, Length = 0;
  std::vector<double> X, Y, K;  // K: 1/m, positive turning left
  std::vector<double> Bump[2];  // road profile under the left and right wheels, unit std
};

LapPath BuildLapPath(const Centreline& line, Random& random) {
  LapPath path;
  const int n = static_cast<int>(line.X.size());
  std::vector<double> cum(n + 1, 0.0);
  for (int i = 0; i < n; ++i) {
    const int j = (i + 1) % n;
    cum[i + 1] = cum[i] + std::hypot(line.X[j] - line.X[i], line.Y[j] - line.Y[i]);
  }
  path.Length = cum[n];
  // The start/finish line passes through the origin; a racing line need not start exactly there.
  double best = 1e300, s0 = 0;
  for (int i = 0; i < n; ++i) {
    const int j = (i + 1) % n;
    const double dx = line.X[j] - line.X[i], dy = line.Y[j] - line.Y[i];
    const double len2 = dx * dx + dy * dy;
    double t = len2 > 0 ? -(line.X[i] * dx + line.Y[i] * dy) / len2 : 0;
    t = std::clamp(t, 0.0, 1.0);
    const double px = line.X[i] + t * dx, py = line.Y[i] + t * dy;
    const double d = px * px + py * py;
    if (d < best) {
      best = d;
      s0 = cum[i] + t * (cum[i + 1] - cum[i]);
    }
  }
  path.Steps = std::max(10, static_cast<int>(RoundHalfEven(path.Length / kStepM)));
  path.Ds = path.Length / path.Steps;
  path.X.resize(path.Steps);
  path.Y.resize(path.Steps);
  for (int m = 0; m < path.Steps; ++m) {
    const double s = std::fmod(s0 + m * path.Ds, path.Length);
    int seg = static_cast<int>(std::upper_bound(cum.begin(), cum.end(), s) - cum.begin()) - 1;
    seg = std::clamp(seg, 0, n - 1);
    const int next = (seg + 1) % n;
    const double span = cum[seg + 1] - cum[seg];
    const double t = span > 0 ? (s - cum[seg]) / span : 0;
    path.X[m] = line.X[seg] + t * (line.X[next] - line.X[seg]);
    path.Y[m] = line.Y[seg] + t * (line.Y[next] - line.Y[seg]);
  }
  // Heading of each step, unwrapped; the detrended part is periodic and can be smoothed round
  // the loop, and its differences then sum to exactly the loop's total turn.
  const int steps = path.Steps;
  std::vector<double> raw(steps), heading(steps);
  for (int m = 0; m < steps; ++m) {
    const int next = (m + 1) % steps;
    raw[m] = std::atan2(path.Y[next] - path.Y[m], path.X[next] - path.X[m]);
  }
  heading[0] = raw[0];
  for (int m = 1; m < steps; ++m) heading[m] = heading[m - 1] + WrapPi(raw[m] - raw[m - 1]);
  const double total = heading[steps - 1] - heading[0] + WrapPi(raw[0] - raw[steps - 1]);
  std::vector<double> detrended(steps);
  for (int m = 0; m < steps; ++m) detrended[m] = heading[m] - total * m / steps;
  SmoothCircular(detrended, kHeadingSmoothHalfWidth, 3);
  path.K.resize(steps);
  for (int m = 0; m < steps; ++m) {
    const int prev = (m + steps - 1) % steps;
    path.K[m] = (detrended[m] - detrended[prev]) / path.Ds + total / path.Length;
  }
  // The bumps are the circuit's: the same under each lap.
  for (int side = 0; side < 2; ++side) {
    path.Bump[side].resize(steps);
    for (int m = 0; m < steps; ++m) path.Bump[side][m] = random.Normal();
    SmoothCircular(path.Bump[side], 2, 2);
  }
  for (int m = 0; m < steps; ++m) path.Bump[1][m] = 0.6 * path.Bump[0][m] + 0.8 * path.Bump[1][m];
  for (int side = 0; side < 2; ++side) {
    double sq = 0;
    for (double b : path.Bump[side]) sq += b * b;
    const double scale = 1.0 / std::sqrt(std::max(sq / steps, 1e-12));
    for (double& b : path.Bump[side]) b *= scale;
  }
  return path;
}

double TopSpeed(const CarModel& car) {
  const double power = car.power_kw * 1000 * car.drivetrain_efficiency;
  double lo = 1, hi = 200;
  for (int it = 0; it < 60; ++it) {
    const double v = 0.5 * (lo + hi);
    const double resist = 0.5 * car.air_density * car.drag_area_m2 * v * v + car.mass_kg * kG * car.rolling_resistance;
    (resist * v < power ? lo : hi) = v;
  }
  const double top_gear = car.gear_ratios[5] * car.final_drive;
  const double geared = car.rpm_limit / top_gear / 60.0 * 2 * kPi * car.wheel_radius_m;
  return std::min(lo, geared * 0.995);
}

double RpmAt(const CarModel& car, int gear, double v) {
  if (gear < 1) return 0;
  return v / (2 * kPi * car.wheel_radius_m) * 60.0 * car.gear_ratios[gear - 1] * car.final_drive;
}

// Interpolates round the lap at lap position `pos` metres.
double AtLap(const std::vector<double>& v, const LapPath& path, double pos) {
  const double u = pos / path.Ds;
  int i0 = static_cast<int>(u);
  const double f = u - i0;
  i0 %= path.Steps;
  const int i1 = (i0 + 1) % path.Steps;
  return v[i0] + f * (v[i1] - v[i0]);
}

const CircuitReferenceEntry* FindCircuit(const QString& name) {
  for (const CircuitReferenceEntry& e : kCircuitReferences) {
    if (name.compare(QLatin1String(e.Name), Qt::CaseInsensitive) == 0) return &e;
  }
  return nullptr;
}

double ElevationProfile(double fraction) {
  return 0.8 * std::sin(2 * kPi * fraction + 0.7) + 0.2 * std::sin(4 * kPi * fraction + 1.9);
}

}  // namespace

bool CircuitReference(const QString& name, double& lat, double& lon, double& alt) {
  const CircuitReferenceEntry* e = FindCircuit(name);
  lat = e ? e->LatDeg : 0;
  lon = e ? e->LonDeg : 0;
  alt = e ? e->AltM : 0;
  return e != nullptr;
}

SimulatedOuting SimulateOuting(const Centreline& line, const CarModel& car, const SimulationOptions& options) {
  SimulatedOuting out;
  if (line.X.size() < 10 || line.X.size() != line.Y.size()) return out;
  Random random(options.seed);
  const LapPath path = BuildLapPath(line, random);
  if (!(path.Length > 0)) return out;
  out.CircuitName = line.Name;
  out.LineLengthM = path.Length;

  // Outing plan on a global grid of steps: out lap from the pit, timed laps, in lap to the stop.
  const int lap_steps = path.Steps;
  const double ds = path.Ds;
  const int laps = std::clamp(options.flying_laps, 0, kMaxFlyingLaps);
  const double slow_grip = std::clamp(options.out_lap_grip, 0.3, 1.0);
  const double slow_power = std::clamp(options.out_lap_power, 0.2, 1.0);
  const int start_idx =
      static_cast<int>(RoundHalfEven(std::clamp(options.start_fraction, 0.0, 0.99) * lap_steps)) % lap_steps;
  const int out_steps = lap_steps - start_idx;
  const int stop_steps =
      std::max(1, static_cast<int>(RoundHalfEven(std::clamp(options.stop_fraction, 0.05, 1.0) * lap_steps)));
  const int steps = out_steps + laps * lap_steps + stop_steps;
  const int first_beacon = out_steps;
  const int in_lap_start = out_steps + laps * lap_steps;

  // Driver: each timed lap uses a share of the grip and of the braking, one lap clearly the best.
  const double var = std::max(0.0, options.driver_variation);
  std::vector<double> lap_grip(laps), lap_brake(laps);
  const int fast_lap = laps > 0 ? std::min(laps - 1, static_cast<int>(random.Uniform() * laps)) : -1;
  for (int l = 0; l < laps; ++l) {
    const double zg = std::fabs(random.Normal()), zb = std::fabs(random.Normal());
    lap_grip[l] = l == fast_lap ? 1.0 - 0.05 * var : 1.0 - var * (0.45 + 0.6 * zg);
    lap_brake[l] = l == fast_lap ? 1.0 - 0.1 * var : 1.0 - var * (0.4 + zb);
  }
  const int nodes = static_cast<int>(steps * ds / kVariationNodeM) + 2;
  std::vector<double> wander_grip(nodes), wander_brake(nodes);
  for (int q = 0; q < nodes; ++q) {
    wander_grip[q] = random.Normal();
    wander_brake[q] = random.Normal();
  }
  const double top_speed = TopSpeed(car);
  const double pit_speed = options.pit_speed_kmh / 3.6;
  const double m = car.mass_kg;
  const double lift_per_v2 = 0.5 * car.air_density * car.lift_area_m2 / m;  // m/s2 per (m/s)2
  const double drag_per_v2 = 0.5 * car.air_density * car.drag_area_m2 / m;
  const double engine_power = car.power_kw * 1000 * car.drivetrain_efficiency;

  std::vector<double> grip(steps + 1), brake(steps + 1), power(steps + 1), limit(steps + 1), k(steps + 1);
  for (int j = 0; j <= steps; ++j) {
    const double s = j * ds;
    k[j] = path.K[(start_idx + j) % lap_steps];
    const double u = s / kVariationNodeM;
    const int q = std::min(static_cast<int>(u), nodes - 2);
    const double f = u - q;
    const double wg = wander_grip[q] + f * (wander_grip[q + 1] - wander_grip[q]);
    const double wb = wander_brake[q] + f * (wander_brake[q + 1] - wander_brake[q]);
    const bool slow = (j < first_beacon && (first_beacon - j) * ds > kOutLapPushM) ||
                      (j >= in_lap_start && (j - in_lap_start) * ds > kInLapPushM);
    if (slow) {
      grip[j] = brake[j] = slow_grip;
      power[j] = slow_power;
    } else {
      const int l = std::clamp((j - first_beacon) / lap_steps, 0, std::max(0, laps - 1));
      const double g = laps > 0 ? lap_grip[l] : 1.0;
      const double b = laps > 0 ? lap_brake[l] : 1.0;
      grip[j] = g * (1 + 0.3 * var * wg);
      brake[j] = b * (1 + 0.5 * var * wb);
      power[j] = 1.0;
    }
    const double a_lat = grip[j] * car.mu * kG;
    const double denom = std::fabs(k[j]) - grip[j] * car.mu * lift_per_v2;
    double v = denom > 1e-9 ? std::sqrt(a_lat / denom) : top_speed;
    v = std::min(v, top_speed);
    // One step past the zone, so that no step leaving it speeds up inside it.
    if (s <= kPitZoneM + ds || (steps - j) * ds <= kPitZoneM + ds) v = std::min(v, pit_speed);
    limit[j] = v;
  }
  limit[0] = limit[steps] = 0;

  // Forward pass: power and traction inside the friction circle.
  std::vector<double> vel(steps + 1);
  vel[0] = 0;
  for (int j = 0; j < steps; ++j) {
    const double v = vel[j];
    const double grip_total = grip[j] * car.mu * (kG + lift_per_v2 * v * v);
    const double r = v * v * std::fabs(k[j]) / grip_total;
    const double circle = r < 1 ? std::sqrt(1 - r * r) : 0;
    const double resist = drag_per_v2 * v * v + car.rolling_resistance * (kG + lift_per_v2 * v * v);
    // At the limit of a corner the driver still holds the speed against drag.
    const double traction = std::max(car.drive_grip_share * grip_total * circle, resist);
    const double by_power = power[j] * engine_power / (m * std::max(v, 1.0));
    const double a = std::min(traction, by_power) - resist;
    const double v2 = v * v + 2 * a * ds;
    vel[j + 1] = std::min(v2 > 0 ? std::sqrt(v2) : 0.0, limit[j + 1]);
  }
  // Backward pass: brakes and grip inside the friction circle.
  for (int j = steps; j > 0; --j) {
    const double v = vel[j];
    const double grip_total = grip[j] * car.mu * (kG + lift_per_v2 * v * v);
    const double r = v * v * std::fabs(k[j]) / grip_total;
    const double circle = r < 1 ? std::sqrt(1 - r * r) : 0;
    const double resist = drag_per_v2 * v * v + car.rolling_resistance * (kG + lift_per_v2 * v * v);
    const double decel = std::min(brake[j] * grip_total * circle, brake[j] * car.max_brake_decel_g * kG) + resist;
    const double before = std::sqrt(v * v + 2 * decel * ds);
    if (before < vel[j - 1]) vel[j - 1] = before;
  }
  // Constant acceleration over each step: times, and speed and distance inside a step agree exactly.
  std::vector<double> time(steps + 1, 0.0), acc(steps, 0.0);
  for (int j = 0; j < steps; ++j) {
    const double sum = vel[j] + vel[j + 1];
    time[j + 1] = time[j] + (sum > 1e-9 ? 2 * ds / sum : 0.0);
    acc[j] = (vel[j + 1] * vel[j + 1] - vel[j] * vel[j]) / (2 * ds);
  }

  const double idle_start = std::max(0, options.idle_start_ms) * kDt;
  const int drive_end_ms = static_cast<int>(RoundHalfEven((idle_start + time[steps]) * 1000));
  out.EndTimeMs = drive_end_ms + std::max(0, options.idle_end_ms);
  for (int l = 0; l <= laps; ++l) {
    out.BeaconTimesMs.push_back(
        static_cast<int>(RoundHalfEven((idle_start + time[first_beacon + l * lap_steps]) * 1000)));
  }
  for (size_t l = 1; l < out.BeaconTimesMs.size(); ++l) {
    out.LapTimesMs.push_back(out.BeaconTimesMs[l] - out.BeaconTimesMs[l - 1]);
  }
  if (!out.LapTimesMs.empty()) {
    out.FastLapIndex =
        static_cast<int>(std::min_element(out.LapTimesMs.begin(), out.LapTimesMs.end()) - out.LapTimesMs.begin());
  }

  double ref_lat = options.reference_lat_deg, ref_lon = options.reference_lon_deg, ref_alt = options.reference_alt_m;
  double table_lat = 0, table_lon = 0, table_alt = 0;
  CircuitReference(line.Name, table_lat, table_lon, table_alt);
  const CircuitReferenceEntry* circuit = FindCircuit(line.Name);
  const double elevation_range = circuit ? circuit->ElevationRangeM : 0.0;
  if (std::isnan(ref_lat)) ref_lat = table_lat;
  if (std::isnan(ref_lon)) ref_lon = table_lon;
  if (std::isnan(ref_alt)) ref_alt = table_alt;
  out.ReferenceLatDeg = ref_lat;
  out.ReferenceLonDeg = ref_lon;
  out.ReferenceAltM = ref_alt;
  const double lat_per_m = kDegPerRad / kEarthRadiusM;
  const double lon_per_m = kDegPerRad / (kEarthRadiusM * std::cos(ref_lat / kDegPerRad));

  const size_t count = static_cast<size_t>(out.EndTimeMs) + 1;
  for (auto* ch :
       {&out.DistanceM, &out.SpeedKmh, &out.LatG, &out.LongG, &out.YawRateDegS, &out.ThrottlePct, &out.BrakeBar,
        &out.SteeringDeg, &out.Rpm, &out.Gear, &out.WaterTempC, &out.OilTempC, &out.OilPressureBar,
        &out.FuelPressureBar, &out.FuelUsedL, &out.BatteryV, &out.GpsAltM, &out.XM, &out.YM}) {
    ch->resize(count);
  }
  for (int w = 0; w < 4; ++w) {
    out.WheelSpeedKmh[w].resize(count);
    out.DamperMm[w].resize(count);
  }
  out.GpsLatDeg.resize(count);
  out.GpsLonDeg.resize(count);

  BandNoise lat_noise(0.004), long_noise(0.004), yaw_noise(0.01), steer_noise(0.15), rpm_noise(0.02);
  BandNoise wheel_noise[4] = {BandNoise(0.01), BandNoise(0.01), BandNoise(0.01), BandNoise(0.01)};
  BandNoise damper_noise[4] = {BandNoise(0.003), BandNoise(0.003), BandNoise(0.003), BandNoise(0.003)};
  BandNoise oil_noise(0.05), fuel_p_noise(0.05), battery_noise(0.2), gps_x(2.0), gps_y(2.0), gps_alt(1.0);
  LowPass throttle_pedal(0.015, 0), brake_pedal(0.010, 0);
  LowPass chassis_lat(0.05, 0), chassis_long(0.05, 0);
  LowPass water(60, 58), oil(150, 52);
  double fuel_used = 0;
  int gear = 0, last_shift_ms = -kMinShiftGapMs;
  int j = 0;
  const double half_track = 0.5 * car.track_width_m;
  const double peak_power_rpm = 0.9 * car.rpm_limit;

  for (size_t i = 0; i < count; ++i) {
    const int ms = static_cast<int>(i);
    const double t = ms * kDt - idle_start;
    double v = 0, a = 0, s = 0;
    bool moving = false;
    if (t <= 0) {
      s = 0;
    } else if (ms >= drive_end_ms || t >= time[steps]) {
      s = steps * ds;
    } else {
      while (j < steps - 1 && time[j + 1] <= t) ++j;
      const double tau = t - time[j];
      a = acc[j];
      v = std::max(0.0, vel[j] + a * tau);
      s = std::min(j * ds + vel[j] * tau + 0.5 * a * tau * tau, (j + 1) * ds);
      moving = true;
    }
    const double lap_pos = std::fmod(start_idx * ds + s, path.Length);
    const double kk = moving ? AtLap(path.K, path, lap_pos) : 0.0;
    const double x = AtLap(path.X, path, lap_pos), y = AtLap(path.Y, path, lap_pos);
    const double lat_true = v * v * kk / kG;
    const double long_true = a / kG;
    const double lift = lift_per_v2 * v * v;
    const double resist = drag_per_v2 * v * v + car.rolling_resistance * (kG + lift);
    const double need = moving ? a + resist : 0.0;  // m/s2 the tyres must push (+) or brake (-)
    const double grip_total = car.mu * (kG + lift);

    out.DistanceM[i] = static_cast<float>(s);
    out.SpeedKmh[i] = static_cast<float>(v * 3.6);
    out.XM[i] = static_cast<float>(x);
    out.YM[i] = static_cast<float>(y);
    out.LatG[i] = static_cast<float>(lat_true + 0.012 * lat_noise.Next(random));
    out.LongG[i] = static_cast<float>(long_true + 0.012 * long_noise.Next(random));
    out.YawRateDegS[i] = static_cast<float>(v * kk * kDegPerRad + 0.15 * yaw_noise.Next(random));
    const double road_wheel = std::atan(car.wheelbase_m * kk) + car.understeer_deg_per_g * lat_true / kDegPerRad;
    out.SteeringDeg[i] =
        static_cast<float>(road_wheel * kDegPerRad * car.steering_ratio + 0.5 * steer_noise.Next(random));

    // Gearbox: neutral while standing, then the driver's shift points with a minimum gap.
    if (!moving) {
      gear = 0;
    } else {
      if (gear == 0) gear = 1;
      if (ms - last_shift_ms >= kMinShiftGapMs) {
        if (gear < 6 && RpmAt(car, gear, v) > car.upshift_rpm) {
          ++gear;
          last_shift_ms = ms;
        } else if (gear > 1 && RpmAt(car, gear - 1, v) < car.downshift_rpm && need < 0.5 * kG) {
          --gear;
          last_shift_ms = ms;
        }
      }
    }
    const double drive_use = need > 0 ? std::min(1.0, need / (car.drive_grip_share * grip_total)) : 0.0;
    const double brake_use = need < 0 ? std::min(1.0, -need / grip_total) : 0.0;
    const double rear_slip = 0.035 * drive_use - 0.02 * brake_use;
    const double front_slip = -0.025 * brake_use;
    double rpm = RpmAt(car, gear, v * (1 + rear_slip));
    if (gear == 1 && a > 0.5 && v < 10 && rpm < kLaunchRpm) rpm = kLaunchRpm;  // clutch slipping off the line
    rpm = std::clamp(std::max(rpm, car.idle_rpm), 0.0, car.rpm_limit);
    out.Rpm[i] = static_cast<float>(rpm + 15 * rpm_noise.Next(random));
    out.Gear[i] = static_cast<float>(gear);

    // Pedals: throttle as the share of the engine's torque in use, brake pressure from the
    // deceleration the brakes (not drag) give.
    double throttle = 0, brake_bar = moving ? 0.0 : 12.0;
    if (need > 0 && gear > 0) {
      const double engine_v = rpm / (car.gear_ratios[gear - 1] * car.final_drive) / 60.0 * 2 * kPi * car.wheel_radius_m;
      const double available = engine_power * std::min(1.0, rpm / peak_power_rpm);
      throttle = std::min(1.0, m * need * engine_v / available) * 100;
    } else if (need < -0.02 * kG) {
      brake_bar = -need / kG * car.brake_bar_per_g;
    }
    out.ThrottlePct[i] = static_cast<float>(std::clamp(throttle_pedal.Next(throttle), 0.0, 100.0));
    out.BrakeBar[i] = static_cast<float>(std::max(0.0, brake_pedal.Next(brake_bar)));

    // Wheels: the outside of a corner runs a longer path, the front a longer one than the rear,
    // the driven rears slip under power and all slip a little under braking.
    const double front_path = std::sqrt(1 + car.wheelbase_m * kk * car.wheelbase_m * kk);
    const double left = 1 - kk * half_track, right = 1 + kk * half_track;
    const double wheel_v[4] = {v * left * front_path * (1 + front_slip), v * right * front_path * (1 + front_slip),
                               v * left * (1 + rear_slip), v * right * (1 + rear_slip)};
    for (int w = 0; w < 4; ++w) {
      const double noise = wheel_noise[w].Next(random);  // drawn when standing too: the stream stays in step
      out.WheelSpeedKmh[w][i] = static_cast<float>(moving ? std::max(0.0, wheel_v[w] * 3.6 + 0.15 * noise) : 0.0);
    }

    // Dampers: the chassis follows load transfer with some lag; aero squats it; the road's
    // bumps reach the rear a wheelbase after the front.
    const double cl = chassis_lat.Next(lat_true), cg = chassis_long.Next(long_true);
    const double aero = (v * 3.6 / 250.0) * (v * 3.6 / 250.0);
    const double road = std::min(1.0, v / 15.0) * 1.2;
    const double rear_pos = std::fmod(lap_pos - car.wheelbase_m + path.Length, path.Length);
    const double bump[4] = {AtLap(path.Bump[0], path, lap_pos), AtLap(path.Bump[1], path, lap_pos),
                            AtLap(path.Bump[0], path, rear_pos), AtLap(path.Bump[1], path, rear_pos)};
    for (int w = 0; w < 4; ++w) {
      const int axle = w / 2;
      const double side = (w % 2 == 0) ? -1.0 : 1.0;  // a left-hand corner loads the right side
      const double pitch = axle == 0 ? -cg : cg;      // braking loads the front
      const double pos = car.damper_static_mm[axle] + side * car.damper_lateral_mm_per_g[axle] * cl +
                         pitch * car.damper_longitudinal_mm_per_g[axle] + car.damper_aero_mm_at_250kmh[axle] * aero +
                         road * bump[w] + (0.05 + 0.15 * road) * damper_noise[w].Next(random);
      out.DamperMm[w][i] = static_cast<float>(pos);
    }

    // Slow physics: temperatures follow the engine load, oil pressure rpm and viscosity.
    const double load = throttle / 100 * rpm / car.rpm_limit;
    const double airflow = std::min(1.0, v / 70.0);
    const double water_t = water.Next(72 + 24 * load - 5 * airflow);
    const double oil_t = oil.Next(80 + 32 * load - 3 * airflow);
    out.WaterTempC[i] = static_cast<float>(water_t);
    out.OilTempC[i] = static_cast<float>(oil_t);
    const double viscosity = std::clamp(1 + 0.006 * (100 - oil_t), 0.8, 1.4);
    out.OilPressureBar[i] =
        static_cast<float>(0.8 + 4.6 * rpm / car.rpm_limit * viscosity + 0.04 * oil_noise.Next(random));
    out.FuelPressureBar[i] = static_cast<float>(5.0 - 0.15 * throttle / 100 + 0.03 * fuel_p_noise.Next(random));
    fuel_used += (0.0006 + car.full_fuel_flow_l_s * throttle / 100 * rpm / car.rpm_limit) * kDt;
    out.FuelUsedL[i] = static_cast<float>(fuel_used);
    out.BatteryV[i] = static_cast<float>((rpm < 4000 ? 13.55 : 13.8) + 0.03 * battery_noise.Next(random));

    const double gx = x + options.gps_noise_m * gps_x.Next(random);
    const double gy = y + options.gps_noise_m * gps_y.Next(random);
    out.GpsLatDeg[i] = ref_lat + gy * lat_per_m;
    out.GpsLonDeg[i] = ref_lon + gx * lon_per_m;
    out.GpsAltM[i] = static_cast<float>(ref_alt + 0.5 * elevation_range * ElevationProfile(lap_pos / path.Length) +
                                        0.2 * gps_alt.Next(random));
  }
  return out;
}
