#include "core/plots/Regression.h"

#include <array>
#include <cmath>

double FitCorrelation(double r, double s) {
  if (s == 0) return 0;
  const double c = 1 - r / s;
  return c >= 0 ? std::sqrt(c) : -std::sqrt(std::fabs(c));
}

namespace {

// The sum of the squares of the y about their mean.
double TotalSum(const std::vector<XYPoint>& points) {
  double sum = 0;
  for (const XYPoint& p : points) sum += p.y;
  const double mean = sum / static_cast<double>(points.size());
  double s = 0;
  for (const XYPoint& p : points) s += (p.y - mean) * (p.y - mean);
  return s;
}

}  // namespace

LineFit LinearRegression(const std::vector<XYPoint>& points) {
  LineFit fit;
  const double n = static_cast<double>(points.size());
  double sx = 0, sy = 0, sxx = 0, sxy = 0;
  for (const XYPoint& p : points) {
    sx += p.x;
    sy += p.y;
    sxx += p.x * p.x;
    sxy += p.x * p.y;
  }
  if (points.size() < 2) return fit;
  const double mx = sx / n, my = sy / n;
  const double denominator = sxx - n * mx * mx;
  if (denominator == 0 || !std::isfinite(denominator)) return fit;  // no spread in x
  fit.Slope = static_cast<float>((sxy - n * mx * my) / denominator);
  fit.Intercept = static_cast<float>(my - static_cast<double>(fit.Slope) * mx);
  if (!std::isfinite(fit.Slope) || !std::isfinite(fit.Intercept)) return fit;
  double r = 0;
  for (const XYPoint& p : points) {
    const double e = p.y - (static_cast<double>(fit.Slope) * p.x + static_cast<double>(fit.Intercept));
    r += e * e;
  }
  fit.Correlation = static_cast<float>(FitCorrelation(r, TotalSum(points)));
  fit.Valid = true;
  return fit;
}

ParabolaFit PolynomialRegression(const std::vector<XYPoint>& points) {
  ParabolaFit fit;
  if (points.size() < 3) return fit;
  double s1 = 0, s2 = 0, s3 = 0, s4 = 0, sy = 0, sxy = 0, sx2y = 0;
  for (const XYPoint& p : points) {
    const double x2 = p.x * p.x;
    s1 += p.x;
    s2 += x2;
    s3 += x2 * p.x;
    s4 += x2 * x2;
    sy += p.y;
    sxy += p.x * p.y;
    sx2y += x2 * p.y;
  }
  const double n = static_cast<double>(points.size());
  // The normal equations for (c, b, a), eliminated in column order without a pivot search.
  std::array<std::array<double, 4>, 3> m{{{n, s1, s2, sy}, {s1, s2, s3, sxy}, {s2, s3, s4, sx2y}}};
  for (int p = 0; p < 3; ++p) {
    if (m[p][p] == 0) return fit;
    for (int row = p + 1; row < 3; ++row) {
      const double ratio = m[row][p] / m[p][p];
      for (int col = p; col < 4; ++col) m[row][col] -= ratio * m[p][col];
    }
  }
  std::array<double, 3> u{};
  for (int row = 2; row >= 0; --row) {
    double v = m[row][3];
    for (int col = row + 1; col < 3; ++col) v -= m[row][col] * u[col];
    u[row] = v / m[row][row];
  }
  fit.PolyC = u[0], fit.PolyB = u[1], fit.PolyA = u[2];
  if (!std::isfinite(fit.PolyA) || !std::isfinite(fit.PolyB) || !std::isfinite(fit.PolyC)) return fit;
  double r = 0;
  for (const XYPoint& p : points) {
    const double e = p.y - (fit.PolyC + fit.PolyB * p.x + fit.PolyA * p.x * p.x);
    r += e * e;
  }
  fit.Correlation = static_cast<float>(FitCorrelation(r, TotalSum(points)));
  fit.Valid = true;
  return fit;
}
