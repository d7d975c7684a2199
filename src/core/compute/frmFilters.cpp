#include "core/compute/frmFilters.h"

#include <algorithm>
#include <cmath>

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/compute/Filters.h"
#include "core/outing/ChannelData.h"

const QStringList frmFilters::kTypes = {"None", "Smooth", "Low-pass", "High-pass", "Band-pass", "Band-reject"};
const QStringList frmFilters::kWindows = {"Hamming", "Blackman", "Raised Cosine", "Rectangular"};
const QStringList frmFilters::kKernels = {"10", "20", "40", "60", "80", "100", "200"};
const QStringList frmFilters::kPoints = {"1", "2", "3", "4", "5", "10", "15", "20", "50"};

namespace {

const QString kTitle = QStringLiteral("Digital Filters");
constexpr double kLargestCutoffHz = 327.67;  // the setting is a 16-bit count of hundredths

void ClampCutoffBox(QString& box) {
  const double v = std::nearbyint(box.toDouble());
  if (v < 0.1) box = QStringLiteral("0.1");
  if (v > 500) box = QStringLiteral("500");
}

QString HzText(int hundredths) { return QString::number(hundredths / 100.0); }

}  // namespace

void frmFilters::Form_Load(Workspace& ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  if (folder.SelChannel < 0 || folder.SelChannel >= static_cast<int>(o.Channels.size())) return;
  const ChannelRec& c = o.Channels[static_cast<std::size_t>(folder.SelChannel)];
  cboType = c.FilterKind >= 0 && c.FilterKind <= 5 ? c.FilterKind : 0;
  cboWindow = c.FilterWindow >= 0 && c.FilterWindow <= 3 ? c.FilterWindow : 3;
  // As the filter runs with them: a kernel is clamped to 10..200 when used, and a smoothing
  // width below 1 can't run (a stored 0 would divide by zero), so it shows as 1.
  cboKernel = QString::number(KernelLength(c));
  cboPoints = QString::number(std::max<int>(c.SmoothWidth, 1));
  txtLow = HzText(c.FilterLowCut);
  txtHigh = HzText(c.FilterHighCut);
}

frmFilters::Enabled frmFilters::ValidateFilter() const {
  Enabled e;
  switch (cboType) {
    case 1: e.cboPoints = true; break;
    case 2: e.cboWindow = e.cboKernel = e.txtLow = true; break;
    case 3: e.cboWindow = e.cboKernel = e.txtHigh = true; break;
    case 4:
    case 5: e.cboWindow = e.cboKernel = e.txtLow = e.txtHigh = true; break;
    default: break;
  }
  return e;
}

void frmFilters::txtLow_LostFocus() { ClampCutoffBox(txtLow); }
void frmFilters::txtHigh_LostFocus() { ClampCutoffBox(txtHigh); }

bool frmFilters::cmdOK(Workspace& ws) {
  const Enabled used = ValidateFilter();
  bool ok = true;
  const int points = cboPoints.toInt(&ok);
  if (used.cboPoints && (!ok || points < 1)) {
    ws.messages.Show(QStringLiteral("Smoothing needs a width of at least 1 point"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  const int kernel = cboKernel.toInt(&ok);
  if (used.cboKernel && (!ok || kernel < 1)) {
    ws.messages.Show(QStringLiteral("Choose a kernel length from the list"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  const double low = txtLow.toDouble(), high = txtHigh.toDouble();
  if ((used.txtLow && low > kLargestCutoffHz) || (used.txtHigh && high > kLargestCutoffHz)) {
    ws.messages.Show(QStringLiteral("A cut-off above 327.67 Hz cannot be stored"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& selected = folder.Outings[static_cast<std::size_t>(folder.SelOuting)];
  if (folder.SelChannel < 0 || folder.SelChannel >= static_cast<int>(selected.Channels.size())) return false;
  const QString name = selected.Channels[static_cast<std::size_t>(folder.SelChannel)].ShortName.trimmed().toUpper();
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    OutingRec& o = folder.Outings[static_cast<std::size_t>(slot)];
    if (o.Loaded == 0) continue;
    for (int i = 0; i < static_cast<int>(o.Channels.size()); ++i) {
      ChannelRec& c = o.Channels[static_cast<std::size_t>(i)];
      if (c.ShortName.trimmed().toUpper() != name) continue;
      c.FilterKind = static_cast<int16_t>(cboType);
      c.FilterWindow = static_cast<int16_t>(cboWindow);
      if (used.cboKernel) c.FilterKernel = static_cast<int16_t>(std::clamp(kernel, 0, 32767));
      if (used.cboPoints) c.SmoothWidth = static_cast<int16_t>(std::clamp(points, 0, 32767));
      if (used.txtLow) c.FilterLowCut = static_cast<int16_t>(std::clamp<int64_t>(RoundHalfEven(low * 100.0), 0, 32767));
      if (used.txtHigh) c.FilterHighCut = static_cast<int16_t>(std::clamp<int64_t>(RoundHalfEven(high * 100.0), 0, 32767));
      ClearChannelCache(ws, slot, i);
    }
  }
  ws.FiltersChanged = true;
  return true;
}
