#pragma once

// frmEventEdit: the event of a channel, the stretches where its samples meet a condition
// against a limit, drawn as bars under the time graph's traces. OK stores it in the channel of
// the same name in every outing of the folder and in CHANNEL.DSC.

#include <QString>
#include <array>
#include <cstdint>

struct Workspace;

class frmEventEdit {
 public:
  struct Choice {
    uint16_t Flag;        // the low six bits of EventFlags
    const char* Caption;  // its option button
  };
  static const std::array<Choice, 6> kConditions;
  static constexpr uint16_t kConditionBits = 0x3F;
  static constexpr uint16_t kLabelMinimum = 0x100;
  static constexpr uint16_t kLabelMaximum = 0x200;
  static const QString kTitle;

  // The channel selected in the folder in view; without one HasChannel is false.
  explicit frmEventEdit(Workspace& ws);
  bool HasChannel() const { return channel_ >= 0; }
  QString ChannelName() const;

  uint16_t Condition = 1;  // one of kConditions' flags
  QString txtLimit;
  bool chkEnabled = false;
  bool chkMinimum = false;  // the minimum of the view is labelled
  bool chkMaximum = false;

  // The flags as they will be stored over `old`: the condition and the two labels; other bits
  // are kept.
  uint16_t Flags(uint16_t old) const;
  // False after its message when the limit is no number; nothing changes then.
  bool cmdOK();

 private:
  Workspace& ws_;
  int slot_ = -1, channel_ = -1;
};
