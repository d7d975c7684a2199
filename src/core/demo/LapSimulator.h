#pragma once

// A quasi-steady-state lap simulator that drives a whole outing (pit start, out lap, timed laps,
// in lap, stop) and produces the signals an in-car logger would record, at 1 kHz. The demo
// installation writes its outings from these, and the tests use them as known truth.

#include <QString>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/demo/Centreline.h"

// A single-seater of the kind the demo shows: about 1:40 round Silverstone.
struct CarModel {
  double mass_kg = 650;   // with driver and fuel
  double power_kw = 420;  // at the flywheel
  double drivetrain_efficiency = 0.92;
  double mu = 1.6;                 // tyre grip, lateral and longitudinal
  double drive_grip_share = 0.62;  // share of total grip the driven rear axle can use
  double lift_area_m2 = 3.0;       // downforce coefficient times frontal area (ClA)
  double drag_area_m2 = 1.05;      // CdA
  double air_density = 1.2;        // kg/m3
  double rolling_resistance = 0.015;
  double max_brake_decel_g = 4.2;  // what the brakes can give when the tyres allow
  double wheel_radius_m = 0.33;
  std::array<double, 6> gear_ratios = {3.00, 2.25, 1.82, 1.55, 1.36, 1.22};
  double final_drive = 3.2;
  double rpm_limit = 10500;
  double upshift_rpm = 10200;
  double downshift_rpm = 8800;  // shift down when the lower gear would still be below this
  double idle_rpm = 3600;
  double wheelbase_m = 3.0;
  double track_width_m = 1.6;
  double steering_ratio = 12;             // steering wheel degrees per road wheel degree
  double understeer_deg_per_g = 0.9;      // road wheel angle added per g of lateral acceleration
  double brake_bar_per_g = 28;            // front line pressure per g of braking
  double full_fuel_flow_l_s = 0.046;      // at full throttle and the rpm limit
  double damper_static_mm[2] = {22, 28};  // front, rear, compression positive
  double damper_lateral_mm_per_g[2] = {3.2, 3.8};
  double damper_longitudinal_mm_per_g[2] = {2.6, 2.0};
  double damper_aero_mm_at_250kmh[2] = {7.5, 9.0};
};

struct SimulationOptions {
  int flying_laps = 8;              // timed laps between the out lap and the in lap (0..50)
  uint32_t seed = 1;                // same seed, same outing (no standard-library distributions)
  double driver_variation = 0.008;  // relative lap-to-lap variation of grip use / braking points
  // GPS origin for the circuit's (0,0). NaN takes the entry of CircuitReference for the line's
  // name, and 0/0/0 for a circuit not in that table.
  double reference_lat_deg = std::nan("");
  double reference_lon_deg = std::nan("");
  double reference_alt_m = std::nan("");
  double start_fraction = 0.65;  // where on the lap the car waits in the pit lane before the out lap
  double stop_fraction = 0.90;   // where on the lap after the in lap it stops
  double out_lap_grip = 0.80;    // share of the grip used on the out lap and the in lap (0.3..1)
  double out_lap_power = 0.85;   // and of the engine's power (0.2..1)
  double pit_speed_kmh = 60;     // limit for the first and the last 250 m
  int idle_start_ms = 5000;      // standing with the engine running before the out lap
  int idle_end_ms = 5000;        // and after stopping
  double gps_noise_m = 0.3;      // slowly wandering GPS error; 0 gives the exact line
};

// Signals on a uniform 1 kHz time base (index i = time i ms from the start of recording), all in
// engineering units. Sensor channels carry a little band-limited noise; DistanceM, SpeedKmh, XM
// and YM are exact, and SpeedKmh integrates to DistanceM.
struct SimulatedOuting {
  QString CircuitName;
  double LineLengthM = 0;  // length of the driven line: the distance of each lap
  double ReferenceLatDeg = 0, ReferenceLonDeg = 0, ReferenceAltM = 0;  // the GPS origin used
  int EndTimeMs = 0;                                                   // last sample time
  std::vector<int> BeaconTimesMs;  // each crossing of the start/finish line, ascending
  std::vector<int> LapTimesMs;     // differences of the beacons: the flying laps
  int FastLapIndex = -1;           // index (0 = first flying lap) of the fastest, -1 when none
  std::vector<float> DistanceM;    // running distance driven, monotonic
  std::vector<float> SpeedKmh;
  std::vector<float> LatG;         // positive in a left-hand (anticlockwise) corner
  std::vector<float> LongG;        // positive accelerating
  std::vector<float> YawRateDegS;  // positive anticlockwise
  std::vector<float> ThrottlePct;  // 0..100
  std::vector<float> BrakeBar;     // front line pressure
  std::vector<float> SteeringDeg;  // steering wheel angle, positive left
  std::vector<float> Rpm;
  std::vector<float> Gear;              // 0 neutral (standing), 1..6
  std::vector<float> WheelSpeedKmh[4];  // FL FR RL RR
  std::vector<float> DamperMm[4];       // FL FR RL RR, compression positive
  std::vector<float> WaterTempC, OilTempC, OilPressureBar, FuelPressureBar, FuelUsedL, BatteryV;
  std::vector<double> GpsLatDeg, GpsLonDeg;
  std::vector<float> GpsAltM;
  std::vector<float> XM, YM;  // true position in the track frame (x east, y north)
};

// Approximate positions of the start/finish lines, for the GPS channels.
struct CircuitReferenceEntry {
  const char* Name;
  double LatDeg, LonDeg, AltM;
  double ElevationRangeM;  // height difference round the lap
};
inline constexpr CircuitReferenceEntry kCircuitReferences[] = {
    {"Silverstone", 52.0786, -1.0169, 153, 12},
    {"Spielberg", 47.2197, 14.7647, 690, 63},
    {"Hockenheim", 49.3278, 8.5656, 103, 6},
};

// False (and zeros) for a circuit not in kCircuitReferences; names compare case-insensitively.
bool CircuitReference(const QString& name, double& lat, double& lon, double& alt);

// An empty outing (EndTimeMs 0, no samples) when the line has fewer than 10 points.
SimulatedOuting SimulateOuting(const Centreline& line, const CarModel& car, const SimulationOptions& options);
