#pragma once

// EXCEL.RPT: the report layouts, a 128-byte head and 684-byte records, in the report directory.

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "core/outing/BinaryRecord.h"

struct Workspace;

inline constexpr char kReportFileName[] = "EXCEL.RPT";
inline constexpr char kReportSignature[] = "Excel Report";
inline constexpr int kReportHeadSize = 128;
inline constexpr int kReportSlotCount = 32;

struct ReportSlot {
  FixedText<16> Channel;  // "empty" for a free slot
  int16_t Method = 0;
  int16_t Where = 0;
};

template <>
struct Layout<ReportSlot> {
  static constexpr int kSize = 20;
  static constexpr auto kFields = std::tuple{
      Field{"Channel", 0, &ReportSlot::Channel},
      Field{"Method", 16, &ReportSlot::Method},
      Field{"Where", 18, &ReportSlot::Where},
  };
};

struct ReportRec {
  FixedText<40> Name;
  int16_t Type = 0;  // 0 Lap, 1 Global, 2 Splits, 3 Event, 4 Track
  int16_t Icon = 0;
  std::array<ReportSlot, kReportSlotCount> Slots{};
  std::array<uint8_t, 684> Raw{};
};

template <>
struct Layout<ReportRec> {
  static constexpr int kSize = 684;
  static constexpr auto kFields = std::tuple{
      Field{"Name", 0, &ReportRec::Name},
      Field{"Type", 40, &ReportRec::Type},
      Field{"Icon", 42, &ReportRec::Icon},
      Field{"Slots", 44, &ReportRec::Slots},
  };
};

static_assert(LayoutIsSound<ReportRec>());

// Reads EXCEL.RPT into ws.Reports. A missing file is written fresh with its signature; a file
// with another signature leaves the list empty. Failures say so under the title "Excel Report".
bool LoadReports(Workspace& ws);
// Writes the whole file from ws.Reports.
bool SaveReports(Workspace& ws);
