#include <cstring>
#include <random>

#include "../TestOutings.h"

namespace {

void PutText(QByteArray& b, int at, int width, const char* text) {
  const int n = static_cast<int>(std::strlen(text));
  for (int i = 0; i < width; ++i) b[at + i] = i < n ? text[i] : ' ';
}

uint32_t Get(const QByteArray& b, int at, int width) {
  uint32_t v = 0;
  for (int i = 0; i < width; ++i) v |= static_cast<uint32_t>(static_cast<uint8_t>(b[at + i])) << (8 * i);
  return v;
}

uint32_t FloatBits(float f) {
  uint32_t u;
  std::memcpy(&u, &f, 4);
  return u;
}

// A head with a title, a version, clean group names and the given filler in its closing bytes.
QByteArray Head(char filler = '\0') {
  QByteArray b(256, filler);
  PutText(b, 0, 16, "ORLAN CHANNELS");
  PutText(b, 16, 8, "8.0");
  const char* groups[10] = {"Analog", "Digital", "Serial", "ECU", "OBM", "GPS", "PCU", "Math", "", "Spare"};
  for (int g = 0; g < 10; ++g) PutText(b, 24 + 16 * g, 16, groups[g]);
  return b;
}

QByteArray RandomBytes(int n, uint32_t seed) {
  std::mt19937 rng(seed);
  QByteArray b(n, '\0');
  for (char& c : b) c = static_cast<char>(rng());
  return b;
}

QString WriteTemp(const QString& dir, const QByteArray& bytes) {
  const QString path = dir + "/CHANNEL.DSC";
  EXPECT_TRUE(WriteFileAtomically(path, bytes));
  return path;
}

QByteArray ReadAll(const QString& path) {
  QByteArray bytes;
  ReadFileBytes(path, 0, 1 << 20, bytes);
  return bytes;
}

// A record cut short by the end of the file is read with zeros and written back whole.
TEST(ChannelDescriptors, AShortLastRecordIsPaddedWithZeros) {
  QTemporaryDir dir;
  QByteArray bytes = Head() + RandomBytes(128, 1);
  QByteArray part(64, '\0');
  PutText(part, 0, 32, "Brake Press Front");
  PutText(part, 32, 16, "bar");
  bytes += part;  // 256 + 192 bytes: two records, the second half there

  ChannelDescriptorFile file;
  ASSERT_TRUE(ReadChannelDescriptorFile(WriteTemp(dir.path(), bytes), file));
  ASSERT_EQ(file.Records.size(), 2u);
  const ChannelDescriptor& r = file.Records[1];
  EXPECT_EQ(r.Name.text, "Brake Press Front");
  EXPECT_EQ(r.Units.text, "bar");
  EXPECT_EQ(r.FftScaleMax, 0.0f);

  const QByteArray out = ChannelDescriptorFileBytes(file);
  ASSERT_EQ(out.size(), 256 + 2 * 128);
  EXPECT_EQ(out.left(256 + 128 + 64).mid(256), bytes.mid(256));
  EXPECT_EQ(out.mid(256 + 128 + 64), QByteArray(64, '\0'));

  // Half a record is no record: 256 + 64 rounds to 0.
  ASSERT_TRUE(ReadChannelDescriptorFile(WriteTemp(dir.path(), Head() + part), file));
  EXPECT_TRUE(file.Records.empty());
  EXPECT_EQ(ChannelDescriptorFileBytes(file).size(), 256);
  ASSERT_TRUE(ReadChannelDescriptorFile(WriteTemp(dir.path(), Head()), file));
  EXPECT_TRUE(file.Records.empty());
}

// A workspace whose setup directory holds a CHANNEL.DSC of the given bytes.
class DescriptorWorkspace : public ::testing::Test {
 protected:
  QString Install(const QByteArray& bytes) {
    b.ws.Paths = DefaultPaths(b.dir.path());
    QDir().mkpath(b.ws.Paths.SetupDirectory);
    return WriteTemp(b.ws.Paths.SetupDirectory, bytes);
  }
  test_outings::BareWorkspace b;
  Workspace* ws = &b.ws;
};

TEST_F(DescriptorWorkspace, AppendWritesARecordWithTheDefaults) {
  const QByteArray before = Head() + RandomBytes(3 * 128, 7);
  const QString path = Install(before);
  ASSERT_TRUE(ReadChannelDescriptors(*ws));
  ASSERT_EQ(ws->ChannelDscCount, 3);
  ASSERT_TRUE(AppendDescriptor(*ws, "Oil Temp"));
  EXPECT_EQ(ws->ChannelDscCount, 4);
  ASSERT_EQ(ws->ChannelDsc.size(), 4u);
  EXPECT_EQ(ws->ChannelDsc[3].Name.text, "Oil Temp");
  EXPECT_EQ(ws->ChannelDsc[3].DscIndex, 3);

  const QByteArray after = ReadAll(path);
  ASSERT_EQ(after.size(), 256 + 4 * 128);
  EXPECT_EQ(after.mid(256, 3 * 128), before.mid(256));  // the others untouched
  const QByteArray r = after.mid(256 + 3 * 128);
  EXPECT_EQ(r.left(32), QByteArray("Oil Temp").leftJustified(32, ' '));
  EXPECT_EQ(r.mid(32, 16), QByteArray(16, ' '));  // no units
  struct FieldValue {
    const char* name;
    int offset;
    int width;
    uint32_t value;
  };
  const FieldValue defaults[] = {  // the fields that are not zero
      {"ScreenMax", 52, 4, FloatBits(5.0f)}, {"Decimals", 66, 2, 1},      {"FftDecimals", 70, 2, 1},
      {"DataWord", 72, 2, 2},                {"DscIndex", 78, 2, 3},      {"EventHigh", 84, 4, FloatBits(5.0f)},
      {"FftAutoScale", 92, 2, 0xFFFF},       {"FilterLowCut", 100, 2, 500}, {"FilterHighCut", 102, 2, 1000},
      {"TileTop", 108, 2, 100},              {"FftScaleMax", 114, 4, FloatBits(100.0f)},
  };
  for (const FieldValue& f : defaults) EXPECT_EQ(Get(r, f.offset, f.width), f.value) << f.name;
  EXPECT_EQ(r.mid(56, 10), QByteArray(10, '\0'));  // group, smoothing, security, auto scale, standard code

  // The next one goes behind it, with its own index.
  ASSERT_TRUE(AppendDescriptor(*ws, "Water Temp"));
  EXPECT_EQ(ws->ChannelDscCount, 5);
  EXPECT_EQ(Get(ReadAll(path), 256 + 4 * 128 + 78, 2), 4u);
}

TEST_F(DescriptorWorkspace, WritingTheGroupsRewritesOnlyTheHead) {
  const QByteArray before = Head('\xAB') + RandomBytes(4 * 128, 9);
  const QString path = Install(before);
  ASSERT_TRUE(ReadChannelDescriptors(*ws));
  EXPECT_EQ(ws->GroupNames[2], "Telltale");
  ws->GroupNames[1] = "Brakes";
  ASSERT_TRUE(WriteChannelGroups(*ws));

  const QByteArray after = ReadAll(path);
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(after.left(24), before.left(24));  // title and version
  EXPECT_EQ(after.mid(24 + 16, 16), QByteArray("Brakes          "));
  EXPECT_EQ(after.mid(24 + 32, 16), QByteArray("Telltale        "));
  EXPECT_EQ(after.mid(24, 16), before.mid(24, 16));
  EXPECT_EQ(after.mid(184, 72), QByteArray(72, '\0'));
  EXPECT_EQ(after.mid(256), before.mid(256));
  EXPECT_EQ(ws->GroupNames[1], "Brakes");
  EXPECT_EQ(ws->ChannelDscCount, 4);
}

}  // namespace
