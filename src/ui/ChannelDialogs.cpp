// Pictures of the dialogs of beacons, channel settings, colours and options, each opened on the
// session as its command opens it and closed as by Cancel.

#include "core/app/Numbers.h"
#include "core/app/Workspace.h"
#include "core/track/Laps.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"
#include "ui/Screenshots.h"

using namespace channel_dialogs;

void ChannelScreenshots(DialogHost& host, const Screenshot& shot) {
  const struct {
    const char* name;
    void (*open)(DialogHost&);
  } commands[] = {{"frmInsertBeacon", &EditBeacons}, {"frmShiftBeacon", &ShiftBeacons},
                  {"frmFilters", &EditFilters},      {"frmChlColor", &EditChannelColor},
                  {"frmEventEdit", &EditEvents},     {"frmEditPalette", &EditPalette},
                  {"frmOptions", &EditOptions}};
  for (const auto& c : commands) ShootModal(shot, QString::fromLatin1(c.name), [&] { c.open(host); });

  // The insert dialogs of frmInsertBeacon, on the current lap of the current outing.
  Workspace& ws = host.ws;
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(ws.CurOuting)];
  const bool has_lap = o.Loaded != 0 && o.CurLap >= 0 && o.CurLap < o.LastLap;
  const QString time = has_lap ? LapTimeText(LapTimeMs(o, o.CurLap)) : QStringLiteral("00:00.000");
  const QString number = has_lap ? LapNumberText(o, o.CurLap) : QStringLiteral("000");
  ShootModal(shot, QStringLiteral("frmInsertLap"), [&] { AskInsertLap(host.parent, time); });
  ShootModal(shot, QStringLiteral("frmInsertDistance"),
             [&] { AskInsertDistance(host.parent, QString::number(RoundHalfEven(ws.TrackLength)), number); });
  ShootModal(shot, QStringLiteral("frmChlXYAxis"), [&] { ChooseAxisChannel(host, folder.SelOuting); });
}
