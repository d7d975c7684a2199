#include "core/outing/OutingFormat.h"

#include <algorithm>

#include "core/app/Numbers.h"

int PageSize(const QString& system_name) {
  return system_name.contains(QLatin1String("ECU")) ? 8192 : 16384;
}

static int LoggedEntries(const OutingHeader& header) {
  return std::min<int>(header.LoggedChannels, kMaxLoggedChannels);
}

int64_t ChannelBlockLength(const OutingHeader& header, int i) {
  if (i < 0 || i >= kMaxLoggedChannels) return 0;
  const int64_t page = PageSize(header.SystemName);
  const ChannelTableEntry& e = header.ChannelTable[static_cast<std::size_t>(i)];
  if (header.Cyclic == 0) {
    return (int64_t{e.EndPage} - e.StartPage) * page - e.StartOffset + e.EndOffset;
  }
  // Cyclic: the block ends where the next one starts. The last of 128 has no closing entry.
  if (i + 1 >= kMaxLoggedChannels) return 0;
  const ChannelTableEntry& next = header.ChannelTable[static_cast<std::size_t>(i + 1)];
  return (int64_t{next.StartPage} - e.StartPage) * page - e.StartOffset + next.StartOffset;
}

std::vector<int64_t> ChannelBlockOffsets(const OutingHeader& header) {
  const int n = LoggedEntries(header);
  std::vector<int64_t> offsets;
  offsets.reserve(static_cast<std::size_t>(n) + 1);
  int64_t position = kDataSectionStart;
  for (int i = 0; i < n; ++i) {
    offsets.push_back(position);
    position += ChannelBlockLength(header, i);
  }
  offsets.push_back(position);
  return offsets;
}

float RateFromCode(int rate_code, uint16_t system_flags) {
  switch (rate_code) {
    case 0: return 1.0f;
    case 1: return 0.5f;
    case 2: return system_flags != 0 ? 0.25f : 0.2f;  // the whole word, never one bit
    case 3: return 0.1f;
    case 4: return 0.05f;
    case 5: return 0.02f;
    case 6: return 0.01f;
    case 7: return 0.005f;
    case 8: return 0.002f;
    case 9: return 0.001f;
    default: return 0.0f;
  }
}

int RateCodeHz(int rate_code) {
  static constexpr int kHz[] = {1000, 500, 200, 100, 50, 20, 10, 5, 2, 1};
  return rate_code >= 0 && rate_code < 10 ? kHz[rate_code] : 0;
}

SampleType SampleTypeFor(int word_size, int key, uint16_t lcu_serial) {
  switch (word_size) {
    case 1: return SampleType::U8;
    case 2: return SampleType::I16;
    case 4:
      if (lcu_serial == kConvertedSerial) return SampleType::F32;
      if (key >= 192 && key <= 224) return SampleType::F32;
      if (key == 158) return SampleType::I32;
      if (key >= 128 && key <= 192) return SampleType::F32;
      return SampleType::I32;
    case 8: return SampleType::F64;
    default: return SampleType::None;
  }
}

const char* SampleTypeName(SampleType type) {
  switch (type) {
    case SampleType::U8: return "u8";
    case SampleType::I16: return "i16";
    case SampleType::I32: return "i32";
    case SampleType::F32: return "f32";
    case SampleType::F64: return "f64";
    case SampleType::None: break;
  }
  return "none";
}

int SampleTypeBytes(SampleType type) {
  switch (type) {
    case SampleType::U8: return 1;
    case SampleType::I16: return 2;
    case SampleType::I32:
    case SampleType::F32: return 4;
    case SampleType::F64: return 8;
    case SampleType::None: break;
  }
  return 0;
}

double SampleAt(SampleType type, const uint8_t* p) {
  switch (type) {
    case SampleType::U8: return p[0];
    case SampleType::I16: return binary_detail::LoadLittle<int16_t>(p);
    case SampleType::I32: return binary_detail::LoadLittle<int32_t>(p);
    case SampleType::F32: return binary_detail::LoadLittle<float>(p);
    case SampleType::F64: return binary_detail::LoadLittle<double>(p);
    case SampleType::None: break;
  }
  return 0;
}

CyclicTimes CyclicTimeBase(const OutingHeader& header) {
  CyclicTimes t;
  if (header.Cyclic <= 0) {
    t.TrueEndTime = header.EndTime;
    return t;
  }
  const double raw_end = static_cast<double>(header.RawEndTime) / header.Cyclic;
  t.Shift = RoundHalfEven(header.EndTime - raw_end);
  t.TrueEndTime = RoundHalfEven(raw_end);
  return t;
}

OutingHeader PlainHeaderFromCyclic(const OutingHeader& header) {
  OutingHeader plain = header;
  if (header.Cyclic == 0) return plain;
  const CyclicTimes t = CyclicTimeBase(header);
  const int beacons = std::min<int>(header.BeaconCount, kMaxBeacons);
  for (int i = 0; i < beacons; ++i) {
    auto& b = plain.BeaconTimes[static_cast<std::size_t>(i)];
    b = SaturateInt32(b - t.Shift);
  }
  plain.EndTime = SaturateInt32(t.TrueEndTime);
  const int n = std::min<int>(header.LoggedChannels, kMaxLoggedChannels - 1);
  for (int i = 0; i < n; ++i) {
    auto& e = plain.ChannelTable[static_cast<std::size_t>(i)];
    const auto& next = header.ChannelTable[static_cast<std::size_t>(i + 1)];
    e.EndPage = next.StartPage;
    e.EndOffset = next.StartOffset;
  }
  plain.Cyclic = 0;
  return plain;
}

QString HeaderRefusal(const OutingHeader& header) {
  const QString version = header.Version.text;
  if (version.isEmpty() || !version.at(0).isDigit()) {
    return QStringLiteral("Version \"%1\" does not begin with a digit: not an outing header").arg(version.left(8));
  }
  if (header.LoggedChannels > kMaxLoggedChannels) {
    return QStringLiteral("LoggedChannels is %1; a header lists at most %2 channels")
        .arg(header.LoggedChannels)
        .arg(kMaxLoggedChannels);
  }
  return QString();
}

QStringList CheckOutingLayout(const OutingHeader& header, int64_t file_size) {
  QStringList problems;
  if (file_size < kOutingHeaderSize) {
    problems << QStringLiteral("File holds %1 bytes, less than the %2-byte header; the rest reads as zeros")
                    .arg(file_size)
                    .arg(kOutingHeaderSize);
  }
  if (header.Cyclic > 0 && header.LoggedChannels >= kMaxLoggedChannels) {
    problems << QStringLiteral("Cyclic outing with %1 channels has no closing entry for the last block")
                    .arg(header.LoggedChannels);
  }
  const std::vector<int64_t> offsets = ChannelBlockOffsets(header);
  for (int i = 0; i + 1 < static_cast<int>(offsets.size()); ++i) {
    const ChannelTableEntry& e = header.ChannelTable[static_cast<std::size_t>(i)];
    const int64_t length = ChannelBlockLength(header, i);
    const QString who = QStringLiteral("Channel %1 (key %2)").arg(i).arg(e.Key);
    if (length < 0) {
      problems << QStringLiteral("%1: block length %2 is negative").arg(who).arg(length);
    } else if (offsets[static_cast<std::size_t>(i)] + length > file_size) {
      problems << QStringLiteral("%1: block ends at byte %2, past the end of the file (%3 bytes); the rest reads as zeros")
                      .arg(who)
                      .arg(offsets[static_cast<std::size_t>(i)] + length)
                      .arg(file_size);
    }
    if (SampleTypeFor(e.WordSize, e.Key, header.LcuSerial) == SampleType::None) {
      problems << QStringLiteral("%1: word size %2 is not 1, 2, 4 or 8; nothing is read").arg(who).arg(e.WordSize);
    }
    if (e.RateCode > 9) {
      problems << QStringLiteral("%1: rate code %2 is unknown; the channel has no samples").arg(who).arg(e.RateCode);
    }
  }
  return problems;
}
