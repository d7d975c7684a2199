#pragma once

// Fits of y over x: the straight line by least squares, the parabola by the normal equations
// solved by elimination without pivoting, and the correlation of either. The sums are doubles;
// the line's fields are 32-bit floats, and its intercept and residuals use the rounded slope,
// so what is printed is what was fitted.

#include <vector>

struct XYPoint {
  double x = 0;
  double y = 0;
};

// The correlation of a fit from its residual sum r and the total sum s of the y about their
// mean: 0 when s is 0; else sqrt(1 - r / s), negative (-sqrt |c|) when the fit is worse than the
// mean.
double FitCorrelation(double r, double s);

struct LineFit {
  bool Valid = false;  // false: fewer than two different x
  float Slope = 0, Intercept = 0, Correlation = 0;
};
LineFit LinearRegression(const std::vector<XYPoint>& points);

struct ParabolaFit {
  bool Valid = false;
  double PolyA = 0, PolyB = 0, PolyC = 0;  // y = PolyA x² + PolyB x + PolyC
  float Correlation = 0;
};
ParabolaFit PolynomialRegression(const std::vector<XYPoint>& points);
