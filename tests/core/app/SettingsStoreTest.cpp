#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <memory>

#include "core/app/Options.h"
#include "core/app/Paths.h"
#include "core/app/SettingsStore.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace {

// Folder sections ("UserOptions\F3") and the palette live below "UserOptions": listing a section
// must give its own keys only, or a reader of "UserOptions" would see the folders' keys.
TEST(SettingsStore, SectionsWithABackslashAreLevelsBelowTheirParent) {
  QTemporaryDir dir;
  SettingsStore s(dir.path());
  EXPECT_EQ(s.Read(kAppAnalysis, "UserOptions", "ZoomPercent", "50"), "50");
  s.Write(kAppAnalysis, "UserOptions", "ZoomPercent", "40");
  EXPECT_EQ(s.Read(kAppAnalysis, "UserOptions", "ZoomPercent", "50"), "40");
  EXPECT_EQ(s.Read(kAppFamily, "UserOptions", "ZoomPercent", "50"), "50");  // another application
  s.Write(kAppAnalysis, "UserOptions", "StatusBar", "True");
  s.Write(kAppAnalysis, "UserOptions\\F3", "HistoBins", "30");
  s.Write(kAppAnalysis, "Indicators\\F1", "Name\\B3", "Pit Limiter");

  QStringList top = s.ListSection(kAppAnalysis, "UserOptions");
  top.sort();
  EXPECT_EQ(top, QStringList({"StatusBar", "ZoomPercent"}));
  EXPECT_EQ(s.ListSection(kAppAnalysis, "UserOptions\\F3"), QStringList({"HistoBins"}));
  EXPECT_TRUE(s.ListSection(kAppAnalysis, "UserOptions\\F4").isEmpty());
  EXPECT_EQ(s.Read(kAppAnalysis, "UserOptions\\F3", "ZoomPercent", "-"), "-");

  // Another store on the same folder (another program of the family) sees it after a sync.
  s.SyncAll();
  SettingsStore other(dir.path());
  EXPECT_EQ(other.Read(kAppAnalysis, "UserOptions\\F3", "HistoBins", ""), "30");
  EXPECT_EQ(other.Read(kAppAnalysis, "Indicators\\F1", "Name\\B3", ""), "Pit Limiter");
}

// What one run writes at its end is what the next run starts with; the paths go where the
// downloader and the other programs find them ("Orlan Vector", "Paths").
TEST(SettingsStore, WhatShutDownSavesIsReadByTheNextStart) {
  QTemporaryDir home;
  QTemporaryDir elsewhere;
  RecordingMessages messages;
  auto first = std::make_unique<Workspace>(messages, home.path());
  ReadPaths(*first);
  ReadRegistryData(*first);
  first->Paths.MathDirectory = elsewhere.path() + "/Formulas";
  first->Options.ZoomPercent = 35;
  FolderRec& f3 = first->FolderTable[2];
  f3.Name = "Wet Test";
  f3.Options.UpdateOnNewData = true;
  f3.Options.Bits[3].Name = "Pit Limiter";
  ShutDown(*first);

  auto second = std::make_unique<Workspace>(messages, home.path());
  EXPECT_EQ(second->Settings.Read(kAppFamily, "Paths", "MathDirectory", ""), first->Paths.MathDirectory);
  ReadPaths(*second);
  ReadRegistryData(*second);
  EXPECT_EQ(second->Paths.MathDirectory, first->Paths.MathDirectory);
  EXPECT_TRUE(QFileInfo(second->Paths.MathDirectory).isDir());
  EXPECT_EQ(second->Options.ZoomPercent, 35);
  const FolderRec& g3 = second->FolderTable[2];
  EXPECT_EQ(g3.Name, "Wet Test");
  EXPECT_TRUE(g3.Options.UpdateOnNewData);
  EXPECT_EQ(g3.Options.Bits[3].Name, "Pit Limiter");
  // The neighbours keep their own values.
  EXPECT_EQ(second->FolderTable[3].Name, "Folder4");
  EXPECT_FALSE(second->FolderTable[1].Options.UpdateOnNewData);
}

}  // namespace
