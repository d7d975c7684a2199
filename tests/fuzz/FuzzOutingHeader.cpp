// Any bytes as an outing file: the header must read and write back byte for byte, and the
// layout rules and the constants reader must cope with whatever the header says.

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "core/outing/ConstantsBlock.h"
#include "core/outing/OutingFormat.h"
#include "core/outing/OutingHeader.h"

namespace {

const QString& TempPath() {
  static QTemporaryDir dir;
  static const QString path = dir.path() + QStringLiteral("/FUZZ.DAT");
  return path;
}

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// What the header reader sees of the input: its first 16,384 bytes, zeros where it is shorter.
bool SameAsInput(const std::array<uint8_t, kOutingHeaderSize>& bytes, const uint8_t* data, size_t size) {
  const size_t n = std::min<size_t>(size, kOutingHeaderSize);
  if (n > 0 && std::memcmp(bytes.data(), data, n) != 0) return false;
  return std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(n), bytes.end(), [](uint8_t b) { return b == 0; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static OutingHeader header;  // 16 KB and more: kept off the stack
  static OutingHeader from_file;

  OutingHeaderFromBytes(header, data, size);
  Check(SameAsInput(OutingHeaderBytes(header), data, size));

  const std::vector<int64_t> offsets = ChannelBlockOffsets(header);
  const auto file_size = static_cast<int64_t>(size);
  CheckOutingLayout(header, file_size);
  CyclicTimeBase(header);
  OutingHeader plain = PlainHeaderFromCyclic(header);
  OutingHeaderBytes(plain);
  // A plain copy of a cyclic header puts its blocks where they were (all but the last of 128
  // entries, which has no closing entry to end at).
  if (header.LoggedChannels < kMaxLoggedChannels) Check(ChannelBlockOffsets(plain) == offsets);
  CheckOutingLayout(plain, file_size);

  const QString& path = TempPath();
  {
    QFile f(path);
    Check(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    Check(f.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) == static_cast<qint64>(size));
  }
  Check(ReadOutingHeader(path, from_file));
  Check(SameAsInput(OutingHeaderBytes(from_file), data, size));

  std::vector<ConstantEntry> constants;
  ReadConstantsBlock(path, offsets.back(), constants);
  ReadConstantsBlock(path, kDataSectionStart, constants);

  // Writing the header back keeps the rest of the file; a short file grows to a whole header.
  Check(WriteOutingHeader(path, from_file));
  QFile f(path);
  Check(f.open(QIODevice::ReadOnly));
  const QByteArray written = f.readAll();
  Check(written.size() == std::max<qsizetype>(static_cast<qsizetype>(size), kOutingHeaderSize));
  for (qsizetype i = 0; i < written.size(); ++i) {
    Check(static_cast<uint8_t>(written[i]) == (i < static_cast<qsizetype>(size) ? data[i] : 0));
  }
  return 0;
}
