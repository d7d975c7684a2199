#include "core/compute/frmMathScales.h"

#include <algorithm>
#include <cmath>

#include "core/app/Workspace.h"
#include "core/outing/DescriptorCopy.h"

const QString frmMathScales::kTitle = QStringLiteral("Math Scales");

namespace {

constexpr int kUnitsWidth = 16;  // the descriptor's Units field

// The math channel of that name in a loaded outing: the selected outing of the folder in view
// is asked first, as it is the one the person looks at.
const ChannelRec* FindMathChannel(const Workspace& ws, const QString& name) {
  const QString wanted = name.trimmed();
  const auto in = [&](const OutingRec& o) -> const ChannelRec* {
    if (o.Loaded == 0) return nullptr;
    for (const ChannelRec& c : o.Channels) {
      if (c.Key >= kFirstMathKey && c.Name.trimmed().compare(wanted, Qt::CaseInsensitive) == 0) return &c;
    }
    return nullptr;
  };
  const FolderRec& current = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (current.SelOuting >= 0 && current.SelOuting < kOutingsPerFolder) {
    if (const ChannelRec* c = in(current.Outings[static_cast<std::size_t>(current.SelOuting)])) return c;
  }
  for (const FolderRec& folder : ws.FolderTable) {
    for (const OutingRec& o : folder.Outings) {
      if (const ChannelRec* c = in(o)) return c;
    }
  }
  return nullptr;
}

// A box read as a number: blanks around it allowed, nothing else.
bool ReadNumber(const QString& box, float& value) {
  bool ok = false;
  const double v = box.trimmed().toDouble(&ok);
  if (!ok || !std::isfinite(v) || std::fabs(v) > 3.0e38) return false;
  value = static_cast<float>(v);
  return true;
}

QString NumberText(float v) { return QString::number(static_cast<double>(v), 'g', 7); }

}  // namespace

bool frmMathScales::Form_Load(Workspace& ws, const QString& name) {
  const ChannelRec* c = FindMathChannel(ws, name);
  if (c == nullptr) {
    ws.messages.Show(QStringLiteral("\"") + name.trimmed() +
                         QStringLiteral("\" is in no loaded outing: save the math channels with an outing loaded first"),
                     kTitle, MessageIcon::Exclamation);
    return false;
  }
  channel_ = *c;
  txtUnits = c->Units.trimmed();
  txtMin = NumberText(c->ScreenMin);
  txtMax = NumberText(c->ScreenMax);
  chkAutoScale = c->AutoScale != 0;
  cboDecimals = std::clamp<int>(c->Decimals, 0, kMaxDecimals);
  Color = std::clamp<int>(c->Color, 0, kPaletteSize - 1);
  return true;
}

QString frmMathScales::Caption() const { return kTitle + QStringLiteral(" - ") + channel_.Name.trimmed(); }

bool frmMathScales::cmdOK(Workspace& ws) {
  float min = 0, max = 0;
  if (!ReadNumber(txtMin, min) || !ReadNumber(txtMax, max)) {
    ws.messages.Show(QStringLiteral("The scale's minimum and maximum must be numbers"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  // Even with the scale found from the lap the stored one must be drawable: it is used as
  // soon as the person turns the automatic scale off.
  if (!(max > min)) {
    ws.messages.Show(QStringLiteral("The scale's maximum must be above its minimum"), kTitle, MessageIcon::Exclamation);
    return false;
  }
  ChannelRec c = channel_;
  c.Units = txtUnits.trimmed().left(kUnitsWidth);
  c.ScreenMin = min;
  c.ScreenMax = max;
  c.AutoScale = chkAutoScale ? -1 : 0;
  c.Decimals = static_cast<uint16_t>(std::clamp(cboDecimals, 0, kMaxDecimals));
  c.Color = static_cast<uint16_t>(std::clamp(Color, 0, kPaletteSize - 1));
  if (!WriteDescriptorFromChannel(ws, c)) return false;
  for (FolderRec& folder : ws.FolderTable) {
    for (OutingRec& o : folder.Outings) {
      if (o.Loaded == 0) continue;
      for (ChannelRec& other : o.Channels) {
        if (other.Key < kFirstMathKey || other.DscIndex != c.DscIndex) continue;
        other.Units = c.Units;
        other.ScreenMin = min;
        other.ScreenMax = max;
        other.AutoScale = c.AutoScale;
        other.Decimals = c.Decimals;
        other.Color = c.Color;
      }
    }
  }
  channel_ = c;
  return true;
}
