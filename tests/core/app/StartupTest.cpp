#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <array>
#include <memory>
#include <vector>

#include "core/app/Paths.h"
#include "core/app/SettingsStore.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/outing/ChannelDescriptors.h"

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace {

void WriteFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile f(path);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
  f.write(bytes);
}

// An installation's CHANNEL.DSC with a few records, in the default setup directory.
void InstallDescriptors(const QString& home, int records = 3) {
  ChannelDescriptorFile file;
  file.Head.DscTitle = "Channel File";
  file.Head.DscVersion = "8.0";
  file.Head.GroupNames[0] = "Analog";
  for (int i = 0; i < records; ++i) file.Records.push_back(NewChannelDescriptor(QStringLiteral("Ch%1").arg(i), i));
  WriteFile(DefaultPaths(home).SetupDirectory + "/CHANNEL.DSC", ChannelDescriptorFileBytes(file));
}

std::vector<RecordingMessages::Entry> WithTitle(const RecordingMessages& m, const QString& title) {
  std::vector<RecordingMessages::Entry> found;
  for (const auto& e : m.entries) {
    if (e.title == title) found.push_back(e);
  }
  return found;
}

TEST(StartUp, EndsWhenTheDescriptorFileIsMissing) {
  QTemporaryDir home;
  RecordingMessages messages;
  Workspace ws(messages, home.path());
  EXPECT_FALSE(StartUp(ws));
  const auto shown = WithTitle(messages, "Read Channels");
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].text, "Error: Channel descriptor file not found");
  EXPECT_EQ(shown[0].icon, MessageIcon::Exclamation);
}

TEST(StartUp, FirstStartShowsTheDocumentedDefaults) {
  QTemporaryDir home;
  InstallDescriptors(home.path());
  RecordingMessages messages;
  auto ws = std::make_unique<Workspace>(messages, home.path());
  ASSERT_TRUE(StartUp(*ws));

  EXPECT_EQ(ws->VersionText, "8.0.0");
  EXPECT_EQ(ws->Title, "Orlan Vector - Analysis - (8.0.0)");
  EXPECT_EQ(ws->ChannelDscCount, 3);
  EXPECT_EQ(ws->UserLevels, (std::array<QString, 4>{"Anyone", "Engine Builder", "ZOL Technician", "Supervisor"}));
  EXPECT_TRUE(ws->Options.ProcessBeacon);
  EXPECT_EQ(ws->Options.ZoomPercent, 50);
  // The shipped guide is installed into the home: no warning.
  EXPECT_TRUE(WithTitle(messages, "Load Help").empty());
  EXPECT_TRUE(ws->HelpFilePath.endsWith("/Help/index.html"));

  for (int f = 0; f < kFolderCount; ++f) {
    const FolderRec& folder = ws->FolderTable[static_cast<std::size_t>(f)];
    SCOPED_TRACE(f);
    EXPECT_EQ(folder.InUse, f == 0 ? -1 : 0);  // only folder 1 is in use
    EXPECT_EQ(folder.Name, QStringLiteral("Folder%1").arg(f + 1));
    EXPECT_EQ(folder.TrackCorrection, 2);
    EXPECT_EQ(folder.Options.AxisXYChannel, "System Speed");
  }
}

TEST(StartUp, HelpFileDependsOnTheProgram) {
  // Without its .chm the analysis program falls back on the guide it ships; here none is shipped.
  QTemporaryDir no_guide;
  qputenv("ORLAN_HELP_DIR", no_guide.path().toLocal8Bit());
  const std::tuple<const char*, const char*, bool> cases[] = {  // program, file there, found
      {"Data Analysis", "Tallyrun2.chm", true}, {"System Editor", "VantorHelp.chm", true},
      {"System Editor", "Tallyrun2.chm", false}, {"Data Analysis", "VantorHelp.chm", false},
  };
  for (const auto& [program, file, found] : cases) {
    QTemporaryDir home;
    WriteFile(home.path() + '/' + file, "help");
    RecordingMessages messages;
    Workspace ws(messages, home.path());
    const QString path = HelpFile(ws, program);
    EXPECT_EQ(path.isEmpty() ? "" : QFileInfo(path).fileName(), found ? file : "") << program << " with " << file;
    EXPECT_EQ(WithTitle(messages, "Load Help").size(), found ? 0u : 1u) << program << " with " << file;
  }
  qunsetenv("ORLAN_HELP_DIR");
}

// The downloader and the telemetry receiver announce a file through "New" and "File" of their
// section "Download"; Timer1 picks it up.
TEST(Timer1Poll, LoadsAnnouncedFilesIntoTheFoldersThatAskForThem) {
  // Per folder 1 and 2: in use, holds an outing, updates on new data, updates on telemetry.
  using Folder = std::array<bool, 4>;
  struct Case {
    const char* announcer;  // nullptr: nothing announced
    Folder folders[2];
    std::vector<int> loaded;
  } cases[] = {
      {kAppUsb, {{true, true, false, false}, {}}, {}},
      {kAppUsb, {{true, false, true, false}, {}}, {}},            // the folder holds no outing
      {kAppUsb, {{true, true, true, false}, {true, true, true, false}}, {0, 1}},
      {kAppUsb, {{true, true, false, false}, {false, true, true, false}}, {}},  // not in use
      {nullptr, {{true, true, true, true}, {}}, {}},
      {kAppTelemetry, {{true, true, false, true}, {}}, {0}},
      {kAppTelemetry, {{true, true, true, false}, {}}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    QTemporaryDir home;
    InstallDescriptors(home.path());
    RecordingMessages messages;
    auto ws = std::make_unique<Workspace>(messages, home.path());
    ASSERT_TRUE(StartUp(*ws));
    for (int f = 0; f < 2; ++f) {
      FolderRec& folder = ws->FolderTable[static_cast<std::size_t>(f)];
      folder.InUse = c.folders[f][0] ? -1 : 0;
      folder.Options.UpdateOnNewData = c.folders[f][2];
      folder.Options.UpdateOnTelemData = c.folders[f][3];
    }
    const QString announced = home.path() + "/Data/NEW0001.DAT";
    SettingsStore other(ws->Settings.Folder());  // the announcing program's own store
    if (c.announcer) {
      other.WriteBool(c.announcer, "Download", "New", true);
      other.Write(c.announcer, "Download", "File", announced);
      other.Sync(c.announcer);
    }
    std::vector<int> loaded;
    DownloadHandler handler;
    handler.HoldsOuting = [&](int f) { return f < 2 && c.folders[f][1]; };
    handler.LoadNewFile = [&](int f, const QString& path) {
      EXPECT_EQ(path, announced);
      loaded.push_back(f);
    };
    EXPECT_EQ(Timer1Poll(*ws, handler), static_cast<int>(c.loaded.size()));
    EXPECT_EQ(loaded, c.loaded);
    // The flag goes back to False whether or not a folder took the file; the next tick loads nothing.
    if (c.announcer) {
      EXPECT_EQ(SettingsStore(ws->Settings.Folder()).Read(c.announcer, "Download", "New", ""), "False");
    }
    EXPECT_EQ(Timer1Poll(*ws, handler), 0);
  }
}

}  // namespace
