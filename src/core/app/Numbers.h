#pragma once

// Conversions from floating point to integer, the same everywhere in the program: to the
// nearest, halves to the even neighbour. Values outside the target range saturate and NaN
// gives 0, so a bad file can never reach undefined behaviour through a conversion.

#include <cmath>
#include <cstdint>
#include <limits>

inline int64_t RoundHalfEven(double v) {
  if (std::isnan(v)) return 0;
  const double r = std::nearbyint(v);  // default rounding mode: halves to even
  if (r >= 9.2e18) return std::numeric_limits<int64_t>::max();
  if (r <= -9.2e18) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(r);
}

inline int64_t Floor(double v) { return RoundHalfEven(std::floor(v)); }

inline int32_t SaturateInt32(int64_t v) {
  if (v > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (v < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(v);
}
