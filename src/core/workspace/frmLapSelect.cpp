#include "core/workspace/frmLapSelect.h"

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/PlotFormats.h"
#include "core/track/Laps.h"

const QString frmLapSelect::kTitle = QStringLiteral("Lap Select");
const QStringList frmLapSelect::kColumns = {QStringLiteral("Lap"), QStringLiteral("Speed"), QStringLiteral("Time"),
                                            QStringLiteral("Info"), QStringLiteral("Color")};

namespace {

// Mean speed of the lap in km/h for an outing in metres, in mph for one in feet; empty when the
// outing logs no distance.
QString MeanSpeedText(const OutingRec& o, int lap) {
  const int ms = LapTimeMs(o, lap);
  if (o.ChanDistance < 0 || ms <= 0) return QString();
  const LapRec& row = o.Laps[static_cast<std::size_t>(lap)];
  const double distance = (o.Laps[static_cast<std::size_t>(lap) + 1].StartDistance - row.StartDistance) *
                          static_cast<double>(row.DistanceScale);
  const double per_hour = distance / ms * 3.6e6;
  const double speed = (o.UnitsMask & 1) != 0 ? per_hour / 1000.0 : per_hour / 5280.0;
  return QString::number(speed, 'f', 1);
}

}  // namespace

frmLapSelect::frmLapSelect(Workspace& ws, int outing) : ws_(ws), outing_(outing) {
  const OutingRec& o = OutingAt(ws, outing);
  for (int lap = 0; lap < o.LastLap && lap + 1 < static_cast<int>(o.Laps.size()); ++lap) rows_.push_back(MakeRow(lap));
}

frmLapSelect::Row frmLapSelect::MakeRow(int lap) const {
  const OutingRec& o = OutingAt(ws_, outing_);
  Row r;
  r.Lap = lap;
  const QString number = LapNumberText(o, lap);
  r.Number = o.LapNumberBase + lap >= 0 ? QLatin1Char(' ') + number : number;
  r.Speed = MeanSpeedText(o, lap);
  r.Time = LapTimeText(LapTimeMs(o, lap));
  r.Info = LapLabel(o, lap);
  const int color = o.Laps[static_cast<std::size_t>(lap)].LapColor;
  if (color >= 0 && color < kPaletteSize) r.Color = ColorName(ws_.Palette[static_cast<std::size_t>(color)]);
  return r;
}

void frmLapSelect::cmdColor(int row, int color) {
  if (row < 0 || row >= static_cast<int>(rows_.size()) || color < -1 || color >= kPaletteSize) return;
  Row& r = rows_[static_cast<std::size_t>(row)];
  OutingAt(ws_, outing_).Laps[static_cast<std::size_t>(r.Lap)].LapColor = static_cast<int16_t>(color);
  r = MakeRow(r.Lap);
}
