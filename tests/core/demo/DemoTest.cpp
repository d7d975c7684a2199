#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <map>

#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/demo/Centreline.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/LapSimulator.h"
#include "core/outing/ChannelDescriptors.h"

namespace {

const QString kSharedTracks = QStringLiteral(ORLAN_SHARED_DIR "/data/tracks");
const QString kShippedTracks = QStringLiteral(ORLAN_SOURCE_DATA_DIR "/tracks");

// One row of the measured figures that come with the circuits.
struct Reference {
  int Points = 0;
  double CentrelineM = 0, RacelineM = 0;
};

std::map<QString, Reference> ReadReferences() {
  std::map<QString, Reference> rows;
  QFile f(kSharedTracks + QStringLiteral("/reference_lengths.csv"));
  if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return rows;
  QTextStream in(&f);
  in.readLine();  // column names
  while (!in.atEnd()) {
    const QStringList c = in.readLine().split(QLatin1Char(','));
    if (c.size() >= 4) rows[c[0]] = {c[1].toInt(), c[2].toDouble(), c[3].toDouble()};
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
    EXPECT_NEAR(centre.Length, ref.CentrelineM, 0.06) << qPrintable(name);
    EXPECT_NEAR(race.Length, ref.RacelineM, 0.06) << qPrintable(name);
  }
}

// The demo's laps: the length of the circuit's racing line, times a car of this class does
// (Silverstone ~1:39, Spielberg ~1:14, Hockenheim ~1:26), beacons on the line through the origin.
TEST(LapSimulator, LapsHaveTheCircuitsLengthAndARealisticTime) {
  const auto refs = ReadReferences();
  const std::tuple<const char*, double, double> circuits[] = {
      {"Silverstone", 92, 106}, {"Spielberg", 69, 80}, {"Hockenheim", 78, 90}};
  for (const auto& [name, min_lap_s, max_lap_s] : circuits) {
    SCOPED_TRACE(name);
    Centreline line;
    ASSERT_TRUE(ReadDrivenLine(kShippedTracks, name, line));
    SimulationOptions options;
    options.flying_laps = 3;
    const SimulatedOuting o = SimulateOuting(line, CarModel{}, options);
    const double length = refs.at(name).RacelineM;
    ASSERT_EQ(o.LapTimesMs.size(), 3u);
    ASSERT_EQ(o.BeaconTimesMs.size(), 4u);
    for (int l = 0; l < 3; ++l) {
      const int from = o.BeaconTimesMs[l], to = o.BeaconTimesMs[l + 1];
      EXPECT_EQ(o.LapTimesMs[l], to - from);
      EXPECT_NEAR(o.DistanceM[to] - o.DistanceM[from], length, 0.005 * length);
      EXPECT_GT(o.LapTimesMs[l], min_lap_s * 1000);
      EXPECT_LT(o.LapTimesMs[l], max_lap_s * 1000);
      EXPECT_LT(std::hypot(o.XM[from], o.YM[from]), 15.0);
    }
    EXPECT_EQ(o.FastLapIndex, std::min_element(o.LapTimesMs.begin(), o.LapTimesMs.end()) - o.LapTimesMs.begin());
  }
}

// The demo installation: a user's own file of the same name is kept, the rest is made once.
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
  EXPECT_EQ(dsc.Records[70].Name.text, "DISTANCE");

  DemoResult second;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, second, &error, 1));
  EXPECT_TRUE(second.Written.isEmpty());
}

}  // namespace
