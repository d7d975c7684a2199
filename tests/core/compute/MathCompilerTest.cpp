#include "core/compute/MathCompiler.h"

#include <QStringList>
#include <string>
#include <utility>

#include "../TestOutings.h"

namespace {

using namespace test_outings;

// An outing in slot 0 with the given channels and constants, and one math definition whose
// tokens the tests read back.
class Compiler {
 public:
  struct Channel {
    const char* name;
    uint16_t key;
  };

  explicit Compiler(const std::vector<Channel>& channels, const std::vector<ConstantRec>& constants = {}) {
    InitMathFunctions(b.ws);
    OutingRec& o = b.Outing();
    for (const Channel& c : channels) {
      ChannelRec rec;
      rec.Name = QString::fromLatin1(c.name);
      rec.Key = c.key;
      o.Channels.push_back(rec);
    }
    o.LastChannel = static_cast<int16_t>(o.Channels.size() - 1);
    o.OutingConstants = constants;
    b.ws.MathDefs.assign(kMathDefRows, MathDefRec{});
    b.ws.MathCount = 1;
  }

  // The tokens of `bound_text` as "text:kind", blank-separated; the Count in force afterwards
  // goes to `count`.
  std::string Compile(const QString& bound_text, int& count) {
    b.ws.MathDefs[0].BoundText = bound_text;
    CompilePostfix(b.ws, 0, 0);
    const PostfixRec& rec = b.Outing().Postfix.at(0);
    count = rec.Count;
    QStringList parts;
    for (int i = 0; i < rec.Count; ++i) {
      parts << rec.Tokens[static_cast<std::size_t>(i)].Text + ':' + QString::number(rec.Tokens[static_cast<std::size_t>(i)].Kind);
    }
    return parts.join(' ').toStdString();
  }
  std::string Compile(const QString& bound_text) {
    int count = 0;
    return Compile(bound_text, count);
  }

  // Binds `expression` the way a compile of the outing does.
  QString Bind(const QString& expression) { return BindConstants(b.ws, 0, BindChannelNames(b.ws, 0, expression)); }

  // Starts definition 0 off as if an earlier compile had left `count` tokens.
  void SetPreviousCount(int16_t count) {
    b.Outing().Postfix.assign(1, PostfixRec{});
    b.Outing().Postfix[0].Count = count;
  }

  BareWorkspace b;
};

const std::vector<Compiler::Channel> kThreeChannels = {{"A", 1}, {"B", 2}, {"C", 3}};

// The grammar that the priority table and the loop give: $000, $001, $002 stand for A, B, C.
TEST(MathCompiler, GrammarOfTheLanguage) {
  const std::pair<const char*, const char*> cases[] = {
      // "*" binds tighter than "/", "+" tighter than "-".
      {"$000 / $001 * $002", "000:0 001:0 002:0 *:3 /:3"},      // A / (B * C)
      {"$000 - $001 + $002", "000:0 001:0 002:0 +:3 -:3"},      // A - (B + C)
      {"$000 - $001 - $002", "000:0 001:0 -:3 002:0 -:3"},      // left-associative
      // A comparison or a function takes the one operand next to it, tighter than "^".
      {"$000 > $001 + $002", "000:0 001:0 >:3 002:0 +:3"},      // (A > B) + C
      {" Sin $000 ^ 2", "000:0 Sin:3 2:2 ^:3"},                 // (Sin A) ^ 2
      // Words of priority -1 nest to the right.
      {"$000 > $001 & $002", "000:0 001:0 002:0 &:3 >:3"},      // A > (B & C)
      {" Sin  ABS $000", "000:0 ABS:3 Sin:3"},  // words in a row stand two blanks apart
      // Parentheses give anything else, and a group is one operand.
      {" ABS ($000 - $001)", "000:0 001:0 -:3 ABS:3"},
      {"($000 + $001) * $002", "000:0 001:0 +:3 002:0 *:3"},
      {"$000 * ($001 + $002)", "000:0 001:0 002:0 +:3 *:3"},
      {"$000 / ($001 + $002) * 2", "000:0 001:0 002:0 +:3 2:2 *:3 /:3"},
      {"($000 + 1", "000:0 1:2 +:3"},  // an unclosed "(" is closed by the end
      // Operands: one channel, math channels, numbers as written.
      {"@004 * .5", "004:1 .5:2 *:3"},
      {"$000 * -2.500000", "000:0 -2.500000:2 *:3"},
      // A function is written as the function table spells it.
      {" sqrt $000", "000:0 Sqrt:3"},
      {" Gate_Avg ($000 * ($001 > 90))", "000:0 001:0 90:2 >:3 *:3 Gate_Avg:3"},
  };
  for (const auto& [bound, tokens] : cases) {
    Compiler c(kThreeChannels);
    EXPECT_EQ(c.Compile(QString::fromLatin1(bound)), tokens) << bound;
  }
}

// A text that cannot be compiled leaves the Count of the previous compile; the outing loads on.
TEST(MathCompiler, FailedCompileLeavesThePreviousCount) {
  auto ones = [](int n) {
    QStringList parts;
    for (int i = 0; i < n; ++i) parts << QStringLiteral("1");
    return parts.join(QStringLiteral(" + "));
  };
  const std::tuple<const char*, QString, int> cases[] = {
      {"a name the outing doesn't have", QStringLiteral("$000 + RPM"), 7},
      {"a name at the head", QStringLiteral("SPEED * 2"), 7},
      {"a word right behind a word", QStringLiteral(" Sin ABS $000"), 7},  // a blank starts each word
      {"a \")\" too many", QStringLiteral("$000) + 1"), 7},
      {"a \")\" too many after a group", QStringLiteral("($000 + 1)) * 2"), 7},
      {"129 tokens fit", ones(65), 129},
      {"131 tokens don't", ones(66), 7},
  };
  for (const auto& [what, bound, expected] : cases) {
    Compiler c(kThreeChannels);
    c.SetPreviousCount(7);
    int count = -1;
    c.Compile(bound, count);
    EXPECT_EQ(count, expected) << what;
    EXPECT_TRUE(c.b.messages.entries.empty()) << what;
  }
  // A fresh outing has no previous compile: nothing to evaluate.
  Compiler fresh(kThreeChannels);
  int count = -1;
  fresh.Compile(QStringLiteral("$000 + RPM"), count);
  EXPECT_EQ(count, 0);
}

TEST(MathCompiler, StackDeeperThan128StopsWithAMessage) {
  // Words in a row stand two blanks apart, as the editor writes them: each is rewritten as
  // " word " behind a text that already ends in a blank.
  for (const auto& [functions, tokens] : {std::pair{128, 129}, std::pair{129, 0}}) {  // 128 deep is allowed
    QString text = QStringLiteral(" Sin");
    for (int i = 1; i < functions; ++i) text += QStringLiteral("  Sin");
    Compiler c(kThreeChannels);
    c.SetPreviousCount(7);
    int count = -1;
    c.Compile(text + QStringLiteral(" $000"), count);
    EXPECT_EQ(count, tokens) << functions;
    EXPECT_EQ(LastMessage(c.b.messages).text, tokens ? "" : "Math Stack Overflow") << functions;
    EXPECT_EQ(LastMessage(c.b.messages).title, tokens ? "" : "Postfix Math") << functions;
  }
}

TEST(MathCompiler, ChannelNamesBindInTableOrder) {
  Compiler c({{"RPM", 83},
              {"RPM2", 84},
              {"DISTANCE", 70},
              {"SPEED", 68},
              {"LAP DISTANCE", kDerivedLapDistanceKey},
              {"REAR_SLIP", kFirstMathKey},
              {"", 0}});
  const std::pair<const char*, const char*> cases[] = {
      {"RPM / 100 + 2", "$000 / 100 + 2"},
      {"RPM2 - RPM", "$0002 - $000"},  // RPM comes first in the table and cuts RPM2 short
      {"XRPM + RPM_A + RPMB", "XRPM + RPM_A + RPMB"},
      {"rpm + Speed", "rpm + Speed"},  // names are searched with their case
      {"REAR_SLIP * SPEED", "@005 * $003"},  // a math channel is referred to by "@"
      // Distance binds nothing once "Lap Distance" lies ahead of the search.
      {"DISTANCE * 2", "$002 * 2"},
      {"LAP DISTANCE / 1000", "$004 / 1000"},
      {"DISTANCE - LAP DISTANCE", "DISTANCE - $004"},
      {"LAP DISTANCE - DISTANCE", "$004 - DISTANCE"},
  };
  for (const auto& [expression, bound] : cases) EXPECT_EQ(c.Bind(QString::fromLatin1(expression)), bound) << expression;

  // The longer name first in the table keeps it whole.
  Compiler longer_first({{"RPM2", 84}, {"RPM", 83}});
  EXPECT_EQ(longer_first.Bind(QStringLiteral("RPM2 - RPM")), "$000 - $001");
}

TEST(MathCompiler, ConstantsBindAsNumbersWithSixDecimals) {
  const std::pair<const char*, const char*> cases[] = {
      {"57.5", "57.500000"},
      {"3.14159265", "3.141593"},
      {"1e3", "1000.000000"},
      {"0.0000004", "0.000000"},
      {"12.5 mm", "12.500000"},
      {"abc", "0.000000"},
      {"Book1!R1C1", "0.000000"},  // a live link can't be reached here: it reads as 0
      {"!12", "0.000000"},  // no link, and no number either
  };
  for (const auto& [value, bound] : cases) {
    Compiler c(kThreeChannels, {{QStringLiteral("Gain"), QString::fromLatin1(value)}});
    EXPECT_EQ(c.Bind(QStringLiteral("A * Gain")), QStringLiteral("$000 * ") + bound) << value;
  }
}

}  // namespace
