#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <random>

#include "core/app/Files.h"
#include "core/outing/OutingHeader.h"

namespace {

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
