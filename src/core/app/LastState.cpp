#include "core/app/LastState.h"

#include <QFileInfo>

#include "core/app/Files.h"
#include "core/app/Options.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OpenOuting.h"
#include "core/plots/PlotScale.h"

namespace {

QString Section(int folder) { return FolderSection("LastState", folder); }

QString Key(const char* name, int slot) { return QString::fromLatin1(name) + QString::number(slot); }

// "0:RPM|THROTTLE;3:RPM": each shown lap and the short names of its channels.
QString LapsText(const OutingRec& o) {
  QStringList laps;
  for (int l = 0; l < static_cast<int>(o.Laps.size()); ++l) {
    const LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
    if (lap.Shown == 0) continue;
    QStringList names;
    for (std::size_t c = 0; c < lap.LapChannels.size() && c < o.Channels.size(); ++c) {
      if (lap.LapChannels[c].Shown != 0) names << o.Channels[c].ShortName.trimmed();
    }
    laps << QString::number(l) + QLatin1Char(':') + names.join(QLatin1Char('|')) + (lap.Hidden != 0 ? QStringLiteral(":h") : QString());
  }
  return laps.join(QLatin1Char(';'));
}

void ShowLaps(Workspace& ws, int slot, const QString& text) {
  OutingRec& o = OutingAt(ws, slot);
  for (LapRec& lap : o.Laps) lap.Shown = 0;
  for (const QString& entry : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    const QStringList parts = entry.split(QLatin1Char(':'));
    bool ok = false;
    const int l = parts[0].toInt(&ok);
    if (!ok || l < 0 || l >= static_cast<int>(o.Laps.size())) continue;
    LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
    lap.Shown = -1;
    lap.Hidden = parts.size() > 2 && parts[2] == QLatin1String("h") ? -1 : 0;
    for (LapChannelRec& cache : lap.LapChannels) cache.Shown = 0;
    for (const QString& name : parts.value(1).split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
      const int c = FindChannelByName(ws, ws.CurFolder, slot, name);
      if (c >= 0 && c < static_cast<int>(lap.LapChannels.size())) lap.LapChannels[static_cast<std::size_t>(c)].Shown = -1;
    }
  }
}

void SaveFolder(Workspace& ws, int f) {
  SettingsStore& s = ws.Settings;
  const QString section = Section(f);
  for (const QString& key : s.ListSection(kAppAnalysis, section)) s.DeleteKey(kAppAnalysis, section, key);
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(f)];
  if (folder.InUse == 0) return;
  s.WriteBool(kAppAnalysis, section, "InUse", true);
  s.WriteInt(kAppAnalysis, section, "SelOuting", folder.SelOuting);
  s.WriteInt(kAppAnalysis, section, "ActiveChannel", folder.ActiveChannel);
  s.WriteInt(kAppAnalysis, section, "DatumOuting", folder.DatumOuting);
  s.WriteInt(kAppAnalysis, section, "DatumLap", folder.DatumLap);
  s.WriteInt(kAppAnalysis, section, "TimeStart", folder.TimeStart);
  s.WriteInt(kAppAnalysis, section, "TimeEnd", folder.TimeEnd);
  s.WriteDouble(kAppAnalysis, section, "CursorTime", folder.CursorTime);
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0) continue;
    s.Write(kAppAnalysis, section, Key("File", slot), o.FileName);
    s.WriteInt(kAppAnalysis, section, Key("CurLap", slot), o.CurLap);
    s.WriteBool(kAppAnalysis, section, Key("Hidden", slot), o.OutingHidden != 0);
    s.Write(kAppAnalysis, section, Key("Laps", slot), LapsText(o));
  }
}

// Counts the outings a session opens, each a step of its progress; false once cancelled.
struct Opening {
  ProgressScope& progress;
  int done = 0;
  bool cancelled = false;
  bool Next(const QString& file) {
    cancelled = cancelled || !progress.Step(done++, BaseName(file));
    return !cancelled;
  }
};

void ReadFolder(Workspace& ws, int f, Opening& opening) {
  SettingsStore& s = ws.Settings;
  const QString section = Section(f);
  FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(f)];
  ws.CurFolder = static_cast<int16_t>(f);
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const QString file = s.Read(kAppAnalysis, section, Key("File", slot), QString());
    if (file.isEmpty() || !QFileInfo::exists(file) || !opening.Next(file)) continue;
    ws.CurOuting = static_cast<int16_t>(slot);
    if (!OpenOuting(ws, file)) continue;
    OutingRec& o = OutingAt(ws, slot);
    const QString laps = s.Read(kAppAnalysis, section, Key("Laps", slot), QString());
    if (!laps.isEmpty()) ShowLaps(ws, slot, laps);  // else as the load left it
    const int cur = s.ReadInt(kAppAnalysis, section, Key("CurLap", slot), o.FastLap);
    o.CurLap = o.PrevLap = static_cast<int16_t>(cur >= 0 && cur < std::max<int>(o.LastLap, 1) ? cur : o.FastLap);
    o.OutingHidden = s.ReadBool(kAppAnalysis, section, Key("Hidden", slot), false) ? -1 : 0;
  }
  const auto outing_loaded = [&](int slot) {
    return slot >= 0 && slot < kOutingsPerFolder && folder.Outings[static_cast<std::size_t>(slot)].Loaded != 0;
  };
  const int sel = s.ReadInt(kAppAnalysis, section, "SelOuting", 0);
  if (outing_loaded(sel)) folder.SelOuting = static_cast<int16_t>(sel);
  const int datum = s.ReadInt(kAppAnalysis, section, "DatumOuting", -1);
  const int datum_lap = s.ReadInt(kAppAnalysis, section, "DatumLap", 0);
  if (outing_loaded(datum) && datum_lap >= 0 && datum_lap < OutingAt(ws, datum).LastLap) {
    folder.DatumOuting = static_cast<int16_t>(datum);
    folder.DatumLap = static_cast<int16_t>(datum_lap);
  }
  folder.ActiveChannel = static_cast<int16_t>(s.ReadInt(kAppAnalysis, section, "ActiveChannel", 0));
  // The tree's current node: the channel on the axis when the selected outing's lap shows it,
  // else that lap's first channel.
  if (outing_loaded(folder.SelOuting)) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
    const bool on_lap = o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size()) && folder.ActiveChannel >= 0 &&
                        folder.ActiveChannel < static_cast<int>(o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels.size()) &&
                        o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels[static_cast<std::size_t>(folder.ActiveChannel)].Shown != 0;
    if (on_lap) {
      folder.SelChannel = folder.ActiveChannel;
    } else {
      FindCurrentChannel(ws, folder.SelOuting, o.CurLap);
    }
  }
  folder.TimeStart = s.ReadInt(kAppAnalysis, section, "TimeStart", 0);
  folder.TimeEnd = s.ReadInt(kAppAnalysis, section, "TimeEnd", 0);
  folder.CursorTime = static_cast<float>(s.ReadDouble(kAppAnalysis, section, "CursorTime", 0));
}

}  // namespace

QStringList SavedOutingFiles(const Workspace& ws, int folder) {
  QStringList files;
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const QString file = ws.Settings.Read(kAppAnalysis, Section(folder), Key("File", slot), QString());
    if (!file.isEmpty()) files << file;
  }
  return files;
}

bool HasFolderState(const Workspace& ws) { return !ws.Settings.ListSection(kAppAnalysis, Section(0)).isEmpty(); }

void SaveFolderState(Workspace& ws) {
  for (int f = 0; f < kFolderCount; ++f) SaveFolder(ws, f);
  ws.Settings.Sync(kAppAnalysis);
}

std::vector<int> ReadFolderState(Workspace& ws) {
  std::vector<int> in_use;
  const int16_t folder_before = ws.CurFolder, outing_before = ws.CurOuting;
  const auto folder_in_use = [&](int f) {
    return f == 0 || ws.Settings.ReadBool(kAppAnalysis, Section(f), "InUse", false);
  };
  int outings = 0;
  for (int f = 0; f < kFolderCount; ++f)
    outings += folder_in_use(f) ? static_cast<int>(SavedOutingFiles(ws, f).size()) : 0;
  ProgressScope progress(ws, QStringLiteral("Opening the last session"), outings, true);
  Opening opening{progress};
  for (int f = 0; f < kFolderCount; ++f) {
    if (!folder_in_use(f)) continue;
    ws.FolderTable[static_cast<std::size_t>(f)].InUse = -1;
    ReadFolder(ws, f, opening);
    in_use.push_back(f);
  }
  ws.CurFolder = folder_before;
  ws.CurOuting = outing_before;
  return in_use;
}
