#include "core/track/Beacons.h"

#include <QFile>
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

double RowDistanceTime(Workspace& ws, int slot, int32_t start, int32_t end, const QString& text) {
  const OutingRec& o = OutingAt(ws, slot);
  bool ok = false;
  const double distance = static_cast<double>(RoundHalfEven(text.trimmed().toDouble(&ok)));
  double ms = 0;
  QFile f(o.FileName);
  float at_start = 0, at_end = 0;
  if (ok && o.ChanDistance >= 0 && f.open(QIODevice::ReadOnly) && DistanceCountAt(o, f, start, at_start) &&
      DistanceCountAt(o, f, end, at_end)) {
    // The lap as it will be saved: its distance stretched to the map as its scale will be.
    const double target = at_start + distance / LapDistanceScale(ws, at_end - at_start);
    const double rate = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
    // The first sample past the target, by halving: the count never falls within a lap.
    int64_t lo = Floor(rate * start), hi = Floor(rate * end) + 1;
    double v_lo = 0, v_hi = 0;
    if (rate > 0 && DistanceSampleAt(o, f, lo, v_lo) && DistanceSampleAt(o, f, hi, v_hi) && v_lo <= target && v_hi > target) {
      while (hi - lo > 1) {
        const int64_t mid = lo + (hi - lo) / 2;
        double v = 0;
        if (!DistanceSampleAt(o, f, mid, v)) break;
        (v > target ? hi : lo) = mid;
        (v > target ? v_hi : v_lo) = v;
      }
      const double fraction = v_hi != v_lo ? (target - v_lo) / (v_hi - v_lo) : 0;
      ms = std::max(0.0, (static_cast<double>(lo) + fraction) / rate - start);
    }
  }
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
  if (Selected < 0 || Selected >= Count) return false;
  const double ms = RowDistanceTime(ws_, slot_, Rows[static_cast<std::size_t>(Selected)],
                                    Rows[static_cast<std::size_t>(Selected + 1)], text);
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
  // The channels chosen on the current lap follow it to the new current lap; a lap that keeps
  // its start keeps whether it is shown or hidden, its colour and its channels.
  std::vector<LapChannelRec> current;
  if (o.CurLap >= 0 && o.CurLap < static_cast<int>(o.Laps.size())) current = o.Laps[static_cast<std::size_t>(o.CurLap)].LapChannels;
  const std::vector<LapRec> old = std::move(o.Laps);
  const std::size_t channels = old.empty() ? 0 : old[0].LapChannels.size();
  o.LastLap = static_cast<int16_t>(Count);
  o.Laps.assign(static_cast<std::size_t>(Count) + 1, LapRec{});
  for (int i = 0; i <= Count; ++i) {
    LapRec& row = o.Laps[static_cast<std::size_t>(i)];
    row.StartTime = Rows[static_cast<std::size_t>(i)];
    row.LapChannels.resize(channels);
    const auto same = std::find_if(old.begin(), old.end(), [&](const LapRec& l) { return l.StartTime == row.StartTime; });
    if (same == old.end() || i == Count) continue;
    row.Shown = same->Shown;
    row.Hidden = same->Hidden;
    row.LapColor = same->LapColor;
    for (std::size_t c = 0; c < channels && c < same->LapChannels.size(); ++c) {
      row.LapChannels[c].Shown = same->LapChannels[c].Shown;
      row.LapChannels[c].Color = same->LapChannels[c].Color;
    }
  }
  FindFastLap(ws_, slot_);
  ComputeLapDistances(ws_, slot_);
  const bool whole = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].LapsDisplayed == 255;
  o.CurLap = whole ? 0 : o.FastLap;
  LapRec& cur = o.Laps[static_cast<std::size_t>(o.CurLap)];
  cur.Shown = -1;
  for (std::size_t c = 0; c < current.size() && c < cur.LapChannels.size(); ++c) {
    if (current[c].Shown != 0) cur.LapChannels[c].Shown = -1;
  }
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
  // New starts: the laps' samples, start distances, stretches and the fast lap follow the new times.
  ClearOutingCache(ws, slot);
  ComputeLapDistances(ws, slot);
  FindFastLap(ws, slot);
}

bool ShiftFailed(Workspace& ws) {
  ws.messages.Show(QStringLiteral("Error shifting beacons"), QStringLiteral("Shift Beacon"), MessageIcon::Exclamation);
  return false;
}

bool ShiftDistance(Workspace& ws, int slot, double distance) {
  OutingRec& o = OutingAt(ws, slot);
  auto fail = [&] { return ShiftFailed(ws); };
  if (o.ChanDistance < 0) return fail();
  // New times first, so that a failure leaves the table as it was.
  std::vector<int32_t> times(static_cast<std::size_t>(std::max(0, o.LastLap - 1)));
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    // A shift back is found in the lap before, whose samples run up to this lap's start.
    const int lap = distance >= 0 ? i : i - 1;
    const LapRec& from = o.Laps[static_cast<std::size_t>(lap)];
    const double wanted = o.Laps[static_cast<std::size_t>(i)].StartDistance + distance - from.StartDistance;
    const float ms = TimeAtDistance(ws, slot, lap, static_cast<float>(wanted));
    if (ms == 0) return fail();
    times[static_cast<std::size_t>(i)] = SaturateInt32(RoundHalfEven(from.StartTime + static_cast<double>(ms)));
  }
  for (int i = 1; i <= o.LastLap - 2; ++i) {
    LapRec& row = o.Laps[static_cast<std::size_t>(i)];
    row.StartTime = times[static_cast<std::size_t>(i)];
    row.StartDistance = static_cast<float>(row.StartDistance + distance);
  }
  // The first and the last shifted laps change length: their stretches and the fast lap follow.
  ClearOutingCache(ws, slot);
  ComputeLapScales(ws, slot);
  FindFastLap(ws, slot);
  o.BeaconShift = static_cast<float>(distance);
  return true;
}

QString ShiftUnits(const Workspace& ws, int slot, bool by_time) {
  if (by_time) return QStringLiteral("(secs)");
  const OutingRec& o = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].Outings[static_cast<std::size_t>(slot)];
  return (o.UnitsMask & 1) != 0 ? QStringLiteral("(mtrs)") : QStringLiteral("(feet)");
}
