// `orlan spectrum` on the demo: the magnitudes it prints are the transform of the samples the
// windows fetch, float for float, over the span the folder would hold (whole ms, halves to even).

#include <gtest/gtest.h>

#include <QProcess>
#include <charconv>
#include <cstring>
#include <nlohmann/json.hpp>

#include "../core/TestOutings.h"
#include "core/compute/Frequency.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotScale.h"

namespace {

using namespace test_outings;

struct Outcome {
  int exit_code = -1;
  std::string out, err;
};

Outcome Orlan(const QStringList& args) {
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY), args);
  p.waitForFinished(60000);
  return {p.exitCode(), p.readAllStandardOutput().toStdString(), p.readAllStandardError().toStdString()};
}

uint32_t Bits(float v) {
  uint32_t b;
  std::memcpy(&b, &v, sizeof b);
  return b;
}

TEST(SpectrumCommand, PrintsTheWindowsTransformBitForBit) {
  QTemporaryDir home;
  RecordingMessages messages;
  DemoResult made;
  QString error;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, made, &error, 1)) << error.toStdString();
  const QString outing = JoinPath(JoinPath(home.path(), "Data"), "SPIE0201.DAT");
  const QStringList common{"spectrum", outing, "--lap", "1", "--home", home.path()};

  // A math channel at 500 Hz. 1014.5 ms is 1014, sample 507; rounded away it would be sample 508.
  const Outcome r = Orlan(common + QStringList{"--channel", "front_roll", "--start", "1014.5", "--end", "30000", "--json"});
  ASSERT_EQ(r.exit_code, 0) << r.err;
  const auto j = nlohmann::json::parse(r.out);

  Workspace ws(messages, home.path());
  ASSERT_TRUE(StartUp(ws, false));
  ASSERT_TRUE(OpenOuting(ws, outing));
  const int c = FindChannelByName(ws, 0, 0, QStringLiteral("FRONT_ROLL"));
  ASSERT_GE(c, 0);
  GetChannelData(ws, 0, 1, c);
  const std::vector<float>& samples = OutingAt(ws, 0).Laps[1].LapChannels[static_cast<std::size_t>(c)].Samples;
  const float rate = OutingAt(ws, 0).Channels[static_cast<std::size_t>(c)].Rate;
  const FftSpan span = SpanSamples(static_cast<int64_t>(samples.size()) - 1, rate, 1014, 30000);
  const std::vector<float> want = Spectrum(samples, span.Start, span.N);

  EXPECT_EQ(j["FirstSample"], span.Start);
  EXPECT_EQ(j["N"], span.N);
  EXPECT_EQ(j["BinHz"].get<double>(), rate * 1000.0 / span.N);
  ASSERT_EQ(j["Spectrum"].size(), want.size());
  // Each number read from the text as a float, not through the library's doubles.
  const char* p = r.out.c_str() + r.out.find('[') + 1;
  for (std::size_t i = 0; i < want.size(); ++i) {
    float got = 0;
    p = std::from_chars(p, r.out.c_str() + r.out.size(), got).ptr + 2;  // past ", "
    ASSERT_EQ(Bits(got), Bits(want[i])) << "bin " << i;
  }

  const Outcome empty = Orlan(common + QStringList{"--channel", "Lateral G", "--start", "5000", "--end", "5004"});
  EXPECT_NE(empty.exit_code, 0);
  EXPECT_NE(empty.err.find("holds no samples"), std::string::npos) << empty.err;
}

}  // namespace
