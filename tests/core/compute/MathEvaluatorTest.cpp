#include "core/compute/MathEvaluator.h"

#include <cfloat>
#include <cstring>
#include <random>

#include "../TestOutings.h"
#include "core/app/Numbers.h"
#include "core/compute/MathBlocks.h"
#include "core/compute/MathChannels.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/MathOperators.h"
#include "core/outing/ChannelData.h"
#include "core/track/Laps.h"

namespace {

using namespace test_outings;

// ---- The operators over rows ----

struct RowCase {
  const char* word;
  std::vector<float> a, b, expected;
};

std::vector<float> Apply(const RowCase& c) {
  std::vector<float> a = c.a;
  const MathOp op = MathOpFromWord(QString::fromLatin1(c.word));
  if (IsBinaryOp(op)) {
    BinaryRow(op, a.data(), c.b.data(), static_cast<int64_t>(a.size()));
  } else {
    FunctionRow(op, a.data(), static_cast<int64_t>(a.size()));
  }
  return a;
}

TEST(MathOperators, EachWordOverARow) {
  const float big = 3e38f;
  const RowCase cases[] = {
      {"+", {1, 2, big}, {3, -2, big}, {4, 0, 0}},  // an overflow sets the sample to 0
      {"-", {1, 2}, {3, -2}, {-2, 4}},
      {"*", {1.5f, -2, big}, {2, 3, 10}, {3, -6, 0}},
      {"/", {1, 6, 5}, {0, 3, 0}, {0, 2, 0}},  // 0 where the divisor is 0
      {"^", {2, 10, 4}, {10, 100, 0.5f}, {1024, 0, 2}},  // 1e100 doesn't fit a float: 0
      {"^", {2, -8, 3}, {2, 0.5f, 2}, {4, -8, 3}},  // no real root: the operator ends there
      {">", {1, 2, 3}, {2, 2, 2}, {0, 0, 1}},
      {">=", {1, 2, 3}, {2, 2, 2}, {0, 1, 1}},
      {"<", {1, 2, 3}, {2, 2, 2}, {1, 0, 0}},
      {"=", {1, 2}, {2, 2}, {0, 1}},
      {"&", {12, 2.5f, 3.5f, 3e9f}, {10, 3, 7, 1}, {8, 2, 4, 0}},  // halves to even; too big: 0
      {"#", {12, 5}, {10, 5}, {6, 0}},
      {"%", {7, -7, 7, 9}, {3, 3, 0, 4}, {1, -1, 7, 9}},  // by 0 the operator ends
      {"ABS", {-2, 3}, {}, {2, 3}},
      {"Ln", {0, -1, 1}, {}, {0, 0, 0}},
      {"Sqrt", {-1, 0, 9}, {}, {0, 0, 3}},
      {"ACos", {0, 1, -0.5f}, {}, {static_cast<float>(M_PI / 2), 0, static_cast<float>(-M_PI / 3)}},
      {"ACos", {0.5f, 2, 0.5f}, {}, {static_cast<float>(M_PI / 3), 2, 0.5f}},  // no root of -3: ends
      {"Min", {3, 1, 2, 0}, {}, {3, 1, 1, 0}},
      {"Max", {3, 1, 4, 2}, {}, {3, 3, 4, 4}},
      {"Avg", {1, 2, 6}, {}, {3, 3, 3}},
      {"Gate_Avg", {0, 2, 0, 4}, {}, {3, 3, 3, 3}},
      {"Gate_Avg", {0, 0}, {}, {0, 0}},
      {"Not", {0, 5, 3e9f}, {}, {-1, -6, 0}},
      {"Ceil", {1, 5, 2}, {}, {5, 5, 5}},
      {"Floor", {1, -5, 2}, {}, {-5, -5, -5}},
      {"End", {4, 5, 6}, {}, {6, 6, 6}},
      {"abs", {-1}, {}, {0}},  // words are compared as the table spells them
      {"Bogus", {4, 5}, {}, {0, 0}},
  };
  for (const RowCase& c : cases) {
    const std::vector<float> got = Apply(c);
    ASSERT_EQ(got.size(), c.expected.size()) << c.word;
    for (std::size_t j = 0; j < got.size(); ++j) EXPECT_NEAR(got[j], c.expected[j], 1e-6f * std::max(1.0f, std::fabs(c.expected[j]))) << c.word << " at " << j;
  }
}

TEST(MathOperators, DerivAndIntegKeepTheirTail) {
  // At 100 Hz (0.1 samples per ms): the three-sample step times 333.0 times the rate.
  std::vector<float> a = {0, 1, 2, 3, 4, 5, 6};
  DerivRow(a.data(), 7, 0.1f);
  for (int i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(a[static_cast<std::size_t>(i)], 3 * 333.0f * 0.1f);
  EXPECT_EQ(a[4], 4);
  EXPECT_EQ(a[6], 6);

  std::vector<float> c(7, 2.0f);
  float accumulator = 99;
  IntegRow(c.data(), 7, 0.1f, accumulator);
  for (int i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(c[static_cast<std::size_t>(i)], 0.02f * static_cast<float>(i + 1));
  EXPECT_EQ(c[4], 2);
  EXPECT_FLOAT_EQ(accumulator, 0.08f);
}

// ---- Rates ----

TEST(MathRates, LowestRateOfTheOperandsInTwoPasses) {
  // Channels 0..2 are logged at 100 Hz, 10 Hz and not at all; 3..5 are derived; math from 6.
  const std::pair<std::vector<QString>, std::vector<float>> cases[] = {
      {{"$000 + $001"}, {0.01f}},
      {{"3 + 4"}, {0.001f}},
      {{"$000 * $002"}, {0}},  // an operand without samples
      {{"$000", "@006 + $001"}, {0.1f, 0.1f}},  // "@" alone decides the second pass
      {{"@007", "$000"}, {0.1f, 0.1f}},  // a later one naming logged channels is rated in the first pass
      {{"$999"}, {0}},
  };
  for (const auto& [bound, expected] : cases) {
    BareWorkspace b;
    OutingRec& o = b.Outing();
    o.LoggedCount = 3;
    o.Channels.resize(6 + bound.size() + 1);
    o.Channels[0].Rate = 0.1f;
    o.Channels[1].Rate = 0.01f;
    b.ws.MathDefs.assign(kMathDefRows, MathDefRec{});
    b.ws.MathCount = static_cast<int>(bound.size());
    for (std::size_t i = 0; i < bound.size(); ++i) b.ws.MathDefs[i].BoundText = bound[i];
    CalcMathRates(b.ws, 0);
    for (std::size_t i = 0; i < expected.size(); ++i)
      EXPECT_EQ(o.Channels[6 + i].Rate, expected[i]) << bound[i].toStdString();
  }
}

// Two outings whose distance (10 Hz) grows by 10 m and by 5 m a sample, the second the Datum: at
// each distance this lap is ahead by a tenth of a second for each sample it has driven.
TEST(MathDelta, TimeBehindTheDatumAtTheSameDistance) {
  TestHome home;
  Workspace& ws = home.ws();
  ws.Options.AutoFilterET = false;
  ws.MathDefs[0].Line = QStringLiteral("Time_Delta[001] =  Delta TIME");
  ws.MathCount = 1;
  ProcessMathDefs(ws);
  for (int slot : {0, 1}) {
    const QString path = home.Path(QStringLiteral("D%1.DAT").arg(slot));
    ASSERT_TRUE(WriteOuting(path, SmallHeader(10000),
                            {Block(0, 6, 2, Ramp(101, 12, 0)), Block(70, 6, 2, Ramp(101, 0, slot == 0 ? 10 : 5))}));
    ASSERT_TRUE(home.Load(slot, path));
  }
  ws.CurFolder = 0;
  ws.FolderTable[0].DatumOuting = 1;
  ws.FolderTable[0].DatumLap = 0;
  const OutingRec& o = home.Outing(0);
  GetChannelData(ws, 0, 0, o.LoggedCount + 3);
  const std::vector<float>& behind = o.Laps[0].LapChannels[static_cast<std::size_t>(o.LoggedCount + 3)].Samples;
  ASSERT_GT(behind.size(), 51u);
  for (std::size_t j = 0; j <= 50; ++j) ASSERT_FLOAT_EQ(behind[j], -0.1f * static_cast<float>(j)) << j;
}

// FAST logged at 500 samples a second, SLOW at 200: their sum runs at 200, and sample j takes
// FAST's sample j x 2.5 rounded halves to even (7.5 -> 8). A minus at the head negates, also
// when the formula is worked out in blocks.
TEST(MathResampling, AFasterOperandIsReadAtTheNearestSample) {
  TestHome home;
  Workspace& ws = home.ws();
  ws.MathDefs[0].Line = QStringLiteral("Sum[001] = FAST + SLOW");
  ws.MathDefs[1].Line = QStringLiteral("Neg[002] = - FAST");
  ws.MathCount = 2;
  ProcessMathDefs(ws);
  OutingHeader h = SmallHeader(10000);
  h.InputNames[1] = QStringLiteral("FAST");
  h.InputNames[2] = QStringLiteral("SLOW");
  h.InputCalibrations[1] = h.InputCalibrations[2] = {1, 0, 0, {}, {}, 0, 1, 0};  // the words as they are
  const QString path = home.Path(QStringLiteral("RATES.DAT"));
  ASSERT_TRUE(WriteOuting(path, h, {Block(1, 1, 2, Ramp(5001, 0, 1)), Block(2, 2, 2, Ramp(2001, 0, 0))}));
  ASSERT_TRUE(home.Load(0, path));
  const OutingRec& o = home.Outing(0);
  const int sum = o.LoggedCount + 3, neg = sum + 1;
  GetChannelData(ws, 0, 0, sum);
  const std::vector<float>& v = o.Laps[0].LapChannels[static_cast<std::size_t>(sum)].Samples;
  ASSERT_GT(v.size(), 8u);
  EXPECT_EQ(std::vector<float>(v.begin(), v.begin() + 8), (std::vector<float>{0, 2, 5, 8, 10, 12, 15, 18}));
  std::vector<float> blocks;
  ASSERT_TRUE(EvaluateByBlocks(ws, 0, 0, neg, FetchUpperBound(ws, 0, 0, neg), blocks));
  EXPECT_EQ(blocks[3], -3.0f);
}

// ---- Formulas over demo outings ----

// Two demo outings of Silverstone, two timed laps each, in slots 0 and 1.
class MathOverDemo : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    home_ = new TestHome;
    ASSERT_TRUE(home_->Load(0, SharedDemoOuting("SILV0101.DAT", 2).path));
    ASSERT_TRUE(home_->Load(1, SharedDemoOuting("SILV0102.DAT", 2).path));
  }
  static void TearDownTestSuite() { delete home_; }
  void SetUp() override {
    FolderRec& f = ws().FolderTable[0];
    f.DatumOuting = -1;
    f.DatumLap = 0;
    ws().CurFolder = 0;
  }

  static Workspace& ws() { return home_->ws(); }
  static OutingRec& Outing(int slot = 0) { return home_->Outing(slot); }

  // Makes `lines` the definitions ("Name[001] = expression") and recompiles the loaded outings.
  static void Define(const std::vector<QString>& lines) {
    ws().MathDefs.assign(kMathDefRows, MathDefRec{});
    ws().MathCount = static_cast<int>(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) ws().MathDefs[i].Line = lines[i];
    ProcessMathDefs(ws());
    RecompileLoadedOutings(ws());
  }

  static int Index(const char* name, int slot = 0) {
    const OutingRec& o = Outing(slot);
    for (int c = 0; c < static_cast<int>(o.Channels.size()); ++c) {
      if (o.Channels[static_cast<std::size_t>(c)].Name == QLatin1String(name)) return c;
    }
    ADD_FAILURE() << name << " is not in the outing";
    return 0;
  }
  static int Math(int i, int slot = 0) { return Outing(slot).LoggedCount + 3 + i; }

  static const std::vector<float>& Fetch(int channel, int lap = 1, int slot = 0) {
    GetChannelData(ws(), slot, lap, channel);
    return Outing(slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
  }
  static float Rate(int channel, int slot = 0) { return Outing(slot).Channels[static_cast<std::size_t>(channel)].Rate; }

  static TestHome* home_;
};
TestHome* MathOverDemo::home_ = nullptr;

// A chain M1 = speed, Mk = M(k-1) + 1: nine levels evaluate; the tenth finds zeros at the
// ninth level's reference, comes up one operand short and reads as zeros.
TEST_F(MathOverDemo, NineLevelsNestAndTheTenthFails) {
  std::vector<QString> lines{"M1[001] = SYSTEM SPEED"};
  for (int k = 2; k <= 10; ++k) lines.push_back(QStringLiteral("M%1[%2] = M%3 + 1").arg(k).arg(k, 3, 10, QLatin1Char('0')).arg(k - 1));
  lines.push_back("Self[011] = SELF + 1");  // names are held in upper case
  lines.push_back("Short[012] = ( + 1)");
  Define(lines);
  const std::vector<float>& speed = Fetch(Index("SYSTEM SPEED"));
  const std::vector<float>& m9 = Fetch(Math(8));
  ASSERT_EQ(m9.size(), speed.size());
  for (std::size_t j = 0; j + 1 < m9.size(); ++j) ASSERT_EQ(m9[j], speed[j] + 1 + 1 + 1 + 1 + 1 + 1 + 1 + 1) << j;
  for (int channel : {Math(9), Math(10), Math(11)}) {
    const std::vector<float>& v = Fetch(channel);
    EXPECT_EQ(Outing().Laps[1].LapChannels[static_cast<std::size_t>(channel)].Loaded, -1);
    EXPECT_TRUE(std::all_of(v.begin(), v.end(), [](float x) { return x == 0; })) << channel;
  }
}

// A math operand carries its own filter into the formula that names it.
TEST_F(MathOverDemo, MathOperandIsFiltered) {
  Define({"Smooth_Speed[001] = SYSTEM SPEED", "Copy[002] = SMOOTH_SPEED"});
  ChannelRec& smooth = Outing().Channels[static_cast<std::size_t>(Math(0))];
  smooth.FilterKind = 1;
  smooth.SmoothWidth = 9;
  const std::vector<float>& filtered = Fetch(Math(0));
  const std::vector<float>& copy = Fetch(Math(1));
  const std::vector<float>& raw = Fetch(Index("SYSTEM SPEED"));
  ASSERT_EQ(copy.size(), filtered.size());
  int differs = 0;
  for (std::size_t j = 0; j + 1 < copy.size(); ++j) {
    ASSERT_EQ(copy[j], filtered[j]) << j;
    differs += filtered[j] != raw[j];
  }
  EXPECT_GT(differs, 100);
}

// Formulas that work sample by sample run over blocks; the result must be the evaluation by
// rows, bit for bit, faults included: random formulas over channels of four rates.
TEST_F(MathOverDemo, BlocksGiveWhatRowsGive) {
  const char* operands[] = {"SYSTEM SPEED", "THROTTLE", "BRAKE PRESSURE", "GEAR", "LATERAL G", "2.5", "0", "0.5"};
  const char* binary[] = {"+", "-", "*", "/", "^", ">", ">=", "<", "<=", "=", "!=", "&", "|", "#", "%"};
  const char* functions[] = {"ABS", "ACos", "ASin", "ATan", "Cos", "Exp", "Ln", "Log", "Sin", "Sqrt", "Tan", "Not"};
  std::mt19937 random(7);
  auto pick = [&](auto& table) { return QString::fromLatin1(table[random() % std::size(table)]); };
  std::function<QString(int)> expression = [&](int depth) -> QString {
    switch (depth > 3 ? 0 : random() % 5) {
      case 0: return pick(operands);
      case 1: return expression(depth + 1) + " " + pick(binary) + " " + expression(depth + 1);
      case 2: return " " + pick(functions) + " (" + expression(depth + 1) + ")";
      case 3: return "(" + expression(depth + 1) + ") " + pick(binary) + " " + pick(operands);
      default: return pick(operands) + " " + pick(binary) + " (" + expression(depth + 1) + ")";
    }
  };
  std::vector<QString> lines;
  for (int i = 0; i < 200; ++i) lines.push_back(QStringLiteral("F%1[%1] = ").arg(i + 1) + (i % 10 == 0 ? "- " : "") + expression(0));
  Define(lines);
  int by_blocks = 0;
  for (int i = 0; i < 200; ++i) {
    const int channel = Math(i);
    const int64_t n = FetchUpperBound(ws(), 0, 1, channel);
    const std::vector<float> rows = EvaluateByRows(ws(), 0, 1, channel, n);
    std::vector<float> blocks;
    if (!EvaluateByBlocks(ws(), 0, 1, channel, n, blocks)) continue;
    ++by_blocks;
    ASSERT_EQ(blocks.size(), rows.size()) << lines[static_cast<std::size_t>(i)].toStdString();
    for (std::size_t j = 0; j < rows.size(); ++j) {
      const bool same = std::memcmp(&blocks[j], &rows[j], sizeof(float)) == 0 || (std::isnan(blocks[j]) && std::isnan(rows[j]));
      ASSERT_TRUE(same) << lines[static_cast<std::size_t>(i)].toStdString() << " at " << j << ": " << blocks[j] << " against " << rows[j];
    }
  }
  EXPECT_GT(by_blocks, 150);
}

}  // namespace
