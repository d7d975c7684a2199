#include "core/track/frmShiftBeacon.h"

#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Beacons.h"

const QString frmShiftBeacon::kTitle = QStringLiteral("Shift Beacons");

frmShiftBeacon::frmShiftBeacon(Workspace& ws, int slot) : ws_(ws), slot_(slot) {}

QString frmShiftBeacon::CurrentOffset() const {
  return QString::number(static_cast<double>(OutingAt(ws_, slot_).BeaconShift), 'g', 7) + QStringLiteral(" ") +
         ShiftUnits(ws_, slot_, false);
}

QString frmShiftBeacon::Units() const { return ShiftUnits(ws_, slot_, optTime); }

bool frmShiftBeacon::HasDistance() const { return OutingAt(ws_, slot_).ChanDistance >= 0; }

bool frmShiftBeacon::cmdOK() {
  bool ok = false;
  const double shift = txtShift.trimmed().toDouble(&ok);
  if (!ok || !std::isfinite(shift)) return ShiftFailed(ws_);
  if (shift == 0) return true;
  if (!optTime) return ShiftDistance(ws_, slot_, shift);
  // Rows 1..LastLap-2 move together: the first must stay after the outing's start, the last
  // before the in lap's start, or the laps would overlap and their times turn negative.
  const OutingRec& o = OutingAt(ws_, slot_);
  const int64_t ms = RoundHalfEven(shift * 1000);
  const auto row = [&](int i) { return static_cast<int64_t>(o.Laps[static_cast<std::size_t>(i)].StartTime); };
  if (o.LastLap >= 3 && (row(1) + ms <= row(0) || row(o.LastLap - 2) + ms >= row(o.LastLap - 1)))
    return ShiftFailed(ws_);
  ShiftTime(ws_, slot_, shift);
  return true;
}
