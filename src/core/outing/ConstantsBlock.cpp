#include "core/outing/ConstantsBlock.h"

#include <QFile>
#include <algorithm>

bool ReadConstantsBlock(const QString& path, int64_t data_end, std::vector<ConstantEntry>& out) {
  out.clear();
  QFile f(path);
  if (data_end < 0 || !f.open(QIODevice::ReadOnly) || !f.seek(data_end)) return false;
  const QByteArray head_bytes = f.read(Layout<ConstantsBlockHead>::kSize);
  if (head_bytes.size() < 34) return false;
  const auto head = DecodeRecordBytes<ConstantsBlockHead>(
      reinterpret_cast<const uint8_t*>(head_bytes.constData()), static_cast<std::size_t>(head_bytes.size()));
  if (!head.ConstTitle.text.contains(QLatin1String(kOutingConstantsTitle))) return false;

  const int64_t room = f.size() - data_end - Layout<ConstantsBlockHead>::kSize;
  const int64_t fits = std::max<int64_t>(0, room / Layout<ConstantEntry>::kSize);
  const int64_t count = std::min<int64_t>(std::max<int16_t>(head.ConstCount, 0), fits);
  const QByteArray body = f.read(count * Layout<ConstantEntry>::kSize);
  const auto* p = reinterpret_cast<const uint8_t*>(body.constData());
  for (int64_t i = 0; i < count; ++i) {
    out.push_back(DecodeRecordBytes<ConstantEntry>(p + i * Layout<ConstantEntry>::kSize,
                                                   Layout<ConstantEntry>::kSize));
  }
  return true;
}

QByteArray ConstantsBlockBytes(const std::vector<ConstantEntry>& entries) {
  const int n = static_cast<int>(std::min<std::size_t>(entries.size(), 32767));
  QByteArray bytes(Layout<ConstantsBlockHead>::kSize + n * Layout<ConstantEntry>::kSize, '\0');
  auto* p = reinterpret_cast<uint8_t*>(bytes.data());
  std::memset(p + kConstantsCarriedOffset, ' ', kConstantsCarriedSize);  // reserved text, blank like every text field
  ConstantsBlockHead head;
  head.ConstTitle = QString::fromLatin1(kOutingConstantsTitle);
  head.ConstCount = static_cast<int16_t>(n);
  EncodeRecordBytes(head, p);
  for (int i = 0; i < n; ++i) {
    EncodeRecordBytes(entries[static_cast<std::size_t>(i)], p + Layout<ConstantsBlockHead>::kSize + i * Layout<ConstantEntry>::kSize);
  }
  return bytes;
}
