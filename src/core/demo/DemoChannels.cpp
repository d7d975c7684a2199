#include "core/demo/DemoChannels.h"

#include <algorithm>
#include <cmath>

namespace {

using Sim = SimulatedOuting;

// The simulated value at time `ms`, held at the last sample past the end.
template <class V>
double At(const std::vector<V>& v, int ms) {
  if (v.empty()) return 0;
  return static_cast<double>(v[static_cast<std::size_t>(std::clamp<int>(ms, 0, static_cast<int>(v.size()) - 1))]);
}

// Exhaust-side temperature behind the expansion input: follows the oil with a margin.
double DiffTemp(const Sim& s, int ms) { return At(s.OilTempC, ms) * 0.9 + 6.0; }

// Lambda of a tuned engine: rich at full load, near stoichiometric when cruising.
double Lambda(const Sim& s, int ms) { return 1.0 - 0.12 * At(s.ThrottlePct, ms) / 100.0; }

// Dynamic pressure at the pitot, mbar.
double Pitot(const Sim& s, int ms) {
  const double v = At(s.SpeedKmh, ms) / 3.6;
  return 0.5 * 1.2 * v * v / 100.0;
}

constexpr float kFuelGain = 0.0005f;  // litres per count: a long outing runs past 32,767 counts

}  // namespace

const std::vector<DemoChannel>& DemoChannelList() {
  static const std::vector<DemoChannel> kChannels = {
      {0, "Battery", 9, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.BatteryV, t); }},
      {1, "LATERAL G", 3, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.LatG, t); }},
      {3, "Throttle", 4, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.ThrottlePct, t); }},
      {4, "Brake Pressure", 0, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.BrakeBar, t); }},
      {5, "STEERING", 3, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.SteeringDeg, t); }},
      {6, "FUEL LEVEL", 9, 1, DemoScaling::Analog, 1, 0,
       [](const Sim& s, int t) { return std::max(0.0, 80.0 - At(s.FuelUsedL, t)); }},
      {7, "DAMPER FL", 1, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.DamperMm[0], t); }},
      {8, "DAMPER FR", 1, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.DamperMm[1], t); }},
      {9, "DAMPER RL", 1, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.DamperMm[2], t); }},
      {10, "DAMPER RR", 1, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.DamperMm[3], t); }},
      {11, "Water Temp", 9, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.WaterTempC, t); }},
      {12, "GYRO", 3, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.YawRateDegS, t); }},
      {63, "LONG G", 3, 2, DemoScaling::Analog, 1, 0, [](const Sim& s, int t) { return At(s.LongG, t); }},
      {64, "", 3, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.WheelSpeedKmh[0], t); }},
      {65, "", 3, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.WheelSpeedKmh[1], t); }},
      {66, "", 3, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.WheelSpeedKmh[2], t); }},
      {67, "", 3, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.WheelSpeedKmh[3], t); }},
      {68, "", 3, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.SpeedKmh, t); }},
      // Distance at 10 Hz, as loggers keep it: the time difference to the Datum counts on that.
      {70, "", 6, 4, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.DistanceM, t); }},
      {73, "", 8, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.OilTempC, t); }},
      {75, "", 9, 2, DemoScaling::Tenths, 1, 0, [](const Sim&, int) { return 21.4; }},
      {81, "", 4, 2, DemoScaling::Hundredths, 1, 0, [](const Sim& s, int t) { return At(s.OilPressureBar, t); }},
      {82, "", 5, 2, DemoScaling::Tenths, 1, 0, [](const Sim& s, int t) { return At(s.FuelPressureBar, t); }},
      {83, "", 2, 2, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.Rpm, t); }},
      {94, "", 6, 2, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.Gear, t); }},
      {112, "", 7, 2, DemoScaling::Tenths, 1, 0, DiffTemp},
      {128, "", 3, 4, DemoScaling::GainOffset, 1, 0, [](const Sim& s, int t) { return At(s.Rpm, t); }},
      {130, "", 6, 2, DemoScaling::GainOffset, 0.1f, -40, [](const Sim& s, int t) { return At(s.WaterTempC, t); }},
      {132, "", 5, 4, DemoScaling::GainOffset, 1, 0, Lambda},
      {133, "", 6, 2, DemoScaling::UnsignedGain, kFuelGain, 0, [](const Sim& s, int t) { return At(s.FuelUsedL, t); }},
      {158, "", 9, 4, DemoScaling::GainOffset, 0.1f, 250000,
       [](const Sim& s, int t) { return 250000.0 + At(s.DistanceM, t); }},
      {225, "", 4, 2, DemoScaling::GainOffset, 0.01f, 0, Pitot},
      {256, "", 6, 8, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.GpsLatDeg, t); }},
      {257, "", 6, 8, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.GpsLonDeg, t); }},
      {258, "", 6, 8, DemoScaling::Raw, 1, 0, [](const Sim& s, int t) { return At(s.GpsAltM, t); }},
  };
  return kChannels;
}

void SetDemoCalibrations(OutingHeader& h) {
  auto& cal = h.InputCalibrations;
  cal[0] = {1, 0, 0, {}, {}, 0, 0.004f, 0};                    // battery: linear, 4 mV a count
  cal[1] = {8, 0.015f, 0, {}, {}, 0, 0.0005f, -0.01f};         // lateral G: scale & offset, zero trim
  cal[3] = {0, 0, 2, {400, 2000, 3700}, {0, 45, 100}, 0, 0, 0};  // throttle: interpolation table
  cal[4] = {2, 0, 0, {}, {}, 2e-6f, 0.02f, -2.0f};             // brake pressure: quadratic
  cal[5] = {0, 0, 4, {-2000, -1000, 0, 1000, 2000}, {-270, -132, 0, 132, 270}, 0, 0, 0};  // steering
  cal[6] = {1, 0, 0, {}, {}, 0, 0.4f, 0};                      // fuel level: 0.4 l a count
  const float damper_trim[4] = {-1.5f, 0.8f, -0.6f, 1.2f};     // user offsets after a ride-height check
  for (int i = 0; i < 4; ++i) cal[static_cast<std::size_t>(7 + i)] = {1, damper_trim[i], 0, {}, {}, 0, 0.02f, 0};
  InputCalibration water{4, 0, 12, {}, {}, 0, 0, 0};           // water temperature: 13-step table with hold
  for (int i = 0; i < 13; ++i) {
    water.CalX[static_cast<std::size_t>(i)] = static_cast<int16_t>(400 + 250 * i);
    water.CalY[static_cast<std::size_t>(i)] = 60.0f + 5.0f * i;
  }
  cal[11] = water;
  cal[12] = {8, 0, 0, {}, {}, 0, 0.01f, 0};                    // gyro
  cal[63] = {8, 0, 0, {}, {}, 0, 0.0005f, 0};                  // long G

  for (const DemoChannel& c : DemoChannelList()) {
    if (c.Key >= 128 && c.Key <= 191) h.EcuCalibrations[c.Key - 128u] = {c.Gain, c.Offset, 0};
    if (c.Key >= 224 && c.Key <= 255) h.LinearCalibrations[c.Key - 224u] = {c.Gain, c.Offset};
    if (c.Key < 64) h.InputNames[c.Key] = QString::fromLatin1(c.InputName);
  }
  h.EcuCalibrations[133 - 128].SecurityFlag = 1;  // fuel figures are the team's secret
  h.ExpansionMap[0].Key = 73;                     // expansion 112 reads like a temperature in tenths
  h.PulseInputs[0].Flags = h.PulseInputs[1].Flags = h.PulseInputs[2].Flags = h.PulseInputs[3].Flags = 2;
  h.PulseInputs[4].Flags = 8;  // the speed input flags tenths with the other bit
}

namespace {

// The raw word whose table value is nearest `v`: interpolation inverts between points, a
// table with hold takes the step whose value is nearest.
double InvertTable(const InputCalibration& c, double v) {
  const int n = std::clamp<int>(c.CalPoints, 0, 12);
  if (c.CalType == 4) {
    int best = 0;
    for (int k = 1; k <= n; ++k) {
      if (std::fabs(c.CalY[static_cast<std::size_t>(k)] - v) < std::fabs(c.CalY[static_cast<std::size_t>(best)] - v)) best = k;
    }
    // x == CalX[k + 1] reads as step k; the last step needs x >= CalX[n].
    return best == n ? c.CalX[static_cast<std::size_t>(n)] : c.CalX[static_cast<std::size_t>(best + 1)];
  }
  if (v <= c.CalY[0]) return c.CalX[0];
  for (int k = 0; k < n; ++k) {
    const double y0 = c.CalY[static_cast<std::size_t>(k)], y1 = c.CalY[static_cast<std::size_t>(k + 1)];
    if (v <= y1) return c.CalX[static_cast<std::size_t>(k)] + (v - y0) / (y1 - y0) * (c.CalX[static_cast<std::size_t>(k + 1)] - c.CalX[static_cast<std::size_t>(k)]);
  }
  return c.CalX[static_cast<std::size_t>(n)];
}

double InvertAnalog(const InputCalibration& c, double value) {
  const double v = value - c.CalOffset;
  switch (c.CalType) {
    case 1:
    case 8: return (v - c.CalCoefC) / c.CalCoefB;
    case 2: {  // the rising root of a x^2 + b x + c = v
      const double a = c.CalCoefA, b = c.CalCoefB, cc = c.CalCoefC - v;
      return (-b + std::sqrt(std::max(0.0, b * b - 4 * a * cc))) / (2 * a);
    }
    default: return InvertTable(c, v);
  }
}

}  // namespace

double RawFromEngineering(const OutingHeader& h, const DemoChannel& c, double value) {
  switch (c.Scaling) {
    case DemoScaling::Analog: return InvertAnalog(h.InputCalibrations[c.Key], value);
    case DemoScaling::Tenths: return value * 10.0;
    case DemoScaling::Hundredths: return value * 100.0;
    case DemoScaling::Raw: return value;
    case DemoScaling::GainOffset: return (value - c.Offset) / c.Gain;
    case DemoScaling::UnsignedGain: {
      const double word = std::clamp(std::nearbyint((value - c.Offset) / c.Gain), 0.0, 65535.0);
      return word > 32767 ? word - 65536 : word;  // the logger's word is read back as unsigned
    }
  }
  return value;
}
