// Any bytes as CHANNEL.DSC: the reader must take them, and writing the file back must keep
// every byte of the records and of the head, apart from the group names it shows trimmed.

#include <QFile>
#include <QTemporaryDir>
#include <cstdint>

#include "core/outing/ChannelDescriptors.h"

namespace {

const QString& TempPath() {
  static QTemporaryDir dir;
  static const QString path = dir.path() + QStringLiteral("/CHANNEL.DSC");
  return path;
}

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString& path = TempPath();
  {
    QFile f(path);
    Check(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    Check(f.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) == static_cast<qint64>(size));
  }
  ChannelDescriptorFile file;
  Check(ReadChannelDescriptorFile(path, file));
  const int count = DescriptorRecordCount(static_cast<int64_t>(size));
  Check(static_cast<int>(file.Records.size()) == count);

  const QByteArray out = ChannelDescriptorFileBytes(file);
  Check(out.size() == kChannelDscHeadSize + static_cast<qsizetype>(count) * kChannelDscRecordSize);
  auto expected = [&](qsizetype i) { return i < static_cast<qsizetype>(size) ? data[i] : uint8_t{0}; };
  for (qsizetype i = 0; i < out.size(); ++i) {
    const bool group_name = i >= 24 && i < 184;
    if (!group_name) Check(static_cast<uint8_t>(out[i]) == expected(i));
  }
  return 0;
}
