#pragma once

// The *.MAP file: a 4,096-byte header and 30-byte points to the end of the file, and the older
// layout without the magic (1,024-byte header, 18-byte points).

#include <array>
#include <cstdint>

#include "core/outing/BinaryRecord.h"

inline constexpr int kTrackHeaderSize = 4096;
inline constexpr int kTrackPointSize = 30;
inline constexpr int kOldTrackHeaderSize = 1024;
inline constexpr int kOldTrackPointSize = 18;
inline constexpr int kOldTrackKeepEvery = 20;  // the older maps held a point every 1/20 unit
inline constexpr char kTrackMagic[] = "ZOL Track Header";

struct TrackHeader {
  FixedText<32> Magic;
  FixedText<16> OutingName;  // for the main window's title; the loader doesn't read it
  int16_t CreateMode = 0;
  int32_t TrackLength = 0;
  float TrackHeading = 0;
  float TrackMinX = 0, TrackMinY = 0, TrackMaxX = 0, TrackMaxY = 0;
  int16_t FirstSegmentKind = 0;
  int16_t SegmentCount = 0;
  std::array<int32_t, 128> SegmentStart{};
  int16_t SplitCount = 0;
  std::array<int32_t, 128> SplitPoints{};
  int16_t LapDisplayMode = 0;
  float OfficialLength = 0;
  FixedText<32> TrackComment;
  FixedText<32> TrackName;
  std::array<FixedText<16>, 64> Reserved{};
  FixedText<1898> ReservedTail;
  std::array<uint8_t, kTrackHeaderSize> Raw{};
};

template <>
struct Layout<TrackHeader> {
  static constexpr int kSize = kTrackHeaderSize;
  using H = TrackHeader;
  static constexpr auto kFields = std::tuple{
      Field{"Magic", 0, &H::Magic},
      Field{"OutingName", 32, &H::OutingName},
      Field{"CreateMode", 48, &H::CreateMode},
      Field{"TrackLength", 50, &H::TrackLength},
      Field{"TrackHeading", 54, &H::TrackHeading},
      Field{"TrackMinX", 58, &H::TrackMinX},
      Field{"TrackMinY", 62, &H::TrackMinY},
      Field{"TrackMaxX", 66, &H::TrackMaxX},
      Field{"TrackMaxY", 70, &H::TrackMaxY},
      Field{"FirstSegmentKind", 74, &H::FirstSegmentKind},
      Field{"SegmentCount", 76, &H::SegmentCount},
      Field{"SegmentStart", 78, &H::SegmentStart},
      Field{"SplitCount", 590, &H::SplitCount},
      Field{"SplitPoints", 592, &H::SplitPoints},
      Field{"LapDisplayMode", 1104, &H::LapDisplayMode},
      Field{"OfficialLength", 1106, &H::OfficialLength},
      Field{"TrackComment", 1110, &H::TrackComment},
      Field{"TrackName", 1142, &H::TrackName},
      Field{"Reserved", 1174, &H::Reserved},
      Field{"ReservedTail", 2198, &H::ReservedTail},
  };
};

struct TrackPointRecord {
  float X = 0;
  float Y = 0;
  int16_t SampleIndex = 0;
  int16_t Corner = 0;
  int32_t Distance = 0;
  int16_t Mark = 0;
  float Lat = 0, Long = 0, Alt = 0;
};

template <>
struct Layout<TrackPointRecord> {
  static constexpr int kSize = kTrackPointSize;
  using P = TrackPointRecord;
  static constexpr auto kFields = std::tuple{
      Field{"X", 0, &P::X},           Field{"Y", 4, &P::Y},
      Field{"SampleIndex", 8, &P::SampleIndex}, Field{"Corner", 10, &P::Corner},
      Field{"Distance", 12, &P::Distance},      Field{"Mark", 16, &P::Mark},
      Field{"Lat", 18, &P::Lat},      Field{"Long", 22, &P::Long},
      Field{"Alt", 26, &P::Alt},
  };
};

struct OldTrackHeader {
  int32_t TrackLength = 0;
  float TrackHeading = 0;
  int16_t TrackMinX = 0, TrackMinY = 0, TrackMaxX = 0, TrackMaxY = 0;
  int16_t FirstSegmentKind = 0;
  int16_t SegmentCount = 0;
  std::array<int32_t, 64> SegmentStart{};
  int16_t SplitCount = 0;
  std::array<int32_t, 64> SplitPoints{};
  int16_t LapDisplayMode = 0;
  float OfficialLength = 0;
  FixedText<32> TrackComment;
  FixedText<32> TrackName;
};

template <>
struct Layout<OldTrackHeader> {
  static constexpr int kSize = kOldTrackHeaderSize;
  using H = OldTrackHeader;
  static constexpr auto kFields = std::tuple{
      Field{"TrackLength", 0, &H::TrackLength},
      Field{"TrackHeading", 4, &H::TrackHeading},
      Field{"TrackMinX", 8, &H::TrackMinX},
      Field{"TrackMinY", 10, &H::TrackMinY},
      Field{"TrackMaxX", 12, &H::TrackMaxX},
      Field{"TrackMaxY", 14, &H::TrackMaxY},
      Field{"FirstSegmentKind", 16, &H::FirstSegmentKind},
      Field{"SegmentCount", 18, &H::SegmentCount},
      Field{"SegmentStart", 20, &H::SegmentStart},
      Field{"SplitCount", 276, &H::SplitCount},
      Field{"SplitPoints", 278, &H::SplitPoints},
      Field{"LapDisplayMode", 534, &H::LapDisplayMode},
      Field{"OfficialLength", 536, &H::OfficialLength},
      Field{"TrackComment", 540, &H::TrackComment},
      Field{"TrackName", 572, &H::TrackName},
  };
};

struct OldTrackPointRecord {
  float X = 0;
  float Y = 0;
  int16_t SampleIndex = 0;
  int16_t Corner = 0;
  int32_t Distance = 0;
  int16_t Mark = 0;
};

template <>
struct Layout<OldTrackPointRecord> {
  static constexpr int kSize = kOldTrackPointSize;
  using P = OldTrackPointRecord;
  static constexpr auto kFields = std::tuple{
      Field{"X", 0, &P::X},       Field{"Y", 4, &P::Y},         Field{"SampleIndex", 8, &P::SampleIndex},
      Field{"Corner", 10, &P::Corner}, Field{"Distance", 12, &P::Distance}, Field{"Mark", 16, &P::Mark},
  };
};

static_assert(LayoutIsSound<TrackHeader>());
static_assert(LayoutIsSound<TrackPointRecord>());
static_assert(LayoutIsSound<OldTrackHeader>());
static_assert(LayoutIsSound<OldTrackPointRecord>());
static_assert(FileSize<decltype(TrackHeader::Reserved)>() == 1024);
