#pragma once

// The 16,384-byte header record at the start of every outing file (*.DAT, *.CNV).
// Every named field is declared once, with its offset, in the Layout tables below; all other
// bytes are carried in `Raw` and written back exactly as they were read.

#include <QString>
#include <array>
#include <cstdint>

#include "core/outing/BinaryRecord.h"

inline constexpr int kOutingHeaderSize = 16384;
inline constexpr int kMaxLoggedChannels = 128;
inline constexpr int kMaxBeacons = 256;
inline constexpr uint16_t kConvertedSerial = 9999;  // LcuSerial of a converted outing

// One entry of ChannelTable: where a channel's samples lie in the logger's memory.
struct ChannelTableEntry {
  uint16_t Key = 0;
  uint8_t RateCode = 0;
  uint8_t WordSize = 0;
  uint16_t StartOffset = 0;  // offset in the first page
  uint16_t StartPage = 0;
  uint16_t EndOffset = 0;  // offset in the last page
  uint16_t EndPage = 0;
  bool operator==(const ChannelTableEntry&) const = default;
};

template <>
struct Layout<ChannelTableEntry> {
  static constexpr int kSize = 12;
  static constexpr auto kFields = std::tuple{
      Field{"Key", 0, &ChannelTableEntry::Key},
      Field{"RateCode", 2, &ChannelTableEntry::RateCode},
      Field{"WordSize", 3, &ChannelTableEntry::WordSize},
      Field{"StartOffset", 4, &ChannelTableEntry::StartOffset},
      Field{"StartPage", 6, &ChannelTableEntry::StartPage},
      Field{"EndOffset", 8, &ChannelTableEntry::EndOffset},
      Field{"EndPage", 10, &ChannelTableEntry::EndPage},
  };
};

// Calibration of one analogue input (keys 0..63).
struct InputCalibration {
  uint16_t CalType = 0;  // 0 interpolation, 1 linear, 2 quadratic, 4 table with hold, 8 scale & offset
  float CalOffset = 0;   // user offset, added after the conversion
  int16_t CalPoints = 0;  // index of the last used point
  std::array<int16_t, 13> CalX{};
  std::array<float, 13> CalY{};
  float CalCoefA = 0;
  float CalCoefB = 0;
  float CalCoefC = 0;
};

template <>
struct Layout<InputCalibration> {
  static constexpr int kSize = 100;
  static constexpr auto kFields = std::tuple{
      Field{"CalType", 0, &InputCalibration::CalType},
      Field{"CalOffset", 2, &InputCalibration::CalOffset},
      Field{"CalPoints", 6, &InputCalibration::CalPoints},
      Field{"CalX", 8, &InputCalibration::CalX},
      Field{"CalY", 34, &InputCalibration::CalY},
      Field{"CalCoefA", 86, &InputCalibration::CalCoefA},
      Field{"CalCoefB", 90, &InputCalibration::CalCoefB},
      Field{"CalCoefC", 94, &InputCalibration::CalCoefC},
      // 98: Text 2, carried
  };
};

// Gain and offset of an engine-control-unit channel (keys 128..191).
struct EcuCalibration {
  float Gain = 0;
  float Offset = 0;
  int16_t SecurityFlag = 0;  // above 0: the channel is marked secure
};

template <>
struct Layout<EcuCalibration> {
  static constexpr int kSize = 16;
  static constexpr auto kFields = std::tuple{
      Field{"Gain", 0, &EcuCalibration::Gain},
      Field{"Offset", 4, &EcuCalibration::Offset},
      Field{"SecurityFlag", 8, &EcuCalibration::SecurityFlag},
      // 10: 2 bytes and Text 4, carried
  };
};

// Gain and offset of a linear channel (keys 224..255).
struct LinearCalibration {
  float Gain = 0;
  float Offset = 0;
};

template <>
struct Layout<LinearCalibration> {
  static constexpr int kSize = 8;
  static constexpr auto kFields = std::tuple{
      Field{"Gain", 0, &LinearCalibration::Gain},
      Field{"Offset", 4, &LinearCalibration::Offset},
  };
};

// One pulse (frequency) input. Bits 1 and 3 of Flags (mask 10): its channels are stored in tenths.
struct PulseInput {
  uint16_t Word0 = 0;
  uint16_t Word1 = 0;
  uint16_t Flags = 0;
};
inline constexpr uint16_t kPulseTenthsMask = 10;

template <>
struct Layout<PulseInput> {
  static constexpr int kSize = 6;
  static constexpr auto kFields = std::tuple{
      Field{"Word0", 0, &PulseInput::Word0},
      Field{"Word1", 2, &PulseInput::Word1},
      Field{"Flags", 4, &PulseInput::Flags},
  };
};

// Expansion slot n stands for channel key 112 + n and names the key whose scaling applies.
struct ExpansionEntry {
  uint16_t Key = 0;
};

template <>
struct Layout<ExpansionEntry> {
  static constexpr int kSize = 8;
  static constexpr auto kFields = std::tuple{
      Field{"Key", 2, &ExpansionEntry::Key},  // bytes 0, 1 and 4..7 carried
  };
};

// A row of the engine logbook: count, longest and total time in a band.
struct LogbookBand {
  int32_t Count = 0;
  int32_t Longest = 0;
  int32_t Total = 0;
};

template <>
struct Layout<LogbookBand> {
  static constexpr int kSize = 12;
  static constexpr auto kFields = std::tuple{
      Field{"Count", 0, &LogbookBand::Count},
      Field{"Longest", 4, &LogbookBand::Longest},
      Field{"Total", 8, &LogbookBand::Total},
  };
};

// A limit of the engine logbook: a set bit in Flags means "< " limit, else "> ".
struct LogbookLimit {
  uint16_t Flags = 0;
  uint16_t Channel = 0;
  int32_t Limit = 0;
};

template <>
struct Layout<LogbookLimit> {
  static constexpr int kSize = 8;
  static constexpr auto kFields = std::tuple{
      Field{"Flags", 0, &LogbookLimit::Flags},
      Field{"Channel", 2, &LogbookLimit::Channel},
      Field{"Limit", 4, &LogbookLimit::Limit},
  };
};

// The "Weather" group of the setup sheet.
struct WeatherBlock {
  FixedText<32> Conditions;
  FixedText<8> Wind;
  int16_t Temperature = 0;
  int16_t Humidity = 0;  // "Rel. Humidity"
  int16_t Barometer = 0;
  int16_t Correction = 0;
  int16_t DensityAltitude = 0;
  int16_t Adr = 0;  // "ADR"
};

template <>
struct Layout<WeatherBlock> {
  static constexpr int kSize = 64;
  static constexpr auto kFields = std::tuple{
      Field{"Conditions", 0, &WeatherBlock::Conditions},
      Field{"Wind", 32, &WeatherBlock::Wind},
      Field{"Temperature", 40, &WeatherBlock::Temperature},
      Field{"Humidity", 42, &WeatherBlock::Humidity},
      Field{"Barometer", 44, &WeatherBlock::Barometer},
      Field{"Correction", 46, &WeatherBlock::Correction},
      Field{"DensityAltitude", 48, &WeatherBlock::DensityAltitude},
      Field{"Adr", 50, &WeatherBlock::Adr},
      // 52: 2 bytes, 54: Text 10, carried
  };
};

// The vehicle group of the setup sheet. The same bytes have a road reading (the names below)
// and a drag reading: Type "Lane", Weight "Reaction Time", Track "60 ft", Wheelbase "330 ft",
// TireSet "1/8 MPH", FrontDiameter "1/4 ET", RearDiameter "1/4 MPH", LfRideHeight "Set #",
// RfRideHeight "Compound", LrRideHeight "Runs on Tires", RrRideHeight "Tire Pressure",
// EighthEt "1/8 ET" (carried in the road reading).
struct VehicleBlock {
  FixedText<16> Type;
  int16_t Weight = 0;
  int16_t Track = 0;
  int16_t Wheelbase = 0;
  FixedText<8> Tires;
  int16_t TireSet = 0;
  int16_t FrontDiameter = 0;
  int16_t RearDiameter = 0;
  int16_t LfRideHeight = 0;
  int16_t RfRideHeight = 0;
  int16_t LrRideHeight = 0;
  int16_t RrRideHeight = 0;
  int16_t EighthEt = 0;
};

template <>
struct Layout<VehicleBlock> {
  static constexpr int kSize = 48;
  static constexpr auto kFields = std::tuple{
      Field{"Type", 0, &VehicleBlock::Type},
      Field{"Weight", 16, &VehicleBlock::Weight},
      Field{"Track", 18, &VehicleBlock::Track},
      Field{"Wheelbase", 20, &VehicleBlock::Wheelbase},
      Field{"Tires", 22, &VehicleBlock::Tires},
      Field{"TireSet", 30, &VehicleBlock::TireSet},
      Field{"FrontDiameter", 32, &VehicleBlock::FrontDiameter},
      Field{"RearDiameter", 34, &VehicleBlock::RearDiameter},
      Field{"LfRideHeight", 36, &VehicleBlock::LfRideHeight},
      Field{"RfRideHeight", 38, &VehicleBlock::RfRideHeight},
      Field{"LrRideHeight", 40, &VehicleBlock::LrRideHeight},
      Field{"RrRideHeight", 42, &VehicleBlock::RrRideHeight},
      Field{"EighthEt", 44, &VehicleBlock::EighthEt},
      // 46: Text 2, carried
  };
};

struct OutingHeader {
  uint16_t Checksum = 0;
  uint16_t MemoryBlocks = 0;  // logger memory in blocks of 512 KB
  uint16_t LcuSerial = 0;     // 9999 marks a converted outing
  uint16_t RunSeconds = 0;
  uint16_t Resets = 0;
  int32_t OutingDistance = 0;
  int16_t Firmware = 0;
  uint64_t StartFileTime = 0;  // Windows file time: 100 ns ticks since 1601-01-01
  uint16_t SystemFlags = 0;    // any bit set: rate code 2 is 250 Hz
  int32_t EndTime = 0;         // ms from the start of recording
  int16_t Cyclic = 0;          // above 0: cyclic memory mode, times in 1/Cyclic ms
  uint16_t BeaconCount = 0;
  uint16_t SessionNumber = 0;
  uint16_t RunNumber = 0;
  uint16_t LastOutingNumber = 0;
  int32_t RawEndTime = 0;
  uint16_t FirstLapNumber = 0;
  int32_t EngineSeconds = 0;
  std::array<int32_t, 3> EngineDistance{};
  int32_t FullLoadSeconds = 0;
  int32_t TotalRevs = 0;
  uint16_t MaxRpm = 0;
  std::array<LogbookBand, 8> LogbookBands{};
  FixedText<16> SystemName;  // "ECU" in it: 8 KB memory pages
  FixedText<8> Version;
  FixedText<16> Driver;
  FixedText<16> TrackName;
  FixedText<8> Chassis;
  FixedText<32> Comment1;
  FixedText<32> Comment2;
  std::array<PulseInput, 8> PulseInputs{};
  int16_t TrackLength = 0;
  FixedText<16> EngineName;
  uint16_t EngineNumber = 0;
  std::array<LogbookLimit, 8> LogbookLimits{};
  uint16_t DisplayFlags = 0;
  std::array<int32_t, kMaxBeacons> BeaconTimes{};
  uint16_t LoggedChannels = 0;
  std::array<ExpansionEntry, 16> ExpansionMap{};
  std::array<ChannelTableEntry, kMaxLoggedChannels> ChannelTable{};
  std::array<FixedText<16>, 64> InputNames{};
  std::array<int32_t, 9> BandLimits{};
  uint16_t BandCount = 0;
  std::array<InputCalibration, 64> InputCalibrations{};
  std::array<LinearCalibration, 32> LinearCalibrations{};
  WeatherBlock Weather;
  VehicleBlock Vehicle;
  std::array<EcuCalibration, 64> EcuCalibrations{};

  // The whole record as read: carried bytes live here.
  std::array<uint8_t, kOutingHeaderSize> Raw{};
};

template <>
struct Layout<OutingHeader> {
  static constexpr int kSize = kOutingHeaderSize;
  using H = OutingHeader;
  static constexpr auto kFields = std::tuple{
      Field{"Checksum", 0, &H::Checksum},
      Field{"MemoryBlocks", 2, &H::MemoryBlocks},
      Field{"LcuSerial", 4, &H::LcuSerial},
      Field{"RunSeconds", 6, &H::RunSeconds},
      Field{"Resets", 8, &H::Resets},
      // 10: 8 bytes carried
      Field{"OutingDistance", 18, &H::OutingDistance},
      Field{"Firmware", 22, &H::Firmware},
      Field{"StartFileTime", 24, &H::StartFileTime},
      // 32: 2 bytes carried
      Field{"SystemFlags", 34, &H::SystemFlags},
      // 36: Text 28 carried
      Field{"EndTime", 64, &H::EndTime},
      // 68: 4 bytes carried
      Field{"Cyclic", 72, &H::Cyclic},
      Field{"BeaconCount", 74, &H::BeaconCount},
      Field{"SessionNumber", 76, &H::SessionNumber},
      Field{"RunNumber", 78, &H::RunNumber},
      Field{"LastOutingNumber", 80, &H::LastOutingNumber},
      Field{"RawEndTime", 82, &H::RawEndTime},
      // 86: 38 bytes carried
      Field{"FirstLapNumber", 124, &H::FirstLapNumber},
      // 126: 2 bytes carried
      Field{"EngineSeconds", 128, &H::EngineSeconds},
      Field{"EngineDistance", 132, &H::EngineDistance},
      Field{"FullLoadSeconds", 144, &H::FullLoadSeconds},
      Field{"TotalRevs", 148, &H::TotalRevs},
      Field{"MaxRpm", 152, &H::MaxRpm},
      // 154: Text 6 carried
      Field{"LogbookBands", 160, &H::LogbookBands},
      Field{"SystemName", 256, &H::SystemName},
      Field{"Version", 272, &H::Version},
      Field{"Driver", 280, &H::Driver},
      Field{"TrackName", 296, &H::TrackName},
      Field{"Chassis", 312, &H::Chassis},
      Field{"Comment1", 320, &H::Comment1},
      Field{"Comment2", 352, &H::Comment2},
      // 384: 10 bytes carried
      Field{"PulseInputs", 394, &H::PulseInputs},
      Field{"TrackLength", 442, &H::TrackLength},
      // 444..511: carried
      Field{"EngineName", 512, &H::EngineName},
      Field{"EngineNumber", 528, &H::EngineNumber},
      Field{"LogbookLimits", 530, &H::LogbookLimits},
      // 594..719: carried
      Field{"DisplayFlags", 720, &H::DisplayFlags},
      // 722..1279: carried
      Field{"BeaconTimes", 1280, &H::BeaconTimes},
      Field{"LoggedChannels", 2304, &H::LoggedChannels},
      // 2306..2351: carried
      Field{"ExpansionMap", 2352, &H::ExpansionMap},
      // 2480..2559: carried
      Field{"ChannelTable", 2560, &H::ChannelTable},
      // 4096..6015: carried
      Field{"InputNames", 6016, &H::InputNames},
      // 7040: 36 bytes carried
      Field{"BandLimits", 7076, &H::BandLimits},
      Field{"BandCount", 7112, &H::BandCount},
      // 7114..8191: carried
      Field{"InputCalibrations", 8192, &H::InputCalibrations},
      // 14592: Text 256 carried
      Field{"LinearCalibrations", 14848, &H::LinearCalibrations},
      // 15104: Text 120 carried
      Field{"Weather", 15224, &H::Weather},
      Field{"Vehicle", 15288, &H::Vehicle},
      // 15336: Text 24 carried
      Field{"EcuCalibrations", 15360, &H::EcuCalibrations},
  };
};

static_assert(LayoutIsSound<ChannelTableEntry>());
static_assert(LayoutIsSound<InputCalibration>());
static_assert(LayoutIsSound<EcuCalibration>());
static_assert(LayoutIsSound<WeatherBlock>());
static_assert(LayoutIsSound<VehicleBlock>());
static_assert(LayoutIsSound<OutingHeader>());
static_assert(FileSize<decltype(OutingHeader::ChannelTable)>() == 128 * 12);
static_assert(FileSize<decltype(OutingHeader::InputCalibrations)>() == 64 * 100);

// Reads the header of an outing file. A file shorter than the header reads as zeros at its end
// (the format has no length check); `error` is set only when the file cannot be read at all.
bool ReadOutingHeader(const QString& path, OutingHeader& out, QString* error = nullptr);

// Writes the header back over the first 16,384 bytes of an existing file, atomically: the rest
// of the file is kept byte for byte.
bool WriteOutingHeader(const QString& path, OutingHeader& header, QString* error = nullptr);

// Header bytes in memory, for writers that build a whole file.
const std::array<uint8_t, kOutingHeaderSize>& OutingHeaderBytes(OutingHeader& header);
void OutingHeaderFromBytes(OutingHeader& header, const uint8_t* data, std::size_t size);
