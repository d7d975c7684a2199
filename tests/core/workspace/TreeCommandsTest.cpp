#include "TreeFixture.h"
#include "core/workspace/FolderSettings.h"
#include "core/workspace/LapSelection.h"

namespace {

using test_outings::LastMessage;

TEST_F(TreeTest, LapCommandsRefuseUnderEntireOuting) {
  LoadBoth();
  Folder().LapsDisplayed = 255;
  struct Case {
    const char* name;
    std::function<bool()> run;
    QString text, title;
  } cases[] = {
      {"AddNextLap", [&] { return tree.AddNextLap(); }, "Cannot add lap when 'Entire Outing' is selected", "Add Laps"},
      {"AddAnotherLap", [&] { return tree.AddAnotherLap(); }, "Cannot add a lap when 'Entire Outing' is selected",
       "Add Laps"},
      {"DeleteCurrentLap", [&] { return tree.DeleteCurrentLap(); },
       "Cannot delete lap when 'Entire Outing' is selected", "Delete Lap"},
      {"ReplaceWithNextLap", [&] { return tree.ReplaceWithNextLap(); },
       "Cannot replace lap when 'Entire Outing' is selected", "Replace Lap"},
  };
  const std::vector<int16_t> before = ShownFlags(1);
  for (const Case& k : cases) {
    EXPECT_FALSE(k.run()) << k.name;
    EXPECT_EQ(LastMessage(home.messages).text, k.text) << k.name;
    EXPECT_EQ(LastMessage(home.messages).title, k.title) << k.name;
    EXPECT_EQ(ShownFlags(1), before) << k.name;
  }
  EXPECT_TRUE(host.asked.empty());
}

TEST_F(TreeTest, FolderTabsStopAtFifteen) {
  host.tab_count = 15;
  host.texts.push_back(QStringLiteral("Wet"));
  host.files.push_back({First()});
  EXPECT_FALSE(tree.AddAnotherFolder());
  EXPECT_EQ(LastMessage(home.messages).text, "Maximum number of Folders loaded");
  EXPECT_EQ(LastMessage(home.messages).title, "New Folder");
  EXPECT_EQ(ws().CurFolder, 0);
  EXPECT_EQ(Folder(1).InUse, 0);

  // Below the limit: the name is cut to its 16 characters and the folder takes the outing.
  host.tab_count = 14;
  host.texts.push_back(QStringLiteral("Qualifying on used tyres"));
  host.files.push_back({First()});
  ASSERT_TRUE(tree.AddAnotherFolder());
  EXPECT_EQ(ws().CurFolder, 1);
  EXPECT_NE(Outing(0, 1).Loaded, 0);
  EXPECT_EQ(tree.Nodes().front().Text, "Folder - Qualifying on us");
  EXPECT_EQ(host.tabs_added, (std::vector<std::pair<int, QString>>{{1, "Qualifying on us"}}));

  // An empty name ends the command before any file is asked for.
  host.asked.clear();
  host.texts.push_back(QString());
  EXPECT_FALSE(tree.AddAnotherFolder());
  EXPECT_EQ(host.asked, std::vector<QString>{"New Folder"});
}

TEST_F(TreeTest, DeletingTheDatumsOutingLeavesNoDatum) {
  LoadBoth();
  host.datum.push_back(0);
  ASSERT_TRUE(tree.SelectDatumOuting());
  ASSERT_EQ(host.datum_rows.size(), 2u);
  EXPECT_EQ(host.datum_rows[1].File, "SILV0102.DAT");
  const OutingRec& o = Outing(0);
  EXPECT_EQ(Folder().DatumOuting, 0);
  EXPECT_EQ(Folder().DatumLap, o.FastLap);
  EXPECT_EQ(tree.Nodes()[1].Text, QString::asprintf("Datum - SILV0101.DAT - %03d  (", o.LapNumberBase + o.FastLap) +
                                      MinSecMs(RowTime(o, o.FastLap + 1) - RowTime(o, o.FastLap)) + ")");

  tree.DeleteCurrentOuting(0);
  EXPECT_EQ(Outing(0).Loaded, 0);
  EXPECT_EQ(Folder().DatumOuting, -1);
  EXPECT_EQ(tree.Nodes()[1].Text, "Datum - (None)");
  EXPECT_EQ(host.windows_closed, 1);
}

TEST_F(TreeTest, TheLastLapTakesItsOutingWithIt) {
  LoadBoth();
  ASSERT_EQ(ws().CurOuting, 1);
  host.channels.push_back({4});
  ASSERT_TRUE(tree.AddAnotherChannel());
  // Two channels: the first delete leaves the lap, the second takes lap and outing.
  ASSERT_TRUE(tree.DeleteCurrentChannel());
  EXPECT_NE(Outing(1).Loaded, 0);
  EXPECT_EQ(Folder().TreeChannelCount, 2);
  ASSERT_TRUE(tree.DeleteCurrentChannel());
  EXPECT_EQ(Outing(1).Loaded, 0);
  EXPECT_EQ(ws().CurOuting, 0);
  EXPECT_EQ(NodeAt("001", kLevelOuting), -1);
  EXPECT_EQ(Folder().TreeChannelCount, 1);
}

TEST_F(TreeTest, DispatchersFollowTheLevelOfTheSelectedNode) {
  LoadBoth();
  const QString add_channel = "Add Channel(s) to Lap", add_lap = "Add Lap(s) To Outing",
                add_outing = "Add New Outing(s)";
  const int fast = Outing(1).FastLap;
  struct Case {
    QString tag;
    int16_t level;
    QString channel, lap, outing;  // the dialog each dispatcher opens; empty: none
  } cases[] = {
      {"000", kLevelRoot, add_channel, add_lap, add_outing},
      {"", kLevelSupport, add_channel, "", add_outing},
      {":D", kLevelDatum, add_channel, "Datum Outing", add_outing},
      {"001", kLevelOuting, add_channel, add_lap, "Replace Outing"},
      {QString::asprintf("001:%03d", fast), kLevelLap, add_channel, "Replace Lap in Outing", add_outing},
      {QString::asprintf("001:%03d:000", fast), kLevelChannel, "Replace Channel in Lap", "Replace Lap in Outing",
       add_outing},
  };
  for (const Case& k : cases) {
    const int node = NodeAt(k.tag, k.level);
    ASSERT_GE(node, 0) << k.tag.toStdString();
    const std::pair<std::function<void()>, QString> runs[] = {
        {[&] { tree.AddReplaceChannel(); }, k.channel},
        {[&] { tree.AddReplaceLap(); }, k.lap},
        {[&] { tree.AddReplaceOuting(); }, k.outing},
    };
    for (const auto& [run, title] : runs) {
      tree.SelectNode(node);
      host.asked.clear();
      run();  // every dialog is cancelled
      EXPECT_EQ(host.asked, title.isEmpty() ? std::vector<QString>{} : std::vector<QString>{title})
          << k.tag.toStdString() << " " << title.toStdString();
    }
  }
}

TEST_F(TreeTest, GlobalChannelsReachEveryFolderAndComeBack) {
  LoadBoth();
  // A second folder holding the first outing.
  host.tab_count = 1;
  host.texts.push_back(QStringLiteral("Other"));
  host.files.push_back({First()});
  ASSERT_TRUE(tree.AddAnotherFolder());
  ws().CurFolder = 0;
  ws().CurOuting = 1;
  tree.LoadTreeData();
  host.channels.push_back({5});
  ASSERT_TRUE(tree.AddGlobalChannels());
  EXPECT_EQ(host.asked.back(), "Add Channel(s) to all Outings");
  const int key = Outing(1).Channels[5].Key;
  for (const OutingRec* o : {&Outing(0), &Outing(1), &Outing(0, 1)}) {
    std::vector<int> keys;
    for (int c : ChannelsOnLap(*o, o->CurLap)) keys.push_back(o->Channels[static_cast<std::size_t>(c)].Key);
    EXPECT_EQ(keys, (std::vector<int>{o->Channels[0].Key, key}));
  }
  EXPECT_EQ(ws().CurOuting, 1);

  // Replacing all channels by that one leaves it alone on every compared lap.
  host.channels.push_back({5});
  ASSERT_TRUE(tree.ReplaceAllChannels());
  for (const OutingRec* o : {&Outing(0), &Outing(1), &Outing(0, 1)}) {
    EXPECT_EQ(ChannelsOnLap(*o, o->CurLap), std::vector<int>{5});
  }
}

TEST_F(TreeTest, ClosingTheTreeAsksBeforeUnloading) {
  LoadBoth();
  home.messages.answers = {false, true};
  EXPECT_FALSE(tree.QueryUnload());
  EXPECT_EQ(LastMessage(home.messages).text, "Unload all Outings");
  EXPECT_EQ(LastMessage(home.messages).title, "Unload All");
  EXPECT_TRUE(AnyOutingLoaded(ws(), 0));
  EXPECT_TRUE(tree.QueryUnload());
  EXPECT_FALSE(AnyOutingLoaded(ws(), 0));
  EXPECT_EQ(tree.Nodes().size(), 7u);
}

TEST_F(TreeTest, ReplacingNeedsAnOutingAndKeepsTheSlot) {
  tree.ReplaceCurrentOuting();
  EXPECT_EQ(LastMessage(home.messages).text, "No Outings to replace");
  EXPECT_EQ(LastMessage(home.messages).title, "Replace Outing");
  LoadBoth();
  ws().CurOuting = 0;
  host.files.push_back({Second()});
  ASSERT_TRUE(tree.ReplaceCurrentOuting());
  EXPECT_TRUE(Outing(0).FileName.endsWith("SILV0102.DAT"));
  // A missing file leaves the outing where it was.
  host.files.push_back({"/nowhere/GONE.DAT"});
  EXPECT_FALSE(tree.ReplaceCurrentOuting());
  EXPECT_EQ(LastMessage(home.messages).title, "File Open");
  EXPECT_NE(Outing(0).Loaded, 0);
}

}  // namespace
