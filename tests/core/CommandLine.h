#pragma once

// Runs the `orlan` program as a script would, for the tests of its commands.

#include <QProcess>
#include <QStringList>
#include <string>

namespace test_outings {

struct Outcome {
  int exit_code = -1;
  std::string out;
  std::string err;
};

inline Outcome Orlan(const QStringList& args) {
  QProcess p;
  p.start(QStringLiteral(ORLAN_BINARY), args);
  p.waitForFinished(60000);
  return {p.exitCode(), p.readAllStandardOutput().toStdString(), p.readAllStandardError().toStdString()};
}

}  // namespace test_outings
