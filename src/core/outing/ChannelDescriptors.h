#pragma once

// CHANNEL.DSC: how each channel is shown (name, units, scale, colour, filter), one file for the
// whole installation in the setup directory. A 256-byte head, then 128-byte records: a fixed
// area of 1,027 records indexed by channel key, then records appended for analogue inputs and
// math channels found by name.

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "core/outing/BinaryRecord.h"

struct Workspace;

inline constexpr char kChannelDscFileName[] = "CHANNEL.DSC";
inline constexpr int kChannelDscHeadSize = 256;
inline constexpr int kChannelDscRecordSize = 128;
inline constexpr int kKeyedDescriptorCount = 1027;  // keys 0..1026
inline constexpr int kChannelGroupCount = 10;

struct ChannelDscHead {
  FixedText<16> DscTitle;
  FixedText<8> DscVersion;
  std::array<FixedText<16>, kChannelGroupCount> GroupNames{};
  std::array<uint8_t, kChannelDscHeadSize> Raw{};
};

template <>
struct Layout<ChannelDscHead> {
  static constexpr int kSize = kChannelDscHeadSize;
  static constexpr auto kFields = std::tuple{
      Field{"DscTitle", 0, &ChannelDscHead::DscTitle},
      Field{"DscVersion", 16, &ChannelDscHead::DscVersion},
      Field{"GroupNames", 24, &ChannelDscHead::GroupNames},
      // 184: Text 72 carried (zeroed when the head is rewritten)
  };
};

struct ChannelDescriptor {
  FixedText<32> Name;
  FixedText<16> Units;
  float ScreenMin = 0;
  float ScreenMax = 5.0f;
  uint16_t Group = 0;
  uint16_t SmoothWidth = 0;
  int16_t Security = 0;
  int16_t AutoScale = 0;
  uint16_t StandardCode = 0;
  uint16_t Decimals = 1;
  uint16_t Color = 0;
  uint16_t FftDecimals = 1;
  uint16_t DataWord = 2;
  uint16_t SourceGroup = 0;
  uint16_t DscIndex = 0;
  float EventLimit = 0;
  float EventHigh = 5.0f;
  int16_t EventEnabled = 0;
  uint16_t EventFlags = 0;
  int16_t FftAutoScale = -1;
  uint16_t FilterKind = 0;
  uint16_t FilterWindow = 0;
  uint16_t FilterKernel = 0;
  uint16_t FilterLowCut = 500;
  uint16_t FilterHighCut = 1000;
  uint16_t PrecisionMode = 0;
  uint16_t TileBottom = 0;
  uint16_t TileTop = 100;
  float FftScaleMin = 0;
  float FftScaleMax = 100.0f;
  std::array<uint8_t, kChannelDscRecordSize> Raw{};
};

template <>
struct Layout<ChannelDescriptor> {
  static constexpr int kSize = kChannelDscRecordSize;
  using D = ChannelDescriptor;
  static constexpr auto kFields = std::tuple{
      Field{"Name", 0, &D::Name},
      Field{"Units", 32, &D::Units},
      Field{"ScreenMin", 48, &D::ScreenMin},
      Field{"ScreenMax", 52, &D::ScreenMax},
      Field{"Group", 56, &D::Group},
      Field{"SmoothWidth", 58, &D::SmoothWidth},
      Field{"Security", 60, &D::Security},
      Field{"AutoScale", 62, &D::AutoScale},
      Field{"StandardCode", 64, &D::StandardCode},
      Field{"Decimals", 66, &D::Decimals},
      Field{"Color", 68, &D::Color},
      Field{"FftDecimals", 70, &D::FftDecimals},
      Field{"DataWord", 72, &D::DataWord},
      Field{"SourceGroup", 74, &D::SourceGroup},
      // 76: 2 bytes carried
      Field{"DscIndex", 78, &D::DscIndex},
      Field{"EventLimit", 80, &D::EventLimit},
      Field{"EventHigh", 84, &D::EventHigh},
      Field{"EventEnabled", 88, &D::EventEnabled},
      Field{"EventFlags", 90, &D::EventFlags},
      Field{"FftAutoScale", 92, &D::FftAutoScale},
      Field{"FilterKind", 94, &D::FilterKind},
      Field{"FilterWindow", 96, &D::FilterWindow},
      Field{"FilterKernel", 98, &D::FilterKernel},
      Field{"FilterLowCut", 100, &D::FilterLowCut},
      Field{"FilterHighCut", 102, &D::FilterHighCut},
      Field{"PrecisionMode", 104, &D::PrecisionMode},
      Field{"TileBottom", 106, &D::TileBottom},
      Field{"TileTop", 108, &D::TileTop},
      Field{"FftScaleMin", 110, &D::FftScaleMin},
      Field{"FftScaleMax", 114, &D::FftScaleMax},
      // 118: Text 10 carried
  };
};

static_assert(LayoutIsSound<ChannelDscHead>());
static_assert(LayoutIsSound<ChannelDescriptor>());

// The whole file in memory.
struct ChannelDescriptorFile {
  ChannelDscHead Head;
  std::vector<ChannelDescriptor> Records;
};

// Number of records in a file of `file_length` bytes: RoundHalfEven((length - 256) / 128).
int DescriptorRecordCount(int64_t file_length);

// Reads head and records; a record cut short by the end of the file reads as zeros at its end.
// Group names come out trimmed, with "Serial" shown as "Telltale". False when the file cannot
// be opened.
bool ReadChannelDescriptorFile(const QString& path, ChannelDescriptorFile& out);

// The file's bytes as they stand in memory (records keep their carried bytes).
QByteArray ChannelDescriptorFileBytes(ChannelDescriptorFile& file);

// A new record with the documented defaults.
ChannelDescriptor NewChannelDescriptor(const QString& name, int index);

// The path of CHANNEL.DSC in the setup directory.
QString ChannelDscPath(const Workspace& ws);

// Reads CHANNEL.DSC into ws.ChannelDsc and ws.GroupNames. When the file is missing:
// "Error: Channel descriptor file not found", title "Read Channels", and false.
bool ReadChannelDescriptors(Workspace& ws);

// Writes a new record with the defaults at index ChannelDscCount, then reads all again.
bool AppendDescriptor(Workspace& ws, const QString& name);

// Rewrites the head: title, version and the ten group names; its closing 72 bytes become zero.
bool WriteChannelGroups(Workspace& ws);
