#include "core/app/Paths.h"

#include <QDir>

#include "core/app/Files.h"
#include "core/app/Workspace.h"

namespace {

inline constexpr char kPathsSection[] = "Paths";

// Each key with its folder under the home ("" is the home itself).
struct PathKey {
  const char* key;
  const char* sub;
  QString PathSettings::*member;
};

constexpr PathKey kPathKeys[] = {
    {"HexDirectory", "", &PathSettings::HexDirectory},
    {"DataDirectory", "Data", &PathSettings::DataDirectory},
    {"SetupDirectory", "Setup", &PathSettings::SetupDirectory},
    {"TrackDirectory", "Track", &PathSettings::TrackDirectory},
    {"ReportDirectory", "Reports", &PathSettings::ReportDirectory},
    {"MapDirectory", "Maps", &PathSettings::MapDirectory},
    {"LibsDirectory", "Libs", &PathSettings::LibsDirectory},
    {"PathDirectory", "Data", &PathSettings::PathDirectory},
    {"MathDirectory", "Math", &PathSettings::MathDirectory},
    {"TelemDirectory", "Data\\Telem", &PathSettings::TelemDirectory},
};

QString UnderHome(const QString& home, const char* sub) {
  QString s = QString::fromLatin1(sub);
  if (s.isEmpty()) return home;
#ifdef Q_OS_WIN
  return home + '\\' + s;
#else
  return JoinPath(home, s.replace('\\', '/'));
#endif
}

}  // namespace

QString ResolveHome(const QString& override_dir) {
  if (!override_dir.isEmpty()) return QDir::cleanPath(QDir(override_dir).absolutePath());
  const QByteArray env = qgetenv("ORLAN_HOME");
  if (!env.isEmpty()) return QDir::cleanPath(QDir(QString::fromLocal8Bit(env)).absolutePath());
#ifdef Q_OS_WIN
  return QStringLiteral("C:\\Orlan Vector");
#else
  return JoinPath(QDir::homePath(), QStringLiteral("Orlan Vector"));
#endif
}

PathSettings DefaultPaths(const QString& home) {
  PathSettings p;
  for (const PathKey& k : kPathKeys) p.*(k.member) = UnderHome(home, k.sub);
  return p;
}

void ReadPaths(Workspace& ws, bool create_directories) {
  const PathSettings defaults = DefaultPaths(ws.Home);
  for (const PathKey& k : kPathKeys) {
    ws.Paths.*(k.member) = ws.Settings.Read(kAppFamily, kPathsSection, k.key, defaults.*(k.member));
  }
  if (!create_directories) return;
  QDir dir;
  for (const PathKey& k : kPathKeys) dir.mkpath(ws.Paths.*(k.member));
  dir.mkpath(UnderHome(ws.Home, "Sample"));
}

void WritePaths(Workspace& ws) {
  for (const PathKey& k : kPathKeys) ws.Settings.Write(kAppFamily, kPathsSection, k.key, ws.Paths.*(k.member));
  ws.Settings.Sync(kAppFamily);
}
