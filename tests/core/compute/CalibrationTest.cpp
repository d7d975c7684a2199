#include "core/compute/Calibration.h"

#include "../TestOutings.h"
#include "core/outing/HeaderProcessing.h"

namespace {

using namespace test_outings;

const std::vector<int16_t> kRaw = {-20, 0, 7, 123, 1000};

// Converts kRaw (16-bit words) for one channel of a fake outing that `setup` prepares.
std::vector<float> Scale(const std::function<void(OutingRec&, ChannelRec&)>& setup,
                         const std::vector<int16_t>& raw = kRaw) {
  BareWorkspace b;
  OutingRec& o = b.Outing();
  o.Channels.resize(3);
  o.Laps.resize(2);
  o.Channels[1].Rate = 0.5f;
  setup(o, o.Channels[1]);
  std::vector<float> out;
  ScaleSamples(b.ws, 0, 0, 1, RawSamples{SampleType::I16, reinterpret_cast<const uint8_t*>(raw.data()),
                                         static_cast<int64_t>(raw.size())},
               out);
  return out;
}

std::vector<float> Each(const std::function<double(double)>& f, const std::vector<int16_t>& raw = kRaw) {
  std::vector<float> v;
  for (int16_t x : raw) v.push_back(static_cast<float>(f(x)));
  return v;
}

TEST(ScaleSamples, ByKeyRange) {
  auto key = [](int k) { return [k](OutingRec&, ChannelRec& c) { c.Key = static_cast<uint16_t>(k); }; };
  auto pulse = [](int k, int input, uint16_t flags, int16_t old) {
    return [=](OutingRec& o, ChannelRec& c) {
      c.Key = static_cast<uint16_t>(k);
      o.PulseInputs[static_cast<std::size_t>(input)].Flags = flags;
      o.OldVersion = old;
    };
  };
  auto same = Each([](double x) { return x; });
  auto tenths = Each([](double x) { return x / 10; });
  auto hundredths = Each([](double x) { return x / 100; });
  const std::tuple<const char*, std::function<void(OutingRec&, ChannelRec&)>, std::vector<float>> cases[] = {
      {"pulse input flagged in tenths", pulse(64, 0, 2, 0), tenths},
      {"pulse input flagged by the other bit", pulse(69, 5, 8, 0), tenths},
      {"pulse input with a flag outside the mask", pulse(64, 0, 5, 0), same},
      {"pulse input of an old version", pulse(64, 0, 2, -1), same},
      {"key 83 reads input 6, old or not", pulse(83, 6, 2, -1), tenths},
      {"key 84 reads input 7", pulse(84, 7, 2, 0), tenths},
      {"gear", key(94), same},
      {"temperature in tenths", pulse(75, 0, 0, 0), tenths},
      {"temperature of an old version", pulse(78, 0, 0, -1), same},
      {"fuel pressure", key(82), tenths},
      {"supply volts", key(80), hundredths},
      {"key 107", key(107), hundredths},
      {"key 108", key(108), same},
      {"past the known keys", key(600), same},
      {"expansion slot naming a temperature", [](OutingRec& o, ChannelRec& c) { c.Key = 112; o.ExpansionMap[0].Key = 73; }, tenths},
      {"expansion slot naming an OBM key", [](OutingRec& o, ChannelRec& c) { c.Key = 127; o.ExpansionMap[15].Key = 200; }, same},
      {"ECU gain and offset",
       [](OutingRec&, ChannelRec& c) { c.Key = 130; c.CalCoefB = 0.5f; c.CalCoefC = -40; }, Each([](double x) { return x * 0.5 - 40; })},
      {"ECU gain of 0", [](OutingRec&, ChannelRec& c) { c.Key = 150; c.CalCoefB = 0; c.CalCoefC = 3; }, Each([](double) { return 3; })},
      {"linear gain and offset",
       [](OutingRec&, ChannelRec& c) { c.Key = 225; c.CalCoefB = 0.01f; c.CalCoefC = 1; }, Each([](double x) { return x * double{0.01f} + 1; })},
      {"expansion slot naming input 5 takes the analogue calibration",
       [](OutingRec& o, ChannelRec& c) { c.Key = 115; o.ExpansionMap[3].Key = 5; c.CalType = 1; c.CalCoefB = 2; c.CalCoefC = 1; c.CalOffset = 0.5f; },
       Each([](double x) { return 2 * x + 1.5; })},
  };
  for (const auto& [name, setup, expected] : cases) EXPECT_EQ(Scale(setup), expected) << name;
}

TEST(ScaleSamples, FuelUsedIsAnUnsignedWord) {
  const std::vector<int16_t> raw = {-1, -32768, 5};
  auto ecu = [](bool fuel) {
    return [fuel](OutingRec& o, ChannelRec& c) {
      c.Key = 133;
      c.CalCoefB = 0.5f;
      c.CalCoefC = 0;
      if (fuel) {  // as a load leaves the channel named "FUEL USED"
        c.Name = "FUEL USED";
        c.StandardCode = 3;
        o.ChanFuel = 1;
      }
    };
  };
  EXPECT_EQ(Scale(ecu(true), raw), (std::vector<float>{65535 * 0.5f, 32768 * 0.5f, 2.5f}));
  EXPECT_EQ(Scale(ecu(false), raw), (std::vector<float>{-0.5f, -16384.0f, 2.5f}));
}

TEST(ScaleSamples, AnalogueByCalibrationType) {
  auto analog = [](int16_t type, int16_t points, std::vector<int32_t> x, std::vector<float> y, float a, float b, float c) {
    return [=](OutingRec&, ChannelRec& ch) {
      ch.Key = 5;
      ch.CalType = type;
      ch.CalPoints = points;
      ch.CalOffset = 0.5f;
      std::copy(x.begin(), x.end(), ch.CalX.begin());
      std::copy(y.begin(), y.end(), ch.CalY.begin());
      ch.CalCoefA = a;
      ch.CalCoefB = b;
      ch.CalCoefC = c;
    };
  };
  const std::vector<int16_t> raw = {-50, 0, 100, 150, 200, 250, 500, 600};
  const std::vector<int32_t> x = {0, 100, 200, 300, 400, 500};
  const std::vector<float> y = {10, 20, 30, 40, 50, 60};
  const std::tuple<const char*, std::function<void(OutingRec&, ChannelRec&)>, std::vector<float>> cases[] = {
      {"interpolation, ends held", analog(0, 5, x, y, 0, 0, 0), {10.5f, 10.5f, 20.5f, 25.5f, 30.5f, 35.5f, 60.5f, 60.5f}},
      {"interpolation of one point", analog(0, 0, {100}, {7}, 0, 0, 0), std::vector<float>(8, 7.5f)},
      {"table with hold: at a point, the step below", analog(4, 5, x, y, 0, 0, 0),
       {10.5f, 10.5f, 10.5f, 20.5f, 20.5f, 30.5f, 60.5f, 60.5f}},
      {"linear", analog(1, 0, {}, {}, 0, 0.25f, -3), Each([](double v) { return v * 0.25 - 3 + 0.5; }, raw)},
      {"scale and offset", analog(8, 0, {}, {}, 0, 0.25f, -3), Each([](double v) { return v * 0.25 - 3 + 0.5; }, raw)},
      {"quadratic", analog(2, 0, {}, {}, 0.001f, 0.5f, 2),
       Each([](double v) { return static_cast<float>(double{0.001f} * v * v + 0.5 * v + 2) + 0.5; }, raw)},
      {"type 3", analog(3, 5, x, y, 1, 1, 1), std::vector<float>(8, 0.0f)},
      {"type 7", analog(7, 5, x, y, 1, 1, 1), std::vector<float>(8, 0.0f)},
  };
  for (const auto& [name, setup, expected] : cases) {
    const std::vector<float> got = Scale(setup, raw);
    ASSERT_EQ(got.size(), expected.size()) << name;
    for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], expected[i], 1e-4) << name << " raw " << raw[i];
  }
}

TEST(ScaleSamples, DistanceStartsAtTheLapsExactStart) {
  const std::vector<int16_t> raw = {1000, 1010, 1030, 1060};
  const std::tuple<int, int32_t, float, std::vector<float>> cases[] = {
      {70, 1234, 1.0f, {1000, 1010, 1030, 1060}},  // on a sample: unchanged
      {70, 1235, 1.0f, {1005, 1015, 1035, 1065}},  // half a sample in
      {70, 1235, 2.0f, {1005, 1025, 1065, 1125}},  // stretched from the first sample
      {112, 1235, 1.0f, {1005, 1015, 1035, 1065}},  // an expansion slot naming the distance
  };
  for (const auto& [key, start, scale, expected] : cases) {
    const std::vector<float> got = Scale(
        [&](OutingRec& o, ChannelRec& c) {
          c.Key = static_cast<uint16_t>(key);
          o.ExpansionMap[0].Key = 70;
          o.Laps[0].StartTime = start;
          o.Laps[0].DistanceScale = scale;
        },
        raw);
    EXPECT_EQ(got, expected) << key << " " << start << " " << scale;
  }
}

}  // namespace
