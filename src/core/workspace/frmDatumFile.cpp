#include "core/workspace/frmDatumFile.h"

#include "core/app/Files.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"

const QString frmDatumFile::kTitle = QStringLiteral("Datum Outing");
const QStringList frmDatumFile::kColumns = {QStringLiteral("Outing"), QStringLiteral("Driver"), QStringLiteral("Fast"),
                                            QStringLiteral("Lap Time")};

frmDatumFile::frmDatumFile(Workspace& ws) : ws_(ws) {
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = OutingAt(ws, slot);
    if (o.Loaded == 0) continue;
    rows_.push_back({slot, BaseName(o.FileName), o.Driver, LapNumberText(o, o.FastLap),
                     LapTimeText(LapTimeMs(o, o.FastLap))});
  }
}

bool frmDatumFile::cmdOK(int outing) {
  if (outing < 0 || outing >= kOutingsPerFolder || OutingAt(ws_, outing).Loaded == 0) return false;
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  folder.DatumOuting = static_cast<int16_t>(outing);
  folder.DatumLap = OutingAt(ws_, outing).FastLap;
  return true;
}
