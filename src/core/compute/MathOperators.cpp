#include "core/compute/MathOperators.h"

#include <cfloat>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

// A result that left the float range although its operands were in it is an overflow: 0.
inline float Checked(float r, float x, float y) {
  // Without short-circuits, so that the loops around it vectorise.
  const int overflow = static_cast<int>(std::fabs(r) > FLT_MAX) & static_cast<int>(std::fabs(x) <= FLT_MAX) &
                       static_cast<int>(std::fabs(y) <= FLT_MAX);
  return overflow ? 0.0f : r;
}

// A sample as a 32-bit integer, halves to even; false when it doesn't fit (an overflow).
inline bool ToInt32(float x, int32_t& out) {
  const double r = std::nearbyint(static_cast<double>(x));
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) return false;
  out = static_cast<int32_t>(r);
  return true;
}

// out may be a itself; b is never out.
template <class F>
bool Pointwise(float* out, const float* a, const float* b, int64_t n, F f) {
  for (int64_t j = 0; j < n; ++j) out[j] = f(a[j], b[j]);
  return true;
}

template <class F>
void Pointwise(float* a, int64_t n, F f) {
  for (int64_t j = 0; j < n; ++j) a[j] = f(a[j]);
}

// Operators on integers: each sample converted, an overflow giving 0.
template <class F>
bool IntegerPointwise(float* out, const float* a, const float* b, int64_t n, F f) {
  for (int64_t j = 0; j < n; ++j) {
    int32_t x = 0, y = 0;
    out[j] = ToInt32(a[j], x) && ToInt32(b[j], y) ? static_cast<float>(f(x, y)) : 0.0f;
  }
  return true;
}

// Computes out[j] from a[j] with `f`, which returns false, leaving the sample as it was, for a
// fault that ends the operator: the samples from there on keep a's values.
template <class F>
bool UntilFault(float* out, const float* a, const float* b, int64_t n, F f) {
  for (int64_t j = 0; j < n; ++j) {
    out[j] = a[j];
    if (!f(out[j], b ? b[j] : 0.0f)) {
      if (out != a) std::copy(a + j + 1, a + n, out + j + 1);
      return false;
    }
  }
  return true;
}

bool PowerOf(float& a, float b) {
  const double r = std::pow(static_cast<double>(a), static_cast<double>(b));
  if (std::isnan(r) && !std::isnan(a) && !std::isnan(b)) return false;  // no real value
  a = std::fabs(r) > FLT_MAX ? 0.0f : static_cast<float>(r);
  return true;
}

bool ModuloOf(float& a, float b) {
  int32_t x = 0, y = 0;
  if (!ToInt32(a, x) || !ToInt32(b, y)) {
    a = 0;
    return true;
  }
  if (y == 0) return false;  // division by zero ends the operator
  a = y == -1 ? 0.0f : static_cast<float>(x % y);  // x % -1 is 0, and INT_MIN % -1 would trap
  return true;
}

// arctan(sqrt(1 - a^2) / a) and arctan(a / sqrt(1 - a^2)) in 32-bit floats: a 0 divisor gives an
// infinity that arctan takes to pi/2; beyond -1..1 the root has no value and the operator ends.
bool ArcCosine(float& a, float) {
  const float t = 1.0f - a * a;
  if (t < 0) return false;
  a = static_cast<float>(std::atan(static_cast<double>(std::sqrt(t) / a)));
  return true;
}

bool ArcSine(float& a, float) {
  const float t = 1.0f - a * a;
  if (t < 0) return false;
  a = static_cast<float>(std::atan(static_cast<double>(a / std::sqrt(t))));
  return true;
}

float Transcendental(MathOp op, float x) {
  const double d = x;
  switch (op) {
    case MathOp::ATan: return static_cast<float>(std::atan(d));
    case MathOp::Cos: return static_cast<float>(std::cos(d));
    case MathOp::Sin: return static_cast<float>(std::sin(d));
    case MathOp::Tan: return static_cast<float>(std::tan(d));
    case MathOp::Exp: return static_cast<float>(std::exp(d));
    case MathOp::Ln: return x > 0 ? static_cast<float>(std::log(d)) : 0.0f;
    case MathOp::Log: return x > 0 ? static_cast<float>(std::log(d) / std::log(10.0)) : 0.0f;
    case MathOp::Sqrt: return x > 0 ? static_cast<float>(std::sqrt(d)) : 0.0f;
    default: return 0.0f;
  }
}

void Fill(float* a, int64_t n, float v) { std::fill(a, a + n, v); }

// The flat functions of the whole row. The means are summed in double precision: a 32-bit sum
// over a long lap at 1 kHz would lose the last digits an engineer reads off.
void WholeRow(MathOp op, float* a, int64_t n) {
  if (n <= 0) return;
  double sum = 0;
  int64_t counted = 0;
  float m = a[0];
  switch (op) {
    case MathOp::Avg:
      for (int64_t j = 0; j < n; ++j) sum += a[j];
      return Fill(a, n, static_cast<float>(sum / static_cast<double>(n)));
    case MathOp::GateAvg:
      for (int64_t j = 0; j < n; ++j) {
        if (a[j] != 0) sum += a[j], ++counted;
      }
      return Fill(a, n, counted ? static_cast<float>(sum / static_cast<double>(counted)) : 0.0f);
    case MathOp::Ceil:
      for (int64_t j = 1; j < n; ++j) m = a[j] > m ? a[j] : m;
      return Fill(a, n, m);
    case MathOp::Floor:
      for (int64_t j = 1; j < n; ++j) m = a[j] < m ? a[j] : m;
      return Fill(a, n, m);
    case MathOp::Start: return Fill(a, n, a[0]);
    case MathOp::End: return Fill(a, n, a[n - 1]);
    default: return;
  }
}

}  // namespace

MathOp MathOpFromWord(const QString& word) {
  static const std::pair<const char*, MathOp> kWords[] = {
      {"+", MathOp::Add}, {"-", MathOp::Subtract}, {"*", MathOp::Multiply}, {"/", MathOp::Divide},
      {"^", MathOp::Power}, {">", MathOp::Greater}, {">=", MathOp::GreaterEqual}, {"<", MathOp::Less},
      {"<=", MathOp::LessEqual}, {"&", MathOp::And}, {"|", MathOp::Or}, {"#", MathOp::Xor},
      {"%", MathOp::Modulo}, {"=", MathOp::Equal}, {"!=", MathOp::NotEqual}, {"ABS", MathOp::Abs},
      {"ACos", MathOp::ACos}, {"ASin", MathOp::ASin}, {"ATan", MathOp::ATan}, {"Cos", MathOp::Cos},
      {"Deriv", MathOp::Deriv}, {"Delta", MathOp::Delta}, {"Exp", MathOp::Exp}, {"Integ", MathOp::Integ},
      {"Ln", MathOp::Ln}, {"Log", MathOp::Log}, {"Sin", MathOp::Sin}, {"Sqrt", MathOp::Sqrt},
      {"Tan", MathOp::Tan}, {"Min", MathOp::Min}, {"Max", MathOp::Max}, {"Avg", MathOp::Avg},
      {"Gate_Avg", MathOp::GateAvg}, {"Not", MathOp::Not}, {"Ceil", MathOp::Ceil}, {"Floor", MathOp::Floor},
      {"Start", MathOp::Start}, {"End", MathOp::End},
  };
  for (const auto& [text, op] : kWords) {
    if (word == QLatin1String(text)) return op;
  }
  return MathOp::Other;
}

bool IsBinaryOp(MathOp op) { return op <= MathOp::NotEqual; }

bool BinaryRow(MathOp op, float* a, const float* b, int64_t n) { return BinaryRow(op, a, a, b, n); }

bool BinaryRow(MathOp op, float* out, const float* a, const float* b, int64_t n) {
  if (op == MathOp::Power) return UntilFault(out, a, b, n, PowerOf);
  if (op == MathOp::Modulo) return UntilFault(out, a, b, n, ModuloOf);
  switch (op) {
    case MathOp::Add: return Pointwise(out, a, b, n, [](float x, float y) { return Checked(x + y, x, y); });
    case MathOp::Subtract: return Pointwise(out, a, b, n, [](float x, float y) { return Checked(x - y, x, y); });
    case MathOp::Multiply: return Pointwise(out, a, b, n, [](float x, float y) { return Checked(x * y, x, y); });
    case MathOp::Divide:
      // Divides by 1 where the divisor is 0, so the loop needs no branch and vectorises.
      return Pointwise(out, a, b, n, [](float x, float y) {
        const float q = Checked(x / (y + static_cast<float>(y == 0)), x, y);
        return y == 0 ? 0.0f : q;
      });
    case MathOp::Greater: return Pointwise(out, a, b, n, [](float x, float y) { return x > y ? 1.0f : 0.0f; });
    case MathOp::GreaterEqual: return Pointwise(out, a, b, n, [](float x, float y) { return x >= y ? 1.0f : 0.0f; });
    case MathOp::Less: return Pointwise(out, a, b, n, [](float x, float y) { return x < y ? 1.0f : 0.0f; });
    case MathOp::LessEqual: return Pointwise(out, a, b, n, [](float x, float y) { return x <= y ? 1.0f : 0.0f; });
    case MathOp::Equal: return Pointwise(out, a, b, n, [](float x, float y) { return x == y ? 1.0f : 0.0f; });
    case MathOp::NotEqual: return Pointwise(out, a, b, n, [](float x, float y) { return x != y ? 1.0f : 0.0f; });
    case MathOp::And: return IntegerPointwise(out, a, b, n, [](int32_t x, int32_t y) { return x & y; });
    case MathOp::Or: return IntegerPointwise(out, a, b, n, [](int32_t x, int32_t y) { return x | y; });
    case MathOp::Xor: return IntegerPointwise(out, a, b, n, [](int32_t x, int32_t y) { return x ^ y; });
    default: return true;
  }
  return true;
}

void NegateRow(float* a, int64_t n) { Pointwise(a, n, [](float x) { return -x; }); }

static void FunctionRowWithoutFaults(MathOp op, float* a, int64_t n);

bool FunctionRow(MathOp op, float* a, int64_t n) {
  if (op == MathOp::ACos) return UntilFault(a, a, nullptr, n, ArcCosine);
  if (op == MathOp::ASin) return UntilFault(a, a, nullptr, n, ArcSine);
  FunctionRowWithoutFaults(op, a, n);
  return true;
}

bool IsPointwiseOp(MathOp op) {
  switch (op) {
    case MathOp::Deriv: case MathOp::Delta: case MathOp::Integ: case MathOp::Min: case MathOp::Max:
    case MathOp::Avg: case MathOp::GateAvg: case MathOp::Ceil: case MathOp::Floor: case MathOp::Start:
    case MathOp::End:
      return false;
    default:
      return true;
  }
}

static void FunctionRowWithoutFaults(MathOp op, float* a, int64_t n) {
  switch (op) {
    case MathOp::Abs: return Pointwise(a, n, [](float x) { return std::fabs(x); });
    case MathOp::ATan: case MathOp::Cos: case MathOp::Sin: case MathOp::Tan:
    case MathOp::Exp: case MathOp::Ln: case MathOp::Log: case MathOp::Sqrt:
      return Pointwise(a, n, [op](float x) { return Transcendental(op, x); });
    case MathOp::Not:
      return Pointwise(a, n, [](float x) {
        int32_t v = 0;
        return ToInt32(x, v) ? static_cast<float>(~v) : 0.0f;
      });
    case MathOp::Min: {
      float m = 4294967296.0f;
      return Pointwise(a, n, [&m](float x) { return m = x < m ? x : m; });
    }
    case MathOp::Max: {
      float m = -4294967296.0f;
      return Pointwise(a, n, [&m](float x) { return m = x > m ? x : m; });
    }
    case MathOp::Avg: case MathOp::GateAvg: case MathOp::Ceil: case MathOp::Floor:
    case MathOp::Start: case MathOp::End:
      return WholeRow(op, a, n);
    default:
      return Fill(a, n, 0.0f);
  }
}

void DerivRow(float* a, int64_t n, float rate) {
  // The step is three samples; ascending, so a[i + 3] is still the operand's when it is read.
  // The last three samples keep the operand's values.
  for (int64_t i = 0; i + 3 < n; ++i) a[i] = Checked((a[i + 3] - a[i]) * 333.0f * rate, a[i + 3], a[i]);
}

void IntegRow(float* a, int64_t n, float rate, float& accumulator) {
  // Each step adds the mean of four samples times one sample period in seconds.
  accumulator = 0;
  const float period = rate * 4000.0f;
  if (period == 0) return;  // a division by zero ends the operator
  for (int64_t i = 0; i + 3 < n; ++i) {
    const float t = (a[i] + a[i + 1] + a[i + 2] + a[i + 3]) / period;
    a[i] = t + accumulator;
    accumulator = a[i];
  }
}
