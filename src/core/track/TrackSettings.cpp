#include "core/track/TrackSettings.h"

#include <cmath>
#include <type_traits>

#include "core/app/Workspace.h"

namespace {
const QString kSection = QStringLiteral("Track");
}  // namespace

TrackSettings SetDefaults() { return TrackSettings{}; }

TrackSettings ReadTrackSettings(const Workspace& ws) {
  TrackSettings s;
  VisitTrackSettings(s, [&](const QString& key, auto& v) {
    using T = std::remove_reference_t<decltype(v)>;
    if constexpr (std::is_same_v<T, bool>) v = ws.Settings.ReadBool(kAppAnalysis, kSection, key, v);
    else if constexpr (std::is_same_v<T, int>) v = ws.Settings.ReadInt(kAppAnalysis, kSection, key, v);
    else v = ws.Settings.ReadDouble(kAppAnalysis, kSection, key, v);
  });
  TrackSettings checked = SetDefaults();
  SaveTrackData(checked, s);
  checked.CreateMode = s.CreateMode >= 0 && s.CreateMode <= 2 ? s.CreateMode : 0;
  return checked;
}

void WriteTrackSettings(Workspace& ws, const TrackSettings& s) {
  TrackSettings copy = s;
  VisitTrackSettings(copy, [&](const QString& key, auto& v) {
    using T = std::remove_reference_t<decltype(v)>;
    if constexpr (std::is_same_v<T, bool>) ws.Settings.WriteBool(kAppAnalysis, kSection, key, v);
    else if constexpr (std::is_same_v<T, int>) ws.Settings.WriteInt(kAppAnalysis, kSection, key, v);
    else ws.Settings.WriteDouble(kAppAnalysis, kSection, key, v);
  });
}

void SaveTrackData(TrackSettings& s, const TrackSettings& typed) {
  const double old_angle = s.GlobalAngle;
  s = typed;
  s.LatGIncrement = std::fabs(typed.LatGIncrement);
  s.LatGStartLimit = std::fabs(typed.LatGStartLimit);
  s.LatGEndLimit = std::fabs(typed.LatGEndLimit);
  if (!(typed.GlobalAngle >= 0 && typed.GlobalAngle <= 360)) s.GlobalAngle = old_angle;
  if (!std::isfinite(s.LatGOffset)) s.LatGOffset = 0;
}
