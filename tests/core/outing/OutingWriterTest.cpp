#include <cstring>
#include <limits>

#include "../TestOutings.h"

namespace {

using namespace test_outings;

// Blocks of every word size; the large ones cross page boundaries in both page sizes.
std::vector<ChannelBlockData> SampleBlocks() {
  return {
      {0, 3, 2, EncodeSamples(SampleType::I16, Ramp(7000, -3500, 1))},
      {130, 1, 4, EncodeSamples(SampleType::F32, Ramp(9000, 0.0, 0.25))},
      {64, 5, 1, EncodeSamples(SampleType::U8, Ramp(100, 0, 2))},
      {200, 9, 8, EncodeSamples(SampleType::F64, Ramp(10, 1e-3, 1e5))},
      {158, 6, 4, EncodeSamples(SampleType::I32, Ramp(20, -1e6, 1e5))},
  };
}

TEST(OutingWriter, AWrittenOutingReadsBackAsWritten) {
  const std::tuple<const char*, int16_t, bool> cases[] = {  // system, cyclic, with constants
      {"LCU", 0, true}, {"LCU", 4, true}, {"ECU", 0, false}, {"ECU", 2, true}};
  const std::vector<ConstantEntry> constants = {{"Gear Ratio", 3.25f}, {"Tyre Pressure Front Left Inner", 1.85f},
                                                {"Fuel", -0.5f}};
  for (const auto& [system, cyclic, with_constants] : cases) {
    SCOPED_TRACE(std::string(system) + " cyclic " + std::to_string(cyclic));
    QTemporaryDir dir;
    const QString path = dir.path() + "/TEST.DAT";
    OutingHeader h = SmallHeader(123456);
    h.SystemName = system;
    h.Comment1 = "Thirty-two characters, no blank!";
    h.Cyclic = cyclic;
    h.BeaconCount = 2;
    h.BeaconTimes[1] = 122000;
    std::memcpy(h.Raw.data() + 36, "carried text", 12);  // bytes no field names
    const std::vector<ChannelBlockData> blocks = SampleBlocks();
    QString error;
    ASSERT_TRUE(WriteOutingFile(path, h, blocks, with_constants ? &constants : nullptr, &error)) << error.toStdString();

    // The header as it was given, the channel table laid out for the blocks behind it.
    OutingHeader back;
    ASSERT_TRUE(ReadOutingHeader(path, back));
    EXPECT_EQ(back.Comment1.text, "Thirty-two characters, no blank!");
    EXPECT_EQ(back.Cyclic, cyclic);
    EXPECT_EQ(std::memcmp(back.Raw.data() + 36, "carried text", 12), 0);
    ASSERT_EQ(back.LoggedChannels, blocks.size());

    QByteArray file;
    ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, file));
    const std::vector<int64_t> offsets = ChannelBlockOffsets(back);
    ASSERT_EQ(offsets.size(), blocks.size() + 1);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      EXPECT_EQ(back.ChannelTable[i].Key, blocks[i].Key) << i;
      EXPECT_EQ(back.ChannelTable[i].WordSize, blocks[i].WordSize) << i;
      EXPECT_EQ(ChannelBlockLength(back, static_cast<int>(i)), blocks[i].Samples.size()) << i;
      EXPECT_EQ(file.mid(offsets[i], blocks[i].Samples.size()), blocks[i].Samples) << "block " << i;
    }
    EXPECT_TRUE(CheckOutingLayout(back, file.size()).isEmpty()) << CheckOutingLayout(back, file.size()).join("; ").toStdString();

    std::vector<ConstantEntry> read;
    EXPECT_EQ(ReadConstantsBlock(path, offsets.back(), read), with_constants);
    if (with_constants) {
      EXPECT_EQ(file.size(), offsets.back() + 128 + 36 * static_cast<int64_t>(constants.size()));
      ASSERT_EQ(read.size(), constants.size());
      for (std::size_t i = 0; i < read.size(); ++i) {
        EXPECT_EQ(read[i].Name.text, constants[i].Name.text);
        EXPECT_EQ(read[i].Value, constants[i].Value);
      }
      EXPECT_EQ(file.mid(offsets.back(), 32), QByteArray("V5.00 Outing Constants          "));
    } else {
      EXPECT_EQ(file.size(), offsets.back());
      EXPECT_TRUE(read.empty());
    }
  }
}

// A cyclic table needs a closing entry, so it holds one block fewer than a plain one.
TEST(OutingWriter, ChannelTableHoldsAtMost128Blocks) {
  struct Case {
    int16_t cyclic;
    int blocks;
    bool fits;
  };
  const Case cases[] = {{0, 128, true}, {0, 129, false}, {4, 127, true}, {4, 128, false}};
  for (const Case& c : cases) {
    OutingHeader h;
    h.SystemName = "LCU";
    h.Cyclic = c.cyclic;
    const std::vector<ChannelBlockData> blocks(static_cast<std::size_t>(c.blocks),
                                               ChannelBlockData{1, 3, 2, QByteArray(1000, '\1')});
    EXPECT_EQ(LayOutChannelTable(h, blocks), c.fits) << c.blocks << " cyclic " << c.cyclic;
    if (c.fits) {
      EXPECT_EQ(h.LoggedChannels, c.blocks);
      EXPECT_EQ(ChannelBlockOffsets(h).back(), 16384 + 1000 * c.blocks);
    }
  }
}

// Floats go in as they are (the converted outings read them back); integers are rounded.
TEST(OutingWriter, IntegerSamplesRoundHalfToEvenAndSaturate) {
  struct Case {
    SampleType type;
    double value;
    int64_t stored;
  };
  const Case cases[] = {
      {SampleType::I16, 2.5, 2},       {SampleType::I16, -3.5, -4},     {SampleType::I16, 32767.4, 32767},
      {SampleType::I16, 40000, 32767}, {SampleType::I16, -40000, -32768}, {SampleType::U8, 1.5, 2},
      {SampleType::U8, 300, 255},      {SampleType::U8, -1, 0},           {SampleType::I32, -7.5, -8},
      {SampleType::I32, 1e10, std::numeric_limits<int32_t>::max()},
      {SampleType::I32, -1e10, std::numeric_limits<int32_t>::min()},
  };
  for (const Case& c : cases) {
    const QByteArray b = EncodeSamples(c.type, {c.value});
    const int width = c.type == SampleType::U8 ? 1 : c.type == SampleType::I16 ? 2 : 4;
    ASSERT_EQ(b.size(), width);
    int64_t v = 0;  // little-endian, two's complement for the signed types
    for (int i = width - 1; i >= 0; --i) v = (v << 8) | static_cast<uint8_t>(b[i]);
    if (c.type != SampleType::U8 && v >= (int64_t{1} << (8 * width - 1))) v -= int64_t{1} << (8 * width);
    EXPECT_EQ(v, c.stored) << SampleTypeName(c.type) << " " << c.value;
  }

}

}  // namespace
