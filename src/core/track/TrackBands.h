#pragma once

// The bands that colour a map by a channel's value: six limits and five colours, kept in the
// settings' section "TrackReport".

#include <QString>
#include <QStringList>
#include <array>

struct TrackReportOptions;
struct Workspace;

// The colour where nothing falls into a band: grey, as a button's shadow.
inline constexpr int kButtonShadowColor = 0x808080;

// The colour of `value`: the limits are tested from the low end, so a value on a limit takes the
// lower band; below the first limit or above the last, the button-shadow grey.
int GetBandColor(const TrackReportOptions& bands, float value);

// frmEditBands ("Band Colors"): the channel that colours the graphic report of the folder in
// view, the six limits and the five colours.
class frmEditBands {
 public:
  explicit frmEditBands(Workspace& ws);
  QStringList ChannelNames;  // of the selected outing, for cboChannel
  QString cboChannel;
  std::array<QString, 6> txtData;
  std::array<int, 5> cmdColor{};
  // Stores the bands and switches the colouring on; false, after its message, when a limit is
  // no number or the limits don't rise.
  bool cmdOK();

 private:
  Workspace& ws_;
};
