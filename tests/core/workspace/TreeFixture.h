#pragma once

// A started workspace with a tree on a scripted host, and two short demo outings of one circuit.

#include <gtest/gtest.h>

#include "../TestOutings.h"
#include "FakeTreeHost.h"
#include "core/workspace/frmChlTree.h"

class TreeTest : public ::testing::Test {
 protected:
  Workspace& ws() { return home.ws(); }
  FolderRec& Folder(int f = 0) { return ws().FolderTable[static_cast<std::size_t>(f)]; }
  OutingRec& Outing(int slot, int f = 0) { return Folder(f).Outings[static_cast<std::size_t>(slot)]; }
  static QString First() { return test_outings::SharedDemoOuting("SILV0101.DAT", 3).path; }
  static QString Second() { return test_outings::SharedDemoOuting("SILV0102.DAT", 2).path; }

  // Both demo outings into folder 0 through the add command, in slots 0 and 1.
  void LoadBoth() {
    host.files.push_back({First(), Second()});
    ASSERT_TRUE(tree.AddAnotherOuting());
    ASSERT_NE(Outing(0).Loaded, 0);
    ASSERT_NE(Outing(1).Loaded, 0);
    ASSERT_GE(Outing(0).LastLap, 4);
    host.asked.clear();
  }
  // Index of the node with this tag and level; -1 when there is none.
  int NodeAt(const QString& tag, int16_t level) const {
    const auto& nodes = tree.Nodes();
    for (int i = 0; i < static_cast<int>(nodes.size()); ++i) {
      if (nodes[static_cast<std::size_t>(i)].Tag == tag && nodes[static_cast<std::size_t>(i)].Level == level) return i;
    }
    return -1;
  }
  std::vector<int16_t> ShownFlags(int slot) {
    std::vector<int16_t> flags;
    for (const LapRec& lap : Outing(slot).Laps) {
      flags.push_back(lap.Shown);
      for (const LapChannelRec& c : lap.LapChannels) flags.push_back(c.Shown);
    }
    return flags;
  }

  test_outings::TestHome home;
  FakeTreeHost host;
  frmChlTree tree{home.ws(), host};

};

// "mm:ss.mmm", written out here so that a change of the tree's time texts shows.
inline QString MinSecMs(int ms) {
  return QString::asprintf("%02d:%02d.%03d", ms / 60000, ms / 1000 % 60, ms % 1000);
}

inline int RowTime(const OutingRec& o, int row) { return o.Laps[static_cast<std::size_t>(row)].StartTime; }
