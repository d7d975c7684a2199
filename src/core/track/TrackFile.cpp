#include "core/track/TrackFile.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>

#include "core/app/Files.h"
#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/track/Laps.h"
#include "core/track/TrackFormat.h"

namespace {

const QString kLoadTitle = QStringLiteral("Load Track");

bool FailLoad(Workspace& ws, const QString& text) {
  ws.messages.Show(text, kLoadTitle, MessageIcon::Exclamation);
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackFile.clear();
  ws.TrackLoaded = false;
  return false;
}

QString BadMap(const QString& path) { return QStringLiteral("Not a valid track map: ") + path; }

// Counts out of range would index past the 128 entries of the tables.
template <std::size_t N>
bool CopyTable(int16_t count, const std::array<int32_t, N>& from, std::vector<int32_t>& to) {
  if (count < 0 || count >= static_cast<int>(N)) return false;
  to.assign(from.begin(), from.begin() + count + 1);
  return true;
}

// A load replaces the map only: the creation work area and the drawing fit stay.
void KeepWorkArea(TrackState& t, TrackState& old) {
  t.Samples = std::move(old.Samples);
  t.SampleLast = old.SampleLast;
  t.HeadingFix = old.HeadingFix, t.XFix = old.XFix, t.YFix = old.YFix;
  t.CreateLap = old.CreateLap;
  t.TrackChanged = old.TrackChanged;
  t.TrackScale = old.TrackScale, t.TrackOffsetX = old.TrackOffsetX, t.TrackOffsetY = old.TrackOffsetY;
}

TrackPoint FromRecord(const TrackPointRecord& r) {
  return TrackPoint{r.X, r.Y, r.SampleIndex, r.Corner, r.Distance, r.Mark, r.Lat, r.Long, r.Alt};
}

// The fields both map layouts share, from their header into the work variables.
template <class Header>
void CopyHeaderFields(const Header& h, TrackState& t) {
  t.TrackHeading = h.TrackHeading;
  t.TrackMinX = h.TrackMinX, t.TrackMinY = h.TrackMinY, t.TrackMaxX = h.TrackMaxX, t.TrackMaxY = h.TrackMaxY;
  t.FirstSegmentKind = h.FirstSegmentKind;
  t.SegmentCount = h.SegmentCount;
  t.SplitCount = h.SplitCount;
  t.LapDisplayMode = h.LapDisplayMode;
  t.OfficialLength = h.OfficialLength;
  t.TrackComment = h.TrackComment.Trimmed();
  t.TrackName = h.TrackName.Trimmed();
}

}  // namespace

bool LoadTrackFile(Workspace& ws, const QString& path) {
  if (!FileExists(path)) return FailLoad(ws, QStringLiteral("Can't open file: ") + path);
  QByteArray bytes;
  if (!ReadFileBytes(path, 0, 32, bytes)) return FailLoad(ws, QStringLiteral("Can't open file: ") + path);
  if (!QString::fromLatin1(bytes).contains(QLatin1String(kTrackMagic), Qt::CaseInsensitive)) {
    return LoadOldTrackFile(ws, path);
  }
  const int64_t size = QFileInfo(path).size();
  if (size < kTrackHeaderSize || !ReadFileBytes(path, 0, size, bytes) || bytes.size() != size) {
    return FailLoad(ws, BadMap(path));
  }
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.constData());
  TrackHeader h;
  ReadStoredRecord(h, data, kTrackHeaderSize);
  TrackState t;
  if (!CopyTable(h.SegmentCount, h.SegmentStart, t.SegmentStart) ||
      !CopyTable(h.SplitCount, h.SplitPoints, t.SplitPoints)) {
    return FailLoad(ws, BadMap(path));
  }
  t.CreateMode = h.CreateMode;
  CopyHeaderFields(h, t);
  // A last record cut short reads as zeros past the end of the file.
  const int64_t count = RoundHalfEven(static_cast<double>(size - kTrackHeaderSize) / kTrackPointSize);
  t.TrackPoints.resize(static_cast<std::size_t>(count));
  for (int64_t i = 0; i < count; ++i) {
    const int64_t at = kTrackHeaderSize + i * kTrackPointSize;
    t.TrackPoints[static_cast<std::size_t>(i)] = FromRecord(DecodeRecordBytes<TrackPointRecord>(
        data + at, static_cast<std::size_t>(std::min<int64_t>(kTrackPointSize, size - at))));
  }
  t.PointCount = static_cast<int32_t>(count);
  KeepWorkArea(t, ws.Track);
  t.LoadedPath = path;
  ws.Track = std::move(t);
  ws.TrackLength = static_cast<float>(h.TrackLength);
  ws.TrackLoaded = true;
  return true;
}

bool LoadOldTrackFile(Workspace& ws, const QString& path) {
  const int64_t size = QFileInfo(path).size();
  QByteArray bytes;
  if (size < kOldTrackHeaderSize || !ReadFileBytes(path, 0, size, bytes) || bytes.size() != size) {
    return FailLoad(ws, BadMap(path));
  }
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.constData());
  const auto h = DecodeRecordBytes<OldTrackHeader>(data, kOldTrackHeaderSize);
  TrackState t;
  if (!CopyTable(h.SegmentCount, h.SegmentStart, t.SegmentStart) ||
      !CopyTable(h.SplitCount, h.SplitPoints, t.SplitPoints)) {
    return FailLoad(ws, BadMap(path));
  }
  CopyHeaderFields(h, t);
  const int64_t stored = (size - kOldTrackHeaderSize) / kOldTrackPointSize;
  for (int64_t i = 0; i < stored; i += kOldTrackKeepEvery) {
    const auto r = DecodeRecordBytes<OldTrackPointRecord>(data + kOldTrackHeaderSize + i * kOldTrackPointSize,
                                                          kOldTrackPointSize);
    t.TrackPoints.push_back(TrackPoint{r.X, r.Y, r.SampleIndex, r.Corner, r.Distance, r.Mark, 0, 0, 0});
  }
  t.PointCount = static_cast<int32_t>(t.TrackPoints.size());
  KeepWorkArea(t, ws.Track);
  t.LoadedPath = path;
  ws.Track = std::move(t);
  ws.TrackLength = static_cast<float>(h.TrackLength);
  ws.TrackLoaded = true;
  return true;
}

bool SelectTrackFile(Workspace& ws, const QString& path) {
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackFile = path;
  const bool loaded = LoadTrackFile(ws, path);
  ApplyTrackToOutings(ws);  // a map that failed leaves no stretch of the one before
  return loaded;
}

void LoadFolderTrack(Workspace& ws) {
  const QString path = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackFile;
  TrackState& t = ws.Track;
  if (path.isEmpty()) {
    ws.TrackLoaded = false;
  } else if (!ws.TrackLoaded || t.LoadedPath != path || t.TrackChanged) {
    t.TrackChanged = false;
    LoadTrackFile(ws, path);
  }
  ApplyTrackToOutings(ws);
}

void ApplyTrackToOutings(Workspace& ws) {
  FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    const OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0) continue;
    std::vector<float> before;
    for (const LapRec& lap : o.Laps) before.push_back(lap.DistanceScale);
    ComputeLapScales(ws, slot);
    std::vector<float> after;
    for (const LapRec& lap : o.Laps) after.push_back(lap.DistanceScale);
    // Only a changed stretch refetches: a folder shown again keeps its samples.
    if (o.ChanDistance < 0 || before == after) continue;
    ClearChannelCache(ws, slot, o.ChanDistance);
    if (o.LoggedCount + 1 <= o.LastChannel) ClearChannelCache(ws, slot, o.LoggedCount + 1);
  }
}

void UnloadTrack(Workspace& ws) {
  if (!ws.TrackLoaded) return;
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackFile.clear();
  ws.Track.OfficialLength = 0;
  ws.Track.LapDisplayMode = 0;
  ws.TrackLoaded = false;
  ApplyTrackToOutings(ws);
}

void FitTrackToArea(Workspace& ws, double width, double height) {
  TrackState& t = ws.Track;
  const double margin = std::max<double>(RoundHalfEven(std::max(width, height) / 5), 500);
  const double span_x = static_cast<double>(t.TrackMaxX) - t.TrackMinX;
  const double span_y = static_cast<double>(t.TrackMaxY) - t.TrackMinY;
  if (!(span_x > 0) || !(span_y > 0)) return;  // nothing drawable: keep the last fit
  t.TrackScale = std::min((width - margin) / span_x, (height - margin) / span_y);
  const double cx = static_cast<double>(RoundHalfEven((width - span_x * t.TrackScale) / 2));
  const double cy = static_cast<double>(RoundHalfEven((height - span_y * t.TrackScale) / 2));
  t.TrackOffsetX = SaturateInt32(RoundHalfEven(cx - t.TrackScale * t.TrackMinX));
  t.TrackOffsetY = SaturateInt32(RoundHalfEven(cy - t.TrackScale * t.TrackMinY));
}

QByteArray TrackFileBytes(const Workspace& ws, const QString& outing_name) {
  const TrackState& t = ws.Track;
  TrackHeader h;
  h.Magic = QString::fromLatin1(kTrackMagic);
  h.OutingName = outing_name.left(8);
  h.CreateMode = t.CreateMode;
  h.TrackLength = SaturateInt32(RoundHalfEven(ws.TrackLength));
  h.TrackHeading = t.TrackHeading;
  h.TrackMinX = t.TrackMinX, h.TrackMinY = t.TrackMinY, h.TrackMaxX = t.TrackMaxX, h.TrackMaxY = t.TrackMaxY;
  h.FirstSegmentKind = t.FirstSegmentKind;
  h.SegmentCount = t.SegmentCount;
  for (std::size_t i = 0; i < std::min<std::size_t>(t.SegmentStart.size(), 128); ++i) h.SegmentStart[i] = t.SegmentStart[i];
  h.SplitCount = t.SplitCount;
  for (std::size_t i = 0; i < std::min<std::size_t>(t.SplitPoints.size(), 128); ++i) h.SplitPoints[i] = t.SplitPoints[i];
  h.LapDisplayMode = t.LapDisplayMode;
  h.OfficialLength = t.OfficialLength;
  h.TrackComment = t.TrackComment;
  h.TrackName = t.TrackName;
  QByteArray out(kTrackHeaderSize + static_cast<qsizetype>(t.TrackPoints.size()) * kTrackPointSize, '\0');
  auto* p = reinterpret_cast<uint8_t*>(out.data());
  EncodeRecordBytes(h, p);
  for (std::size_t i = 0; i < t.TrackPoints.size(); ++i) {
    const TrackPoint& q = t.TrackPoints[i];
    const TrackPointRecord r{q.X, q.Y, q.SampleIndex, q.Corner, q.Distance, 0, q.Lat, q.Long, q.Alt};
    EncodeRecordBytes(r, p + kTrackHeaderSize + i * kTrackPointSize);
  }
  return out;
}

QString TrackPointText(const Workspace& ws, bool metric, int point) {
  const auto& pts = ws.Track.TrackPoints;
  if (point < 0 || point >= static_cast<int>(pts.size())) return QString();
  const TrackPoint& p = pts[static_cast<std::size_t>(point)];
  QString text = QStringLiteral("Distance : ") + QString::number(p.Distance) +
                 (metric ? QStringLiteral(" mtrs") : QStringLiteral(" feet"));
  if (ws.Track.CreateMode == 2) {
    text += QStringLiteral("  Lat : ") + QString::number(p.Lat, 'f', 4) + QStringLiteral(" deg") +
            QStringLiteral("  Long : ") + QString::number(p.Long, 'f', 4) + QStringLiteral(" deg");
  }
  return text;
}

frmTrackData::frmTrackData(Workspace& ws) : ws_(ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  TrackName = ws.Track.TrackName;
  OfficialLength = ws.Track.OfficialLength;
  TrackComment = ws.Track.TrackComment;
  LapDisplayMode = ws.Track.LapDisplayMode;
  Correction = folder.TrackCorrection;
  MinLaptime = folder.MinimumLaptime;
}

QString frmTrackData::LengthUnits() const {
  const OutingRec& o = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].Outings[static_cast<std::size_t>(ws_.CurOuting)];
  return (o.UnitsMask & 1) != 0 ? QStringLiteral("(km)") : QStringLiteral("(miles)");
}

bool frmTrackData::Accept() {
  if (TrackName.trimmed().isEmpty()) {
    ws_.messages.Show(QStringLiteral("Please enter a valid track name"), QStringLiteral("Track Data"),
                      MessageIcon::Exclamation);
    return false;
  }
  FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  folder.TrackCorrection = static_cast<int16_t>(std::clamp<int64_t>(RoundHalfEven(Correction), -32768, 32767));
  folder.MinimumLaptime = SaturateInt32(RoundHalfEven(MinLaptime));
  ws_.Track.TrackName = TrackName.trimmed().left(32);
  ws_.Track.OfficialLength = OfficialLength;
  ws_.Track.TrackComment = TrackComment.left(32);
  ws_.Track.LapDisplayMode = static_cast<int16_t>(LapDisplayMode);
  return true;
}

bool frmTrackData::cmdOK() {
  if (!Accept()) return false;
  const TrackState& t = ws_.Track;
  const bool ok = UpdateTrackHeader(ws_, ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].TrackFile,
                                    QStringLiteral("Track Data"), [&](TrackHeader& h) {
                                      h.TrackName = t.TrackName;
                                      h.OfficialLength = t.OfficialLength;
                                      h.TrackComment = t.TrackComment;
                                      h.LapDisplayMode = t.LapDisplayMode;
                                    });
  if (ok) ApplyTrackToOutings(ws_);
  return ok;
}

bool UpdateTrackHeader(Workspace& ws, const QString& path, const QString& title,
                       const std::function<void(TrackHeader&)>& change) {
  QByteArray bytes;
  if (!FileExists(path) || !ReadFileBytes(path, 0, QFileInfo(path).size(), bytes) || bytes.size() < kTrackHeaderSize) {
    ws.messages.Show(QStringLiteral("Can't open file: ") + path, title, MessageIcon::Exclamation);
    return false;
  }
  auto* data = reinterpret_cast<uint8_t*>(bytes.data());
  TrackHeader h;
  ReadStoredRecord(h, data, kTrackHeaderSize);
  change(h);
  const auto& head = StoredRecordBytes(h);
  std::copy(head.begin(), head.end(), data);
  // The points behind the header go back as they were; the file is replaced whole or not at all.
  QString error;
  if (!WriteFileAtomically(path, bytes, &error)) {
    ws.messages.Show(error, title, MessageIcon::Critical);
    return false;
  }
  return true;
}
