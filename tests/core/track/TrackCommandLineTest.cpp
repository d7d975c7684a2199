// `orlan track create`, `orlan track info` and `orlan splits` on a demo installation.

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <nlohmann/json.hpp>

#include "../CommandLine.h"
#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/demo/DemoInstall.h"

namespace {

using test_outings::Orlan;
using test_outings::Outcome;

class TrackCommandLine : public ::testing::Test {
 protected:
  void SetUp() override {
    RecordingMessages messages;
    DemoResult made;
    QString error;
    ASSERT_TRUE(CreateDemoInstallation(home_.path(), messages, made, &error, 1)) << error.toStdString();
    outing_ = JoinPath(JoinPath(home_.path(), "Data"), "SPIE0201.DAT");
  }
  QStringList Home() const { return {QStringLiteral("--home"), home_.path()}; }
  QString Map(const QString& name) const { return JoinPath(JoinPath(home_.path(), "Track"), name); }
  QTemporaryDir home_;
  QString outing_;
};

TEST_F(TrackCommandLine, CreateDescribeAndSplit) {
  const Outcome made = Orlan(QStringList{"track", "create", outing_, "--lap", "1", "--mode", "gyro", "--name", "Ring",
                                         "--invert-calibration", "--global-angle", "90"} + Home());
  ASSERT_EQ(made.exit_code, 0) << made.err;
  ASSERT_TRUE(QFileInfo::exists(Map("Ring.MAP")));
  const Outcome info = Orlan(QStringList{"track", "info", Map("Ring.MAP"), "--json"} + Home());
  ASSERT_EQ(info.exit_code, 0) << info.err;
  const auto j = nlohmann::json::parse(info.out);
  EXPECT_EQ(j["Name"], "Ring");
  EXPECT_EQ(j["CreateMode"], 1);
  EXPECT_GT(j["Length"].get<double>(), 4000);
  EXPECT_EQ(j["Points"].get<double>(), j["Length"].get<double>());
  EXPECT_EQ(j["Splits"], j["Segments"]);
  EXPECT_GT(j["Segments"].size(), 10u);

  const Outcome splits = Orlan(QStringList{"splits", outing_, "--map", Map("Ring.MAP"), "--json"} + Home());
  ASSERT_EQ(splits.exit_code, 0) << splits.err;
  const auto laps = nlohmann::json::parse(splits.out);
  ASSERT_GE(laps.size(), 3u);
  const auto& lap = laps[1];
  // Running times, ascending, the last one the lap time.
  double before = 0;
  for (const auto& s : lap["Splits"]) {
    EXPECT_GT(s["Seconds"].get<double>(), before);
    before = s["Seconds"].get<double>();
  }
  EXPECT_EQ(lap["Splits"].size(), j["Splits"].size());
}

TEST_F(TrackCommandLine, RefusesWhatCantMakeAMap) {
  struct Case {
    QStringList args;
    const char* says;
  } cases[] = {
      {{"track", "create", outing_, "--lap", "1", "--name", "../../outside"}, "Please enter a valid track name"},
      {{"track", "create", outing_, "--lap", "99", "--name", "X"}, "No lap 99: the outing has laps 0 to"},
      {{"track", "info", Map("NONE.MAP")}, "Can't open file: "},
  };
  for (const Case& c : cases) {
    const Outcome o = Orlan(c.args + Home());
    EXPECT_NE(o.exit_code, 0) << c.args.join(' ').toStdString();
    EXPECT_NE(o.err.find(c.says), std::string::npos) << o.err;
  }
  EXPECT_FALSE(QFileInfo::exists(JoinPath(home_.path(), "outside.MAP")));
}

}  // namespace
