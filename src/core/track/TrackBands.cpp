#include "core/track/TrackBands.h"

#include "core/app/Options.h"

int GetBandColor(const TrackReportOptions& bands, float value) {
  const auto limit = [&](int i) { return static_cast<float>(bands.BandData[static_cast<std::size_t>(i)]); };
  if (!(value >= limit(0))) return kButtonShadowColor;
  for (int band = 0; band < 5; ++band) {
    if (value <= limit(band + 1)) return bands.BandColor[static_cast<std::size_t>(band)];
  }
  return kButtonShadowColor;
}
