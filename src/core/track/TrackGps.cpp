#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelData.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackCreate.h"

namespace {

const std::vector<float>* FetchedOrNull(Workspace& ws, int slot, int lap, int channel) {
  if (channel < 0) return nullptr;
  GetChannelData(ws, slot, lap, channel);
  return &OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)].Samples;
}

float At(const std::vector<float>* v, int64_t i) {
  return v && i >= 0 && i < static_cast<int64_t>(v->size()) ? (*v)[static_cast<std::size_t>(i)] : 0.0f;
}

// Sample i of a channel at another rate, by the time of row i of the distance channel.
int64_t Index(double i, float rate, float rate_d) { return RoundHalfEven(i * static_cast<double>(rate) / rate_d); }

}  // namespace

bool BuildGPSTrackSamples(Workspace& ws, int slot, int lap) {
  const OutingRec& o = OutingAt(ws, slot);
  const auto* lat = FetchedOrNull(ws, slot, lap, o.ChanGpsLat);
  const auto* lon = FetchedOrNull(ws, slot, lap, o.ChanGpsLong);
  const auto* alt = FetchedOrNull(ws, slot, lap, o.ChanGpsAlt);
  const auto* latg = FetchedOrNull(ws, slot, lap, o.ChanLatG);
  const auto* dist = FetchedOrNull(ws, slot, lap, o.ChanDistance);
  auto rate = [&](int c) { return c >= 0 ? o.Channels[static_cast<std::size_t>(c)].Rate : 0.0f; };
  // One row per GPS sample: the map has a point wherever the receiver gave one.
  const float rate_gps = rate(o.ChanGpsLat);
  if (!(rate_gps > 0)) return false;
  const int64_t n = RoundHalfEven(static_cast<double>(rate_gps) * LapTimeMs(o, lap));
  if (TooManyRows(ws, n - 1)) return false;
  const float start = o.Laps[static_cast<std::size_t>(lap)].StartDistance;
  std::vector<SourceSample> rows(static_cast<std::size_t>(std::max<int64_t>(n, 0)));
  for (int64_t i = 0; i < n; ++i) {
    SourceSample& r = rows[static_cast<std::size_t>(i)];
    const double di = static_cast<double>(i);
    r.Time = SaturateInt32(RoundHalfEven(di / rate_gps));
    r.Distance = SaturateInt32(RoundHalfEven(static_cast<double>(At(dist, Index(di, rate(o.ChanDistance), rate_gps))) - start));
    r.Lat = At(lat, i);
    r.Long = At(lon, Index(di, rate(o.ChanGpsLong), rate_gps));
    r.Alt = At(alt, Index(di, rate(o.ChanGpsAlt), rate_gps));
    r.Sensor = At(latg, Index(di, rate(o.ChanLatG), rate_gps));
  }
  if (n < 2) return false;
  ws.Track.Samples = std::move(rows);
  ws.Track.SampleLast = static_cast<int>(n - 1);
  return true;
}

bool CalculateGPSTrack(Workspace& ws, int slot, int lap, const TrackSettings& s) {
  const OutingRec& o = OutingAt(ws, slot);
  TrackState& t = ws.Track;
  if (LengthTooShort(ws, o, lap)) return false;
  const float h = static_cast<float>(s.GlobalAngle) * 0.017453292f;
  const auto& rows = t.Samples;
  t.TrackPoints.assign(static_cast<std::size_t>(t.SampleLast), TrackPoint{});
  // Bounds start at the first point, not at one unit: a unit here is a degree, far larger than
  // the circuit, and the drawing fit would shrink the map to a dot.
  t.TrackMinX = t.TrackMinY = t.TrackMaxX = t.TrackMaxY = 0;
  int16_t flag = 0;
  double a = 0;
  for (int i = 0; i < t.SampleLast; ++i) {
    const SourceSample& r = rows[static_cast<std::size_t>(i)];
    flag = CornerFlag(flag, std::fabs(r.Sensor), s);
    const double dx = static_cast<double>(r.Lat) - rows[0].Lat;
    const double dy = static_cast<double>(r.Long) - rows[0].Long;
    double x = dx, y = dy;
    if (i != 0) {
      const double d = std::sqrt(dx * dx + dy * dy);
      // At the start position itself (d = 0) the point is the origin, whatever the angle: the
      // angle keeps its last value so the next sample is not disturbed either.
      if (d > 0) {
        const double sn = dy / d;
        if (std::fabs(sn) < 1) a = std::atan(sn / std::sqrt(1 - sn * sn));
      }
      if (dx >= 0) {
        x = d * std::cos(a - h), y = d * std::sin(a - h);
      } else {
        x = -d * std::cos(h + a), y = d * std::sin(h + a);
      }
    }
    TrackPoint& p = t.TrackPoints[static_cast<std::size_t>(i)];
    p = TrackPoint{static_cast<float>(x), static_cast<float>(y), static_cast<int16_t>(i), flag, r.Distance, 0, r.Lat, r.Long, r.Alt};
    t.TrackMinX = std::min(t.TrackMinX, p.X), t.TrackMaxX = std::max(t.TrackMaxX, p.X);
    t.TrackMinY = std::min(t.TrackMinY, p.Y), t.TrackMaxY = std::max(t.TrackMaxY, p.Y);
  }
  t.PointCount = t.SampleLast;
  t.TrackHeading = h;
  t.CreateMode = 2;
  return true;
}
