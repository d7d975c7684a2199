#include "TreeFixture.h"
#include "core/workspace/LapSelection.h"
#include "core/workspace/TreeNode.h"

namespace {

struct ExpectedNode {
  QString text;
  QString tag;
  int parent;
  int16_t level;
};

void ExpectNodes(const std::vector<TreeNode>& nodes, const std::vector<ExpectedNode>& expected) {
  ASSERT_EQ(nodes.size(), expected.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    EXPECT_EQ(nodes[i].Text, expected[i].text) << i;
    EXPECT_EQ(nodes[i].Tag, expected[i].tag) << i;
    EXPECT_EQ(nodes[i].Parent, expected[i].parent) << i;
    EXPECT_EQ(nodes[i].Level, expected[i].level) << i;
  }
}

std::vector<ExpectedNode> SupportNodes(const Workspace& ws, int first) {
  return {{"Support", "", 0, kLevelSupport},
          {"(Empty)", "TRAK", first, kLevelSupport},
          {"Def : " + ws.DscHead.DscTitle.text, "CDEF", first, kLevelSupport},
          {"Math Channels", "MATH", first, kLevelSupport},
          {"Constants", "CNST", first, kLevelSupport}};
}

// An empty folder shows the root, the Datum and the support nodes; two outings come in order,
// each with its fast lap and first channel.
TEST_F(TreeTest, NodesOfAnEmptyFolderAndOfTwoOutings) {
  tree.LoadTreeData();
  std::vector<ExpectedNode> expected = {{"Folder - Folder1", "000", -1, kLevelRoot},
                                        {"Datum - (None)", ":D", 0, kLevelDatum}};
  std::vector<ExpectedNode> empty = expected;
  for (const ExpectedNode& n : SupportNodes(ws(), 2)) empty.push_back(n);
  ExpectNodes(tree.Nodes(), empty);
  EXPECT_EQ(tree.ShowCurrentNode(), -1);

  LoadBoth();
  const char* files[] = {"SILV0101.DAT", "SILV0102.DAT"};
  for (int slot = 0; slot < 2; ++slot) {
    const OutingRec& o = Outing(slot);
    const int fast = o.FastLap;
    ASSERT_GT(fast, 0);
    EXPECT_EQ(o.CurLap, fast);
    const QString tag = QString::asprintf("%03d", slot);
    const int outing_node = static_cast<int>(expected.size());
    expected.push_back({QStringLiteral(" - %1 - M. Castellan").arg(files[slot]) +
                            (o.TrackName.trimmed().isEmpty() ? QString() : " - " + o.TrackName.trimmed()),
                        tag, 0, kLevelOuting});
    expected.push_back({QString::asprintf("%03d", o.LapNumberBase + fast) + " - (" +
                            MinSecMs(RowTime(o, fast + 1) - RowTime(o, fast)) + ")",
                        tag + QString::asprintf(":%03d", fast), outing_node, kLevelLap});
    expected.push_back({o.Channels[0].Name, tag + QString::asprintf(":%03d:000", fast), outing_node + 1,
                        kLevelChannel});
  }
  for (const ExpectedNode& n : SupportNodes(ws(), static_cast<int>(expected.size()))) expected.push_back(n);
  ExpectNodes(tree.Nodes(), expected);
  EXPECT_EQ(Folder().TreeChannelCount, 2);
  // The last outing loaded is current, and its channel is the selected node.
  EXPECT_EQ(ws().CurOuting, 1);
  EXPECT_EQ(tree.SelectedNode(), 7);
  EXPECT_EQ(tree.Level(), kLevelChannel);
}

TEST_F(TreeTest, AClickMakesWhatTheTagNamesCurrent) {
  LoadBoth();
  ShowLapLike(Outing(0), 1, Outing(0).CurLap);
  SetChannelOn(Outing(0), 1, 3, true);
  tree.LoadTreeData();
  struct Case {
    QString tag;
    int16_t level;
    int cur_outing, cur_lap, sel_channel;
  } cases[] = {
      {"000:001", kLevelLap, 0, 1, -1},
      {"000:001:003", kLevelChannel, 0, 1, 3},
      {"001", kLevelOuting, 1, -1, -1},
      {":D", kLevelDatum, 1, -1, -1},  // the Datum node changes nothing but the level
      {"000", kLevelRoot, 1, -1, -1},
  };
  for (const Case& k : cases) {
    const int node = NodeAt(k.tag, k.level);
    ASSERT_GE(node, 0) << k.tag.toStdString();
    const int16_t channel_before = Folder().SelChannel;
    tree.SelectNode(node);
    EXPECT_EQ(tree.SelectedNode(), node);
    EXPECT_EQ(tree.Level(), k.level) << k.tag.toStdString();
    EXPECT_EQ(ws().CurOuting, k.cur_outing) << k.tag.toStdString();
    EXPECT_EQ(Folder().SelOuting, k.cur_outing) << k.tag.toStdString();
    if (k.cur_lap >= 0) {
      EXPECT_EQ(Outing(k.cur_outing).CurLap, k.cur_lap);
    }
    const int16_t expected_channel = k.sel_channel >= 0 ? static_cast<int16_t>(k.sel_channel) : channel_before;
    EXPECT_EQ(Folder().SelChannel, expected_channel) << k.tag.toStdString();
    if (k.sel_channel >= 0) {
      EXPECT_EQ(Folder().ActiveChannel, k.sel_channel);
    }
  }
}

}  // namespace
