#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <functional>
#include <random>
#include <vector>

#include "core/app/Files.h"
#include "core/outing/OutingFormat.h"
#include "core/outing/OutingHeader.h"

namespace {

ChannelTableEntry Entry(uint16_t key, uint8_t rate, uint8_t word, uint16_t start_page, uint16_t start_offset,
                        uint16_t end_page, uint16_t end_offset) {
  return ChannelTableEntry{key, rate, word, start_offset, start_page, end_offset, end_page};
}

// A plain outing with three channels of 1000, 15884 and 4000 bytes.
OutingHeader PlainHeader() {
  OutingHeader h;
  h.SystemName = "LCU";
  h.Version = "8.0.0";
  h.LoggedChannels = 3;
  h.ChannelTable[0] = Entry(0, 3, 2, 0, 0, 0, 1000);
  h.ChannelTable[1] = Entry(1, 3, 2, 0, 1000, 1, 500);
  h.ChannelTable[2] = Entry(130, 0, 4, 1, 500, 1, 4500);
  return h;
}
constexpr int64_t kPlainDataEnd = 16384 + 1000 + 15884 + 4000;

TEST(OutingFormat, RateCodesGiveSamplesPerMillisecond) {
  struct Case {
    int code;
    uint16_t system_flags;
    float rate;
  };
  const Case cases[] = {
      {0, 0, 1.0f},    {1, 0, 0.5f},       {2, 0, 0.2f},      {2, 1, 0.25f},     {2, 0x8000, 0.25f},
      {2, 0x0100, 0.25f}, {2, 0xFFFF, 0.25f}, {3, 0, 0.1f},   {3, 1, 0.1f},      {4, 0, 0.05f},
      {5, 0, 0.02f},   {6, 0, 0.01f},      {7, 0, 0.005f},    {8, 0, 0.002f},    {9, 0, 0.001f},
      {0, 1, 1.0f},    {10, 0, 0.0f},      {12, 1, 0.0f},     {255, 0, 0.0f},    {-1, 0, 0.0f},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RateFromCode(c.code, c.system_flags), c.rate) << "code " << c.code << " flags " << c.system_flags;
  }
  // The memory partition window knows no 250 Hz: code 2 is always 200.
  const int hz[] = {1000, 500, 200, 100, 50, 20, 10, 5, 2, 1};
  for (int code = 0; code < 10; ++code) EXPECT_EQ(RateCodeHz(code), hz[code]) << code;
  for (int code : {10, 12, 255, -1}) EXPECT_EQ(RateCodeHz(code), 0) << code;
}

TEST(OutingFormat, SampleTypeByWordSizeKeyAndSerial) {
  struct Case {
    int word;
    int key;
    uint16_t serial;
    SampleType type;
  };
  const Case cases[] = {
      {1, 130, 9999, SampleType::U8},  {2, 130, 9999, SampleType::I16}, {8, 0, 100, SampleType::F64},
      {3, 0, 100, SampleType::None},   {16, 0, 100, SampleType::None},
      // 4-byte samples of a logger's own file: by key
      {4, 127, 100, SampleType::I32},  {4, 128, 100, SampleType::F32},  {4, 158, 100, SampleType::I32},
      {4, 224, 100, SampleType::F32},  {4, 225, 100, SampleType::I32},  {4, 1024, 100, SampleType::I32},
      // a converted outing holds engineering values: f32 whatever the key
      {4, 158, 9999, SampleType::F32}, {4, 225, 9999, SampleType::F32}, {4, 158, 9998, SampleType::I32},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SampleTypeFor(c.word, c.key, c.serial), c.type)
        << "word " << c.word << " key " << c.key << " serial " << c.serial;
  }
}

TEST(OutingFormat, BlockLengthsInPagesOfTheSystem) {
  struct Case {
    const char* system;
    int16_t cyclic;
    ChannelTableEntry entry;
    ChannelTableEntry next;
    int64_t length;
  };
  const ChannelTableEntry none{};
  const Case cases[] = {
      {"LCU", 0, Entry(1, 3, 2, 1, 100, 3, 50), none, 2 * 16384 - 100 + 50},
      {"ECU", 0, Entry(1, 3, 2, 1, 100, 3, 50), none, 2 * 8192 - 100 + 50},
      {"LCU ECU-2", 0, Entry(1, 3, 2, 1, 100, 3, 50), none, 2 * 8192 - 100 + 50},
      {"", 0, Entry(1, 3, 2, 0, 0, 0, 0), none, 0},
      {"LCU", 0, Entry(1, 3, 2, 2, 300, 2, 100), none, -200},
      // cyclic: the entry's own end fields do not count, the next start does
      {"LCU", 4, Entry(1, 3, 2, 1, 100, 0xFFFF, 0xFFFF), Entry(2, 3, 2, 2, 300, 0, 0), 16384 - 100 + 300},
      {"ECU", 4, Entry(1, 3, 2, 1, 100, 0xFFFF, 0xFFFF), Entry(2, 3, 2, 2, 300, 0, 0), 8192 - 100 + 300},
      {"LCU", 1, Entry(1, 3, 2, 5, 0, 0, 0), Entry(2, 3, 2, 5, 16000, 0, 0), 16000},
  };
  for (const Case& c : cases) {
    OutingHeader h;
    h.SystemName = c.system;
    h.Cyclic = c.cyclic;
    h.LoggedChannels = 1;
    h.ChannelTable[0] = c.entry;
    h.ChannelTable[1] = c.next;
    EXPECT_EQ(ChannelBlockLength(h, 0), c.length) << c.system << " cyclic " << c.cyclic;
  }
  // Blocks follow each other from the end of the header; the last offset ends the data.
  OutingHeader h = PlainHeader();
  EXPECT_EQ(ChannelBlockOffsets(h), (std::vector<int64_t>{16384, 17384, 33268, kPlainDataEnd}));
  h.LoggedChannels = 0;
  EXPECT_EQ(ChannelBlockOffsets(h), (std::vector<int64_t>{16384}));
  h.LoggedChannels = 300;  // a header lists at most 128
  EXPECT_EQ(ChannelBlockOffsets(h).size(), 129u);
}

TEST(OutingFormat, CyclicTimeBaseRoundsHalvesToEven) {
  struct Case {
    int32_t end_time;
    int32_t raw_end_time;
    int16_t cyclic;
    int64_t shift;
    int64_t true_end;
  };
  const Case cases[] = {
      {500000, 400002, 4, 400000, 100000},  // 399999.5 and 100000.5
      {500001, 400002, 4, 400000, 100000},  // 400000.5: the shift is rounded on its own
      {500000, 400006, 4, 399998, 100002},  // 399998.5 and 100001.5
      {100, 10, 3, 97, 3},                  // 96.67 and 3.33
      {20, 90, 4, -2, 22},                  // -2.5 and 22.5
  };
  for (const Case& c : cases) {
    OutingHeader h;
    h.EndTime = c.end_time;
    h.RawEndTime = c.raw_end_time;
    h.Cyclic = c.cyclic;
    const CyclicTimes t = CyclicTimeBase(h);
    EXPECT_EQ(t.Shift, c.shift) << c.end_time << " " << c.raw_end_time << "/" << c.cyclic;
    EXPECT_EQ(t.TrueEndTime, c.true_end) << c.end_time << " " << c.raw_end_time << "/" << c.cyclic;
  }
}

// The rule the data export follows: the same blocks, the beacons on the data's time base.
TEST(OutingFormat, PlainHeaderFromCyclicKeepsTheBlocksAndShiftsTheBeacons) {
  for (const char* system : {"LCU", "ECU"}) {
    SCOPED_TRACE(system);
    OutingHeader h;
    h.SystemName = system;
    h.Version = "8.0.0";
    h.Cyclic = 4;
    h.EndTime = 500001;
    h.RawEndTime = 400002;  // true end 100000, shift 400000
    h.BeaconCount = 3;
    h.BeaconTimes[0] = 400100;
    h.BeaconTimes[1] = 430000;
    h.BeaconTimes[2] = 460001;
    h.LoggedChannels = 3;
    h.ChannelTable[0] = Entry(0, 3, 2, 7, 0, 0xFFFF, 0xFFFF);
    h.ChannelTable[1] = Entry(1, 3, 2, 8, 200, 0, 0);
    h.ChannelTable[2] = Entry(130, 0, 4, 8, 5000, 3, 3);
    h.ChannelTable[3] = Entry(0, 0, 0, 9, 100, 0, 0);  // the closing entry

    const OutingHeader plain = PlainHeaderFromCyclic(h);
    EXPECT_EQ(plain.Cyclic, 0);
    EXPECT_EQ(plain.EndTime, 100000);
    EXPECT_EQ((std::vector<int32_t>(plain.BeaconTimes.begin(), plain.BeaconTimes.begin() + 3)),
              (std::vector<int32_t>{100, 30000, 60001}));
    EXPECT_EQ(ChannelBlockOffsets(plain), ChannelBlockOffsets(h));
    for (int i = 0; i < 3; ++i) EXPECT_EQ(ChannelBlockLength(plain, i), ChannelBlockLength(h, i)) << i;
    EXPECT_TRUE(CheckOutingLayout(plain, ChannelBlockOffsets(h).back()).isEmpty());
  }

  OutingHeader already = PlainHeader();
  already.BeaconCount = 1;
  already.BeaconTimes[0] = 5000;
  already.EndTime = 9000;
  OutingHeader same = PlainHeaderFromCyclic(already);
  EXPECT_TRUE(OutingHeaderBytes(same) == OutingHeaderBytes(already));
}

TEST(OutingFormat, LayoutCheckFlagsWhatCannotBeRead) {
  struct Case {
    const char* what;
    std::function<void(OutingHeader&, int64_t&)> spoil;
    bool good;
  };
  const Case cases[] = {
      {"a good file", [](OutingHeader&, int64_t&) {}, true},
      {"a good cyclic file",
       [](OutingHeader& h, int64_t&) {
         h.Cyclic = 4;
         h.ChannelTable[3] = Entry(0, 0, 0, 1, 4500, 0, 0);
       },
       true},
      {"300 logged channels", [](OutingHeader& h, int64_t&) { h.LoggedChannels = 300; }, false},
      {"the last block runs past the end", [](OutingHeader&, int64_t& size) { size -= 1; }, false},
      {"a negative block length", [](OutingHeader& h, int64_t&) { h.ChannelTable[1].EndPage = 0; h.ChannelTable[1].EndOffset = 0; }, false},
      {"word size 3", [](OutingHeader& h, int64_t&) { h.ChannelTable[0].WordSize = 3; }, false},
      {"rate code 12", [](OutingHeader& h, int64_t&) { h.ChannelTable[2].RateCode = 12; }, false},
      {"a version that is no number", [](OutingHeader& h, int64_t&) { h.Version = "V8.0"; }, false},
      {"a cyclic file without a closing entry",
       [](OutingHeader& h, int64_t&) {
         h.Cyclic = 4;
         h.LoggedChannels = 128;
         for (int i = 3; i < 128; ++i) h.ChannelTable[i] = Entry(2, 3, 2, 1, 4500, 0, 0);
       },
       false},
  };
  for (const Case& c : cases) {
    OutingHeader h = PlainHeader();
    int64_t size = kPlainDataEnd;
    c.spoil(h, size);
    QStringList problems = CheckOutingLayout(h, size);
    if (!HeaderRefusal(h).isEmpty()) problems << HeaderRefusal(h);
    if (c.good) {
      EXPECT_TRUE(problems.isEmpty()) << c.what << ": " << problems.join("; ").toStdString();
    } else {
      EXPECT_FALSE(problems.isEmpty()) << c.what;
    }
  }
}

std::array<uint8_t, kOutingHeaderSize> RandomHeaderBytes(uint32_t seed) {
  std::mt19937 rng(seed);
  std::array<uint8_t, kOutingHeaderSize> bytes{};
  for (auto& b : bytes) b = static_cast<uint8_t>(rng());
  return bytes;
}

// Each named field is read from the offset the format documents.
TEST(OutingHeader, FieldsLieAtTheirOffsets) {
  std::array<uint8_t, kOutingHeaderSize> b{};
  auto put16 = [&](int at, uint16_t v) { b[at] = v & 0xFF; b[at + 1] = v >> 8; };
  auto put32 = [&](int at, uint32_t v) { for (int i = 0; i < 4; ++i) b[at + i] = (v >> (8 * i)) & 0xFF; };
  auto text = [&](int at, const char* s) { for (int i = 0; s[i]; ++i) b[at + i] = s[i]; };
  put16(4, 9999);
  put32(64, 123456);
  put16(72, 4);
  put16(74, 300);
  put32(82, 0x01020304);
  text(256, "ECU SYSTEM");
  text(272, "6.1.9");
  text(280, "A. DRIVER       ");  // full 16 with trailing blanks
  text(296, "SILVERSTONE_GP__");  // full width, no blank at the end
  put16(2304, 12);
  put16(2560 + 3 * 12, 130);                // ChannelTable[3].Key
  b[2560 + 3 * 12 + 3] = 4;                 // WordSize
  put16(2560 + 3 * 12 + 10, 77);            // EndPage
  text(6016 + 16 * 63, "LONG G");           // InputNames[63]
  put16(8192 + 100 * 2, 4);                 // InputCalibrations[2].CalType
  put16(8192 + 100 * 2 + 8 + 2 * 12, 0xFFFF);  // CalX[12] = -1
  put32(14848 + 8 * 31 + 4, 0x3F800000);    // LinearCalibrations[31].Offset = 1.0f

  OutingHeader h;
  OutingHeaderFromBytes(h, b.data(), b.size());
  EXPECT_EQ(h.LcuSerial, 9999);
  EXPECT_EQ(h.EndTime, 123456);
  EXPECT_EQ(h.Cyclic, 4);
  EXPECT_EQ(h.BeaconCount, 300);
  EXPECT_EQ(h.RawEndTime, 0x01020304);
  EXPECT_EQ(h.SystemName.text, "ECU SYSTEM");
  EXPECT_EQ(h.Version.text, "6.1.9");
  EXPECT_EQ(h.Driver.text, "A. DRIVER");
  EXPECT_EQ(h.TrackName.text, "SILVERSTONE_GP__");
  EXPECT_EQ(h.LoggedChannels, 12);
  EXPECT_EQ(h.ChannelTable[3].Key, 130);
  EXPECT_EQ(h.ChannelTable[3].WordSize, 4);
  EXPECT_EQ(h.ChannelTable[3].EndPage, 77);
  EXPECT_EQ(h.InputNames[63].text, "LONG G");
  EXPECT_EQ(h.InputCalibrations[2].CalType, 4);
  EXPECT_EQ(h.InputCalibrations[2].CalX[12], -1);
  EXPECT_EQ(h.LinearCalibrations[31].Offset, 1.0f);
}

// Random bytes read and written back: a changed field is written blank-padded in place, every
// other byte stays as it was.
TEST(OutingHeader, WritingOneFieldTouchesOnlyItsBytes) {
  const auto bytes = RandomHeaderBytes(7);
  OutingHeader h;
  OutingHeaderFromBytes(h, bytes.data(), bytes.size());
  h.Driver = QStringLiteral("NEW");
  h.BeaconTimes[2] = -5;
  const auto& out = OutingHeaderBytes(h);
  for (int i = 0; i < kOutingHeaderSize; ++i) {
    if (i >= 280 && i < 296) {
      EXPECT_EQ(out[i], i < 283 ? "NEW"[i - 280] : ' ') << i;
    } else if (i >= 1280 + 8 && i < 1280 + 12) {
      EXPECT_EQ(out[i], i == 1288 ? 0xFB : 0xFF) << i;  // -5, little-endian
    } else {
      ASSERT_EQ(out[i], bytes[i]) << i;
    }
  }
}

TEST(OutingHeader, ShortFileReadsAsZerosAndWriteKeepsTheData) {
  QTemporaryDir dir;
  const QString path = dir.filePath("short.DAT");
  ASSERT_TRUE(WriteFileAtomically(path, QByteArray(60, 'x')));
  OutingHeader h;
  ASSERT_TRUE(ReadOutingHeader(path, h));
  EXPECT_EQ(h.Checksum, 0x7878);
  EXPECT_EQ(h.EndTime, 0);
  EXPECT_EQ(h.LoggedChannels, 0);

  // A whole file: header, then data that a header write must keep.
  const QString whole = dir.filePath("whole.DAT");
  QByteArray file(kOutingHeaderSize, '\0');
  file.append("DATA BEHIND THE HEADER");
  ASSERT_TRUE(WriteFileAtomically(whole, file));
  ASSERT_TRUE(ReadOutingHeader(whole, h));
  h.Version = QStringLiteral("8.0.0");
  ASSERT_TRUE(WriteOutingHeader(whole, h));
  QByteArray back;
  ASSERT_TRUE(ReadFileBytes(whole, 0, 1 << 20, back));
  EXPECT_EQ(back.size(), file.size());
  EXPECT_TRUE(back.endsWith("DATA BEHIND THE HEADER"));
  EXPECT_EQ(back.mid(272, 8), QByteArray("8.0.0   "));
}

}  // namespace
