#include "core/compute/OutingConstants.h"

#include <utility>

#include "../TestOutings.h"

namespace {

using namespace test_outings;

const std::vector<ConstantRec> kGlobals = {
    {QStringLiteral("Brake Bias "), QStringLiteral("57.5")},  // the blank before " = " stays in the name
    {QStringLiteral("Front Weight"), QStringLiteral("0.45")},
    {QStringLiteral("Fuel Density"), QStringLiteral("0.745")},
    {QStringLiteral("Wheelbase"), QStringLiteral("3.0")},
    {QStringLiteral("Final Drive"), QStringLiteral("3.2")},
};

// A home with the global constants above and a small outing, with or without a constants block.
class OutingConstantsFile : public ::testing::Test {
 protected:
  void SetUp() override {
    home.ws().GlobalConstants = kGlobals;
    home.ws().GlobalConstantCount = static_cast<int>(kGlobals.size());
  }
  QString Write(const char* name, const std::vector<ConstantEntry>* constants) {
    const QString path = home.Path(QString::fromLatin1(name));
    QString error;
    EXPECT_TRUE(WriteOutingFile(path, SmallHeader(5990), {Block(68, 3, 2, Ramp(600, 0, 10))}, constants, &error))
        << error.toStdString();
    return path;
  }
  std::vector<QString> Values(int slot) {
    std::vector<QString> v;
    for (const ConstantRec& c : home.Outing(slot).OutingConstants) v.push_back(c.Value);
    return v;
  }

  TestHome home;
};

// Known names take the outing's values, unknown ones are dropped; without a block the global
// values stand.
TEST_F(OutingConstantsFile, KnownNamesTakeTheOutingsValuesUnknownAreDropped) {
  const std::vector<ConstantEntry> stored = {
      {QStringLiteral("Tyre Pressure"), 1.6f}, {QStringLiteral("Brake Bias"), 58.5f},
      {QStringLiteral("Rear Wing"), 12.0f},    {QStringLiteral("Fuel Density"), 0.748f},
      {QStringLiteral("Wheelbase"), 2.95f},
  };
  ASSERT_TRUE(home.Load(0, Write("FIVE.DAT", &stored)));
  ASSERT_TRUE(home.Load(1, Write("NONE.DAT", nullptr)));
  EXPECT_EQ(home.Outing(0).OutingConstantCount, 5);
  for (std::size_t i = 0; i < kGlobals.size(); ++i) EXPECT_EQ(home.Outing(0).OutingConstants.at(i).Name, kGlobals[i].Name);
  EXPECT_EQ(Values(0), (std::vector<QString>{"58.5", "0.45", "0.748", "2.95", "3.2"}));
  EXPECT_EQ(home.Outing(1).OutingConstantCount, 0);
  EXPECT_EQ(Values(1), (std::vector<QString>{"57.5", "0.45", "0.745", "3.0", "3.2"}));
  EXPECT_TRUE(home.messages.entries.empty());
}

// The block is written in place: the data before it, the tail of a longer old block and
// whatever stands behind it keep their bytes, and the file never gets shorter.
TEST_F(OutingConstantsFile, SaveWritesTheBlockInPlaceAndKeepsEveryOtherByte) {
  const std::vector<ConstantEntry> seven = {
      {QStringLiteral("A1"), 1}, {QStringLiteral("A2"), 2}, {QStringLiteral("A3"), 3},
      {QStringLiteral("A4"), 4}, {QStringLiteral("A5"), 5}, {QStringLiteral("A6"), 6}, {QStringLiteral("A7"), 7}};
  const QString path = Write("SAVE.DAT", &seven);
  {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::Append));
    f.write("TRAILER");
  }
  ASSERT_TRUE(home.Load(0, path));
  OutingRec& o = home.Outing(0);
  QByteArray before;
  ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 24, before));

  o.OutingConstants[0].Value = QStringLiteral("61.25");
  o.OutingConstants[1].Value = QStringLiteral("Book1!R1C1");  // a link keeps only the number in front
  o.OutingConstants[2].Value = QStringLiteral("0.75!Setup");
  o.OutingConstants[3].Value = QStringLiteral("-3");
  ASSERT_TRUE(SaveOutingConstants(home.ws(), 0));
  EXPECT_TRUE(home.messages.entries.empty());

  QByteArray after;
  ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 24, after));
  const qsizetype new_end = o.DataEnd - 1 + 128 + 5 * 36;
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(after.left(o.DataEnd - 1), before.left(o.DataEnd - 1));
  EXPECT_EQ(after.mid(new_end), before.mid(new_end));
  EXPECT_TRUE(after.endsWith("TRAILER"));
  std::vector<ConstantEntry> block;
  ASSERT_TRUE(ReadConstantsBlock(path, o.DataEnd - 1, block));
  const std::vector<std::pair<QString, float>> expected = {
      {"Brake Bias", 61.25f}, {"Front Weight", 0}, {"Fuel Density", 0.75f}, {"Wheelbase", -3}, {"Final Drive", 3.2f}};
  ASSERT_EQ(block.size(), expected.size());
  for (std::size_t i = 0; i < block.size(); ++i) {
    EXPECT_EQ(block[i].Name.text, expected[i].first);
    EXPECT_EQ(block[i].Value, expected[i].second) << i;
  }

  // Read back, as the outing loads again.
  ASSERT_TRUE(home.Load(0, path));
  EXPECT_EQ(Values(0), (std::vector<QString>{"61.25", "0", "0.75", "-3", "3.2"}));
}

TEST_F(OutingConstantsFile, SaveOfAnOutingThatIsGoneSaysSo) {
  const QString path = Write("GONE.DAT", nullptr);
  ASSERT_TRUE(home.Load(0, path));
  ASSERT_TRUE(QFile::remove(path));
  EXPECT_FALSE(SaveOutingConstants(home.ws(), 0));
  EXPECT_EQ(LastMessage(home.messages).title, "Save Constants");
  EXPECT_FALSE(QFile::exists(path));
}

TEST(OutingConstants, LinksAndNumbers) {
  const std::tuple<const char*, bool, const char*, double> cases[] = {
      {"57.5", false, "57.5", 57.5},
      {"Book1!R1C1", true, "0", 0},  // no link service here: an unreachable link reads as 0
      {"!12", false, "!12", 0},  // the mark must stand at the second character or later
      {"  -2.5e2x", false, "  -2.5e2x", -250},
      {"+.5", false, "+.5", 0.5},
      {"1e", false, "1e", 1},
      {"- 5", false, "- 5", 0},
      {"", false, "", 0},
  };
  for (const auto& [text, link, resolved, number] : cases) {
    const QString value = QString::fromLatin1(text);
    EXPECT_EQ(IsConstantLink(value), link) << text;
    EXPECT_EQ(ResolveConstantLink(value), resolved) << text;
    EXPECT_EQ(LeadingNumber(value), number) << text;
  }
  EXPECT_EQ(ConstantValueText(0.748f), "0.748");
  EXPECT_EQ(ConstantValueText(58.5f), "58.5");
  EXPECT_EQ(ConstantValueText(1234567.0f), "1234567");
}

}  // namespace
