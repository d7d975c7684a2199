#pragma once

// Making a map from one lap: the sample table, the integration of lateral G or gyro with its
// closing passes, the map from GPS, the segments, and saving the file.

#include <QString>
#include <cstdint>

#include "core/track/TrackSettings.h"

struct Workspace;

// Checks the channels and the beacons, builds the sample table and makes the points in
// ws.Track; false after a message (the last map stays), or when the person cancelled the
// progress (ws.Track.Stopped; the map before it is put back whole).
bool CreateTrack(Workspace& ws, int slot, int lap, const TrackSettings& s);

// Fill ws.Track.Samples from the lap; false when the lap has more rows than the table holds.
bool BuildTrackSamples(Workspace& ws, int slot, int lap, const TrackSettings& s);
bool BuildGPSTrackSamples(Workspace& ws, int slot, int lap);

// The four passes over the sample table, a step of progress each; false when the lap is too
// short, or cancelled between two passes (Track.Stopped set).
bool CalculateTrack(Workspace& ws, int slot, int lap, const TrackSettings& s);
bool CalculateGPSTrack(Workspace& ws, int slot, int lap, const TrackSettings& s);

// Segments from the corner flags of the points.
void SaveSegmentData(Workspace& ws);
// mnuCorner (corner = true) and mnuStraight: the flags of points from..to, either order.
void MarkPoints(Workspace& ws, int from, int to, bool corner);

// The file a map name gives: cut at its first ".", and only a plain name inside the track
// directory; empty when the name can't make one.
QString TrackPathFor(const Workspace& ws, const QString& name);

// SaveNewTrack: the map in ws.Track written as NAME.MAP into the track directory, with the
// outing's splits; the folder then names it and TrackChanged is set. False after a message.
bool SaveNewTrack(Workspace& ws, int slot, const QString& name, const QString& comment);

// Shared by the integrated and the GPS maps.
struct OutingRec;
struct TrackSettings;
// The row index n - 1 past the table: "Segments exceed maximum allowed" and true.
bool TooManyRows(Workspace& ws, int64_t last_row);
// TrackLength from the sample table; true (after its message) when it is below 101.
bool LengthTooShort(Workspace& ws, const OutingRec& o, int lap);
// The corner flag after a sample of this size, with hysteresis between the two limits.
int16_t CornerFlag(int16_t flag, float size, const TrackSettings& s);
