#include "core/track/Laps.h"

#include "../TestOutings.h"
#include "core/track/DistanceTime.h"

namespace {

using namespace test_outings;

LapRec Row(int32_t start_time, float start_distance = 0) {
  LapRec lap;
  lap.StartTime = start_time;
  lap.StartDistance = start_distance;
  return lap;
}

std::vector<int32_t> Rows(const OutingRec& o) {
  std::vector<int32_t> rows;
  for (const LapRec& lap : o.Laps) rows.push_back(lap.StartTime);
  return rows;
}

TEST(BuildLaps, RowsFromBeacons) {
  constexpr int32_t kShift = 734512;  // a cyclic logger's running clock at the start of the data
  struct Case {
    const char* name;
    std::vector<int32_t> beacons;
    int32_t end;
    int16_t cyclic;
    int32_t raw_end;
    bool process_beacon;
    std::vector<int32_t> rows;  // 0..LastLap
  } cases[] = {
      {"no beacons", {}, 60000, 0, 0, true, {0, 59500}},
      {"no beacons, 501 ms of data", {}, 501, 0, 0, true, {0, 1}},
      {"two beacons", {10000, 20000}, 30000, 0, 0, true, {0, 10000, 20000, 29500}},
      {"last beacon 400 ms before the end", {10000, 29600}, 30000, 0, 0, true, {0, 10000, 29500}},
      {"last beacon 600 ms before the end", {10000, 29400}, 30000, 0, 0, true, {0, 10000, 29400, 29500}},
      {"beacon past the end takes the last lap's row", {10000, 20000, 25000, 40000}, 30000, 0, 0, true,
       {0, 10000, 20000, 29500}},
      {"beacon at 0", {0, 10000}, 30000, 0, 0, true, {0, 0, 10000, 29500}},
      {"cyclic", {kShift + 10000, kShift + 20000}, kShift + 30000, 4, 120000, true, {0, 10000, 20000, 29500}},
      {"cyclic beacon before the shift", {kShift - 7, kShift + 10000}, kShift + 30000, 4, 120000, true,
       {0, 0, 10000, 29500}},
      {"beacons masked", {10000, 20000}, 30000, 0, 0, false, {0, 29500}},
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.name);
    BareWorkspace b;
    b.ws.Options.ProcessBeacon = k.process_beacon;
    OutingHeader& h = b.ws.OutingHdr;
    h.BeaconCount = static_cast<uint16_t>(k.beacons.size());
    std::copy(k.beacons.begin(), k.beacons.end(), h.BeaconTimes.begin());
    h.EndTime = k.end;
    h.Cyclic = k.cyclic;
    h.RawEndTime = k.raw_end;
    OutingRec& o = b.Outing();
    o.Cyclic = k.cyclic;
    BuildLaps(b.ws, 0);
    EXPECT_EQ(o.LastLap, static_cast<int>(k.rows.size()) - 1);
    EXPECT_EQ(Rows(o), k.rows);
    if (k.cyclic > 0) {
      EXPECT_EQ(h.EndTime, 30000) << "the true end replaces the logger's";
    }
    if (!k.process_beacon) {
      EXPECT_EQ(o.FirstLap, 1);
    }
  }
}

TEST(FindFastLap, OutAndInLapsNeverCount) {
  const std::tuple<std::vector<int32_t>, int32_t, int16_t> cases[] = {  // rows, minimum lap time (s), fast lap
      {{0, 100, 150}, 0, 0},                          // three rows: no lap between out and in
      {{0, 100, 200, 250}, 0, 1},                     // the in lap is faster
      {{0, 10, 110, 205, 320}, 0, 2},                 // the out lap is faster
      {{0, 1000, 1090, 1180, 1300}, 0, 1},            // equal laps: the earlier
      {{0, 100000, 190000, 285000, 400000}, 90, 2},   // exactly the minimum lap time
      {{0, 100000, 190000, 280000, 400000}, 90, 0},   // all at or below the minimum
  };
  for (const auto& [rows, minimum_s, fast] : cases) {
    BareWorkspace b;
    b.ws.FolderTable[0].MinimumLaptime = minimum_s;
    OutingRec& o = b.Outing();
    for (int32_t t : rows) o.Laps.push_back(Row(t));
    o.LastLap = static_cast<int16_t>(rows.size() - 1);
    o.FastLap = 9;
    FindFastLap(b.ws, 0);
    EXPECT_EQ(o.FastLap, fast) << rows.size() << " rows, minimum " << minimum_s;
  }
}

TEST(ComputeLapScales, StretchesLapsCloseToTheMapLength) {
  struct Case {
    const char* name;
    bool track;
    float length;
    int16_t correction;
    float lap;  // distance of lap 0
    float scale;
  } cases[] = {
      {"0.5 % short, 1 % allowed", true, 1000, 1, 995, 1000.0f / 995},
      {"2 % long, 1 % allowed", true, 1000, 1, 1020, 1},
      {"half the map, 100 % allowed: not below the limit", true, 1000, 100, 500, 1},
      {"half the map, 101 % allowed", true, 1000, 101, 500, 2},
      {"no track", false, 1000, 5, 995, 1},
      {"distance running back", true, 1000, 5, -995, 1},
  };
  for (const Case& k : cases) {
    BareWorkspace b;
    b.ws.TrackLoaded = k.track;
    b.ws.TrackLength = k.length;
    b.ws.FolderTable[0].TrackCorrection = k.correction;
    OutingRec& o = b.Outing();
    o.Laps = {Row(0, 5000), Row(0, 5000 + k.lap), Row(0, 6000 + k.lap)};
    o.Laps[0].DistanceScale = o.Laps[1].DistanceScale = 7;
    o.LastLap = 2;
    ComputeLapScales(b.ws, 0);
    EXPECT_FLOAT_EQ(o.Laps[0].DistanceScale, k.scale) << k.name;
  }
}

// Distance counts that grow faster and faster, one a millisecond: a time between two samples
// takes the distance between them, from the sample before, and the other way round.
TEST(DistanceTime, BetweenTheSamplesAroundTheTimeOrTheDistance) {
  BareWorkspace b;
  OutingRec& o = b.Outing();
  o.ChanDistance = 0;
  o.Channels.resize(1);
  o.Channels[0].Rate = 1;
  o.Laps = {Row(0), Row(1000)};
  o.LastLap = 1;
  o.Laps[0].LapChannels.resize(1);
  o.Laps[0].LapChannels[0].Loaded = -1;
  o.Laps[0].LapChannels[0].Samples = {0, 10, 30, 60};
  EXPECT_EQ(TimeToDistance(b.ws, 0, 0, 1.5f), 20.0f);
  EXPECT_EQ(TimeToDistance(b.ws, 0, 0, 2.75f), 52.5f);
  EXPECT_EQ(DistanceToTime(b.ws, 0, 0, 20.0f), 1.5f);
  EXPECT_EQ(DistanceToTime(b.ws, 0, 0, 99.0f), 1000.0f);  // never reached: the whole lap
}

}  // namespace
