#include "core/outing/ChannelData.h"

#include <QFile>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/compute/Calibration.h"
#include "core/compute/Filters.h"
#include "core/compute/MathEvaluator.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/DistanceTime.h"

namespace {

FolderRec& Folder(Workspace& ws) { return ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)]; }

LapChannelRec& Cache(Workspace& ws, int slot, int lap, int channel) {
  return OutingAt(ws, slot).Laps[static_cast<std::size_t>(lap)].LapChannels[static_cast<std::size_t>(channel)];
}

void Store(Workspace& ws, int slot, int lap, int channel, std::vector<float> values) {
  LapChannelRec& cache = Cache(ws, slot, lap, channel);
  cache.Samples = ApplyChannelFilter(ws, slot, channel, std::move(values));
  cache.Loaded = -1;
}

// The samples of another channel of the same lap, fetched first; empty when it has none.
const std::vector<float>& Fetched(Workspace& ws, int slot, int lap, int channel) {
  GetChannelData(ws, slot, lap, channel);
  return Cache(ws, slot, lap, channel).Samples;
}

// The file to read from: the scope's open file when one lasts, else `own`, opened here.
QFile* OpenForFetch(Workspace& ws, const QString& path, QFile& own) {
  if (ws.FetchScopeDepth > 0) {
    if (!ws.FetchFile || ws.FetchFile->fileName() != path) {
      ws.FetchFile = std::make_unique<QFile>(path);
      if (!ws.FetchFile->open(QIODevice::ReadOnly)) {
        ws.FetchFile.reset();
        return nullptr;
      }
    }
    return ws.FetchFile.get();
  }
  return own.open(QIODevice::ReadOnly) ? &own : nullptr;
}

}  // namespace

FetchScope::FetchScope(Workspace& ws) : ws_(ws) { ++ws_.FetchScopeDepth; }

FetchScope::~FetchScope() {
  if (--ws_.FetchScopeDepth == 0) ws_.FetchFile.reset();
}

int64_t FetchUpperBound(Workspace& ws, int slot, int lap, int channel) {
  const OutingRec& o = OutingAt(ws, slot);
  const int64_t start = o.Laps[static_cast<std::size_t>(lap)].StartTime;
  const int m = lap + Folder(ws).LapsDisplayed;
  const int64_t end = m > o.LastLap ? o.Laps[static_cast<std::size_t>(o.LastLap)].StartTime
                                    : o.Laps[static_cast<std::size_t>(m)].StartTime;
  const double rate = o.Channels[static_cast<std::size_t>(channel)].Rate;
  const double window = std::clamp(static_cast<double>(end - start), 0.0, kMaxFetchSpanMs);
  return std::max<int64_t>(0, RoundHalfEven((window + kFetchMarginMs) * rate));
}

void GetChannelData(Workspace& ws, int slot, int lap, int channel) {
  if (slot < 0 || slot >= kOutingsPerFolder) return;
  const OutingRec& o = OutingAt(ws, slot);
  if (channel < 0 || channel > o.LastChannel || lap < 0 || lap >= static_cast<int>(o.Laps.size())) return;
  if (channel >= static_cast<int>(o.Laps[static_cast<std::size_t>(lap)].LapChannels.size())) return;
  if (channel < o.LoggedCount) {
    FetchLoggedChannel(ws, slot, lap, channel);
  } else if (channel < o.LoggedCount + 3) {
    FetchDerivedChannel(ws, slot, lap, channel);
  } else {
    FetchMathChannel(ws, slot, lap, channel);
  }
}

void FetchLoggedChannel(Workspace& ws, int slot, int lap, int channel) {
  if (Cache(ws, slot, lap, channel).Loaded != 0) return;
  const OutingRec& o = OutingAt(ws, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const SampleType type = SampleTypeFor(c.WordSize, c.Key, static_cast<uint16_t>(o.LcuSerial));
  const int bytes_per_sample = SampleTypeBytes(type);
  QFile own(o.FileName);
  QFile* file = OpenForFetch(ws, o.FileName, own);
  if (!file) return;
  QFile& f = *file;
  const int64_t start = o.Laps[static_cast<std::size_t>(lap)].StartTime;
  const int64_t position = Floor(static_cast<double>(c.Rate) * start) * c.WordSize + c.BlockOffset - 1;
  const int64_t n = FetchUpperBound(ws, slot, lap, channel);
  // Samples past the end of the file stay zero; a read that runs into the next block gives its words.
  const int64_t wanted = bytes_per_sample > 0 ? (n + 1) * bytes_per_sample : 0;
  std::vector<uint8_t>& buffer = ws.FetchBuffer;
  if (static_cast<int64_t>(buffer.size()) < wanted) buffer.resize(static_cast<std::size_t>(wanted));
  int64_t got = 0;
  if (wanted > 0 && position >= 0 && position < o.FileSize && f.seek(position)) {
    got = std::max<qint64>(0, f.read(reinterpret_cast<char*>(buffer.data()), wanted));
  }
  std::fill(buffer.begin() + got, buffer.begin() + wanted, uint8_t{0});
  own.close();
  const RawSamples raw{type, buffer.data(), bytes_per_sample > 0 ? n + 1 : 0};
  std::vector<float> values;
  if (o.LcuSerial == kConvertedSerial) {
    RawToFloat(raw, values);
  } else {
    ScaleSamples(ws, slot, lap, channel, raw, values);
  }
  Store(ws, slot, lap, channel, std::move(values));
}

void FetchDerivedChannel(Workspace& ws, int slot, int lap, int channel) {
  if (Cache(ws, slot, lap, channel).Loaded != 0) return;
  const OutingRec& o = OutingAt(ws, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  const int64_t n = FetchUpperBound(ws, slot, lap, channel);
  std::vector<float> v(static_cast<std::size_t>(n) + 1, 0.0f);
  if (c.Key == kDerivedTimeKey && c.Rate > 0) {
    // Seconds since the lap's start, beginning one step in.
    const float step = static_cast<float>(0.001 / c.Rate);
    float t = 0;
    for (int64_t i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = t += step;
  } else if (c.Key == kDerivedLapDistanceKey && o.ChanDistance >= 1) {
    const float rate_d = o.Channels[static_cast<std::size_t>(o.ChanDistance)].Rate;
    const float start_distance = o.Laps[static_cast<std::size_t>(lap)].StartDistance;
    const std::vector<float>& d = Fetched(ws, slot, lap, o.ChanDistance);
    const double ratio = static_cast<double>(rate_d) / c.Rate;
    for (int64_t i = 0; i < n; ++i) {
      const auto j = static_cast<int64_t>(i * ratio);  // i * ratio >= 0: truncation is the floor
      if (j + 1 >= static_cast<int64_t>(d.size())) break;
      const double f = i * ratio - static_cast<double>(j);
      const auto js = static_cast<std::size_t>(j);
      v[static_cast<std::size_t>(i)] = static_cast<float>((d[js] - start_distance) + (d[js + 1] - d[js]) * f);
    }
  } else if (c.Key == kDerivedLongAccelKey && o.ChanSpeed > 0) {
    // g from the speed's four-sample difference; the speed is taken in miles per hour.
    const std::vector<float>& s = Fetched(ws, slot, lap, o.ChanSpeed);
    const double w = c.Rate * 1000.0 / 4;
    const int64_t last = std::min<int64_t>(n - 4, static_cast<int64_t>(s.size()) - 5);
    for (int64_t i = 0; i <= last; ++i) {
      const auto is = static_cast<std::size_t>(i);
      v[is] = static_cast<float>(w * (s[is + 4] - s[is]) * 0.447 / 9.8065);
    }
  }
  Store(ws, slot, lap, channel, std::move(v));
}

void FetchMathChannel(Workspace& ws, int slot, int lap, int channel) {
  if (Cache(ws, slot, lap, channel).Loaded != 0) return;
  // A "Delta" against the Datum fetches another lap, which may be a math channel itself: one
  // that is already being evaluated further out gives nothing here, instead of going round.
  const std::array<int, 4> key{ws.CurFolder, slot, lap, channel};
  if (std::find(ws.MathInProgress.begin(), ws.MathInProgress.end(), key) != ws.MathInProgress.end()) return;
  ws.MathInProgress.push_back(key);
  std::vector<float> values = EvaluateMathChannel(ws, slot, lap, channel, FetchUpperBound(ws, slot, lap, channel));
  ws.MathInProgress.pop_back();
  // Loaded in any case: a formula that fails isn't evaluated again, and reads as zeros.
  Store(ws, slot, lap, channel, std::move(values));
}

void ClearChannelCache(Workspace& ws, int slot, int channel) {
  for (LapRec& lap : OutingAt(ws, slot).Laps) {
    if (channel >= 0 && channel < static_cast<int>(lap.LapChannels.size())) {
      LapChannelRec& cache = lap.LapChannels[static_cast<std::size_t>(channel)];
      cache.Loaded = 0;
      cache.Samples.clear();
      cache.TimeStats.Valid = cache.DistanceStats.Valid = 0;
    }
  }
}

void ClearOutingCache(Workspace& ws, int slot) {
  const int channels = OutingAt(ws, slot).LastChannel + 1;
  for (int c = 0; c < channels; ++c) ClearChannelCache(ws, slot, c);
}

namespace {

void ComputeStats(LapChannelRec& cache, int64_t first, int64_t last, ChannelStats& st) {
  const int64_t upper = static_cast<int64_t>(cache.Samples.size()) - 1;
  first = std::max<int64_t>(first, 0);
  last = std::min(last, upper);
  st = ChannelStats{};
  if (last < first) return;
  float lo = 4294967296.0f, hi = -4294967296.0f;
  double sum = 0, squares = 0;
  for (int64_t i = first; i <= last; ++i) {
    const float x = cache.Samples[static_cast<std::size_t>(i)];
    if (x < lo) { lo = x; st.MinIndex = static_cast<int32_t>(i); }
    if (x > hi) { hi = x; st.MaxIndex = static_cast<int32_t>(i); }
    sum += x;
    squares += static_cast<double>(x) * x;
  }
  const double m = static_cast<double>(last - first + 1);
  st.Min = lo;
  st.Max = hi;
  st.Avg = static_cast<float>(sum / m);
  if (m > 1) {
    const double variance = (squares - sum * sum / m) / (m - 1);
    st.Dev = static_cast<float>(variance >= 0 ? std::sqrt(variance) : -std::sqrt(-variance));
  }
  st.Valid = -1;
}

}  // namespace

void ComputeTimeStats(Workspace& ws, int slot, int lap, int channel) {
  LapChannelRec& cache = Cache(ws, slot, lap, channel);
  if (cache.Loaded == 0) return;
  const FolderRec& folder = Folder(ws);
  const double rate = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)].Rate;
  ComputeStats(cache, Floor(folder.TimeStart * rate), Floor(folder.TimeEnd * rate), cache.TimeStats);
}

void ComputeDistanceStats(Workspace& ws, int slot, int lap, int channel) {
  if (Cache(ws, slot, lap, channel).Loaded == 0) return;
  const FolderRec& folder = Folder(ws);
  const double rate = OutingAt(ws, slot).Channels[static_cast<std::size_t>(channel)].Rate;
  const double t0 = DistanceToTime(ws, slot, lap, folder.DistanceStart);
  const double t1 = DistanceToTime(ws, slot, lap, folder.DistanceEnd);
  LapChannelRec& cache = Cache(ws, slot, lap, channel);  // the distance fetch may have grown the laps' caches
  ComputeStats(cache, Floor(t0 * rate), Floor(t1 * rate), cache.DistanceStats);
}
