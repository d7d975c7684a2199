#include "core/outing/ChannelDescriptors.h"

#include <QFile>

#include "core/app/Files.h"
#include "core/app/Numbers.h"
#include "core/app/Workspace.h"

namespace {

// A group stored as "Serial" is shown, and so written back, as "Telltale".
QString ShownGroupName(const QString& stored) {
  QString name = stored;
  while (name.endsWith(' ')) name.chop(1);
  return name == QLatin1String("Serial") ? QStringLiteral("Telltale") : name;
}

bool Commit(Workspace& ws, ChannelDescriptorFile& file) {
  QString error;
  if (!WriteFileAtomically(ChannelDscPath(ws), ChannelDescriptorFileBytes(file), &error)) {
    ws.messages.Show(error, QStringLiteral("Write Channels"), MessageIcon::Exclamation);
    return false;
  }
  return ReadChannelDescriptors(ws);
}

ChannelDescriptorFile FileOf(const Workspace& ws) {
  ChannelDescriptorFile file;
  file.Head = ws.DscHead;
  file.Records = ws.ChannelDsc;
  return file;
}

}  // namespace

int DescriptorRecordCount(int64_t file_length) {
  if (file_length <= kChannelDscHeadSize) return 0;
  return static_cast<int>(RoundHalfEven(static_cast<double>(file_length - kChannelDscHeadSize) / kChannelDscRecordSize));
}

bool ReadChannelDescriptorFile(const QString& path, ChannelDescriptorFile& out) {
  out = ChannelDescriptorFile{};
  QByteArray bytes;
  if (!FileExists(path) || !ReadFileBytes(path, 0, std::numeric_limits<qint64>::max(), bytes)) return false;
  const auto* p = reinterpret_cast<const uint8_t*>(bytes.constData());
  const std::size_t size = static_cast<std::size_t>(bytes.size());
  ReadStoredRecord(out.Head, p, size);
  for (auto& name : out.Head.GroupNames) name = ShownGroupName(name.text);
  const int count = DescriptorRecordCount(bytes.size());
  out.Records.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const std::size_t at = kChannelDscHeadSize + static_cast<std::size_t>(i) * kChannelDscRecordSize;
    ReadStoredRecord(out.Records[static_cast<std::size_t>(i)], p + at, at < size ? size - at : 0);
  }
  return true;
}

QByteArray ChannelDescriptorFileBytes(ChannelDescriptorFile& file) {
  QByteArray bytes;
  bytes.reserve(kChannelDscHeadSize + static_cast<qsizetype>(file.Records.size()) * kChannelDscRecordSize);
  const auto& head = StoredRecordBytes(file.Head);
  bytes.append(reinterpret_cast<const char*>(head.data()), kChannelDscHeadSize);
  for (ChannelDescriptor& r : file.Records) {
    const auto& raw = StoredRecordBytes(r);
    bytes.append(reinterpret_cast<const char*>(raw.data()), kChannelDscRecordSize);
  }
  return bytes;
}

ChannelDescriptor NewChannelDescriptor(const QString& name, int index) {
  ChannelDescriptor d;  // the member initialisers are the documented defaults
  d.Name = name;
  d.DscIndex = static_cast<uint16_t>(index);
  EncodeRecordBytes(d, d.Raw.data());  // a new record is blank-padded throughout
  return d;
}

QString ChannelDscPath(const Workspace& ws) { return JoinPath(ws.Paths.SetupDirectory, kChannelDscFileName); }

bool ReadChannelDescriptors(Workspace& ws) {
  ChannelDescriptorFile file;
  if (!ReadChannelDescriptorFile(ChannelDscPath(ws), file)) {
    ws.messages.Show(QStringLiteral("Error: Channel descriptor file not found"), QStringLiteral("Read Channels"),
                     MessageIcon::Exclamation);
    return false;
  }
  ws.DscHead = file.Head;
  ws.ChannelDsc = std::move(file.Records);
  ws.ChannelDscCount = static_cast<int>(ws.ChannelDsc.size());
  for (int g = 0; g < kChannelGroupCount; ++g) ws.GroupNames[static_cast<std::size_t>(g)] = ws.DscHead.GroupNames[static_cast<std::size_t>(g)].text;
  return true;
}

bool AppendDescriptor(Workspace& ws, const QString& name) {
  ChannelDescriptorFile file = FileOf(ws);
  file.Records.resize(static_cast<std::size_t>(ws.ChannelDscCount));
  file.Records.push_back(NewChannelDescriptor(name, ws.ChannelDscCount));
  return Commit(ws, file);
}

bool WriteChannelGroups(Workspace& ws) {
  ChannelDescriptorFile file = FileOf(ws);
  for (int g = 0; g < kChannelGroupCount; ++g) file.Head.GroupNames[static_cast<std::size_t>(g)] = ws.GroupNames[static_cast<std::size_t>(g)];
  std::fill(file.Head.Raw.begin() + 184, file.Head.Raw.end(), uint8_t{0});
  return Commit(ws, file);
}
