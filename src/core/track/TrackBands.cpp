#include "core/track/TrackBands.h"

#include <cmath>

#include "core/app/Options.h"
#include "core/app/Workspace.h"
#include "core/plots/RefreshPlots.h"

int GetBandColor(const TrackReportOptions& bands, float value) {
  const auto limit = [&](int i) { return static_cast<float>(bands.BandData[static_cast<std::size_t>(i)]); };
  if (!(value >= limit(0))) return kButtonShadowColor;
  for (int band = 0; band < 5; ++band) {
    if (value <= limit(band + 1)) return bands.BandColor[static_cast<std::size_t>(band)];
  }
  return kButtonShadowColor;
}

frmEditBands::frmEditBands(Workspace& ws) : ws_(ws) {
  const FolderRec& f = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& o = f.Outings[static_cast<std::size_t>(f.SelOuting)];
  if (o.Loaded != 0) {
    for (const ChannelRec& c : o.Channels) ChannelNames << c.ShortName.trimmed();
  }
  cboChannel = f.Options.BandChannel;
  for (std::size_t i = 0; i < txtData.size(); ++i) txtData[i] = QString::number(ws.TrackReport.BandData[i]);
  cmdColor = ws.TrackReport.BandColor;
}

bool frmEditBands::cmdOK() {
  std::array<double, 6> limits{};
  for (std::size_t i = 0; i < limits.size(); ++i) {
    bool ok = false;
    limits[i] = txtData[i].trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(limits[i]) || (i > 0 && !(limits[i] > limits[i - 1]))) {
      ws_.messages.Show(QStringLiteral("Band limits must rise from the first to the last"), QStringLiteral("Band Colors"),
                        MessageIcon::Exclamation);
      return false;
    }
  }
  ws_.TrackReport.BandData = limits;
  ws_.TrackReport.BandColor = cmdColor;
  FolderOptions& options = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)].Options;
  options.BandChannel = cboChannel.left(16);
  options.DoBanding = true;
  RefreshPlots(ws_);
  return true;
}
