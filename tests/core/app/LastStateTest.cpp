#include "core/app/LastState.h"

#include "../TestOutings.h"
#include "core/plots/PlotScale.h"

namespace {

using namespace test_outings;

// What a folder shows of its outings: per slot, the file and, per shown lap, its channels.
std::vector<std::pair<QString, std::vector<std::pair<int, std::vector<int>>>>> Shown(Workspace& ws, int folder) {
  std::vector<std::pair<QString, std::vector<std::pair<int, std::vector<int>>>>> out;
  for (const OutingRec& o : ws.FolderTable[static_cast<std::size_t>(folder)].Outings) {
    if (o.Loaded == 0) continue;
    out.push_back({o.FileName, {}});
    for (int l = 0; l < static_cast<int>(o.Laps.size()); ++l) {
      const LapRec& lap = o.Laps[static_cast<std::size_t>(l)];
      if (lap.Shown == 0) continue;
      std::vector<int> channels;
      for (int c = 0; c < static_cast<int>(lap.LapChannels.size()); ++c) {
        if (lap.LapChannels[static_cast<std::size_t>(c)].Shown != 0) channels.push_back(c);
      }
      out.back().second.push_back({l, channels});
    }
  }
  return out;
}

void Forget(Workspace& ws) {
  for (FolderRec& f : ws.FolderTable) {
    for (OutingRec& o : f.Outings) o = OutingRec{};
    InitFolder(f);
  }
}

TEST(LastState, FoldersComeBackWithTheirLapsChannelsDatumAndView) {
  TestHome home;
  const DemoOuting a = MakeDemoOuting("SILV0101.DAT", home.Path(""), 3);
  const DemoOuting b = MakeDemoOuting("SILV0102.DAT", home.Path(""), 3);
  Workspace& ws = home.ws();
  // Folder 1: two outings in slots 0 and 2, laps 1 and 2 of the first with other channels.
  ASSERT_TRUE(home.Load(0, a.path));
  ASSERT_TRUE(home.Load(2, b.path));
  const int speed = FindChannelByName(ws, 0, 0, "SYSTEM SPEED"), rpm = FindChannelByName(ws, 0, 0, "RPM");
  ASSERT_TRUE(speed >= 0 && rpm >= 0);
  OutingRec& first = home.Outing(0);
  for (LapRec& l : first.Laps) l.Shown = 0;
  first.Laps[1].Shown = first.Laps[2].Shown = -1;
  first.Laps[1].LapChannels[static_cast<std::size_t>(speed)].Shown = -1;
  first.Laps[2].LapChannels[static_cast<std::size_t>(rpm)].Shown = -1;
  first.Laps[2].Hidden = -1;
  first.CurLap = 2;
  FolderRec& f0 = ws.FolderTable[0];
  f0.DatumOuting = 2;
  f0.TimeStart = 1500;
  f0.TimeEnd = 42000;
  ws.FolderTable[3].InUse = -1;  // an empty folder stays in use
  const auto before = Shown(ws, 0);
  SaveFolderState(ws);

  Forget(ws);
  EXPECT_EQ(ReadFolderState(ws), (std::vector<int>{0, 3}));
  EXPECT_EQ(Shown(ws, 0), before);
  EXPECT_EQ(home.Outing(0).CurLap, 2);
  EXPECT_NE(home.Outing(0).Laps[2].Hidden, 0);
  EXPECT_EQ(f0.DatumOuting, 2);
  EXPECT_EQ(f0.TimeStart, 1500);
  EXPECT_EQ(f0.TimeEnd, 42000);

  // A file that has gone since is left out without a message; the rest comes back.
  const std::size_t messages = home.messages.entries.size();
  Forget(ws);
  ASSERT_TRUE(QFile::remove(a.path));
  ReadFolderState(ws);
  EXPECT_EQ(home.Outing(0).Loaded, 0);
  EXPECT_NE(home.Outing(2).Loaded, 0);
  EXPECT_EQ(home.messages.entries.size(), messages);
  EXPECT_EQ(f0.DatumOuting, 2);
}

}  // namespace
