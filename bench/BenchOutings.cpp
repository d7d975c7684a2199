#include "BenchOutings.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "core/app/Files.h"
#include "core/app/Startup.h"
#include "core/demo/DemoInstall.h"

BenchHome& TheBenchHome() {
  static QTemporaryDir dir;
  static BenchHome home = [] {
    BenchHome h;
    h.home = dir.path();
    DemoResult result;
    QString error;
    if (!CreateDemoInstallation(h.home, h.messages, result, &error)) {
      std::fprintf(stderr, "demo: %s\n", qUtf8Printable(error));
      std::exit(1);
    }
    h.outing = JoinPath(JoinPath(h.home, "Data"), "SILV0101.DAT");
    h.ws = std::make_unique<Workspace>(h.messages, h.home);
    StartUp(*h.ws, false);
    return h;
  }();
  return home;
}
