// `orlan info` and `orlan export` on outings an independent logger could write: odd channels are
// warnings and the rest of the outing loads; a header the program can't take says so in its own
// words; exports stay readable when a raw float is not a number.

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "../CommandLine.h"
#include "../TestOutings.h"

using namespace test_outings;

namespace {

// A converted outing (32-bit floats as they stand) of `end_ms` without beacons: a good channel
// holding NaN and infinities, one with an unknown rate code and one with a word size of 3.
QString OddOuting(TestHome& home, int32_t end_ms, const QString& version = QStringLiteral("8.0.0")) {
  OutingHeader h = SmallHeader(end_ms);
  h.LcuSerial = kConvertedSerial;
  h.Version = version;
  const double nan = std::nan(""), inf = HUGE_VAL;
  const QString path = home.Path(QStringLiteral("ODD.CNV"));
  WriteOuting(path, h, {Block(71, 3, 4, {1.5, nan, inf, -inf, 2.5}, kConvertedSerial),
                        Block(72, 10, 2, Ramp(10, 0, 1), kConvertedSerial), Block(79, 3, 3, {}, kConvertedSerial)});
  return path;
}

QStringList Home(TestHome& home) { return {QStringLiteral("--home"), home.Path(QString())}; }

TEST(OutingCommandLine, OddChannelsAreWarningsAndEveryLapRowIsListed) {
  const struct {
    int32_t end_ms;
    std::size_t rows;  // LastLap + 1: the closing row too
  } cases[] = {{10000, 2}, {400, 1}};
  for (const auto& c : cases) {
    TestHome home;
    const Outcome r = Orlan(QStringList{"info", "--json", OddOuting(home, c.end_ms)} + Home(home));
    ASSERT_EQ(r.exit_code, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["Warnings"].size(), 2u) << j["Warnings"].dump();
    ASSERT_TRUE(j.contains("Outing")) << "the outing loads";
    EXPECT_EQ(j["Outing"]["Laps"].size(), c.rows) << c.end_ms;
  }
}

TEST(OutingCommandLine, NotANumberIsNullInJsonAndEmptyInCsv) {
  TestHome home;
  const QString path = OddOuting(home, 10000);
  const Outcome json = Orlan(QStringList{"export", path, "--lap", "0", "--channels", "0", "--format", "json"} + Home(home));
  ASSERT_EQ(json.exit_code, 0) << json.err;
  const auto samples = nlohmann::json::parse(json.out)["Channels"][0]["Samples"];
  EXPECT_EQ(samples[0], 1.5);
  for (int i : {1, 2, 3}) EXPECT_TRUE(samples[i].is_null()) << i;
  EXPECT_EQ(samples[4], 2.5);

  const Outcome csv = Orlan(QStringList{"export", path, "--lap", "0", "--channels", "0"} + Home(home));
  ASSERT_EQ(csv.exit_code, 0) << csv.err;
  const QStringList lines = QString::fromStdString(csv.out).split('\n');
  ASSERT_GT(lines.size(), 5);
  EXPECT_EQ(lines[1], "0,1.5");
  EXPECT_EQ(lines[2], "0.01,");
  EXPECT_EQ(lines[5], "0.04,2.5");
}

TEST(OutingCommandLine, AHeaderTheProgramCantTakeSaysSoInItsOwnWords) {
  TestHome home;
  const Outcome r = Orlan(QStringList{"info", OddOuting(home, 10000, QStringLiteral("V8.2"))} + Home(home));
  EXPECT_EQ(r.exit_code, 2);
  EXPECT_NE(r.err.find("Process header: Unable to process header"), std::string::npos) << r.err;
  EXPECT_NE(r.err.find("does not begin with a digit"), std::string::npos) << r.err;
}

}  // namespace
