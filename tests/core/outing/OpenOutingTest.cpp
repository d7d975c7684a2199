#include <QDateTime>
#include <QLocale>
#include <QTimeZone>
#include <array>
#include <cstring>
#include <deque>
#include <limits>

#include "../TestOutings.h"
#include "core/outing/ChannelData.h"
#include "core/outing/DescriptorCopy.h"
#include "core/outing/HeaderProcessing.h"

namespace {

using namespace test_outings;

void ExpectProcessHeaderMessage(const RecordingMessages& m) {
  const RecordingMessages::Entry e = LastMessage(m);
  EXPECT_EQ(e.text, "Unable to process header");
  EXPECT_EQ(e.title, "Process header");
  EXPECT_EQ(e.icon, MessageIcon::Exclamation);
}

TEST(OpenOuting, MissingFileIsReportedWithItsPath) {
  TestHome home;
  const QString path = home.Path("NOWHERE.DAT");
  EXPECT_FALSE(home.Load(0, path));
  const RecordingMessages::Entry e = LastMessage(home.messages);
  EXPECT_EQ(e.text, "Unable to open file " + path);
  EXPECT_EQ(e.title, "File Open");
  EXPECT_EQ(e.icon, MessageIcon::Exclamation);
  EXPECT_EQ(home.Outing(0).Loaded, 0);
}

TEST(OpenOuting, HeaderFieldsOfALoadedOuting) {
  TestHome home;
  OutingHeader h = SmallHeader(5990);
  h.RunSeconds = 3725;
  h.SessionNumber = 1;
  h.RunNumber = 4;
  h.LastOutingNumber = 7;
  h.FirstLapNumber = 3;
  h.InputNames[1] = QStringLiteral("Lateral g");
  const QString path = home.Path("FIELDS.DAT");
  ASSERT_TRUE(WriteOuting(path, h, {Block(1, 3, 2, Ramp(2000, 0, 1)), Block(68, 3, 2, Ramp(600, 0, 10))}));
  ASSERT_TRUE(home.Load(3, path));
  const OutingRec& o = home.Outing(3);
  EXPECT_EQ(o.Loaded, -1);
  EXPECT_EQ(o.FileName, path);
  EXPECT_EQ(o.ReferenceLap, 0);
  EXPECT_EQ(o.RunTimeText, "62:05");
  EXPECT_EQ(o.SizeText, "21KB");  // (16,384 + 4,000 + 1,200) / 1024 = 21.1
  EXPECT_EQ((std::array<int, 4>{o.SessionNumber, o.RunNumber, o.FirstLap, o.LapCountInSession}),
            (std::array<int, 4>{2, 5, 8, 5}));
  EXPECT_EQ(o.LoggedCount, 2);
  EXPECT_EQ(o.LastChannel, 2 + home.ws().MathCount + 3);
  // A name in mixed case is stored and shown in upper case, and still found as a standard channel.
  EXPECT_EQ(o.Channels[0].Name, "LATERAL G");
  EXPECT_EQ(o.ChanLatG, 0);
  EXPECT_EQ(o.ChanSpeed, 1);
  EXPECT_EQ(home.ws().FolderTable[0].Changed, -1);
  EXPECT_EQ(ReadRecentFiles(home.ws()).value(0), path);
}

TEST(OpenOuting, DescriptorFileWithoutTheKeyedRecordsEndsTheLoad) {
  TestHome home(100);
  OutingHeader h = SmallHeader(5990);
  const QString path = home.Path("SHORTDSC.DAT");
  ASSERT_TRUE(WriteOuting(path, h, {Block(68, 3, 2, Ramp(600, 0, 10))}));
  EXPECT_FALSE(home.Load(0, path));
  ExpectProcessHeaderMessage(home.messages);
  EXPECT_EQ(home.Outing(0).Loaded, 0);
}

// Files that lie: each loads as far as its data goes, or is refused with the message; no fetch
// crashes, and none makes more samples than the file could ever hold.
enum class Outcome { kLoads, kRefused, kEither };

struct BadFile {
  const char* name;
  Outcome outcome;
  std::function<void(OutingHeader&)> header;
  int64_t cut;  // file length after the damage; 0 keeps it
};

void CheckBadFile(const BadFile& k) {
  TestHome home;
  OutingHeader h = SmallHeader(5990);
  h.InputNames[3] = QStringLiteral("THROTTLE");
  h.InputCalibrations[3] = {1, 0, 0, {}, {}, 0, 1, 0};  // the words as they are
  h.BeaconCount = 2;
  h.BeaconTimes[0] = 2000;
  h.BeaconTimes[1] = 4000;
  const QString path = home.Path("BAD.DAT");
  ASSERT_TRUE(WriteOuting(path, h, {Block(3, 3, 2, Ramp(600, 400, 5)), Block(68, 3, 2, Ramp(600, 0, 10)),
                                    Block(70, 3, 4, Ramp(600, 0, 5))}));
  QByteArray bytes;
  ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, bytes));
  ASSERT_TRUE(ReadOutingHeader(path, h));
  if (k.header) {
    k.header(h);
    const auto& head = OutingHeaderBytes(h);
    std::memcpy(bytes.data(), head.data(), head.size());
  }
  if (k.cut > 0) bytes.truncate(static_cast<qsizetype>(k.cut));
  ASSERT_TRUE(WriteFileAtomically(path, bytes));

  const bool loaded = home.Load(0, path);
  if (k.outcome != Outcome::kEither) {
    EXPECT_EQ(loaded, k.outcome == Outcome::kLoads);
  }
  if (!loaded) {
    ExpectProcessHeaderMessage(home.messages);
    return;
  }
  OutingRec& o = home.Outing(0);
  ASSERT_GE(o.LastLap, 0);
  ASSERT_LE(o.LastLap, 256);
  ASSERT_EQ(static_cast<int>(o.Laps.size()), o.LastLap + 1);
  // A lap's span by the header's times, never past the longest span a fetch takes.
  int32_t latest = 0;
  for (const LapRec& l : o.Laps) latest = std::max(latest, l.StartTime);
  const double longest_ms = std::min<double>(latest, kMaxFetchSpanMs) + 5000;
  for (int lap = 0; lap <= o.LastLap; ++lap) {
    for (int c = 0; c <= o.LastChannel; ++c) {
      GetChannelData(home.ws(), 0, lap, c);
      const ChannelRec& channel = o.Channels[static_cast<std::size_t>(c)];
      const std::vector<float>& v = o.Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(c)].Samples;
      ASSERT_LE(static_cast<double>(v.size()), longest_ms * channel.Rate + 2)
          << "lap " << lap << " channel " << c << " key " << channel.Key;
      if (channel.WordSize == 3) {
        for (float x : v) ASSERT_EQ(x, 0.0f) << "a word size of 3 reads nothing";
      }
    }
  }
  if (k.cut == kOutingHeaderSize + 500) {
    // The first 250 words of the first block survive; what the file no longer holds reads as zero.
    const std::vector<float>& v = o.Laps[0].LapChannels[0].Samples;
    ASSERT_EQ(v.size(), 701u);
    for (std::size_t i = 0; i < v.size(); ++i) ASSERT_EQ(v[i], i < 250 ? 400.0f + 5.0f * i : 0.0f) << i;
  }
}

TEST(OpenOuting, BadFilesLoadAsFarAsTheDataGoesOrAreRefused) {
  using enum Outcome;
  const BadFile cases[] = {
      {"cut inside the data", kLoads, nullptr, kOutingHeaderSize + 500},
      {"cut inside the header", kEither, nullptr, 3000},
      {"cut before the version", kRefused, nullptr, 100},
      {"version without a digit", kRefused, [](OutingHeader& h) { h.Version = QStringLiteral("V8.2"); }, 0},
      {"beacons out of order", kLoads,
       [](OutingHeader& h) { h.BeaconCount = 3; h.BeaconTimes[0] = 4000; h.BeaconTimes[1] = 1000; h.BeaconTimes[2] = 3000; }, 0},
      {"beacons at the ends of the range", kLoads,
       [](OutingHeader& h) { h.BeaconTimes[0] = std::numeric_limits<int32_t>::min(); h.BeaconTimes[1] = std::numeric_limits<int32_t>::max(); }, 0},
      {"rate code unknown", kLoads, [](OutingHeader& h) { h.ChannelTable[1].RateCode = 200; }, 0},
      {"word size 3", kLoads, [](OutingHeader& h) { h.ChannelTable[0].WordSize = 3; }, 0},
      {"300 logged channels", kEither, [](OutingHeader& h) { h.LoggedChannels = 300; }, 0},
      {"300 beacons", kLoads, [](OutingHeader& h) { h.BeaconCount = 300; }, 0},
      {"block far past the end", kEither, [](OutingHeader& h) { h.ChannelTable[0].EndPage = 60000; }, 0},
      {"block ending before it starts", kEither, [](OutingHeader& h) { h.ChannelTable[1].StartPage = 9; }, 0},
      {"end time huge", kLoads, [](OutingHeader& h) { h.BeaconCount = 0; h.EndTime = 20000000; }, 0},
      {"end time negative", kLoads, [](OutingHeader& h) { h.EndTime = -5000; }, 0},
      {"cyclic with a huge raw end", kEither, [](OutingHeader& h) { h.Cyclic = 3; h.RawEndTime = std::numeric_limits<int32_t>::max(); }, 0},
  };
  for (const BadFile& k : cases) {
    SCOPED_TRACE(k.name);
    CheckBadFile(k);
  }
}

// An outing of an old logger: temperatures in whole units, pulse inputs flagged in tenths but
// stored whole. Converted or not, the channels read the same.
TEST(OpenOuting, OldOutingIsConvertedOnlyWhenTheUserAgrees) {
  struct Case {
    const char* name;
    bool always_convert;
    std::deque<bool> answers;
    bool asked, converted;
  } cases[] = {{"agreed", false, {true}, true, true}, {"declined", false, {false}, true, false},
               {"always convert", true, {}, false, true}};
  for (const Case& k : cases) {
    SCOPED_TRACE(k.name);
    TestHome home;
    OutingHeader h = SmallHeader(5990);
    h.Version = QStringLiteral("5.2.3");
    h.PulseInputs[0].Flags = h.PulseInputs[6].Flags = 2;
    std::vector<double> temps(600);
    for (std::size_t i = 0; i < temps.size(); ++i) temps[i] = 80 + static_cast<double>(i % 20);
    const QString path = home.Path("OLD00001.DAT");
    ASSERT_TRUE(WriteOuting(path, h, {Block(73, 3, 2, temps), Block(64, 3, 2, Ramp(600, 1000, 1)),
                                      Block(83, 3, 2, Ramp(600, 25000, 0))}));
    QByteArray before, after;
    ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, before));
    home.ws().Options.AlwaysConvert = k.always_convert;
    home.messages.answers = k.answers;
    ASSERT_TRUE(home.Load(0, path));

    const QString asked = k.asked ? LastMessage(home.messages).text : QString();
    EXPECT_TRUE(k.asked ? asked.startsWith("Convert ") && asked.contains("OLD00001") &&
                              asked.endsWith(" Outing to 8.0 format ?")
                        : home.messages.entries.empty()) << asked.toStdString();
    const OutingRec& o = home.Outing(0);
    EXPECT_EQ(o.OldVersion, k.converted ? 0 : -1);
    OutingHeader written;
    ASSERT_TRUE(ReadOutingHeader(path, written));
    EXPECT_EQ(written.Version.text, k.converted ? "8.0.0" : "5.2.3");
    ASSERT_TRUE(ReadFileBytes(path, 0, 1 << 20, after));
    EXPECT_EQ(after == before, !k.converted) << "the file is rewritten only when converted";
    // Whole degrees, the wheel speed whole, the rpm in tenths.
    for (int c = 0; c < 3; ++c) GetChannelData(home.ws(), 0, 0, c);
    const auto& lap = o.Laps[0].LapChannels;
    for (std::size_t i = 0; i < 600; ++i) {
      ASSERT_EQ(lap[0].Samples[i], 80.0f + static_cast<float>(i % 20)) << i;
      ASSERT_EQ(lap[1].Samples[i], 1000.0f + static_cast<float>(i)) << i;
      ASSERT_EQ(lap[2].Samples[i], 2500.0f) << i;
    }
  }
}

TEST(HeaderProcessing, DateFromTheLoggerFromVersion619On) {
  const QDateTime stamp_utc(QDate(2026, 6, 12), QTime(15, 4, 5), QTimeZone::utc());
  const uint64_t ticks = static_cast<uint64_t>(stamp_utc.toMSecsSinceEpoch()) * 10000 + 116444736000000000ULL;
  const QDateTime written(QDate(2021, 3, 4), QTime(8, 9, 10));  // local time of the file system
  const QLocale locale = QLocale::system();
  const QString stamp_text = locale.toString(QDate(2026, 6, 12), QLocale::ShortFormat) + "  03:04:05 " + locale.pmText().toUpper();
  const QString file_text = locale.toString(QDate(2021, 3, 4), QLocale::ShortFormat) + "  08:09:10 " + locale.amText().toUpper();
  const std::pair<const char*, bool> cases[] = {{"6.1.9", true}, {"6.1.8", false}, {"6.0.9", false}, {"7.0", true},
                                                {"8.2.1", true}, {"5.9.9", false}, {"6.2.9", true},  {"6.9.0", false}};
  for (const auto& [version, stamp] : cases) {
    EXPECT_EQ(OutingDateText(version, ticks, written, false), stamp ? stamp_text : file_text) << version;
  }
  EXPECT_EQ(OutingDateText("6.1.9", ticks, written, true),
            locale.toString(QDate(2026, 6, 12), QLocale::LongFormat) + "  03:04:05 " + locale.pmText().toUpper());
}

TEST(HeaderProcessing, OldVersionFlag) {
  const std::tuple<const char*, int, int16_t> cases[] = {
      {"5.0", 4711, -1},   {"5.0", 9999, 0},   {"5.1.7", 4711, -1}, {"6.5.0", 4711, -1},  // "5.0" anywhere
      {"5.2.3", 4711, -1}, {"5.2.6  ", 4711, -1}, {"5.2.0", 9999, 0}, {"5.2.7", 4711, 0},
      {"5.3.0", 4711, 0},  {"8.2.1", 4711, 0},
  };
  for (const auto& [version, serial, old] : cases) {
    BareWorkspace b;
    b.Outing().Version = version;
    b.Outing().LcuSerial = serial;
    b.Outing().OldVersion = 7;
    SetDataVersionFlag(b.ws, 0);
    EXPECT_EQ(b.Outing().OldVersion, old) << version << " " << serial;
  }
}

TEST(DescriptorCopy, InputsByNameKeysByIndexMathAppended) {
  TestHome home;
  Workspace& ws = home.ws();
  const int before = ws.ChannelDscCount;
  OutingRec& o = home.Outing(0);
  struct Channel {
    uint16_t key;
    const char* name;  // the header's input name, or the math channel's name
  } channels[] = {{5, "Brake Pressure Front Left"}, {6, "BRAKE PRESSURE FRONT RIGHT"}, {7, "rpm "},
                  {70, ""}, {1027, "REAR GRIP"}, {1028, "lap distance"}};
  o.Channels.resize(std::size(channels));
  for (std::size_t i = 0; i < std::size(channels); ++i) {
    o.Channels[i].Key = channels[i].key;
    if (channels[i].key < 64) ws.OutingHdr.InputNames[channels[i].key] = QString::fromLatin1(channels[i].name);
    else o.Channels[i].Name = channels[i].name;
  }
  ASSERT_TRUE(CopyDescriptors(ws, 0, 0, static_cast<int>(std::size(channels))));
  // Equal in their first 16 characters: one record, appended once.
  EXPECT_EQ(o.Channels[0].DscIndex, before);
  EXPECT_EQ(o.Channels[1].DscIndex, before);
  EXPECT_EQ(o.Channels[1].ShortName, "BRAKE PRESSURE F");
  EXPECT_EQ(o.Channels[2].DscIndex, 83);
  EXPECT_EQ(o.Channels[2].Units, "rpm");
  EXPECT_EQ(o.Channels[3].Name, "DISTANCE");
  EXPECT_EQ(o.Channels[4].DscIndex, before + 1);
  EXPECT_EQ(o.Channels[5].DscIndex, 1025);
  ChannelDescriptorFile file;
  ASSERT_TRUE(ReadChannelDescriptorFile(ChannelDscPath(ws), file));
  ASSERT_EQ(static_cast<int>(file.Records.size()), before + 2);
  EXPECT_EQ(file.Records.back().Name.text, "REAR GRIP");
}

}  // namespace
