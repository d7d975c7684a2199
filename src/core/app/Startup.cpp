#include "core/app/Startup.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "core/app/Version.h"
#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

constexpr char kRecentSection[] = "RecentFiles";
constexpr char kPaletteSection[] = "UserOptions\\Palette";
constexpr char kDownloadSection[] = "Download";
constexpr int kMaxRecentFiles = 16;

QString PaletteKey(int i) { return QStringLiteral("Color%1").arg(i, 2, 10, QLatin1Char('0')); }

int PollOne(Workspace& ws, const char* app, bool FolderOptions::*update, const DownloadHandler& handler) {
  ws.Settings.Sync(app);  // the other program wrote since the last tick
  if (!ws.Settings.ReadBool(app, kDownloadSection, "New", false)) return 0;
  const QString path = ws.Settings.Read(app, kDownloadSection, "File", QString());
  int loads = 0;
  for (int f = 0; f < kFolderCount; ++f) {
    const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(f)];
    if (folder.InUse == 0 || !(folder.Options.*update) || !handler.HoldsOuting(f)) continue;
    handler.LoadNewFile(f, path);
    ++loads;
  }
  ws.Settings.WriteBool(app, kDownloadSection, "New", false);
  ws.Settings.Sync(app);
  return loads;
}

}  // namespace

QString ProgramVersionText() {
  const QString text = QStringLiteral("%1.%2.%3").arg(kVersionMajor).arg(kVersionMinor).arg(kVersionPatch);
  return text.left(8).trimmed();  // kept in an 8-character field
}

bool StartUp(Workspace& ws, bool for_window) {
  ws.VersionText = ProgramVersionText();
  ws.Title = QStringLiteral("Orlan Vector - Analysis - (") + ws.VersionText + ')';
  if (for_window) ws.HelpFilePath = HelpFile(ws, QStringLiteral("Data Analysis"));
  ReadPaths(ws, for_window);
  ws.CurFolder = 0;
  ws.CurOuting = 0;
  ReadRegistryData(ws);
  if (!for_window) {
    ws.Options.AlwaysConvert = false;
    ws.KeepRecentFiles = false;
  }
  if (!ReadChannelDescriptors(ws)) return false;
  LoadMathChannels(ws);
  ProcessMathDefs(ws);
  LoadGlobalConstants(ws);
  ReadPalette(ws);
  if (for_window) LoadReports(ws);
  ws.UserLevels = {QStringLiteral("Anyone"), QStringLiteral("Engine Builder"), QStringLiteral("ZOL Technician"),
                   QStringLiteral("Supervisor")};
  for (FolderRec& folder : ws.FolderTable) InitFolder(folder);
  ws.FolderTable[0].InUse = -1;
  return true;
}

void ShutDown(Workspace& ws) {
  SaveRegistryData(ws);
  WritePaths(ws);
}

QString HelpFile(Workspace& ws, const QString& program_name) {
  QString name;
  if (program_name == QLatin1String("Data Analysis") || program_name == QLatin1String("Configuration")) {
    name = QStringLiteral("Tallyrun2.chm");
  } else if (program_name == QLatin1String("System Editor")) {
    name = QStringLiteral("VantorHelp.chm");
  }
  const QString path = JoinPath(ws.Home, name);
  if (!name.isEmpty() && QFileInfo::exists(path)) return path;
  // The user's guide this program ships, as HTML: the analysis program's help.
  const QString guide = name == QLatin1String("Tallyrun2.chm") ? InstallHelp(ws) : QString();
  if (guide.isEmpty()) {
    ws.messages.Show(QStringLiteral("Warning : No HTML Help file found"), QStringLiteral("Load Help"),
                     MessageIcon::Exclamation);
  }
  return guide;
}

QString ShippedHelpDirectory() {
  const QByteArray env = qgetenv("ORLAN_HELP_DIR");
  if (!env.isEmpty()) return QString::fromLocal8Bit(env);
  if (QCoreApplication::instance()) {
    const QString installed = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/orlan/help"));
    if (QFileInfo::exists(JoinPath(installed, QStringLiteral("index.html")))) return QDir::cleanPath(installed);
  }
  return QStringLiteral(ORLAN_SOURCE_HELP_DIR);
}

QString InstallHelp(Workspace& ws) {
  const QDir from(ShippedHelpDirectory());
  const QDir to(JoinPath(ws.Home, QStringLiteral("Help")));
  QDirIterator files(from.path(), QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QFileInfo source(files.next());
    const QString target = to.filePath(from.relativeFilePath(source.filePath()));
    const QFileInfo installed(target);
    // A newer program brings a newer guide; a guide that is there already stays otherwise.
    if (installed.exists() && installed.size() == source.size() && installed.lastModified() >= source.lastModified()) continue;
    QDir().mkpath(installed.path());
    QFile::remove(target);
    QFile::copy(source.filePath(), target);
  }
  const QString index = to.filePath(QStringLiteral("index.html"));
  return QFileInfo::exists(index) ? index : QString();
}

void ReadPalette(Workspace& ws) {
  for (int i = 0; i < kPaletteSize; ++i) {
    ws.Palette[static_cast<std::size_t>(i)] =
        ws.Settings.ReadInt(kAppAnalysis, kPaletteSection, PaletteKey(i), kDefaultPalette[static_cast<std::size_t>(i)]);
  }
}

void SavePalette(Workspace& ws) {
  for (int i = 0; i < kPaletteSize; ++i) {
    ws.Settings.WriteInt(kAppAnalysis, kPaletteSection, PaletteKey(i), ws.Palette[static_cast<std::size_t>(i)]);
  }
}

QStringList ReadRecentFiles(const Workspace& ws) {
  QStringList files;
  for (int i = 1;; ++i) {
    const QString path = ws.Settings.Read(kAppAnalysis, kRecentSection, QStringLiteral("RecentFile%1").arg(i), QString());
    if (path.isEmpty()) break;
    files << path;
  }
  return files;
}

void AddRecentFile(Workspace& ws, const QString& path) {
  if (!ws.KeepRecentFiles) return;
  QStringList files = ReadRecentFiles(ws);
  const int old_count = static_cast<int>(files.size());
  files.removeAll(path);
  files.prepend(path);
  while (files.size() > kMaxRecentFiles) files.removeLast();
  for (int i = 0; i < files.size(); ++i) {
    ws.Settings.Write(kAppAnalysis, kRecentSection, QStringLiteral("RecentFile%1").arg(i + 1), files[i]);
  }
  for (int i = static_cast<int>(files.size()); i < old_count; ++i) {
    ws.Settings.DeleteKey(kAppAnalysis, kRecentSection, QStringLiteral("RecentFile%1").arg(i + 1));
  }
}

int Timer1Poll(Workspace& ws, const DownloadHandler& handler) {
  return PollOne(ws, kAppUsb, &FolderOptions::UpdateOnNewData, handler) +
         PollOne(ws, kAppTelemetry, &FolderOptions::UpdateOnTelemData, handler);
}
