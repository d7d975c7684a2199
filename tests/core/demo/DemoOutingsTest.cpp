#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/demo/DemoChannels.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoOutings.h"
#include "core/outing/ConstantsBlock.h"
#include "core/outing/OutingFormat.h"

namespace {

// A short version of each demo outing (two timed laps), written and read back.
struct Written {
  DemoOutingSpec spec;
  SimulatedOuting sim;
  OutingHeader header;
  QString path;
  int64_t size = 0;
};

class DemoOutings : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = new QTemporaryDir;
    outings_ = new std::vector<Written>;
    for (DemoOutingSpec spec : DemoOutingSpecs()) {
      spec.FlyingLaps = 2;
      Centreline line;
      QString error;
      ASSERT_TRUE(ReadDrivenLine(JoinPath(ShippedDataDirectory(), "tracks"), spec.Circuit, line, &error))
          << error.toStdString();
      SimulationOptions options;
      options.flying_laps = spec.FlyingLaps;
      options.seed = spec.Seed;
      Written w{spec, SimulateOuting(line, CarModel{}, options), {}, dir_->filePath(spec.FileName), 0};
      ASSERT_TRUE(WriteDemoOuting(spec, w.sim, w.path, &error)) << error.toStdString();
      ASSERT_TRUE(ReadOutingHeader(w.path, w.header));
      w.size = QFileInfo(w.path).size();
      outings_->push_back(std::move(w));
    }
  }
  static void TearDownTestSuite() {
    delete outings_;
    delete dir_;
  }
  static QTemporaryDir* dir_;
  static std::vector<Written>* outings_;
};
QTemporaryDir* DemoOutings::dir_ = nullptr;
std::vector<Written>* DemoOutings::outings_ = nullptr;

// Raw sample n of logged channel i, as the file holds it.
double StoredSample(const Written& w, int i, int64_t n) {
  const ChannelTableEntry& e = w.header.ChannelTable[static_cast<std::size_t>(i)];
  QByteArray b;
  EXPECT_TRUE(ReadFileBytes(w.path, ChannelBlockOffsets(w.header)[static_cast<std::size_t>(i)] + n * e.WordSize,
                            e.WordSize, b));
  return SampleAt(SampleTypeFor(e.WordSize, e.Key, w.header.LcuSerial), reinterpret_cast<const uint8_t*>(b.constData()));
}

TEST_F(DemoOutings, BlocksLieInsideTheFileAndBeaconsInsideTheData) {
  for (const Written& w : *outings_) {
    SCOPED_TRACE(w.spec.FileName.toStdString());
    EXPECT_TRUE(CheckOutingLayout(w.header, w.size).isEmpty()) << CheckOutingLayout(w.header, w.size).join("; ").toStdString();
    const CyclicTimes t = CyclicTimeBase(w.header);
    EXPECT_EQ(t.TrueEndTime, w.sim.EndTimeMs);
    ASSERT_EQ(w.header.BeaconCount, w.sim.BeaconTimesMs.size());
    for (int b = 0; b < w.header.BeaconCount; ++b) {
      const int64_t time = w.header.BeaconTimes[static_cast<std::size_t>(b)] - t.Shift;
      EXPECT_EQ(time, w.sim.BeaconTimesMs[static_cast<std::size_t>(b)]);
      EXPECT_GT(time, 0);
      EXPECT_LT(time, t.TrueEndTime);
    }
    // Every channel holds a sample for each of its periods over the whole recording.
    for (int i = 0; i < w.header.LoggedChannels; ++i) {
      const ChannelTableEntry& e = w.header.ChannelTable[static_cast<std::size_t>(i)];
      const double rate = RateFromCode(e.RateCode, w.header.SystemFlags);
      EXPECT_EQ(ChannelBlockLength(w.header, i) / e.WordSize, static_cast<int64_t>(w.sim.EndTimeMs * rate) + 1) << e.Key;
    }
  }
}

// A converted outing stores the simulated values themselves; a logger file stores words that
// the header's calibration turns back into them.
TEST_F(DemoOutings, StoredWordsHoldTheSimulatedValues) {
  for (const Written& w : *outings_) {
    SCOPED_TRACE(w.spec.FileName.toStdString());
    const auto& channels = DemoChannelList();
    for (int i = 0; i < w.header.LoggedChannels; ++i) {
      const DemoChannel& c = channels[static_cast<std::size_t>(i)];
      ASSERT_EQ(w.header.ChannelTable[static_cast<std::size_t>(i)].Key, c.Key);
      const double rate = RateFromCode(c.RateCode, w.header.SystemFlags);
      const int64_t n = static_cast<int64_t>(w.sim.BeaconTimesMs[1] * rate);  // mid-outing, at speed
      const double truth = c.Signal(w.sim, static_cast<int>(std::nearbyint(n / rate)));
      const double stored = StoredSample(w, i, n);
      if (w.spec.Mode == DemoMode::Converted) {
        EXPECT_NEAR(stored, truth, std::fabs(truth) * 1e-6 + 1e-6) << c.Key;
      } else if (c.Scaling != DemoScaling::Analog && c.Scaling != DemoScaling::UnsignedGain) {
        const double raw = RawFromEngineering(w.header, c, truth);
        const auto type = SampleTypeFor(c.WordSize, c.Key, w.header.LcuSerial);
        const double expected = type == SampleType::F32   ? static_cast<float>(raw)
                                : type == SampleType::F64 ? raw
                                                          : std::nearbyint(raw);
        EXPECT_EQ(stored, expected) << c.Key;
      }
    }
  }
}

TEST(DemoInstall, MakesWhatIsMissingAndKeepsWhatIsThere) {
  QTemporaryDir home;
  DemoResult first;
  RecordingMessages messages;
  QString error;
  ASSERT_TRUE(QDir().mkpath(home.filePath("Data")));
  ASSERT_TRUE(WriteFileAtomically(home.filePath("Data/SILV0101.DAT"), QByteArray("user's own file")));
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, first, &error, 1)) << error.toStdString();
  EXPECT_TRUE(first.Kept.contains(home.filePath("Data/SILV0101.DAT")));
  QByteArray kept;
  ASSERT_TRUE(ReadFileBytes(home.filePath("Data/SILV0101.DAT"), 0, 100, kept));
  EXPECT_EQ(kept, QByteArray("user's own file"));
  ChannelDescriptorFile dsc;
  ASSERT_TRUE(ReadChannelDescriptorFile(home.filePath("Setup/CHANNEL.DSC"), dsc));
  ASSERT_EQ(dsc.Records.size(), 1027u + 4);  // the keyed area, then the demo math channels
  EXPECT_EQ(dsc.Records[1027].Name.text, "REAR_SLIP");
  EXPECT_EQ(dsc.Head.GroupNames[2].text, "Telltale");
  for (int key : {70, 68, 83, 133}) EXPECT_FALSE(dsc.Records[static_cast<std::size_t>(key)].Units.text.isEmpty()) << key;
  EXPECT_EQ(dsc.Records[70].Name.text, "DISTANCE");

  DemoResult second;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, second, &error, 1));
  EXPECT_TRUE(second.Written.isEmpty());
}

}  // namespace
