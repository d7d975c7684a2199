#include "core/reports/ReportFile.h"

#include <QFile>

#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

const QString kTitle = QStringLiteral("Excel Report");

QString ReportPath(const Workspace& ws) { return JoinPath(ws.Paths.ReportDirectory, kReportFileName); }

}  // namespace

bool LoadReports(Workspace& ws) {
  ws.Reports.clear();
  const QString path = ReportPath(ws);
  if (!QFile::exists(path)) return SaveReports(ws);
  QByteArray bytes;
  if (!ReadFileBytes(path, 0, 64 * 1024 * 1024, bytes)) {
    ws.messages.Show(QStringLiteral("Unable to read %1").arg(path), kTitle, MessageIcon::Exclamation);
    return false;
  }
  const auto* p = reinterpret_cast<const uint8_t*>(bytes.constData());
  if (bytes.size() < 32 || !binary_detail::DecodeText(p, 32).contains(QLatin1String(kReportSignature))) return true;
  const qsizetype n = (bytes.size() - kReportHeadSize) / Layout<ReportRec>::kSize;
  for (qsizetype i = 0; i < n; ++i) {
    ReportRec r;
    ReadStoredRecord(r, p + kReportHeadSize + i * Layout<ReportRec>::kSize, Layout<ReportRec>::kSize);
    ws.Reports.push_back(r);
  }
  return true;
}

bool SaveReports(Workspace& ws) {
  QByteArray bytes(kReportHeadSize, '\0');
  binary_detail::EncodeText(reinterpret_cast<uint8_t*>(bytes.data()), 32, QString::fromLatin1(kReportSignature));
  binary_detail::EncodeText(reinterpret_cast<uint8_t*>(bytes.data()) + 32, 8, ws.VersionText);
  for (ReportRec& r : ws.Reports) {
    const auto& raw = StoredRecordBytes(r);
    bytes.append(reinterpret_cast<const char*>(raw.data()), static_cast<qsizetype>(raw.size()));
  }
  QString error;
  if (!WriteFileAtomically(ReportPath(ws), bytes, &error)) {
    ws.messages.Show(error, kTitle, MessageIcon::Exclamation);
    return false;
  }
  return true;
}
