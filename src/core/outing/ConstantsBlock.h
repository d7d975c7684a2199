#pragma once

// The optional block of outing constants behind the last channel's block.

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

#include "core/outing/BinaryRecord.h"

inline constexpr char kOutingConstantsTitle[] = "V5.00 Outing Constants";
// The text behind the count, which this program gives no meaning and keeps.
inline constexpr int kConstantsCarriedOffset = 34;
inline constexpr int kConstantsCarriedSize = 94;

struct ConstantsBlockHead {
  FixedText<32> ConstTitle;
  int16_t ConstCount = 0;
};

template <>
struct Layout<ConstantsBlockHead> {
  static constexpr int kSize = 128;
  static constexpr auto kFields = std::tuple{
      Field{"ConstTitle", 0, &ConstantsBlockHead::ConstTitle},
      Field{"ConstCount", 32, &ConstantsBlockHead::ConstCount},
      // 34: Text 94 carried
  };
};

struct ConstantEntry {
  FixedText<32> Name;
  float Value = 0;
};

template <>
struct Layout<ConstantEntry> {
  static constexpr int kSize = 36;
  static constexpr auto kFields = std::tuple{
      Field{"Name", 0, &ConstantEntry::Name},
      Field{"Value", 32, &ConstantEntry::Value},
  };
};

static_assert(LayoutIsSound<ConstantsBlockHead>());
static_assert(LayoutIsSound<ConstantEntry>());

// Reads the block at `data_end` (0-based file offset). False when the file holds no block there
// (no title); the entries are then empty. A count that runs past the end of the file is cut to
// the entries the file holds.
bool ReadConstantsBlock(const QString& path, int64_t data_end, std::vector<ConstantEntry>& out);

// The bytes of a block holding these entries.
QByteArray ConstantsBlockBytes(const std::vector<ConstantEntry>& entries);
