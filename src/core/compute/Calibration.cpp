#include "core/compute/Calibration.h"

#include <cmath>
#include <cstring>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"

namespace {

// Sample i of a little-endian array of T (this build runs on little-endian machines only).
template <class T>
inline double Load(const uint8_t* p, int64_t i) {
  T v;
  std::memcpy(&v, p + i * static_cast<int64_t>(sizeof(T)), sizeof(T));
  return static_cast<double>(v);
}

static_assert(std::endian::native == std::endian::little, "sample arrays are read in place");

// Calls f.template operator()<T>() with the C++ type of the raw samples.
template <class F>
void WithType(SampleType type, F&& f) {
  switch (type) {
    case SampleType::U8: f.template operator()<uint8_t>(); break;
    case SampleType::I16: f.template operator()<int16_t>(); break;
    case SampleType::I32: f.template operator()<int32_t>(); break;
    case SampleType::F32: f.template operator()<float>(); break;
    case SampleType::F64: f.template operator()<double>(); break;
    case SampleType::None: break;
  }
}

// out[i] = round_to_float(op(x[i])): one loop, one case.
template <class Op>
void Map(const RawSamples& raw, float* out, Op op) {
  WithType(raw.type, [&]<class T>() {
    for (int64_t i = 0; i < raw.count; ++i) out[i] = static_cast<float>(op(Load<T>(raw.bytes, i)));
  });
}

// Interpolation between table points; ends held, never extrapolated.
double Interpolate(const ChannelRec& c, int n, double x) {
  if (x <= c.CalX[0]) return c.CalY[0];
  if (x >= c.CalX[static_cast<std::size_t>(n)]) return c.CalY[static_cast<std::size_t>(n)];
  int k = 0;
  while (k < n - 1 && !(x <= c.CalX[static_cast<std::size_t>(k + 1)])) ++k;
  const auto ks = static_cast<std::size_t>(k);
  const float dy = static_cast<float>(static_cast<double>(c.CalY[ks + 1]) - c.CalY[ks]);
  return (x - c.CalX[ks]) * (static_cast<double>(dy) / (c.CalX[ks + 1] - c.CalX[ks])) + c.CalY[ks];
}

// Table with hold: at exactly CalX[k + 1] the value is still that of step k.
double Hold(const ChannelRec& c, int n, double x) {
  if (x >= c.CalX[static_cast<std::size_t>(n)]) return c.CalY[static_cast<std::size_t>(n)];
  int k = 0;
  while (k < n && !(x <= c.CalX[static_cast<std::size_t>(k + 1)])) ++k;
  return c.CalY[static_cast<std::size_t>(k)];
}

void ScaleAnalog(const ChannelRec& c, const RawSamples& raw, float* out) {
  const double offset = c.CalOffset, a = c.CalCoefA, b = c.CalCoefB, cc = c.CalCoefC;
  const int n = std::clamp<int>(c.CalPoints, 0, 12);
  switch (c.CalType) {
    case 0: Map(raw, out, [&](double x) { return Interpolate(c, n, x) + offset; }); break;
    case 1:
    case 8:
      Map(raw, out, [&](double x) { return static_cast<double>(static_cast<float>(x * b + cc)) + offset; });
      break;
    case 2:
      Map(raw, out, [&](double x) { return static_cast<double>(static_cast<float>(a * (x * x) + b * x + cc)) + offset; });
      break;
    case 4: Map(raw, out, [&](double x) { return Hold(c, n, x) + offset; }); break;
    default: std::fill(out, out + raw.count, 0.0f); break;  // an unknown type gives zeros, not raw words
  }
}

// Distance counts: the first sample placed at the lap's exact start, the lap stretched by its scale.
void ScaleDistance(const ChannelRec& c, const LapRec& lap, const RawSamples& raw, float* out) {
  if (raw.count <= 0) return;
  WithType(raw.type, [&]<class T>() {
    const double p = static_cast<double>(lap.StartTime) * c.Rate;
    const double frac = p - std::floor(p);
    const double c0 = Load<T>(raw.bytes, 0);
    const double c1 = raw.count > 1 ? Load<T>(raw.bytes, 1) : c0;
    const double e = static_cast<float>((c1 - c0) * frac);
    const double scale = lap.DistanceScale;
    for (int64_t i = 0; i < raw.count; ++i) {
      const float product = static_cast<float>((Load<T>(raw.bytes, i) - c0) * scale);
      out[i] = static_cast<float>(c0 + product + e);
    }
  });
}

bool TenthsFlag(const OutingRec& o, int input) {
  return (o.PulseInputs[static_cast<std::size_t>(input)].Flags & kPulseTenthsMask) != 0;
}

}  // namespace

void RawToFloat(const RawSamples& raw, std::vector<float>& out) {
  out.resize(static_cast<std::size_t>(std::max<int64_t>(raw.count, 0)));
  Map(raw, out.data(), [](double x) { return x; });
}

void ScaleSamples(Workspace& ws, int slot, int lap, int channel, const RawSamples& raw, std::vector<float>& out) {
  const OutingRec& o = OutingAt(ws, slot);
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(channel)];
  out.resize(static_cast<std::size_t>(std::max<int64_t>(raw.count, 0)));
  float* y = out.data();
  int k = c.Key;
  if (k >= 112 && k <= 127) k = o.ExpansionMap[static_cast<std::size_t>(k - 112)].Key;
  const bool old = o.OldVersion != 0;
  auto divide = [&](double d) { Map(raw, y, [d](double x) { return x / d; }); };
  auto same = [&] { Map(raw, y, [](double x) { return x; }); };
  const double gain = c.CalCoefB, offset = c.CalCoefC;

  if (k >= 0 && k <= 63) {
    ScaleAnalog(c, raw, y);
  } else if (k == 70) {
    ScaleDistance(c, o.Laps[static_cast<std::size_t>(lap)], raw, y);
  } else if (k >= 64 && k <= 69) {
    TenthsFlag(o, k - 64) && !old ? divide(10) : same();
  } else if (k == 83 || k == 84) {
    TenthsFlag(o, k - 77) ? divide(10) : same();
  } else if (k == 71 || k == 72 || k == 79 || k == 94 || k == 95 || k == -3) {
    same();
  } else if (k >= 73 && k <= 78) {
    !old ? divide(10) : same();
  } else if (k == 82 || (k >= 85 && k <= 93)) {
    divide(10);
  } else if (k == 80 || k == 81 || (k >= 96 && k <= 107)) {
    divide(100);
  } else if (k >= 128 && k <= 191 && channel == o.ChanFuel && c.StandardCode == 3 && raw.type == SampleType::I16) {
    // The fuel counter is an unsigned word: a negative 16-bit reading is a large count.
    Map(raw, y, [&](double x) { return (x < 0 ? x + 65536 : x) * gain + offset; });
  } else if ((k >= 128 && k <= 191) || (k >= 224 && k <= 255)) {
    Map(raw, y, [&](double x) { return x * gain + offset; });
  } else {
    same();
  }
}
