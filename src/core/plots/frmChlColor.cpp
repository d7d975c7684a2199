#include "core/plots/frmChlColor.h"

#include "core/app/Workspace.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/HeaderProcessing.h"
#include "core/plots/ChannelDefaults.h"
#include "core/plots/PlotFormats.h"

const QString frmChlColor::kDefaultCaption = QStringLiteral("Set as channel default");

frmChlColor::frmChlColor(Workspace& ws) : ws_(ws) {}

frmChlColor::frmChlColor(Workspace& ws, int slot, int lap, int channel) : ws_(ws) {
  const OutingRec& o = OutingAt(ws, slot);
  const bool on_lap = lap >= 0 && lap < static_cast<int>(o.Laps.size()) && channel >= 0 &&
                      channel < static_cast<int>(o.Channels.size()) &&
                      channel < static_cast<int>(o.Laps[static_cast<std::size_t>(lap)].LapChannels.size());
  if (!on_lap) return;
  const LapRec& l = o.Laps[static_cast<std::size_t>(lap)];
  slot_ = slot;
  lap_ = lap;
  channel_ = channel;
  const int own = l.LapChannels[static_cast<std::size_t>(channel)].Color;
  Selected = own >= 0 && own < kPaletteSize ? own : o.Channels[static_cast<std::size_t>(channel)].Color % kPaletteSize;
}

QString frmChlColor::Title() const {
  if (!HasChannel()) return QStringLiteral("Colour");
  return QStringLiteral("Channel Colour - ") +
         OutingAt(ws_, slot_).Channels[static_cast<std::size_t>(channel_)].Name.trimmed();
}

int frmChlColor::SwatchColor(int index) const { return ws_.Palette.at(static_cast<std::size_t>(index)); }

QString frmChlColor::SwatchName(int index) const {
  const QString name = ColorName(SwatchColor(index));
  return name.isEmpty() ? QStringLiteral("Colour %1").arg(index, 2, 10, QLatin1Char('0')) : name;
}

bool frmChlColor::cmdOK() {
  if (Selected < 0 || Selected >= kPaletteSize) return false;
  if (!HasChannel()) return true;
  OutingRec& o = OutingAt(ws_, slot_);
  const ChannelRec& channel = o.Channels[static_cast<std::size_t>(channel_)];
  const auto color = static_cast<uint16_t>(Selected);
  // The file first: when it can't be written, nothing changes.
  if (chkDefault) {
    if (!EditDescriptor(ws_, channel.DscIndex, [&](ChannelDescriptor& d) { d.Color = color; })) return false;
    ForEachChannelNamed(ws_, -1, channel.ShortName, [&](ChannelRec& c) { c.Color = color; });
  }
  o.Laps[static_cast<std::size_t>(lap_)].LapChannels[static_cast<std::size_t>(channel_)].Color =
      static_cast<int16_t>(Selected);
  return true;
}
