// `orlan xy`, `orlan histogram` and `orlan plot --kind` on a demo outing whose settings show three
// laps at a time in the windows: the commands look at the one lap asked for.

#include <gtest/gtest.h>

#include <QFileInfo>
#include <nlohmann/json.hpp>

#include "../CommandLine.h"
#include "../TestOutings.h"

namespace {

using namespace test_outings;

TEST(PlotCommandLine, OneLapWhateverTheWindowsShow) {
  QTemporaryDir home;
  RecordingMessages messages;
  DemoResult made;
  QString error;
  ASSERT_TRUE(CreateDemoInstallation(home.path(), messages, made, &error, 3)) << error.toStdString();
  {
    Workspace ws(messages, home.path());
    ASSERT_TRUE(StartUp(ws, false));
    ws.Settings.WriteInt(kAppAnalysis, FolderSection("UserOptions", 0), "LapsDisplayed", 3);
    ws.Settings.Sync(kAppAnalysis);
  }
  const QStringList at_home = {QStringLiteral("--home"), home.path()};
  const QString outing = JoinPath(JoinPath(home.path(), "Data"), "SPIE0201.DAT");
  const Outcome info = Orlan(QStringList{"info", outing, "--json"} + at_home);
  ASSERT_EQ(info.exit_code, 0) << info.err;
  const int lap_ms = nlohmann::json::parse(info.out)["Outing"]["Laps"][1]["LapTime"].get<int>();

  const struct {
    QStringList args;
    int start, end;  // the view, ms
  } views[] = {
      {{"xy", outing, "--lap", "1", "--y", "THROTTLE"}, 0, lap_ms},
      {{"histogram", outing, "--lap", "1", "--channel", "THROTTLE"}, 0, lap_ms},
      {{"histogram", outing, "--lap", "1", "--channel", "THROTTLE", "--start", "3.5", "--end", "1001.5"}, 4, 1002},
  };
  for (const auto& v : views) {
    const Outcome r = Orlan(v.args + QStringList{"--json"} + at_home);
    ASSERT_EQ(r.exit_code, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["TimeStart"], v.start) << v.args.join(' ').toStdString();
    EXPECT_EQ(j["TimeEnd"], v.end) << v.args.join(' ').toStdString();
    if (v.args[0] != "xy") continue;
    // The window's 32-bit fit, not a double beside it.
    for (const char* field : {"Slope", "Intercept", "Correlation"}) {
      const double value = j[field].get<double>();
      EXPECT_EQ(static_cast<double>(static_cast<float>(value)), value) << field;
    }
  }

  for (const char* kind : {"distance", "xy", "histogram"}) {
    const QString png = JoinPath(home.path(), QStringLiteral("%1.png").arg(kind));
    const Outcome r = Orlan(QStringList{"plot", outing, "--channels", "THROTTLE", "--laps", "1", "--kind", kind, "--out", png} + at_home);
    ASSERT_EQ(r.exit_code, 0) << kind << r.err;
    EXPECT_GT(QFileInfo(png).size(), 1000) << kind;
  }
}

}  // namespace
