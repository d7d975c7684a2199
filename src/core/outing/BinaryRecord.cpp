#include "core/outing/BinaryRecord.h"

namespace binary_detail {

// Trailing blanks are cut, and trailing NULs too: some writers pad with zeros.
QString DecodeText(const uint8_t* p, int width) {
  int n = width;
  while (n > 0 && (p[n - 1] == ' ' || p[n - 1] == 0)) --n;
  return QString::fromLatin1(reinterpret_cast<const char*>(p), n);
}

void EncodeText(uint8_t* p, int width, const QString& text) {
  const QByteArray latin = text.toLatin1();
  const int n = std::min<int>(width, static_cast<int>(latin.size()));
  std::memcpy(p, latin.constData(), static_cast<std::size_t>(n));
  std::memset(p + n, ' ', static_cast<std::size_t>(width - n));
}

}  // namespace binary_detail
