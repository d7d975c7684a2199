#include "core/outing/OpenOuting.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

#include "core/app/Files.h"
#include "core/app/Numbers.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/compute/MathChannels.h"
#include "core/compute/MathCompiler.h"
#include "core/compute/OutingConstants.h"
#include "core/outing/DescriptorCopy.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OutingFormat.h"
#include "core/track/Laps.h"

namespace {

QString Number000(int v) { return QStringLiteral("%1").arg(v, 3, 10, QLatin1Char('0')); }

// Step 5: the fields of the header that the outing keeps.
void CopyHeaderFields(const OutingHeader& h, OutingRec& o) {
  o.SystemName = h.SystemName.text;
  o.Version = h.Version.text;
  o.Checksum = h.Checksum;
  o.Firmware = h.Firmware;
  o.MemoryBlocks = h.MemoryBlocks;
  o.LcuSerial = h.LcuSerial;
  o.Resets = h.Resets;
  o.Driver = h.Driver.text;
  o.TrackName = h.TrackName.text;
  o.Chassis = h.Chassis.text;
  o.Comment1 = h.Comment1.text;
  o.Comment2 = h.Comment2.text;
  o.SessionNumber = static_cast<int16_t>(h.SessionNumber + 1);
  o.RunNumber = static_cast<int16_t>(h.RunNumber + 1);
  o.FirstLap = static_cast<int16_t>(h.LastOutingNumber + 1);
  o.FirstLapNumber = static_cast<int16_t>(h.FirstLapNumber);
  o.LapNumberBase = o.FirstLapNumber;
  o.LapCountInSession = static_cast<int16_t>(h.LastOutingNumber - h.FirstLapNumber + 1);
  o.Cyclic = h.Cyclic;
  o.DisplayFlags = h.DisplayFlags;
  o.UnitsMask = static_cast<uint16_t>(h.DisplayFlags & 1);
  o.SystemFlags = h.SystemFlags;
  o.RunTimeText = QStringLiteral("%1:%2")
                      .arg(h.RunSeconds / 60, 2, 10, QLatin1Char('0'))
                      .arg(h.RunSeconds % 60, 2, 10, QLatin1Char('0'));
  o.SessionText = '[' + Number000(h.SessionNumber) + '.' + Number000(h.RunNumber) + '.' +
                  Number000(h.LastOutingNumber) + ']';
}

// Old loggers kept temperatures and the first six pulse inputs in whole units, and newer ones in
// tenths. A converted file says it is new, so its words are brought to tenths as well.
void BringDataToTenths(OutingHeader& h, QByteArray& file) {
  const std::vector<int64_t> offsets = ChannelBlockOffsets(h);
  for (int input = 0; input < 6; ++input) h.PulseInputs[static_cast<std::size_t>(input)].Flags &= ~kPulseTenthsMask;
  for (int i = 0; i + 1 < static_cast<int>(offsets.size()); ++i) {
    const ChannelTableEntry& e = h.ChannelTable[static_cast<std::size_t>(i)];
    int key = e.Key;
    if (key >= 112 && key <= 127) key = h.ExpansionMap[static_cast<std::size_t>(key - 112)].Key;
    const SampleType type = SampleTypeFor(e.WordSize, e.Key, h.LcuSerial);
    if (key < 73 || key > 78 || (type != SampleType::I16 && type != SampleType::I32)) continue;
    const int64_t begin = offsets[static_cast<std::size_t>(i)];
    const int64_t end = std::min<int64_t>(begin + ChannelBlockLength(h, i), file.size());
    auto* p = reinterpret_cast<uint8_t*>(file.data());
    for (int64_t at = begin; at + e.WordSize <= end; at += e.WordSize) {
      if (type == SampleType::I16) {
        const int v = binary_detail::LoadLittle<int16_t>(p + at) * 10;
        binary_detail::StoreLittle(p + at, static_cast<int16_t>(std::clamp(v, -32768, 32767)));
      } else {
        const int64_t v = int64_t{binary_detail::LoadLittle<int32_t>(p + at)} * 10;
        binary_detail::StoreLittle(p + at, SaturateInt32(v));
      }
    }
  }
}

}  // namespace

bool UpgradeHeader(Workspace& ws, const QString& path) {
  const QString question = QStringLiteral("Convert ") + BaseName(path) + QStringLiteral(" Outing to 8.0 format ?");
  if (!ws.Options.AlwaysConvert && !ws.messages.Ask(question, QStringLiteral("Convert Outing"))) return false;
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly)) return false;
  QByteArray file = f.readAll();
  f.close();
  if (file.size() < kOutingHeaderSize) file.append(kOutingHeaderSize - file.size(), '\0');
  OutingHeader& h = ws.OutingHdr;
  if (IsOldDataVersion(h.Version.text, h.LcuSerial)) BringDataToTenths(h, file);
  h.Version = ws.VersionText.isEmpty() ? ProgramVersionText() : ws.VersionText;
  const auto& head = OutingHeaderBytes(h);
  std::memcpy(file.data(), head.data(), head.size());
  QString error;
  if (!WriteFileAtomically(path, file, &error)) {
    ws.messages.Show(error, QStringLiteral("Convert Outing"), MessageIcon::Exclamation);
    return false;
  }
  return true;
}

bool ProcessHeader(Workspace& ws, const QString& path) {
  const int slot = ws.CurOuting;
  if (!ReadChannelDescriptors(ws)) return false;
  if (!ReadOutingHeader(path, ws.OutingHdr)) return false;
  const QString version = ws.OutingHdr.Version.text;
  if (!HeaderRefusal(ws.OutingHdr).isEmpty()) return false;
  if (version.at(0).digitValue() < 8 && UpgradeHeader(ws, path)) {
    if (!ReadOutingHeader(path, ws.OutingHdr)) return false;
  }
  OutingHeader& h = ws.OutingHdr;
  OutingRec& o = OutingAt(ws, slot);
  o = OutingRec{};
  const QFileInfo info(path);
  o.StartFileTime = h.StartFileTime;
  o.DateText = OutingDateText(h.Version.text, h.StartFileTime, info.lastModified(), false);
  o.LongDateText = OutingDateText(h.Version.text, h.StartFileTime, info.lastModified(), true);
  o.FileSize = info.size();
  o.SizeText = QString::number(std::llround(info.size() / 1024.0)) + QStringLiteral("KB");
  CopyHeaderFields(h, o);
  o.PulseInputs = h.PulseInputs;
  if (!HeaderRefusal(h).isEmpty()) return false;  // an upgraded header is checked again
  o.LoggedCount = static_cast<int16_t>(h.LoggedChannels);
  o.LastChannel = static_cast<int16_t>(o.LoggedCount + ws.MathCount + 3);
  if (h.BeaconCount > 255) h.BeaconCount = 255;
  o.Channels.assign(static_cast<std::size_t>(o.LastChannel) + 1, ChannelRec{});
  BuildChannelLayout(ws, slot);
  if (!CopyDescriptors(ws, slot, 0, o.LoggedCount)) return false;
  FindStandardChannels(ws, slot);
  DerivedChannelSetup(ws, slot);
  if (!CopyDescriptors(ws, slot, o.LoggedCount, o.LoggedCount + 3)) return false;
  // The outing's own constants come first: the compile writes their values into the formulas.
  LoadOutingConstants(ws, slot, path);
  PrepareOutingMath(ws, slot);
  if (!CopyDescriptors(ws, slot, o.LoggedCount + 3, o.LastChannel)) return false;
  // A definition that doesn't fit this outing compiles to nothing; the load goes on regardless.
  AssignMathChannelIDs(ws, slot);
  CompileOutingMath(ws, slot);
  CalcMathRates(ws, slot);
  BuildLaps(ws, slot);
  o.ExpansionMap = h.ExpansionMap;
  if (h.BandCount <= 8) {
    o.BandCount = static_cast<int16_t>(h.BandCount);
    std::copy_n(h.BandLimits.begin(), o.BandCount + 1, o.BandLimits.begin());
  }
  for (LapRec& lap : o.Laps) lap.LapChannels.assign(static_cast<std::size_t>(o.LastChannel) + 1, LapChannelRec{});
  LoadChannelCalibrations(ws, slot);
  CopyLogbook(ws, slot);
  SetDataVersionFlag(ws, slot);
  return true;
}

bool OpenOuting(Workspace& ws, const QString& path) {
  if (!FileExists(path)) {
    ws.messages.Show(QStringLiteral("Unable to open file ") + path, QStringLiteral("File Open"), MessageIcon::Exclamation);
    return false;
  }
  if (!ProcessHeader(ws, path)) {
    ws.messages.Show(QStringLiteral("Unable to process header"), QStringLiteral("Process header"),
                     MessageIcon::Exclamation);
    return false;
  }
  OutingRec& o = OutingAt(ws, ws.CurOuting);
  o.FileName = path;
  o.Loaded = -1;
  o.ReferenceLap = 0;
  ComputeLapDistances(ws, ws.CurOuting);
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Changed = -1;
  AddRecentFile(ws, path);
  return true;
}
