#include "core/track/TrackFile.h"

#include "../TestOutings.h"
#include "core/outing/BinaryRecord.h"
#include "core/track/TrackCreate.h"
#include "core/track/TrackFormat.h"

using namespace test_outings;

namespace {

// A map file of `points` points whose X is the point's number, written byte by byte as the
// format says, with `magic` in the header.
QByteArray MapBytes(int points, const char* magic, int16_t segments = 2) {
  TrackHeader h;
  h.Magic = QString::fromLatin1(magic);
  h.TrackLength = 4321;
  h.TrackMinX = -5, h.TrackMaxX = 95, h.TrackMinY = -10, h.TrackMaxY = 40;
  h.SegmentCount = segments;
  h.SegmentStart[1] = 100, h.SegmentStart[2] = 200;
  h.SplitCount = 1;
  h.SplitPoints[1] = 150;
  h.TrackName = QStringLiteral("Club");
  QByteArray b(kTrackHeaderSize + points * kTrackPointSize, '\0');
  EncodeRecordBytes(h, reinterpret_cast<uint8_t*>(b.data()));
  for (int i = 0; i < points; ++i) {
    TrackPointRecord p{static_cast<float>(i), 2, 0, static_cast<int16_t>(i % 2 ? -1 : 0), i, 0, 0, 0, 0};
    EncodeRecordBytes(p, reinterpret_cast<uint8_t*>(b.data()) + kTrackHeaderSize + i * kTrackPointSize);
  }
  return b;
}

TEST(TrackFileTest, LoadsEveryPointAndTheTables) {
  const std::tuple<const char*, int, int, int> cases[] = {
      {"ZOL Track Header", 0, 0, 0},   {"ZOL Track Header", 7, 0, 7},  {"zol track header", 5, 0, 5},
      {"  ZOL TRACK HEADER", 3, 0, 3}, {"ZOL Track Header", 3, 16, 4}, {"ZOL Track Header", 3, 14, 3}};
  for (const auto& [magic, points, extra_bytes, expected] : cases) {
    BareWorkspace b;
    const QString path = b.dir.filePath("A.MAP");
    QByteArray bytes = MapBytes(points, magic);
    bytes.append(extra_bytes, '\x01');
    ASSERT_TRUE(WriteFileAtomically(path, bytes));
    ASSERT_TRUE(LoadTrackFile(b.ws, path)) << magic;
    EXPECT_TRUE(b.ws.TrackLoaded);
    EXPECT_EQ(b.ws.Track.PointCount, expected) << magic << " " << points << "+" << extra_bytes;
    EXPECT_EQ(b.ws.TrackLength, 4321);
    EXPECT_EQ(b.ws.Track.SegmentStart, (std::vector<int32_t>{0, 100, 200}));
    EXPECT_EQ(b.ws.Track.SplitPoints, (std::vector<int32_t>{0, 150}));
    EXPECT_EQ(b.ws.Track.TrackName, QStringLiteral("Club"));
    EXPECT_TRUE(points <= 2 || b.ws.Track.TrackPoints[2].X == 2.0f);
  }
}

TEST(TrackFileTest, OlderLayoutKeepsOnePointInTwenty) {
  BareWorkspace b;
  QByteArray bytes(kOldTrackHeaderSize + 45 * kOldTrackPointSize, '\0');
  OldTrackHeader h;
  h.TrackLength = 45;
  h.TrackMaxX = 30;
  h.SegmentCount = 1;
  h.SegmentStart[1] = 12;
  EncodeRecordBytes(h, reinterpret_cast<uint8_t*>(bytes.data()));
  for (int i = 0; i < 45; ++i) {
    OldTrackPointRecord p{static_cast<float>(i), 0, 0, 0, i, 0};
    EncodeRecordBytes(p, reinterpret_cast<uint8_t*>(bytes.data()) + kOldTrackHeaderSize + i * kOldTrackPointSize);
  }
  const QString path = b.dir.filePath("OLD.MAP");
  ASSERT_TRUE(WriteFileAtomically(path, bytes));
  ASSERT_TRUE(LoadTrackFile(b.ws, path));
  ASSERT_EQ(b.ws.Track.PointCount, 3);
  EXPECT_EQ(b.ws.Track.TrackPoints[1].Distance, 20);
  EXPECT_EQ(b.ws.Track.TrackPoints[2].Distance, 40);
  EXPECT_EQ(b.ws.Track.TrackMaxX, 30.0f);
  EXPECT_EQ(b.ws.Track.SegmentStart, (std::vector<int32_t>{0, 12}));
}

TEST(TrackFileTest, BadFilesLeaveNoMapAndSaySo) {
  const std::tuple<const char*, QByteArray, bool, const char*> cases[] = {
      {"MISSING.MAP", {}, false, "Can't open file: "},
      {"SEGS.MAP", MapBytes(4, "ZOL Track Header", 128), true, "Not a valid track map: "},
      {"NEG.MAP", MapBytes(4, "ZOL Track Header", -1), true, "Not a valid track map: "},
      {"SHORT.MAP", QByteArray(100, 'x'), true, "Not a valid track map: "}};
  for (const auto& [name, bytes, write, message_start] : cases) {
    BareWorkspace b;
    const QString path = b.dir.filePath(QString::fromLatin1(name));
    ASSERT_TRUE(!write || WriteFileAtomically(path, bytes));
    b.ws.FolderTable[0].TrackFile = path;
    b.ws.TrackLoaded = true;
    EXPECT_FALSE(LoadTrackFile(b.ws, path)) << name;
    EXPECT_FALSE(b.ws.TrackLoaded);
    EXPECT_TRUE(b.ws.FolderTable[0].TrackFile.isEmpty());
    ASSERT_FALSE(b.messages.entries.empty());
    EXPECT_EQ(b.messages.entries.back().text, QString::fromLatin1(message_start) + path);
    EXPECT_EQ(b.messages.entries.back().title, QStringLiteral("Load Track"));
  }
}

// One map in memory, the folder's in view: a folder without one stretches nothing, and a map that
// fails to load leaves no stretch of the one before.
TEST(TrackFileTest, TheFolderInViewHoldsItsOwnMap) {
  BareWorkspace b;
  const QString good = b.dir.filePath("GOOD.MAP");
  ASSERT_TRUE(WriteFileAtomically(good, MapBytes(4, "ZOL Track Header")));
  for (int f : {0, 1}) {
    OutingRec& o = b.ws.FolderTable[static_cast<std::size_t>(f)].Outings[0];
    o.Loaded = -1;
    o.LastLap = 1;
    o.Laps = {LapRec{}, LapRec{}};
    o.Laps[1].StartDistance = 4300;  // the map is 4321: half a percent longer
  }
  b.ws.FolderTable[0].TrackFile = good;
  LoadFolderTrack(b.ws);
  EXPECT_TRUE(b.ws.TrackLoaded);
  EXPECT_FLOAT_EQ(b.Outing().Laps[0].DistanceScale, 4321.0f / 4300.0f);
  b.ws.CurFolder = 1;
  LoadFolderTrack(b.ws);
  EXPECT_FALSE(b.ws.TrackLoaded);
  EXPECT_EQ(b.ws.FolderTable[1].Outings[0].Laps[0].DistanceScale, 1.0f);
  b.ws.CurFolder = 0;
  LoadFolderTrack(b.ws);
  EXPECT_EQ(b.ws.Track.LoadedPath, good);
  EXPECT_FALSE(SelectTrackFile(b.ws, b.dir.filePath("NONE.MAP")));
  EXPECT_EQ(b.Outing().Laps[0].DistanceScale, 1.0f);
}

TEST(TrackFileTest, WrittenMapReadsBackAsItWasMade) {
  BareWorkspace b;
  TrackState& t = b.ws.Track;
  t.TrackPoints = {{1.5f, -2.5f, 3, -1, 0, 0, 52.1f, -1.02f, 150}, {2.5f, -3.5f, 4, 0, 1, 0, 52.2f, -1.03f, 151}};
  t.PointCount = 2;
  t.CreateMode = 2;
  t.SegmentCount = 1, t.SegmentStart = {0, 1};
  t.SplitCount = 1, t.SplitPoints = {0, 1};
  t.TrackName = QStringLiteral("Test");
  b.ws.TrackLength = 2;
  const QString path = b.dir.filePath("W.MAP");
  ASSERT_TRUE(WriteFileAtomically(path, TrackFileBytes(b.ws, QStringLiteral("SILV0101"))));
  EXPECT_EQ(QFileInfo(path).size(), kTrackHeaderSize + 2 * kTrackPointSize);
  BareWorkspace r;
  ASSERT_TRUE(LoadTrackFile(r.ws, path));
  ASSERT_EQ(r.ws.Track.PointCount, 2);
  const TrackPoint& p = r.ws.Track.TrackPoints[0];
  EXPECT_EQ(p.X, 1.5f);
  EXPECT_EQ(p.Corner, -1);
  EXPECT_EQ(p.Alt, 150.0f);
  EXPECT_EQ(r.ws.Track.CreateMode, 2);
  EXPECT_EQ(r.ws.Track.TrackName, QStringLiteral("Test"));
}

TEST(TrackFileTest, TrackDataRewritesTheHeaderOnly) {
  BareWorkspace b;
  const QString path = b.dir.filePath("A.MAP");
  const QByteArray before = MapBytes(50, "ZOL Track Header");
  ASSERT_TRUE(WriteFileAtomically(path, before));
  b.ws.FolderTable[0].TrackFile = path;
  ASSERT_TRUE(LoadTrackFile(b.ws, path));
  frmTrackData dialog(b.ws);
  dialog.TrackName = QString();
  EXPECT_FALSE(dialog.cmdOK());
  EXPECT_EQ(LastMessage(b.messages).text, QStringLiteral("Please enter a valid track name"));
  EXPECT_EQ(LastMessage(b.messages).title, QStringLiteral("Track Data"));
  dialog.TrackName = QStringLiteral("Club Circuit");
  dialog.Correction = 2.5;
  dialog.OfficialLength = 4.32f;
  ASSERT_TRUE(dialog.cmdOK());
  EXPECT_EQ(b.ws.FolderTable[0].TrackCorrection, 2);  // halves to even
  QFile f(path);
  ASSERT_TRUE(f.open(QIODevice::ReadOnly));
  const QByteArray after = f.readAll();
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(after.mid(kTrackHeaderSize), before.mid(kTrackHeaderSize));
  EXPECT_EQ(after.left(1106), before.left(1106));
  BareWorkspace r;
  ASSERT_TRUE(LoadTrackFile(r.ws, path));
  EXPECT_EQ(r.ws.Track.TrackName, QStringLiteral("Club Circuit"));
  EXPECT_EQ(r.ws.Track.OfficialLength, 4.32f);
}

TEST(TrackFileTest, MapNamesStayInsideTheTrackDirectory) {
  BareWorkspace b;
  b.ws.Paths.TrackDirectory = QStringLiteral("/maps");
  const std::pair<const char*, const char*> cases[] = {{"Silverstone", "/maps/Silverstone.MAP"},
                                                       {"Club.map", "/maps/Club.MAP"},
                                                       {" GP ", "/maps/GP.MAP"},
                                                       {"../../etc/x", ""},
                                                       {"a/b", ""},
                                                       {"a\\b", ""},
                                                       {"C:x", ""},
                                                       {"", ""},
                                                       {".hidden", ""}};
  for (const auto& [name, path] : cases)
    EXPECT_EQ(TrackPathFor(b.ws, QString::fromLatin1(name)), QString::fromLatin1(path)) << name;
}

}  // namespace
