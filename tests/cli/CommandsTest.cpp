// The `orlan` program run as a script runs it: `info`, `export`, `track` and `splits` on a demo
// installation, and on outings an independent logger could write (odd channels are warnings and
// the rest loads; a header the program can't take says so in its own words; exports stay readable
// when a raw float is not a number).

#include <QFileInfo>
#include <QProcess>
#include <nlohmann/json.hpp>
#include <string>

#include "../core/TestOutings.h"

namespace {

using namespace test_outings;

struct Outcome {
  int exit_code = -1;
  std::string out;
  std::string err;
};

Outcome Orlan(const QStringList& args) {
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY), args);
  p.waitForFinished(60000);
  return {p.exitCode(), p.readAllStandardOutput().toStdString(), p.readAllStandardError().toStdString()};
}

// One demo installation for the tests of the demo's outing SPIE0201.
class DemoCommands : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    home_ = new QTemporaryDir;
    RecordingMessages messages;
    DemoResult made;
    QString error;
    ASSERT_TRUE(CreateDemoInstallation(home_->path(), messages, made, &error, 1)) << error.toStdString();
  }
  static void TearDownTestSuite() { delete home_; }
  static QStringList Home() { return {QStringLiteral("--home"), home_->path()}; }
  static QString Outing() { return JoinPath(JoinPath(home_->path(), "Data"), "SPIE0201.DAT"); }
  static QString Map(const QString& name) { return JoinPath(JoinPath(home_->path(), "Track"), name); }
  static inline QTemporaryDir* home_ = nullptr;
};

// The math channels as the outing compiled them, exported like any other channel (the values
// themselves are the evaluator's tests').
TEST_F(DemoCommands, InfoListsTheCompiledMathChannelsAndExportHasThem) {
  const Outcome r = Orlan(QStringList{"info", "--json", Outing()} + Home());
  ASSERT_EQ(r.exit_code, 0) << r.out;
  const auto math = nlohmann::json::parse(r.out)["Outing"]["MathChannels"];
  ASSERT_EQ(math.size(), 4u);
  EXPECT_EQ(math[0]["Name"], "REAR_SLIP");
  EXPECT_EQ(math[2]["BoundText"], "$029 * 0.748000");  // this outing's own fuel density
  for (const auto& m : math) EXPECT_TRUE(m["Compiled"].get<bool>()) << m.dump();

  const Outcome e = Orlan(QStringList{"export", Outing(), "--lap", "fast", "--format", "json", "--channels", "REAR_SLIP"} +
                          Home());
  ASSERT_EQ(e.exit_code, 0) << e.err;
  const auto samples = nlohmann::json::parse(e.out)["Channels"][0]["Samples"];
  int nonzero = 0;
  for (const auto& v : samples) nonzero += v.is_number() && v.get<double>() != 0;
  EXPECT_GT(nonzero, 1000);
}

TEST_F(DemoCommands, TrackCreateDescribeAndSplit) {
  const Outcome made = Orlan(QStringList{"track", "create", Outing(), "--lap", "1", "--mode", "gyro", "--name", "Ring",
                                         "--invert-calibration", "--global-angle", "90"} + Home());
  ASSERT_EQ(made.exit_code, 0) << made.err;
  const Outcome info = Orlan(QStringList{"track", "info", Map("Ring.MAP"), "--json"} + Home());
  ASSERT_EQ(info.exit_code, 0) << info.err;
  const auto j = nlohmann::json::parse(info.out);
  EXPECT_EQ(j["Name"], "Ring");
  EXPECT_EQ(j["CreateMode"], 1);
  EXPECT_GT(j["Length"].get<double>(), 4000);
  EXPECT_EQ(j["Points"].get<double>(), j["Length"].get<double>());
  EXPECT_EQ(j["Splits"], j["Segments"]);
  EXPECT_GT(j["Segments"].size(), 10u);

  const Outcome splits = Orlan(QStringList{"splits", Outing(), "--map", Map("Ring.MAP"), "--json"} + Home());
  ASSERT_EQ(splits.exit_code, 0) << splits.err;
  const auto laps = nlohmann::json::parse(splits.out);
  ASSERT_GE(laps.size(), 3u);
  // Running times, ascending, one for each split of the map.
  double before = 0;
  for (const auto& s : laps[1]["Splits"]) {
    EXPECT_GT(s["Seconds"].get<double>(), before);
    before = s["Seconds"].get<double>();
  }
  EXPECT_EQ(laps[1]["Splits"].size(), j["Splits"].size());
}

TEST_F(DemoCommands, TrackRefusesWhatCantMakeAMap) {
  const std::pair<QStringList, const char*> cases[] = {
      {{"track", "create", Outing(), "--lap", "1", "--name", "../../outside"}, "Please enter a valid track name"},
      {{"track", "create", Outing(), "--lap", "99", "--name", "X"}, "No lap 99: the outing has laps 0 to"},
      {{"track", "info", Map("NONE.MAP")}, "Can't open file: "},
  };
  for (const auto& [args, says] : cases) {
    const Outcome o = Orlan(args + Home());
    EXPECT_NE(o.exit_code, 0) << args.join(' ').toStdString();
    EXPECT_NE(o.err.find(says), std::string::npos) << o.err;
  }
  EXPECT_FALSE(QFileInfo::exists(JoinPath(home_->path(), "outside.MAP")));
}

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
  const std::pair<int32_t, std::size_t> cases[] = {{10000, 2}, {400, 1}};
  for (const auto& [end_ms, rows] : cases) {
    TestHome home;
    const Outcome r = Orlan(QStringList{"info", "--json", OddOuting(home, end_ms)} + Home(home));
    ASSERT_EQ(r.exit_code, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["Warnings"].size(), 2u) << j["Warnings"].dump();
    ASSERT_TRUE(j.contains("Outing")) << "the outing loads";
    EXPECT_EQ(j["Outing"]["Laps"].size(), rows) << end_ms;
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

// `orlan xy`, `orlan histogram` and `orlan plot --kind` on a demo outing whose settings show three
// laps at a time in the windows: the commands look at the one lap asked for.
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

  const std::tuple<QStringList, int, int> views[] = {
      {{"xy", outing, "--lap", "1", "--y", "THROTTLE"}, 0, lap_ms},
      {{"histogram", outing, "--lap", "1", "--channel", "THROTTLE"}, 0, lap_ms},
      {{"histogram", outing, "--lap", "1", "--channel", "THROTTLE", "--start", "3.5", "--end", "1001.5"}, 4, 1002},
  };
  for (const auto& [args, start, end] : views) {
    const Outcome r = Orlan(args + QStringList{"--json"} + at_home);
    ASSERT_EQ(r.exit_code, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["TimeStart"], start) << args.join(' ').toStdString();
    EXPECT_EQ(j["TimeEnd"], end) << args.join(' ').toStdString();
    if (args[0] != "xy") continue;
    // The window's 32-bit fit, not a double beside it.
    for (const char* field : {"Slope", "Intercept", "Correlation"}) {
      const double value = j[field].get<double>();
      EXPECT_EQ(static_cast<double>(static_cast<float>(value)), value) << field;
    }
  }

  // Every window a picture; the map windows on the demo's map.
  const QString map = JoinPath(JoinPath(home.path(), "Track"), "Silverstone.MAP");
  for (const char* kind : {"distance", "xy", "histogram", "spectrum", "spectrogram", "track", "contour", "track-report"}) {
    const QString png = JoinPath(home.path(), QStringLiteral("%1.png").arg(kind));
    const QStringList args = {"plot", outing, "--channels", "THROTTLE", "--laps", "1", "--kind", kind, "--map", map, "--out", png};
    const Outcome r = Orlan(args + at_home);
    ASSERT_EQ(r.exit_code, 0) << kind << r.err;
    EXPECT_GT(QFileInfo(png).size(), 1000) << kind;
  }
  const Outcome no_map = Orlan(QStringList{"plot", outing, "--channels", "THROTTLE", "--kind", "track", "--map",
                                           JoinPath(home.path(), "none.MAP"), "--out", JoinPath(home.path(), "x.png")} + at_home);
  EXPECT_NE(no_map.exit_code, 0);
  EXPECT_FALSE(QFileInfo::exists(JoinPath(home.path(), "x.png")));
}

}  // namespace
