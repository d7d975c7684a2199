#pragma once

// The tree of the folder in view (folder, Datum, outings, laps, channels, "Support") as a flat
// list of nodes, and every command that adds to it, replaces in it or takes from it. The window
// shows Nodes() and calls SelectNode on a click; menus call the commands. Each command that
// changes the model ends with LoadTreeData and a redraw of the folder's open windows.
//
// Commands that act "globally" walk other folders or outings; they put CurFolder and CurOuting
// back as they found them. Under "Entire Outing" (LapsDisplayed 255) the lap commands refuse.

#include <QString>
#include <vector>

#include "core/workspace/LapSelection.h"
#include "core/workspace/TreeHost.h"
#include "core/workspace/TreeNode.h"

struct Workspace;
struct FolderRec;
struct OutingRec;

class frmChlTree {
 public:
  frmChlTree(Workspace& ws, TreeHost& host);

  // --- The tree -------------------------------------------------------------------------------
  // Rebuilds the nodes of the folder in view and selects the current channel's node.
  void LoadTreeData();
  const std::vector<TreeNode>& Nodes() const { return nodes_; }
  // Selects the node of the current channel (CurOuting, its CurLap, SelChannel); -1 when the
  // tree has none. Returns the selected index.
  int ShowCurrentNode();
  int SelectedNode() const { return selected_; }
  // The level code of the selected node (kLevel… in TreeNode.h).
  int16_t Level() const { return level_; }
  // A click: the node becomes the selected one and what its tag names becomes current
  // (CurOuting and SelOuting, the outing's CurLap, SelChannel and the plots' ActiveChannel).
  void SelectNode(int index);

  // --- Dispatchers of the add/replace menu entries, by Level() --------------------------------
  // Channel level: ReplaceCurrentChannel; root, support, none, Datum, outing, lap: AddAnotherChannel.
  void AddReplaceChannel();
  // Root, none, outing: AddAnotherLap; Datum: ReplaceDatumLap; lap, channel: ReplaceCurrentLap;
  // support: nothing.
  void AddReplaceLap();
  // Outing: ReplaceCurrentOuting; any other: AddAnotherOuting.
  void AddReplaceOuting();

  // --- Folders --------------------------------------------------------------------------------
  // Asks a name and the first outing; a folder takes a free table entry and a tab (15 at most).
  bool AddAnotherFolder();
  bool mnuEditFolder();
  // The folder in view goes: its outings, its tab, and its saved window settings, which the
  // folders behind it move down one place to close the gap. The folders in memory keep their
  // indexes, so the other tabs stay on theirs; the first folder with an outing comes into view.
  bool DeleteCurrentFolder();

  // --- Outings --------------------------------------------------------------------------------
  // Opens `file` into slot CurOuting of the folder in view (the caller picks the slot). Its
  // CurLap and PrevLap are FastLap (0 under "Entire Outing"), that lap is shown and carries the
  // channels that the folder's selected outing carries on its current lap, matched as
  // MatchChannel says; when none of them matches, or the folder had none, the outing's first
  // channel. The new outing becomes the selected one. No rebuild: the commands do that.
  bool LoadNewOuting(const QString& file);
  // Add: the chosen files go into free slots; a file the folder already holds is skipped, and a
  // full folder says "Maximum number of Outings loaded".
  bool AddAnotherOuting();
  bool AddGlobalOuting();
  bool ReplaceCurrentOuting();
  // Unloads every outing of the folder and loads the chosen files; the Datum goes.
  bool ReplaceAllOutings();
  // Replaces the selected outing of every folder in use with one chosen file.
  bool ReplaceGlobalOuting();
  // Unloads the outing (a Datum in it goes too), makes the first outing left current, closes
  // the folder's open windows through the host and rebuilds.
  void DeleteCurrentOuting(int outing);
  // Closing the tree window: "Unload all Outings"; yes unloads the folder's outings and lets the
  // window close, no keeps both.
  bool QueryUnload();

  // --- Laps -----------------------------------------------------------------------------------
  // Laps the person picks, or the neighbour of the current lap, join the comparison with the
  // current lap's channels; the replace variants take the current lap out. Deleting the last
  // shown lap of an outing unloads the outing, as deleting the last channel of a lap deletes it.
  bool AddAnotherLap();
  bool AddNextLap();
  bool AddPreviousLap();
  bool ReplaceCurrentLap();
  bool ReplaceWithNextLap();
  bool ReplaceWithPrevious();
  bool DeleteCurrentLap();

  // --- Channels -------------------------------------------------------------------------------
  // The "all Outings" variants act on every shown lap of every loaded outing of every folder in
  // use, finding the channel in each outing with MatchChannel.
  bool AddAnotherChannel();
  bool AddGlobalChannels();
  bool ReplaceCurrentChannel();
  bool ReplaceGlobalChannel();
  bool ReplaceAllChannels();
  bool DeleteCurrentChannel();
  bool DeleteGlobalChannel();

  // --- Datum ----------------------------------------------------------------------------------
  // frmDatumFile: the chosen outing's fast lap becomes the Datum.
  bool SelectDatumOuting();
  // frmLapSelect on the Datum's outing; the first lap chosen becomes the Datum lap. Without a
  // Datum, SelectDatumOuting.
  bool ReplaceDatumLap();
  void DeleteDatum();

  // --- Colours and hiding ---------------------------------------------------------------------
  bool ChangeLapColor();
  bool ChangeOutingColor();
  void UndoLapColor();
  void UndoOutingColor();
  // Toggles OutingHidden of the current outing.
  void ToggleOutingHidden();
  // frmLapHide on the current outing.
  bool mnuHideLaps();
  // frmGroupLaps on the folder in view.
  bool mnuGroupLaps();

 private:
  FolderRec& Folder();
  OutingRec& Current();
  bool HasCurrentOuting();
  bool NeedOuting(const QString& title);
  bool RefusedUnderEntireOuting(const char* text, const QString& title);
  void Rebuild();

  // Rebuild steps
  void AddDatumNode();
  void AddOutingNodes(int outing);
  void AddLapNode(int outing, int lap, int parent);
  void AddSupportNodes();
  void SetFolderScale();
  int AddNode(const QString& text, const QString& tag, int parent, int16_t level, bool expanded = false);

  // Outings
  bool LoadNewOuting(const QString& file, const std::vector<ChannelRef>& selection);
  bool LoadIntoFreeSlot(const QString& file, const QString& title);
  void ReleaseOuting(int outing);
  std::vector<ChannelRef> SelectionInForce();

  // Laps and channels
  bool StepLap(int step, bool replace);
  void RemoveCurrentLap();
  std::vector<int> ChosenChannels(const QString& title, bool multiple);
  std::vector<ChannelRef> ChosenChannelRefs(const QString& title, bool multiple);
  void SelectFirstChannel();
  template <typename Fn>
  void ForEachShownLap(Fn fn);

  Workspace& ws_;
  TreeHost& host_;
  std::vector<TreeNode> nodes_;
  int selected_ = -1;
  int16_t level_ = kLevelNone;
};
