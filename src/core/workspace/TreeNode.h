#pragma once

// One row of the channel tree as the tree window shows it, and the small codes that tell what a
// selected row stands for. The window draws the rows; the commands read the level of the row last
// clicked and what its tag names.

#include <QString>
#include <cstdint>

// The image of a channel node, by the range its channel number falls in.
enum class ChannelClass { None, Analog, Digital, Telltale, Ecu, Obm, Gps, Pcu, Math };

// Analog 0..63, Digital 64..111, Tell-tale 112..127, ECU 128..191, OBM 192..255, GPS 256..287,
// PCU 288..351; anything else (the derived channels 1024..1026 and the math channels) is Math.
ChannelClass ChannelClassOf(int key);

// What the selected node stands for. The add/replace dispatchers act on these codes:
//   kLevelRoot     0  the folder's root node
//   kLevelSupport  1  "Support" and the nodes under it
//   kLevelNone     3  nothing selected yet (a fresh tree, or a tree without outings)
//   kLevelDatum    5  the Datum node
//   kLevelOuting   7  an outing node
//   kLevelLap     11  a lap or lap group node
//   kLevelChannel 15  a channel node
inline constexpr int16_t kLevelRoot = 0;
inline constexpr int16_t kLevelSupport = 1;
inline constexpr int16_t kLevelNone = 3;
inline constexpr int16_t kLevelDatum = 5;
inline constexpr int16_t kLevelOuting = 7;
inline constexpr int16_t kLevelLap = 11;
inline constexpr int16_t kLevelChannel = 15;

struct TreeNode {
  QString Text;
  QString Tag;           // "000", ":D", "003", "003:012", "003:012:045", "TRAK", ...; empty for "Support"
  int Parent = -1;       // index of the parent node; -1 for the root
  bool Expanded = false;
  ChannelClass Icon = ChannelClass::None;  // channel nodes only
  int16_t Level = kLevelNone;
};

// The indexes a tag names: "ooo", "ooo:lll", "ooo:lll:ccc"; -1 for the parts it lacks.
struct TreeTagParts {
  int Outing = -1;
  int Lap = -1;
  int Channel = -1;
};

QString OutingTag(int outing);
QString LapTag(int outing, int lap);
QString ChannelTag(int outing, int lap, int channel);
// The parts of an outing, lap or channel tag; all -1 for any other tag.
TreeTagParts ParseTreeTag(const QString& tag);
