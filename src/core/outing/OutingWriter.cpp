#include "core/outing/OutingWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/app/Files.h"
#include "core/app/Numbers.h"

namespace {

template <class T>
T SaturateTo(double v) {
  const int64_t r = RoundHalfEven(v);
  return static_cast<T>(std::clamp<int64_t>(r, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

template <class T>
void Append(QByteArray& out, T value) {
  uint8_t b[sizeof(T)];
  binary_detail::StoreLittle(b, value);
  out.append(reinterpret_cast<const char*>(b), sizeof(T));
}

// A page address of a data position; false when it does not fit the 16-bit fields.
bool ToPage(int64_t position, int page_size, uint16_t first_page, uint16_t& page, uint16_t& offset) {
  const int64_t p = position / page_size + first_page;
  if (p > std::numeric_limits<uint16_t>::max()) return false;
  page = static_cast<uint16_t>(p);
  offset = static_cast<uint16_t>(position % page_size);
  return true;
}

}  // namespace

QByteArray EncodeSamples(SampleType type, const std::vector<double>& values) {
  QByteArray out;
  for (double v : values) {
    switch (type) {
      case SampleType::U8: Append(out, SaturateTo<uint8_t>(v)); break;
      case SampleType::I16: Append(out, SaturateTo<int16_t>(v)); break;
      case SampleType::I32: Append(out, SaturateTo<int32_t>(v)); break;
      case SampleType::F32: Append(out, static_cast<float>(v)); break;
      case SampleType::F64: Append(out, v); break;
      case SampleType::None: break;
    }
  }
  return out;
}

bool LayOutChannelTable(OutingHeader& header, const std::vector<ChannelBlockData>& blocks, uint16_t first_page,
                        QString* error) {
  const bool cyclic = header.Cyclic > 0;
  const std::size_t limit = cyclic ? kMaxLoggedChannels - 1 : kMaxLoggedChannels;
  if (blocks.size() > limit) {
    if (error) *error = QStringLiteral("%1 channels do not fit a header of %2").arg(blocks.size()).arg(limit);
    return false;
  }
  const int page_size = PageSize(header.SystemName);
  header.ChannelTable.fill(ChannelTableEntry{});
  int64_t position = 0;
  bool fits = true;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    ChannelTableEntry& e = header.ChannelTable[i];
    e.Key = blocks[i].Key;
    e.RateCode = blocks[i].RateCode;
    e.WordSize = blocks[i].WordSize;
    fits &= ToPage(position, page_size, first_page, e.StartPage, e.StartOffset);
    position += blocks[i].Samples.size();
    if (!cyclic) fits &= ToPage(position, page_size, first_page, e.EndPage, e.EndOffset);
  }
  if (cyclic) {
    ChannelTableEntry& closing = header.ChannelTable[blocks.size()];
    fits &= ToPage(position, page_size, first_page, closing.StartPage, closing.StartOffset);
  }
  if (!fits) {
    if (error) *error = QStringLiteral("The data section does not fit the logger's page numbers");
    return false;
  }
  header.LoggedChannels = static_cast<uint16_t>(blocks.size());
  return true;
}

bool WriteOutingFile(const QString& path, OutingHeader header, const std::vector<ChannelBlockData>& blocks,
                     const std::vector<ConstantEntry>* constants, QString* error) {
  if (!LayOutChannelTable(header, blocks, 0, error)) return false;
  QByteArray bytes;
  EncodeRecordBytes(header, header.Raw.data());
  bytes.append(reinterpret_cast<const char*>(header.Raw.data()), kOutingHeaderSize);
  for (const ChannelBlockData& b : blocks) bytes.append(b.Samples);
  if (constants) bytes.append(ConstantsBlockBytes(*constants));
  return WriteFileAtomically(path, bytes, error);
}
