#pragma once

// The track map in memory (one at a time) and the work tables of track creation. Held by the
// Workspace as one member; TrackLoaded and TrackLength stay on the Workspace itself because the
// lap scales and the plots read them.

#include <QString>
#include <cstdint>
#include <vector>

inline constexpr int kMaxSegments = 128;  // SegmentStart and SplitPoints entries
inline constexpr int kMaxSourceSamples = 4096;

struct TrackPoint {
  float X = 0;
  float Y = 0;
  int16_t SampleIndex = 0;  // row of SourceSample the point was made at
  int16_t Corner = 0;       // -1 corner, 0 straight
  int32_t Distance = 0;     // from the lap's start
  int16_t Mark = 0;
  float Lat = 0, Long = 0, Alt = 0;  // GPS maps only
};

// One row of the creation work table.
struct SourceSample {
  int32_t Distance = 0;  // from the lap's start, rounded
  int32_t Time = 0;      // ms from the lap's start
  float Sensor = 0;      // lateral G, or gyro degrees per second
  float Lat = 0, Long = 0, Alt = 0;
};

struct TrackState {
  std::vector<TrackPoint> TrackPoints;
  int32_t PointCount = 0;
  int16_t CreateMode = 0;  // 0 lateral G, 1 gyro, 2 GPS
  float TrackHeading = 0;
  float TrackMinX = 0, TrackMinY = 0, TrackMaxX = 1, TrackMaxY = 1;
  int16_t FirstSegmentKind = 0;
  int16_t SegmentCount = 0;              // last used index
  std::vector<int32_t> SegmentStart;     // 0..SegmentCount
  int16_t SplitCount = 0;                // last used index
  std::vector<int32_t> SplitPoints;      // 0..SplitCount
  int16_t LapDisplayMode = 0;            // 0 average speed, 1 lap time
  float OfficialLength = 0;              // km or miles
  QString TrackComment;
  QString TrackName;
  // Drawing fit
  double TrackScale = 1;
  int32_t TrackOffsetX = 0, TrackOffsetY = 0;
  // Set when a new map was saved, so the folder reloads its TrackFile.
  bool TrackChanged = false;
  QString LoadedPath;  // the file the map in memory came from

  // Creation work area
  std::vector<SourceSample> Samples;  // 0..SampleLast
  int SampleLast = -1;
  float HeadingFix = 0, XFix = 0, YFix = 0;
  int CreateLap = 0;  // lap the points were made from
  bool Stopped = false;  // the last CreateTrack was cancelled: the map before it stands
};
