#include "core/outing/ChannelData.h"

#include "../TestOutings.h"
#include "core/app/Numbers.h"
#include "core/compute/Filters.h"
#include "core/demo/DemoChannels.h"
#include "core/track/Laps.h"

namespace {

using namespace test_outings;

// The four kinds of outing the demo writes, two timed laps each, loaded into slots 0..3.
class DemoFetch : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    home_ = new TestHome;
    outings_ = new std::vector<DemoOuting>;
    for (const char* file : {"SILV0101.DAT", "HOCK0301.DAT", "SPIE0201.DAT", "SILV0103.CNV"}) {
      outings_->push_back(SharedDemoOuting(QString::fromLatin1(file), 2));
      ASSERT_TRUE(home_->Load(static_cast<int>(outings_->size()) - 1, outings_->back().path)) << file;
    }
  }
  static void TearDownTestSuite() {
    delete outings_;
    delete home_;
  }
  void SetUp() override { ASSERT_EQ(outings_->size(), 4u); }

  static Workspace& ws() { return home_->ws(); }
  static bool Converted(const DemoOuting& d) { return d.recipe.Mode == DemoMode::Converted; }

  static TestHome* home_;
  static std::vector<DemoOuting>* outings_;
};
TestHome* DemoFetch::home_ = nullptr;
std::vector<DemoOuting>* DemoFetch::outings_ = nullptr;

// How far a value read back may lie from the simulated one: the engineering step of one raw
// count of the channel's calibration (nothing but float rounding for stored floats).
double Quantum(const OutingHeader& cal, const DemoChannel& c, SampleType type, double truth) {
  if (type == SampleType::F32 || type == SampleType::F64) return 0;
  switch (c.Scaling) {
    case DemoScaling::Analog: {
      const InputCalibration& k = cal.InputCalibrations[c.Key];
      double step = 0;
      if (k.CalType == 1 || k.CalType == 8) step = std::fabs(k.CalCoefB);
      if (k.CalType == 2) {
        const double x = RawFromEngineering(cal, c, truth);
        step = std::fabs(2 * k.CalCoefA * x + k.CalCoefB) + std::fabs(k.CalCoefA);
      }
      for (int p = 0; p < k.CalPoints; ++p) {
        const double dy = std::fabs(k.CalY[static_cast<std::size_t>(p + 1)] - k.CalY[static_cast<std::size_t>(p)]);
        const double dx = k.CalX[static_cast<std::size_t>(p + 1)] - k.CalX[static_cast<std::size_t>(p)];
        step = std::max(step, k.CalType == 4 ? dy : dy / dx);  // a held table steps by whole rows
      }
      return step;
    }
    case DemoScaling::Tenths: return 0.1;
    case DemoScaling::Hundredths: return 0.01;
    case DemoScaling::Raw: return 0.5;
    case DemoScaling::GainOffset:
    case DemoScaling::UnsignedGain: return std::fabs(c.Gain);
  }
  return 0;
}

TEST_F(DemoFetch, LapsAreTheLapsDriven) {
  for (std::size_t s = 0; s < outings_->size(); ++s) {
    const DemoOuting& d = (*outings_)[s];
    SCOPED_TRACE(d.path.toStdString());
    const OutingRec& o = home_->Outing(static_cast<int>(s));
    const int beacons = static_cast<int>(d.sim.BeaconTimesMs.size());
    ASSERT_EQ(o.LastLap, beacons + 1);  // out lap, timed laps, in lap
    EXPECT_EQ(o.Laps[0].StartTime, 0);
    for (int b = 0; b < beacons; ++b) EXPECT_EQ(o.Laps[static_cast<std::size_t>(b + 1)].StartTime, d.sim.BeaconTimesMs[static_cast<std::size_t>(b)]);
    EXPECT_EQ(o.Laps.back().StartTime, d.sim.EndTimeMs - 500);
    for (std::size_t l = 0; l < d.sim.LapTimesMs.size(); ++l) {
      EXPECT_EQ(LapTimeMs(o, static_cast<int>(l) + 1), d.sim.LapTimesMs[l]) << "timed lap " << l;
    }
    EXPECT_EQ(o.FastLap, d.sim.FastLapIndex + 1);
    // Each lap starts at the distance the car had driven when it crossed the line; a converted
    // outing takes the sample before the line: up to one 10 Hz step at full speed.
    for (int l = 1; l <= beacons; ++l) {
      const LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
      EXPECT_NEAR(lap.StartDistance, d.sim.DistanceM[static_cast<std::size_t>(lap.StartTime)], Converted(d) ? 9.0 : 1.0);
    }
  }
}

TEST_F(DemoFetch, EveryChannelReadsBackTheSimulatedValues) {
  OutingHeader cal;
  SetDemoCalibrations(cal);
  const auto& channels = DemoChannelList();
  for (std::size_t s = 0; s < outings_->size(); ++s) {
    const DemoOuting& d = (*outings_)[s];
    const OutingRec& o = home_->Outing(static_cast<int>(s));
    ASSERT_EQ(o.LoggedCount, static_cast<int>(channels.size()));
    for (int lap : {0, static_cast<int>(o.FastLap)}) {
      const int32_t start = o.Laps[static_cast<std::size_t>(lap)].StartTime;
      for (int i = 0; i < o.LoggedCount; ++i) {
        const DemoChannel& c = channels[static_cast<std::size_t>(i)];
        const ChannelRec& ch = o.Channels[static_cast<std::size_t>(i)];
        SCOPED_TRACE(d.path.toStdString() + " lap " + std::to_string(lap) + " key " + std::to_string(c.Key));
        GetChannelData(ws(), static_cast<int>(s), lap, i);
        const std::vector<float>& v = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(i)].Samples;
        const int64_t n = RoundHalfEven((LapTimeMs(o, lap) + 5000.0) * ch.Rate);
        ASSERT_EQ(static_cast<int64_t>(v.size()), n + 1);
        const SampleType type = SampleTypeFor(ch.WordSize, ch.Key, static_cast<uint16_t>(o.LcuSerial));
        if (c.Key == 70 && !Converted(d)) continue;  // the distance rule: the calibration's tests
        double worst = 0;
        std::size_t worst_at = 0;
        for (std::size_t j = 0; j < v.size(); ++j) {
          const int t = SampleTimeMs(start, ch.Rate, static_cast<int64_t>(j));
          if (t > d.sim.EndTimeMs) break;
          const double truth = c.Signal(d.sim, t);
          const double excess = std::fabs(v[j] - truth) - Quantum(cal, c, type, truth) - std::fabs(truth) * 3e-7 - 1e-5;
          if (excess > worst) {
            worst = excess;
            worst_at = j;
          }
        }
        EXPECT_EQ(worst, 0) << "sample " << worst_at << " reads " << v[worst_at];
      }
    }
  }
}

TEST_F(DemoFetch, DerivedChannelsFollowTheirRules) {
  for (std::size_t s = 0; s < outings_->size(); ++s) {
    const DemoOuting& d = (*outings_)[s];
    SCOPED_TRACE(d.path.toStdString());
    const int slot = static_cast<int>(s);
    const OutingRec& o = home_->Outing(slot);
    const int lap = o.FastLap;
    const int32_t start = o.Laps[static_cast<std::size_t>(lap)].StartTime;
    const int n = o.LoggedCount;
    auto samples = [&](int channel) -> const std::vector<float>& {
      GetChannelData(ws(), slot, lap, channel);
      return o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
    };
    ASSERT_EQ(o.Channels[static_cast<std::size_t>(n)].Key, 1024);
    ASSERT_EQ(o.Channels[static_cast<std::size_t>(n + 1)].Key, 1025);
    ASSERT_EQ(o.Channels[static_cast<std::size_t>(n + 2)].Key, 1026);

    // Time: ten samples a second, starting one step in; the last sample stays 0.
    const std::vector<float>& time = samples(n);
    const int64_t upper = RoundHalfEven((LapTimeMs(o, lap) + 5000.0) * 0.01);
    ASSERT_EQ(static_cast<int64_t>(time.size()), upper + 1);
    for (int64_t i = 0; i < upper; ++i) ASSERT_NEAR(time[static_cast<std::size_t>(i)], 0.1 * (i + 1), 0.01) << i;
    EXPECT_EQ(time.back(), 0.0f);

    // Lap distance: from 0 at the lap's start, the distance driven since.
    const std::vector<float>& lap_distance = samples(n + 1);
    ASSERT_GT(lap_distance.size(), 100u);
    EXPECT_NEAR(lap_distance[0], 0.0, 0.01);
    const double at_start = d.sim.DistanceM[static_cast<std::size_t>(start)];
    for (std::size_t i = 0; i + 11 < lap_distance.size(); ++i) {  // the last 10 Hz step has no next sample
      const std::size_t t = static_cast<std::size_t>(start) + 10 * i;
      if (t >= d.sim.DistanceM.size()) break;
      const double driven = d.sim.DistanceM[t] - at_start;
      // Distance comes in whole metres at 10 Hz, and the rule maps sample i onto the 10 Hz grid
      // without the part of a step by which the two grids' first samples differ: within one
      // step at top speed (9 m), and a metre for the rounding.
      ASSERT_NEAR(lap_distance[i], driven, 10.0) << "sample " << i;
    }
    EXPECT_NEAR(lap_distance[static_cast<std::size_t>(LapTimeMs(o, lap) / 10)], d.sim.LineLengthM, 2.0);

    // Long accel: the four-sample speed difference, taken as miles per hour.
    ASSERT_GT(o.ChanSpeed, 0);
    const ChannelRec& speed = o.Channels[static_cast<std::size_t>(o.ChanSpeed)];
    ASSERT_EQ(o.Channels[static_cast<std::size_t>(n + 2)].Rate, speed.Rate);
    const std::vector<float>& accel = samples(n + 2);
    const double w = speed.Rate * 1000.0 / 4;
    const double tolerance = Converted(d) ? 1e-3 : w * 2 * 0.05 * 0.447 / 9.8065 + 1e-4;
    auto sim_speed = [&](std::size_t i) { return d.sim.SpeedKmh[static_cast<std::size_t>(SampleTimeMs(start, speed.Rate, static_cast<int64_t>(i)))]; };
    ASSERT_GT(accel.size(), 8u);
    const std::size_t last = accel.size() - 1;
    for (std::size_t i = 0; i + 4 <= last; ++i) {
      const double expected = w * (sim_speed(i + 4) - sim_speed(i)) * 0.447 / 9.8065;
      ASSERT_NEAR(accel[i], expected, tolerance) << "sample " << i;
    }
    for (std::size_t i = last - 2; i <= last; ++i) EXPECT_EQ(accel[i], 0.0f) << i;
  }
}

// On a copy of the plain outing: a channel index outside the outing does nothing, a rate of 0
// gives one sample from the block's start, and a second fetch does not open the file.
TEST_F(DemoFetch, FetchEdgeCases) {
  const QString copy = home_->Path("COPY.DAT");
  ASSERT_TRUE(QFile::copy((*outings_)[0].path, copy));
  const int slot = 8;
  ASSERT_TRUE(home_->Load(slot, copy));
  OutingRec& o = home_->Outing(slot);
  const std::vector<LapChannelRec>& lap = o.Laps[1].LapChannels;
  for (int channel : {-1, -300, o.LastChannel + 1, 30000}) GetChannelData(ws(), slot, 1, channel);
  ASSERT_EQ(lap.size(), static_cast<std::size_t>(o.LastChannel) + 1);
  for (const LapChannelRec& c : lap) ASSERT_EQ(c.Loaded, 0);

  o.Channels[0].Rate = 0;  // the battery, 1 Hz in the file
  GetChannelData(ws(), slot, 1, 0);
  ASSERT_EQ(lap[0].Samples.size(), 1u);
  EXPECT_NEAR(lap[0].Samples[0], DemoChannelList()[0].Signal((*outings_)[0].sim, 0), 0.004 + 1e-5);

  GetChannelData(ws(), slot, 1, 3);
  const std::vector<float> first = lap[3].Samples;
  ASSERT_GT(first.size(), 1000u);
  ASSERT_TRUE(QFile::rename(copy, home_->Path("MOVED.DAT")));
  GetChannelData(ws(), slot, 1, 3);
  EXPECT_EQ(lap[3].Loaded, -1);
  EXPECT_EQ(lap[3].Samples, first);
  // A channel not fetched before needs the file, which is gone: nothing is loaded, no message.
  const std::size_t shown = home_->messages.entries.size();
  GetChannelData(ws(), slot, 1, 4);
  EXPECT_EQ(lap[4].Loaded, 0);
  EXPECT_TRUE(lap[4].Samples.empty());
  EXPECT_EQ(home_->messages.entries.size(), shown);
}

// A converted outing holds engineering values: no calibration, not even the user offset; the
// channel's filter still runs.
TEST(ChannelData, ConvertedOutingIsFilteredButNotCalibrated) {
  TestHome home;
  OutingHeader h = SmallHeader(10000);
  h.LcuSerial = kConvertedSerial;
  h.Version = QStringLiteral("8.0.0");
  h.InputNames[5] = QStringLiteral("STEERING");
  h.InputCalibrations[5] = {1, 0.5f, 0, {}, {}, 0, 2.0f, 100.0f};
  const QString path = home.Path("CONV.CNV");
  ASSERT_TRUE(WriteOuting(path, h, {Block(5, 3, 4, Ramp(1001, 0, 1), kConvertedSerial)}));
  ASSERT_TRUE(home.Load(0, path));
  OutingRec& o = home.Outing(0);
  ChannelRec& c = o.Channels[0];
  c.FilterKind = 2;
  c.FilterWindow = 0;
  c.FilterKernel = 20;
  c.FilterLowCut = 500;
  GetChannelData(home.ws(), 0, 0, 0);
  const std::vector<float>& v = o.Laps[0].LapChannels[0].Samples;
  // The kernel filter gives one sample fewer than the window holds.
  EXPECT_EQ(static_cast<int64_t>(v.size()), RoundHalfEven((o.Laps[1].StartTime + 5000.0) * 0.1));
  // A symmetric kernel of gain 1 keeps a ramp in the body: the stored values, not 2 x + 100.5.
  for (std::size_t i = 10; i <= 990; ++i) ASSERT_NEAR(v[i], static_cast<double>(i), 0.02) << i;
}

// A lap is fetched for its span by the header's times, past the end of the recording too, where
// the values are zeros; only a span no outing has is cut, so a header can't make a huge array.
TEST(ChannelData, ALapPastTheRecordingReadsZerosThere) {
  const std::pair<int32_t, double> cases[] = {{90000, 89500}, {2147483647, kMaxFetchSpanMs}};
  for (const auto& [end_time, span_ms] : cases) {
    TestHome home;
    const QString path = home.Path("SHORT.DAT");
    ASSERT_TRUE(WriteOuting(path, SmallHeader(end_time), {Block(71, 6, 2, Ramp(560, 1, 1))}));  // 56 s at 10 Hz
    ASSERT_TRUE(home.Load(0, path));
    GetChannelData(home.ws(), 0, 0, 0);
    const std::vector<float>& v = home.Outing(0).Laps[0].LapChannels[0].Samples;
    ASSERT_EQ(static_cast<int64_t>(v.size()), RoundHalfEven((span_ms + 5000) * 0.01) + 1) << end_time;
    EXPECT_EQ(v[559], 560.0f);
    EXPECT_EQ(v[560], 0.0f);
    EXPECT_EQ(v.back(), 0.0f);
  }
}

TEST(ChannelData, DerivedChannelsWithoutSourcesAreZeros) {
  TestHome home;
  OutingHeader h = SmallHeader(10000);
  h.InputNames[3] = QStringLiteral("THROTTLE");
  const QString path = home.Path("NOSPEED.DAT");
  ASSERT_TRUE(WriteOuting(path, h, {Block(3, 3, 2, Ramp(1001, 0, 3))}));
  ASSERT_TRUE(home.Load(0, path));
  OutingRec& o = home.Outing(0);
  EXPECT_EQ(o.ChanSpeed, 0);
  EXPECT_EQ(o.ChanDistance, -1);
  for (int channel : {o.LoggedCount + 1, o.LoggedCount + 2}) {
    GetChannelData(home.ws(), 0, 0, channel);
    const LapChannelRec& cache = o.Laps[0].LapChannels[static_cast<std::size_t>(channel)];
    EXPECT_EQ(cache.Loaded, -1) << channel;
    ASSERT_FALSE(cache.Samples.empty()) << channel;
    for (float x : cache.Samples) ASSERT_EQ(x, 0.0f) << channel;
  }
  EXPECT_EQ(o.Channels[static_cast<std::size_t>(o.LoggedCount + 2)].Rate, 0.0f);
  EXPECT_EQ(o.Laps[0].LapChannels[static_cast<std::size_t>(o.LoggedCount + 2)].Samples.size(), 1u);
}

TEST(ChannelData, TimeStatsOfAKnownArray) {
  struct Case {
    float rate;
    int32_t start, end;
    float min;
    int32_t min_index;
    float max;
    int32_t max_index;
    double avg, dev;
  } cases[] = {
      {1.0f, 1, 6, 1, 1, 9, 5, 22.0 / 6, std::sqrt((128 - 22.0 * 22 / 6) / 5)},
      {1.0f, 0, 100, 1, 1, 9, 5, 31.0 / 8, std::sqrt((173 - 31.0 * 31 / 8) / 7)},  // clipped at the last sample
      {0.5f, 2, 9, 1, 1, 5, 4, 2.75, std::sqrt(4.25)},                           // samples 1..Floor(4.5)
      {1.0f, 3, 3, 1, 3, 1, 3, 1.0, 0.0},                                       // one sample: no deviation
  };
  for (const Case& k : cases) {
    BareWorkspace b;
    OutingRec& o = b.Outing();
    o.Channels.resize(1);
    o.Channels[0].Rate = k.rate;
    o.Laps.resize(1);
    o.Laps[0].LapChannels.resize(1);
    LapChannelRec& cache = o.Laps[0].LapChannels[0];
    cache.Samples = {3, 1, 4, 1, 5, 9, 2, 6};
    b.ws.FolderTable[0].TimeStart = k.start;
    b.ws.FolderTable[0].TimeEnd = k.end;
    ComputeTimeStats(b.ws, 0, 0, 0);
    EXPECT_EQ(cache.TimeStats.Valid, 0) << "samples not loaded";
    cache.Loaded = -1;
    ComputeTimeStats(b.ws, 0, 0, 0);
    const ChannelStats& st = cache.TimeStats;
    SCOPED_TRACE(std::to_string(k.start) + ".." + std::to_string(k.end));
    EXPECT_EQ(st.Valid, -1);
    EXPECT_EQ(st.Min, k.min);
    EXPECT_EQ(st.MinIndex, k.min_index);
    EXPECT_EQ(st.Max, k.max);
    EXPECT_EQ(st.MaxIndex, k.max_index);
    EXPECT_NEAR(st.Avg, k.avg, 1e-5);
    EXPECT_NEAR(st.Dev, k.dev, 1e-5);
  }
}

}  // namespace
