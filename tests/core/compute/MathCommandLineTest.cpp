// The command line shows how an outing compiled its math channels and exports them like any
// other channel.

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

TEST_F(MathCommandLine, InfoListsTheCompiledMathChannels) {
  const Outcome r = Orlan({"info", "--json", "--home", home_.path(), outing_});
  ASSERT_EQ(r.exit_code, 0) << r.out;
  const auto j = nlohmann::json::parse(r.out);
  const auto& math = j["Outing"]["MathChannels"];
  ASSERT_EQ(math.size(), 4u);
  EXPECT_EQ(math[0]["Name"], "REAR_SLIP");
  EXPECT_EQ(math[2]["BoundText"], "$029 * 0.748000");  // this outing's own fuel density
  for (const auto& m : math) {
    EXPECT_TRUE(m["Compiled"].get<bool>()) << m.dump();
    EXPECT_GT(m["Rate"].get<double>(), 0.0) << m.dump();
  }
}

// The exported math channel equals the formula over the exported logged channels.
TEST_F(MathCommandLine, ExportedMathAgreesWithItsOperands) {
  const Outcome r = Orlan({"export", "--home", home_.path(), outing_, "--lap", "fast", "--format", "csv", "--channels",
                       "REAR_SLIP,WHEEL SPEED RL,WHEEL SPEED RR,WHEEL SPEED FL,WHEEL SPEED FR"});
  ASSERT_EQ(r.exit_code, 0);
  const QStringList lines = QString::fromStdString(r.out).split('\n', Qt::SkipEmptyParts);
  ASSERT_GT(lines.size(), 1000);
  EXPECT_TRUE(lines[0].contains("REAR_SLIP"));
  int checked = 0;
  for (qsizetype i = 1; i < lines.size() - 600; ++i) {  // the last samples lie past the data
    const QStringList f = lines[i].split(',');
    ASSERT_GE(f.size(), 6);
    const float rl = f[2].toFloat(), rr = f[3].toFloat(), fl = f[4].toFloat(), fr = f[5].toFloat();
    if (fl + fr == 0) continue;
    ASSERT_FLOAT_EQ(f[1].toFloat(), (rl + rr) * 100.0f / (fl + fr) - 100.0f) << lines[i].toStdString();
    ++checked;
  }
  EXPECT_GT(checked, 1000);
}

}  // namespace
