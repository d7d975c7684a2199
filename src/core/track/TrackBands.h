#pragma once

// The bands that colour a map by a channel's value: six limits and five colours, kept in the
// settings' section "TrackReport".

struct TrackReportOptions;

// The colour where nothing falls into a band: grey, as a button's shadow.
inline constexpr int kButtonShadowColor = 0x808080;

// The colour of `value`: the limits are tested from the low end, so a value on a limit takes the
// lower band; below the first limit or above the last, the button-shadow grey.
int GetBandColor(const TrackReportOptions& bands, float value);
