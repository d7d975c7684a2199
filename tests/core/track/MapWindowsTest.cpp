// The map windows on a small outing: one sample a second of distance and speed, a map of six
// points of which the lap never reaches the last.

#include <gtest/gtest.h>

#include <cmath>

#include "../TestOutings.h"
#include "core/plots/RecordingSurface.h"
#include "core/track/MapValues.h"
#include "core/track/TrackBands.h"
#include "core/track/frmContour.h"
#include "core/track/frmTrackReport.h"

namespace {

using namespace test_outings;

struct MapFixture {
  BareWorkspace b;
  RecordingSurface surface{9000, 6000};

  MapFixture() {
    OutingRec& o = b.Outing();
    o.Loaded = -1;
    o.FileName = QStringLiteral("TEST0101.DAT");
    o.ChanDistance = 0;
    o.ChanSpeed = 1;
    o.Channels.resize(2);
    o.LastChannel = 1;
    o.Channels[0].Name = o.Channels[0].ShortName = QStringLiteral("DISTANCE");
    o.Channels[1].Name = o.Channels[1].ShortName = QStringLiteral("SYSTEM SPEED");
    for (ChannelRec& c : o.Channels) c.Rate = 0.001f;
    o.Laps.resize(2);
    o.Laps[1].StartTime = 5000;
    o.LastLap = 1;
    for (LapRec& lap : o.Laps) lap.LapChannels.resize(2);
    const std::vector<float> samples[] = {{100, 110, 130, 160, 200}, {50, 40, 30, 60, 80}};
    for (std::size_t c = 0; c < 2; ++c) {
      o.Laps[0].LapChannels[c].Loaded = -1;
      o.Laps[0].LapChannels[c].Samples = samples[c];
    }
    o.Laps[0].StartDistance = 100;
    TrackState& t = b.ws.Track;
    const int distances[] = {0, 10, 20, 60, 90, 120};
    for (int i = 0; i < 6; ++i) {
      TrackPoint p;
      p.X = static_cast<float>(i * 100);
      p.Y = static_cast<float>((i % 2) * 100);
      p.Distance = distances[i];
      p.Corner = i >= 2 ? -1 : 0;
      t.TrackPoints.push_back(p);
    }
    t.PointCount = 6;
    t.TrackMinX = 0, t.TrackMaxX = 500, t.TrackMinY = 0, t.TrackMaxY = 100;
    t.SegmentStart = {0, 20};
    t.SegmentCount = 1;
  }
};

// A point takes the first sample whose distance reaches its own; one past the lap has none.
TEST(MapWindows, ValuesAlongTheMapAndTheSegmentsLabels) {
  MapFixture f;
  const std::vector<float> times = TimesAlongMap(f.b.ws, 0, 0);
  const std::vector<float> speeds = ValuesAlongMap(f.b.ws, 0, 0, 1, times);
  const float expected_times[] = {0, 1000, 2000, 3000, 4000};
  const float expected_speeds[] = {50, 40, 30, 60, 80};
  ASSERT_EQ(times.size(), 6u);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_FLOAT_EQ(times[i], expected_times[i]) << i;
    EXPECT_EQ(speeds[i], expected_speeds[i]) << i;
  }
  EXPECT_TRUE(std::isnan(times[5]) && std::isnan(speeds[5]));

  // A straight's fastest speed and a corner's slowest; the last segment ends with the lap.
  frmTrackReport report(f.b.ws, f.surface);
  report.DrawTrackReport();
  ASSERT_EQ(report.Labels.size(), 2u);
  EXPECT_EQ(report.Labels[0].Text, "001 : Straight - Speed : 50 - Time : 2.000");
  EXPECT_EQ(report.Labels[1].Text, "002 : Corner - Speed : 30 - Time : 3.000");
  EXPECT_TRUE(report.Caption.startsWith("Graphic Report (System Speed) : TEST0101 - ")) << report.Caption.toStdString();

  // A click on a label hides it until the hidden labels are shown again.
  EXPECT_TRUE(report.HideLabelAt(report.Labels[1].X + 10, report.Labels[1].Y + 10));
  report.DrawTrackReport();
  EXPECT_TRUE(report.Labels[1].Hidden);
  EXPECT_FALSE(report.Labels[0].Hidden);
  report.ShowHiddenLabels();
  EXPECT_FALSE(report.Labels[1].Hidden);
}

// With banding on, each line of the report takes its band's colour from the point's speed.
TEST(MapWindows, TheReportColoursTheMapByBands) {
  MapFixture f;
  f.b.ws.FolderTable[0].Options.DoBanding = true;
  frmTrackReport report(f.b.ws, f.surface);
  report.DrawTrackReport();
  std::vector<int> colours;
  for (const DrawOp& op : f.surface.Of(DrawOp::Kind::Line)) {
    if (op.width == 4) colours.push_back(op.color);
  }
  const auto& band = f.b.ws.TrackReport.BandColor;
  // Points 1..5: 40, 30, 60, 80, no value.
  EXPECT_EQ(colours, (std::vector<int>{band[0], band[0], band[1], band[1], kButtonShadowColor}));
}

// Without a distance channel both windows say so once, and title themselves as the message does.
TEST(MapWindows, NoDistanceIsSaidOnce) {
  MapFixture f;
  f.b.Outing().ChanDistance = -1;
  frmContour contour(f.b.ws, f.surface);
  frmTrackReport report(f.b.ws, f.surface);
  for (int k = 0; k < 2; ++k) {
    contour.DrawTrack();
    report.DrawTrackReport();
  }
  ASSERT_EQ(f.b.messages.entries.size(), 2u);
  for (const auto& m : f.b.messages.entries) EXPECT_EQ(m.text, "No distance data");
  EXPECT_EQ(f.b.messages.entries[0].title, "Distance Plot");
  EXPECT_EQ(f.b.messages.entries[1].title, "Track Report");
  EXPECT_EQ(contour.Caption, "Distance Plot");
  EXPECT_TRUE(report.Labels.empty());
}

TEST(MapWindows, BandLimitsMustRise) {
  const struct {
    std::array<const char*, 6> limits;
    bool accepted;
  } cases[] = {
      {{"0", "60", "120", "180", "240", "320"}, true},
      {{"0", "60", "60", "180", "240", "320"}, false},
      {{"0", "60", "x", "180", "240", "320"}, false},
  };
  for (const auto& c : cases) {
    MapFixture f;
    frmEditBands form(f.b.ws);
    EXPECT_EQ(form.cboChannel, "System Speed");
    for (std::size_t i = 0; i < 6; ++i) form.txtData[i] = QString::fromLatin1(c.limits[i]);
    EXPECT_EQ(form.cmdOK(), c.accepted);
    EXPECT_EQ(f.b.ws.TrackReport.BandData[5], c.accepted ? 320 : 250);
    EXPECT_EQ(f.b.ws.FolderTable[0].Options.DoBanding, c.accepted);
  }
}

}  // namespace
