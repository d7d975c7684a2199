#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "core/app/Paths.h"
#include "core/app/Workspace.h"
#include "core/compute/MathDefinitions.h"

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace {

class MathFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    ws = std::make_unique<Workspace>(messages, home.path());
    ws->Paths = DefaultPaths(home.path());
    QDir().mkpath(ws->Paths.MathDirectory);
  }
  QString PathOf(const char* name) const { return ws->Paths.MathDirectory + '/' + name; }
  void Write(const char* name, const QStringList& lines) {
    QFile f(PathOf(name));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    for (const QString& l : lines) f.write(l.toLatin1() + "\r\n");
  }
  QByteArray Read(const char* name) const {
    QFile f(PathOf(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  }
  void Define(const QStringList& lines) {
    ws->MathDefs.assign(kMathDefRows, MathDefRec{});
    ws->MathCount = static_cast<int>(lines.size());
    for (int i = 0; i < lines.size(); ++i) ws->MathDefs[static_cast<std::size_t>(i)].Line = lines[i];
    ProcessMathDefs(*ws);
  }

  QTemporaryDir home;
  RecordingMessages messages;
  std::unique_ptr<Workspace> ws;
};

TEST_F(MathFiles, MissingFilesGiveEmptyTablesSilently) {
  EXPECT_TRUE(LoadMathChannels(*ws));
  EXPECT_TRUE(LoadGlobalConstants(*ws));
  EXPECT_EQ(ws->MathCount, 0);
  EXPECT_EQ(ws->GlobalConstantCount, 0);
  EXPECT_TRUE(messages.entries.empty());
  EXPECT_EQ(ws->MathFunctions[0], "ABS");  // the function table is filled all the same
}

// No more than 257 lines are looked at: the first line and blank lines count among them.
TEST_F(MathFiles, OnlyTheFirst257LinesCount) {
  // Blank lines between the first line and the definitions, definitions, definitions kept.
  const std::tuple<int, int, int> cases[] = {{0, 299, 256}, {0, 256, 256}, {100, 200, 156}};
  for (const auto& [blanks, definitions, kept] : cases) {
    QStringList lines{"[ZOL Math Channels]"};
    for (int i = 0; i < blanks; ++i) lines << (i % 2 ? "" : "   ");
    for (int i = 1; i <= definitions; ++i) lines << MathDefLine(QStringLiteral("Ch%1").arg(i), i, QString::number(i));
    Write("MATHCHL.DEF", lines);
    ASSERT_TRUE(LoadMathChannels(*ws));
    ASSERT_EQ(ws->MathCount, kept) << blanks << " blanks, " << definitions << " definitions";
    EXPECT_EQ(ws->MathDefs[static_cast<std::size_t>(kept - 1)].Line,
              MathDefLine(QStringLiteral("Ch%1").arg(kept), kept, QString::number(kept)));
    // What was cut is not written again.
    ASSERT_TRUE(SaveMathDefs(*ws));
    EXPECT_EQ(Read("MATHCHL.DEF").count("\r\n"), kept + 1);
  }
}

TEST_F(MathFiles, BlankAndTitleLinesAreSkippedAndLinesRightTrimmed) {
  Write("MATHCHL.DEF", {"[ZOL Math Channels]", "Bias[001] = Front / (Front + Rear)   ", "", "  ",
                        "; copied from ZOL Math Channels", "Root[002] = Sqrt(Bias)"});
  ASSERT_TRUE(LoadMathChannels(*ws));
  ASSERT_EQ(ws->MathCount, 2);
  EXPECT_EQ(ws->MathDefs[0].Line, "Bias[001] = Front / (Front + Rear)");
  EXPECT_EQ(ws->MathDefs[1].Line, "Root[002] = Sqrt(Bias)");
}

TEST_F(MathFiles, LinesSplitIntoNameIdAndExpression) {
  struct Case {
    const char* line;
    const char* name;
    int id;
    const char* expression;
  };
  const Case cases[] = {
      {"Bias[012] = Front / (Front + Rear)", "Bias", 12, "Front / (Front + Rear)"},
      {"Gain[3] =    Speed * 2", "Gain", 3, "Speed * 2"},
      {"NoBrackets = 5", "Undefined", 2, "5"},     // ID: the row's index
      {"[007] = 1", "Undefined", 7, "1"},          // "[" in the first place
      {"Open[9 = Speed", "Open", 3, "Speed"},      // no "]": the row's index
      {"Twice[010] = A = B", "Twice", 10, "A = B"},
      // a function at the head gets one blank in front of it
      {"R[020] = Sqrt(Speed)", "R", 20, " Sqrt(Speed)"},
      {"R[023] = Gate_Avg(A)", "R", 23, " Gate_Avg(A)"},
      {"R[025] = Ln2", "R", 25, " Ln2"},
      {"R[027] = - Speed", "R", 27, " - Speed"},  // so does a minus, which negates
      // but not a name that only begins like one
      {"R[026] = Max_Rpm + 1", "R", 26, "Max_Rpm + 1"},
      {"R[028] = Endurance", "R", 28, "Endurance"},
  };
  // Each case sits in row 2 or 3 so that "the row's index" means something.
  for (const Case& c : cases) {
    const int row = c.id == 3 ? 3 : 2;
    QStringList lines{"A[000] = 1", "B[001] = 2", "C[002] = 3", "D[003] = 4"};
    lines[row] = c.line;
    Define(lines);
    const MathDefRec& d = ws->MathDefs[static_cast<std::size_t>(row)];
    EXPECT_EQ(d.Name.trimmed(), c.name) << c.line;
    EXPECT_EQ(d.ID, c.id) << c.line;
    EXPECT_EQ(d.Expression, c.expression) << c.line;
  }
}

TEST_F(MathFiles, ConstantLinesNeedAnEqualsSignAfterAName) {
  Write("CONSTANT.DEF", {"[ZOL Global Constants]", "Gear1 = 3.25", "no equals sign", "= 5", "",
                         "Tyre Pressure=   1.8", "Link = Sheet1!R1C1", "A=B=C"});
  ASSERT_TRUE(LoadGlobalConstants(*ws));
  ASSERT_EQ(ws->GlobalConstantCount, 4);
  const char* expected[4][2] = {{"Gear1", "3.25"}, {"Tyre Pressure", "1.8"}, {"Link", "Sheet1!R1C1"}, {"A", "B=C"}};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(ws->GlobalConstants[static_cast<std::size_t>(i)].Name.trimmed(), expected[i][0]);
    EXPECT_EQ(ws->GlobalConstants[static_cast<std::size_t>(i)].Value, expected[i][1]);
  }
  // The blank before "=" stays in the name's field until trimmed.
  EXPECT_TRUE(ws->GlobalConstants[0].Name.startsWith("Gear1 "));

  QStringList many{"[ZOL Global Constants]"};
  for (int i = 0; i < 600; ++i) many << QStringLiteral("K%1 = %1").arg(i);
  Write("CONSTANT.DEF", many);
  ASSERT_TRUE(LoadGlobalConstants(*ws));
  EXPECT_EQ(ws->GlobalConstantCount, 511);  // 512 lines looked at, the first is the title
}

TEST_F(MathFiles, SavedDefinitionsLoadBackTheSame) {
  ws->MathDefs.assign(kMathDefRows, MathDefRec{});
  ws->MathDefs[0].Line = MathDefLine("Bias  ", 1, "Front / (Front + Rear)");
  ws->MathDefs[1].Line = MathDefLine("Root", 42, "Sqrt(Bias)");
  ws->MathCount = 2;
  EXPECT_EQ(ws->MathDefs[0].Line, "Bias[001] = Front / (Front + Rear)");
  ASSERT_TRUE(SaveMathDefs(*ws));
  EXPECT_EQ(Read("MATHCHL.DEF"),
            QByteArray("[ZOL Math Channels]\r\nBias[001] = Front / (Front + Rear)\r\nRoot[042] = Sqrt(Bias)\r\n"));
  ASSERT_TRUE(LoadMathChannels(*ws));
  ASSERT_EQ(ws->MathCount, 2);
  EXPECT_EQ(ws->MathDefs[1].Line, "Root[042] = Sqrt(Bias)");
}

}  // namespace
