// The command line shows how an outing compiled its math channels and exports them like any
// other channel (the values themselves are the evaluator's tests').

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <nlohmann/json.hpp>

#include "../CommandLine.h"
#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/demo/DemoInstall.h"

namespace {

using test_outings::Orlan;
using test_outings::Outcome;

class MathCommandLine : public ::testing::Test {
 protected:
  void SetUp() override {
    RecordingMessages messages;
    DemoResult made;
    QString error;
    ASSERT_TRUE(CreateDemoInstallation(home_.path(), messages, made, &error, 1)) << error.toStdString();
    outing_ = JoinPath(JoinPath(home_.path(), "Data"), "SPIE0201.DAT");
  }
  QTemporaryDir home_;
  QString outing_;
};

TEST_F(MathCommandLine, InfoListsTheCompiledMathChannelsAndExportHasThem) {
  const Outcome r = Orlan({"info", "--json", "--home", home_.path(), outing_});
  ASSERT_EQ(r.exit_code, 0) << r.out;
  const auto math = nlohmann::json::parse(r.out)["Outing"]["MathChannels"];
  ASSERT_EQ(math.size(), 4u);
  EXPECT_EQ(math[0]["Name"], "REAR_SLIP");
  EXPECT_EQ(math[2]["BoundText"], "$029 * 0.748000");  // this outing's own fuel density
  for (const auto& m : math) EXPECT_TRUE(m["Compiled"].get<bool>()) << m.dump();

  const Outcome e = Orlan({"export", "--home", home_.path(), outing_, "--lap", "fast", "--format", "json",
                           "--channels", "REAR_SLIP"});
  ASSERT_EQ(e.exit_code, 0) << e.err;
  const auto samples = nlohmann::json::parse(e.out)["Channels"][0]["Samples"];
  ASSERT_GT(samples.size(), 1000u);
  int nonzero = 0;
  for (const auto& v : samples) nonzero += v.is_number() && v.get<double>() != 0;
  EXPECT_GT(nonzero, 1000);
}

}  // namespace
