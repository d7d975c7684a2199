#include "core/track/TrackCreate.h"

#include <QDir>
#include <QFileInfo>
#include <cmath>

#include "core/app/Files.h"
#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackFile.h"

namespace {

constexpr float kDegToRad = 0.017453292f;
constexpr float kTwoPi = 6.2831855f;
const QString kMapTitle = QStringLiteral("Track Map");

bool Fail(Workspace& ws, const QString& text, const QString& title) {
  ws.messages.Show(text, title, MessageIcon::Exclamation);
  return false;
}

const std::vector<float>& Fetched(Workspace& ws, int slot, int lap, int channel) {
  GetChannelData(ws, slot, lap, channel);
  return OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
}

float SampleOr0(const std::vector<float>& v, int64_t i) {
  return i >= 0 && i < static_cast<int64_t>(v.size()) ? v[static_cast<std::size_t>(i)] : 0.0f;
}

// Rows of the sample table the lap gives at the distance channel's rate.
int64_t RowsOf(const OutingRec& o, int lap, float rate) {
  return RoundHalfEven(static_cast<double>(rate) * LapTimeMs(o, lap));
}

}  // namespace

bool TooManyRows(Workspace& ws, int64_t n) {
  if (n <= kMaxSourceSamples - 1) return false;
  return !Fail(ws, QStringLiteral("Segments exceed maximum allowed"), QStringLiteral("Process Track"));
}

bool LengthTooShort(Workspace& ws, const OutingRec& o, int lap) {
  const auto& s = ws.Track.Samples;
  ws.TrackLength = static_cast<float>(s[static_cast<std::size_t>(ws.Track.SampleLast)].Distance - s[0].Distance);
  if (ws.TrackLength >= 101) return false;
  ws.Track.TrackPoints.clear();
  ws.Track.PointCount = 0;
  return !Fail(ws, QStringLiteral("Insufficient distance data : Lap (") + QString::number(o.LapNumberBase + lap) + QLatin1Char(')'),
               kMapTitle);
}

namespace {

// Corner flag with hysteresis on the sensor's size.
}  // namespace

int16_t CornerFlag(int16_t flag, float a, const TrackSettings& s) {
  if (a > s.LatGStartLimit) return -1;
  if (a < s.LatGEndLimit) return 0;
  return flag;
}

namespace {

// The integration state of one pass.
struct Pen {
  float x = 0, y = 0, h = 0;
  float minx = 0, miny = 0, maxx = 1, maxy = 1;
  int steps = 0;
  int points = 0;
  void Bounds() {
    minx = std::min(minx, x), maxx = std::max(maxx, x);
    miny = std::min(miny, y), maxy = std::max(maxy, y);
  }
};

// One unit of a curve's chord; the turn's side comes from the sensor against the offset.
struct Curve {
  float chord = 0, step = 0, angle = 0;
};

void ProcessTurn(Pen& p, const TrackState& t, float sensor, const Curve& c, const TrackSettings& s) {
  const bool one_way = (!s.Invert && sensor <= s.LatGOffset) || (s.Invert && sensor > s.LatGOffset);
  if (one_way) {
    p.x = p.x + c.chord * static_cast<float>(std::sin(static_cast<double>(c.angle + p.h)));
    p.y = p.y + c.chord * static_cast<float>(std::cos(static_cast<double>(c.angle + p.h)));
    p.h = p.h - c.step;
  } else {
    p.x = p.x + c.chord * static_cast<float>(std::sin(static_cast<double>(c.angle - p.h)));
    p.y = p.y - c.chord * static_cast<float>(std::cos(static_cast<double>(c.angle - p.h)));
    p.h = p.h + c.step;
  }
  p.h = p.h + t.HeadingFix;
  p.x = p.x - t.XFix;
  p.y = p.y - t.YFix;
}

// The radius of the curve a sample drives, in the outing's distance units; 0 when there is none.
float Radius(const SourceSample& a, int dt, int dist, int mode, const TrackSettings& s, bool imperial) {
  float r = 0;
  const float sensor = a.Sensor;
  if (mode == 0) {
    const float speed = static_cast<float>(dist) / (static_cast<float>(dt) / 1000.0f);
    r = speed * speed / (std::fabs(static_cast<float>(s.LatGOffset) + sensor) * 9.8065f);
  } else {
    const float turned = (std::fabs(sensor) + static_cast<float>(s.LatGOffset)) * static_cast<float>(dt) / 1000.0f;
    r = static_cast<float>(dist) / (turned * kDegToRad);
  }
  if (imperial) r = r * 0.3048f;
  // A zero time step or sensor gives no finite curve: the sample is driven straight.
  return std::isfinite(r) && r > 0 ? r : 0.0f;
}

void StorePoint(TrackState& t, const Pen& p, int i, int16_t flag, int pass) {
  if (pass == 3 && p.points < static_cast<int>(t.TrackPoints.size())) {
    t.TrackPoints[static_cast<std::size_t>(p.points)] = TrackPoint{p.x, p.y, static_cast<int16_t>(i), flag, p.points, 0, 0, 0, 0};
  }
}

Pen RunPass(TrackState& t, int pass, int mode, const TrackSettings& s, bool imperial) {
  Pen p;
  p.h = static_cast<float>(s.GlobalAngle) * kDegToRad;
  int16_t flag = 0;
  for (int i = 0; i < t.SampleLast; ++i) {
    const SourceSample& a = t.Samples[static_cast<std::size_t>(i)];
    const SourceSample& b = t.Samples[static_cast<std::size_t>(i + 1)];
    const float size = std::fabs(a.Sensor);
    flag = CornerFlag(flag, size, s);
    const int dt = b.Time - a.Time;
    const int dist = b.Distance - a.Distance;
    if (dist <= 0) continue;
    const float r = size >= s.LatGIncrement ? Radius(a, dt, dist, mode, s, imperial) : 0.0f;
    if (r > 0) {
      const float deg = 360.0f / (r * kTwoPi);
      const Curve c{r * 2.0f * static_cast<float>(std::cos(static_cast<double>((90.0f - deg / 2.0f) * kDegToRad))),
                    deg * kDegToRad, (90.0f - deg / 2.0f) * kDegToRad};
      for (int k = 0; k < dist; ++k) {
        ProcessTurn(p, t, a.Sensor, c, s);
        ++p.steps;
        p.Bounds();
        StorePoint(t, p, i, flag, pass);
        ++p.points;
      }
    } else {
      const float cx = static_cast<float>(std::cos(static_cast<double>(p.h)));
      const float sy = static_cast<float>(std::sin(static_cast<double>(p.h)));
      for (int k = 0; k < dist; ++k) {
        p.x = p.x + cx;
        p.y = p.y - sy;
        StorePoint(t, p, i, flag, pass);
        ++p.points;
      }
      p.Bounds();
    }
  }
  return p;
}

}  // namespace

bool CreateTrack(Workspace& ws, int slot, int lap, const TrackSettings& s) {
  const OutingRec& o = OutingAt(ws, slot);
  if (s.CreateMode == 0 && o.ChanLatG < 0) return Fail(ws, QStringLiteral("Lateral G channel not logged"), kMapTitle);
  if (s.CreateMode == 1 && o.ChanGyro < 0) return Fail(ws, QStringLiteral("Gyro channel not logged"), kMapTitle);
  if (s.CreateMode == 2 && (o.ChanGpsLat < 0 || o.ChanGpsLong < 0)) {
    return Fail(ws, QStringLiteral("GPS channel(s) not logged"), kMapTitle);
  }
  if (o.ChanDistance < 0) return Fail(ws, QStringLiteral("Distance channel not logged"), kMapTitle);
  if (o.LastLap < 2) return Fail(ws, QStringLiteral("No Beacons detected"), kMapTitle);
  if (lap < 0 || lap >= o.LastLap) return false;
  FetchScope scope(ws);
  // A cancel puts back the map that was there, work tables and all.
  const TrackState kept = ws.Track;
  const float kept_length = ws.TrackLength;
  ws.Track.CreateLap = lap;
  ws.Track.Stopped = false;
  const bool made = s.CreateMode == 2 ? BuildGPSTrackSamples(ws, slot, lap) && CalculateGPSTrack(ws, slot, lap, s)
                                      : BuildTrackSamples(ws, slot, lap, s) && CalculateTrack(ws, slot, lap, s);
  if (ws.Track.Stopped) {
    ws.Track = kept;
    ws.TrackLength = kept_length;
    ws.Track.Stopped = true;
  }
  return made;
}

bool BuildTrackSamples(Workspace& ws, int slot, int lap, const TrackSettings& s) {
  const OutingRec& o = OutingAt(ws, slot);
  const int sensor = s.CreateMode == 1 ? o.ChanGyro : o.ChanLatG;
  const std::vector<float>& S = Fetched(ws, slot, lap, sensor);
  const std::vector<float>& D = Fetched(ws, slot, lap, o.ChanDistance);
  const float rate_d = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
  const float rate_s = o.Channels[static_cast<std::size_t>(sensor)].Rate;
  if (!(rate_d > 0)) return false;
  const int64_t n = RowsOf(o, lap, rate_d);
  if (TooManyRows(ws, n - 1)) return false;
  const double ratio = static_cast<double>(rate_s) / rate_d;
  const float start = o.Laps[static_cast<std::size_t>(lap)].StartDistance;
  std::vector<SourceSample> rows(static_cast<std::size_t>(std::max<int64_t>(n, 0)));
  for (int64_t i = 0; i < n; ++i) {
    SourceSample& r = rows[static_cast<std::size_t>(i)];
    r.Time = SaturateInt32(RoundHalfEven(static_cast<double>(i) / rate_d));
    r.Distance = SaturateInt32(RoundHalfEven(static_cast<double>(SampleOr0(D, i)) - start));
    const float v = SampleOr0(S, RoundHalfEven(static_cast<double>(i) * ratio));
    r.Sensor = s.InvertCalibration ? -v : v;
  }
  if (n < 2) return Fail(ws, QStringLiteral("Insufficient distance data : Lap (") + QString::number(o.LapNumberBase + lap) + QLatin1Char(')'), kMapTitle);
  ws.Track.Samples = std::move(rows);
  ws.Track.SampleLast = static_cast<int>(n - 1);
  return true;
}

bool CalculateTrack(Workspace& ws, int slot, int lap, const TrackSettings& s) {
  const OutingRec& o = OutingAt(ws, slot);
  TrackState& t = ws.Track;
  if (LengthTooShort(ws, o, lap)) return false;
  t.HeadingFix = t.XFix = t.YFix = 0;
  const float h0 = static_cast<float>(s.GlobalAngle) * kDegToRad;
  const bool imperial = o.UnitsMask == 0;
  // A long lap takes a while per pass; a cancel between passes leaves the map as it was.
  const int first = s.Closed ? 0 : 2;
  ProgressScope progress(ws, QStringLiteral("Creating the track map"), 4 - first, true);
  Pen p;
  for (int pass = first; pass < 4; ++pass) {
    if (!progress.Step(pass - first, QStringLiteral("Pass %1 of %2").arg(pass - first + 1).arg(4 - first))) {
      t.Stopped = true;
      return false;
    }
    p = RunPass(t, pass, s.CreateMode, s, imperial);
    if (pass == 0) {
      if (p.steps < 1) t.HeadingFix = 0;
      else if (s.FigureOfEight) t.HeadingFix = -(p.h - h0) / static_cast<float>(p.steps);
      else if (s.Invert) t.HeadingFix = ((h0 - kTwoPi) - p.h) / static_cast<float>(p.steps);
      else t.HeadingFix = (h0 + (kTwoPi - p.h)) / static_cast<float>(p.steps);
    } else if (pass == 1 && p.steps > 0) {
      t.XFix = p.x / static_cast<float>(p.steps);
      t.YFix = p.y / static_cast<float>(p.steps);
    } else if (pass == 2) {
      t.TrackPoints.assign(static_cast<std::size_t>(p.points), TrackPoint{});
    }
  }
  t.PointCount = static_cast<int32_t>(t.TrackPoints.size());
  t.TrackHeading = p.h;
  t.TrackMinX = p.minx, t.TrackMinY = p.miny, t.TrackMaxX = p.maxx, t.TrackMaxY = p.maxy;
  t.CreateMode = static_cast<int16_t>(s.CreateMode);
  return true;
}

void SaveSegmentData(Workspace& ws) {
  TrackState& t = ws.Track;
  t.SegmentStart.assign(kMaxSegments, 0);
  bool corner = !t.TrackPoints.empty() && t.TrackPoints[0].Corner == -1;
  t.FirstSegmentKind = corner ? 1 : 0;
  int count = t.FirstSegmentKind;
  for (const TrackPoint& p : t.TrackPoints) {
    const bool here = p.Corner == -1;
    if (here == corner) continue;
    corner = here;
    if (count + 1 >= kMaxSegments) break;  // the table holds 128 boundaries; the rest run as one
    t.SegmentStart[static_cast<std::size_t>(++count)] = p.Distance;
  }
  t.SegmentCount = static_cast<int16_t>(count);
  t.SegmentStart.resize(static_cast<std::size_t>(count) + 1);
}

void MarkPoints(Workspace& ws, int from, int to, bool corner) {
  auto& pts = ws.Track.TrackPoints;
  if (from > to) std::swap(from, to);
  from = std::max(from, 0);
  to = std::min(to, static_cast<int>(pts.size()) - 1);
  for (int i = from; i <= to; ++i) pts[static_cast<std::size_t>(i)].Corner = corner ? -1 : 0;
}

QString TrackPathFor(const Workspace& ws, const QString& name) {
  QString base = name.trimmed();
  const qsizetype dot = base.indexOf(QLatin1Char('.'));
  if (dot >= 0) base = base.left(dot);
  // A map is always a file of the track directory: no separators, no drive, no control bytes.
  static const QString kForbidden = QStringLiteral("/\\:*?\"<>|");
  if (base.isEmpty()) return QString();
  for (QChar c : base) {
    if (c.unicode() < 0x20 || kForbidden.contains(c)) return QString();
  }
  return JoinPath(ws.Paths.TrackDirectory, base + QStringLiteral(".MAP"));
}

bool SaveNewTrack(Workspace& ws, int slot, const QString& name, const QString& comment) {
  const OutingRec& o = OutingAt(ws, slot);
  TrackState& t = ws.Track;
  const QString path = TrackPathFor(ws, name);
  if (path.isEmpty()) return Fail(ws, QStringLiteral("Please enter a valid track name"), QStringLiteral("Track Data"));
  t.OfficialLength = ws.TrackLength / ((o.UnitsMask & 1) != 0 ? 1000.0f : 5280.0f);
  t.TrackName = name.trimmed().left(32);
  t.TrackComment = comment.left(32);
  SaveSegmentData(ws);
  t.SplitCount = t.SegmentCount;
  t.SplitPoints = t.SegmentStart;
  QDir().mkpath(ws.Paths.TrackDirectory);
  QString error;
  const QString outing_name = QFileInfo(o.FileName).completeBaseName();
  if (!WriteFileAtomically(path, TrackFileBytes(ws, outing_name), &error)) {
    return Fail(ws, error, QStringLiteral("Save Track"));
  }
  ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)].TrackFile = path;
  t.TrackChanged = true;
  return true;
}
