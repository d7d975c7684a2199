#include "core/outing/OutingHeader.h"

#include <QFile>

#include "core/app/Files.h"

void OutingHeaderFromBytes(OutingHeader& header, const uint8_t* data, std::size_t size) {
  ReadStoredRecord(header, data, size);
}

const std::array<uint8_t, kOutingHeaderSize>& OutingHeaderBytes(OutingHeader& header) {
  return StoredRecordBytes(header);
}

bool ReadOutingHeader(const QString& path, OutingHeader& out, QString* error) {
  QByteArray bytes;
  if (!ReadFileBytes(path, 0, kOutingHeaderSize, bytes, error)) return false;
  OutingHeaderFromBytes(out, reinterpret_cast<const uint8_t*>(bytes.constData()),
                        static_cast<std::size_t>(bytes.size()));
  return true;
}

bool WriteOutingHeader(const QString& path, OutingHeader& header, QString* error) {
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly)) {
    if (error) *error = QStringLiteral("Unable to open %1: %2").arg(path, f.errorString());
    return false;
  }
  QByteArray whole = f.readAll();
  f.close();
  if (whole.size() < kOutingHeaderSize) whole.append(kOutingHeaderSize - whole.size(), '\0');
  const auto& head = OutingHeaderBytes(header);
  std::memcpy(whole.data(), head.data(), head.size());
  return WriteFileAtomically(path, whole, error);
}
