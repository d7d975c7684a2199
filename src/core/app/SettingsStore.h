#pragma once

// The settings store: (application, section, key) -> text, read with a default.
// On Windows it is the registry location that the family's programs share, so the downloader
// and the telemetry receiver see what this program writes. Elsewhere each application is one
// INI file under the settings folder: "Orlan Vector\Analysis" is "<folder>/Orlan Vector/Analysis.ini".
// Sections and keys may hold "\" as a level separator ("UserOptions\F1", "Active\B3").

#include <QSettings>
#include <QString>
#include <QStringList>
#include <map>
#include <memory>

inline constexpr char kAppFamily[] = "Orlan Vector";
inline constexpr char kAppAnalysis[] = "Orlan Vector\\Analysis";
inline constexpr char kAppUsb[] = "Orlan Vector\\USB Communications";
inline constexpr char kAppTelemetry[] = "Orlan Vector\\Telemetry";

class SettingsStore {
 public:
  explicit SettingsStore(const QString& folder);
  ~SettingsStore();
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  QString Read(const QString& app, const QString& section, const QString& key, const QString& def) const;
  void Write(const QString& app, const QString& section, const QString& key, const QString& value);
  // The keys of one section (not those of its subsections).
  QStringList ListSection(const QString& app, const QString& section) const;
  void DeleteKey(const QString& app, const QString& section, const QString& key);

  // Typed reads and writes. Booleans are stored as "True" and "False"; "-1" and other non-zero
  // numbers read as true too, as the family's older programs wrote them.
  bool ReadBool(const QString& app, const QString& section, const QString& key, bool def) const;
  int ReadInt(const QString& app, const QString& section, const QString& key, int def) const;
  double ReadDouble(const QString& app, const QString& section, const QString& key, double def) const;
  void WriteBool(const QString& app, const QString& section, const QString& key, bool value);
  void WriteInt(const QString& app, const QString& section, const QString& key, int value);
  void WriteDouble(const QString& app, const QString& section, const QString& key, double value);

  // Writes pending changes and takes in what other programs wrote since.
  void Sync(const QString& app);
  void SyncAll();

  const QString& Folder() const { return folder_; }

 private:
  QSettings& For(const QString& app) const;

  QString folder_;
  mutable std::map<QString, std::unique_ptr<QSettings>> apps_;
};
