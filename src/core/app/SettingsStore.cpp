#include "core/app/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <cmath>

namespace {

QString Slashed(QString s) { return s.replace(QLatin1Char('\\'), QLatin1Char('/')); }

QString KeyPath(const QString& section, const QString& key) { return Slashed(section) + '/' + Slashed(key); }

}  // namespace

SettingsStore::SettingsStore(const QString& folder) : folder_(folder) {}

SettingsStore::~SettingsStore() { SyncAll(); }

QSettings& SettingsStore::For(const QString& app) const {
  auto it = apps_.find(app);
  if (it != apps_.end()) return *it->second;
#ifdef Q_OS_WIN
  auto s = std::make_unique<QSettings>(
      QStringLiteral("HKEY_CURRENT_USER\\Software\\") + app, QSettings::NativeFormat);
#else
  const QString path = folder_ + '/' + Slashed(app) + QStringLiteral(".ini");
  auto s = std::make_unique<QSettings>(path, QSettings::IniFormat);
#endif
  return *apps_.emplace(app, std::move(s)).first->second;
}

QString SettingsStore::Read(const QString& app, const QString& section, const QString& key, const QString& def) const {
  const QVariant v = For(app).value(KeyPath(section, key));
  return v.isValid() ? v.toString() : def;
}

void SettingsStore::Write(const QString& app, const QString& section, const QString& key, const QString& value) {
  For(app).setValue(KeyPath(section, key), value);
}

QStringList SettingsStore::ListSection(const QString& app, const QString& section) const {
  QSettings& s = For(app);
  s.beginGroup(Slashed(section));
  QStringList keys = s.childKeys();
  s.endGroup();
  return keys;
}

void SettingsStore::DeleteKey(const QString& app, const QString& section, const QString& key) {
  For(app).remove(KeyPath(section, key));
}

bool SettingsStore::ReadBool(const QString& app, const QString& section, const QString& key, bool def) const {
  const QString v = Read(app, section, key, QString()).trimmed();
  if (v.isEmpty()) return def;
  if (v.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) return true;
  if (v.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) return false;
  bool ok = false;
  const double d = v.toDouble(&ok);
  return ok ? d != 0 : def;
}

int SettingsStore::ReadInt(const QString& app, const QString& section, const QString& key, int def) const {
  bool ok = false;
  const double d = Read(app, section, key, QString()).trimmed().toDouble(&ok);
  if (!ok || !(d > -2147483648.0 && d < 2147483648.0)) return def;
  return static_cast<int>(std::nearbyint(d));
}

double SettingsStore::ReadDouble(const QString& app, const QString& section, const QString& key, double def) const {
  bool ok = false;
  const double d = Read(app, section, key, QString()).trimmed().toDouble(&ok);
  return ok && std::isfinite(d) ? d : def;
}

void SettingsStore::WriteBool(const QString& app, const QString& section, const QString& key, bool value) {
  Write(app, section, key, value ? QStringLiteral("True") : QStringLiteral("False"));
}

void SettingsStore::WriteInt(const QString& app, const QString& section, const QString& key, int value) {
  Write(app, section, key, QString::number(value));
}

void SettingsStore::WriteDouble(const QString& app, const QString& section, const QString& key, double value) {
  Write(app, section, key, QString::number(value, 'g', 9));
}

void SettingsStore::Sync(const QString& app) { For(app).sync(); }

void SettingsStore::SyncAll() {
  for (auto& [name, s] : apps_) s->sync();
}
