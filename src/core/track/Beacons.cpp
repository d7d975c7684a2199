#include "core/track/Beacons.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/outing/OutingFormat.h"
#include "core/outing/OutingHeader.h"
#include "core/track/DistanceTime.h"
#include "core/track/Laps.h"

namespace {

const QString kInsertTitle = QStringLiteral("Insert Beacon");

void BubbleSort(std::vector<int32_t>& rows) {
  bool swapped = true;
  while (swapped) {
    swapped = false;
    for (std::size_t k = 0; k + 1 < rows.size(); ++k) {
      if (rows[k] > rows[k + 1]) std::swap(rows[k], rows[k + 1]), swapped = true;
    }
  }
}

}  // namespace

std::optional<double> ParseLapTime(const QString& text) {
  const QString t = text.trimmed();
  const qsizetype colon = t.indexOf(QLatin1Char(':'));
  bool ok_m = true, ok_s = true;
  const double minutes = colon >= 0 ? t.left(colon).trimmed().toDouble(&ok_m) : 0;
  const double seconds = (colon >= 0 ? t.mid(colon + 1) : t).trimmed().toDouble(&ok_s);
  if (!ok_m || !ok_s || !std::isfinite(minutes) || !std::isfinite(seconds)) return std::nullopt;
  return (minutes * 60 + seconds) * 1000;
}

double InsertDistanceTime(Workspace& ws, int slot, int lap, const QString& text) {
  bool ok = false;
  const double distance = static_cast<double>(RoundHalfEven(text.trimmed().toDouble(&ok)));
  const double ms = ok ? DistanceToTime(ws, slot, lap, static_cast<float>(distance)) : 0;
  if (ms == 0) ws.messages.Show(QStringLiteral("Error: Unable to calculate laptime from data"), kInsertTitle, MessageIcon::Exclamation);
  return ms;
}

frmInsertBeacon::frmInsertBeacon(Workspace& ws, int slot) : ws_(ws), slot_(slot) {
  const OutingRec& o = OutingAt(ws, slot);
  for (int i = 0; i <= o.LastLap && i < static_cast<int>(o.Laps.size()); ++i) {
    Rows.push_back(o.Laps[static_cast<std::size_t>(i)].StartTime);
  }
  Count = std::max(0, static_cast<int>(Rows.size()) - 1);
  Selected = std::clamp<int>(o.CurLap, 0, std::max(0, Count - 1));
}

QStringList frmInsertBeacon::LapList() const {
  const OutingRec& o = OutingAt(ws_, slot_);
  QStringList out;
  for (int i = 0; i < Count; ++i) {
    out << QStringLiteral("%1  %2").arg(o.LapNumberBase + i, 3, 10, QLatin1Char('0'))
               .arg(LapTimeText(Rows[static_cast<std::size_t>(i + 1)] - Rows[static_cast<std::size_t>(i)]));
  }
  return out;
}

void frmInsertBeacon::cmdDelete() {
  if (Count < 2 || Selected >= Count) return;
  // Deleting a lap merges it with the next; the last merges with the one before.
  if (Selected == Count - 1) Rows[static_cast<std::size_t>(Selected)] = Rows[static_cast<std::size_t>(Selected + 1)];
  Rows.erase(Rows.begin() + Selected + 1);
  --Count;
  if (Selected > 0) --Selected;
}

bool frmInsertBeacon::InsertByDistance(const QString& text) {
  if (OutingAt(ws_, slot_).ChanDistance < 0) {
    ws_.messages.Show(QStringLiteral("Error: No distance data for this function"), kInsertTitle, MessageIcon::Exclamation);
    return false;
  }
  const double ms = InsertDistanceTime(ws_, slot_, Selected, text);
  return ms != 0 && Insert(ms);
}

bool frmInsertBeacon::InsertByTime(const QString& text) {
  const auto ms = ParseLapTime(text);
  return ms && Insert(*ms);
}

bool frmInsertBeacon::Insert(double ms) {
  if (Selected < 0 || Selected >= Count || Count + 1 >= kMaxBeacons) return false;
  const double lap = Rows[static_cast<std::size_t>(Selected + 1)] - Rows[static_cast<std::size_t>(Selected)];
  if (!(ms > 0 && ms < lap)) return false;
  Rows.push_back(SaturateInt32(RoundHalfEven(Rows[static_cast<std::size_t>(Selected)] + ms)));
  ++Count;
  BubbleSort(Rows);
  return true;
}

bool frmInsertBeacon::cmdOK() {
  OutingRec& o = OutingAt(ws_, slot_);
  // The channels chosen on the current lap follow it to the new current lap.
  std::vector<int16_t> shown;
  if (o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) {
    for (const LapChannelRec& c : o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels) shown.push_back(c.Shown);
  }
  const std::size_t channels = o.Laps.empty() ? 0 : o.Laps[0].LapChannels.size();
  o.LastLap = static_cast<int16_t>(Count);
  o.Laps.assign(static_cast<std::size_t>(Count) + 1, LapRec{});
  for (int i = 0; i <= Count; ++i) {
    LapRec& row = o.Laps[static_cast<std::size_t>(i)];
    row.StartTime = Rows[static_cast<std::size_t>(i)];
    row.LapChannels.resize(channels);
  }
  FindFastLap(ws_, slot_);
  ComputeLapDistances(ws_, slot_);
  const bool whole = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].LapsDisplayed == 255;
  o.CurLap = whole ? 0 : o.FastLap;
  LapRec& cur = o.Laps[static_cast<std::size_t>(o.CurLap)];
  cur.Shown = -1;
  for (std::size_t c = 0; c < shown.size() && c < cur.LapChannels.size(); ++c) cur.LapChannels[c].Shown = shown[c];
  return WriteBeacons(ws_, slot_);
}

bool WriteBeacons(Workspace& ws, int slot) {
  const OutingRec& o = OutingAt(ws, slot);
  OutingHeader& h = ws.OutingHdr;
  QString error;
  bool ok = ReadOutingHeader(o.FileName, h, &error);
  if (ok) {
    const int64_t shift = h.Cyclic > 0 ? CyclicTimeBase(h).Shift : 0;
    const int count = std::min<int>(o.LastLap, kMaxBeacons);
    h.BeaconCount = static_cast<uint16_t>(count);
    for (int i = 0; i < count; ++i) {
      h.BeaconTimes[static_cast<std::size_t>(i)] = SaturateInt32(o.Laps[static_cast<std::size_t>(i + 1)].StartTime + shift);
    }
    for (int i = count; i < kMaxBeacons; ++i) h.BeaconTimes[static_cast<std::size_t>(i)] = 0;
    ok = WriteOutingHeader(o.FileName, h, &error);
  }
  if (!ok) ws.messages.Show(QStringLiteral("Error updating beacon data"), kInsertTitle, MessageIcon::Critical);
  return ok;
}

void ShiftTime(Workspace& ws, int slot, double seconds) {
  OutingRec& o = OutingAt(ws, slot);
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    LapRec& row = o.Laps[static_cast<std::size_t>(i)];
    row.StartTime = SaturateInt32(RoundHalfEven(row.StartTime + seconds * 1000));
  }
}

bool ShiftDistance(Workspace& ws, int slot, double distance) {
  OutingRec& o = OutingAt(ws, slot);
  auto fail = [&] {
    ws.messages.Show(QStringLiteral("Error shifting beacons"), QStringLiteral("Shift Beacon"), MessageIcon::Exclamation);
    return false;
  };
  if (o.ChanDistance < 0) return fail();
  // New times first, so that a failure leaves the table as it was.
  std::vector<int32_t> times(static_cast<std::size_t>(std::max(0, o.LastLap - 1)));
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    // A shift back is found in the lap before, whose samples run up to this lap's start.
    const int lap = distance >= 0 ? i : i - 1;
    const LapRec& from = o.Laps[static_cast<std::size_t>(lap)];
    const double wanted = o.Laps[static_cast<std::size_t>(i)].StartDistance + distance - from.StartDistance;
    const float ms = DistanceToTime(ws, slot, lap, static_cast<float>(wanted));
    if (ms == 0) return fail();
    times[static_cast<std::size_t>(i)] = SaturateInt32(RoundHalfEven(from.StartTime + static_cast<double>(ms)));
  }
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    LapRec& row = o.Laps[static_cast<std::size_t>(i)];
    row.StartTime = times[static_cast<std::size_t>(i)];
    row.StartDistance = static_cast<float>(row.StartDistance + distance);
  }
  ClearOutingCache(ws, slot);
  o.BeaconShift = static_cast<float>(distance);
  return true;
}

QString ShiftUnits(const Workspace& ws, int slot, bool by_time) {
  if (by_time) return QStringLiteral("(secs)");
  const OutingRec& o = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Outings[static_cast<std::size_t>(slot)];
  return (o.UnitsMask & 1) != 0 ? QStringLiteral("(mtrs)") : QStringLiteral("(feet)");
}
