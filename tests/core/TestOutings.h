#pragma once

// What the outing, channel and lap tests share: a workspace started on a temporary home that
// holds the factory CHANNEL.DSC, small outing files written with the program's own writer, and
// short demo outings whose truth the lap simulator knows.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <functional>
#include <map>
#include <cmath>
#include <memory>
#include <ostream>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "core/app/Files.h"
#include "core/app/Messages.h"
#include "core/app/Paths.h"
#include "core/app/Startup.h"
#include "core/app/Workspace.h"
#include "core/compute/MathDefinitions.h"
#include "core/demo/DemoInstall.h"
#include "core/demo/DemoOutings.h"
#include "core/demo/FactoryDescriptors.h"
#include "core/outing/ChannelDescriptors.h"
#include "core/outing/ConstantsBlock.h"
#include "core/outing/OpenOuting.h"
#include "core/outing/OutingFormat.h"
#include "core/outing/OutingWriter.h"

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace test_outings {

// A workspace with no files behind it, for the routines that work on records alone.
struct BareWorkspace {
  QTemporaryDir dir;
  RecordingMessages messages;
  Workspace ws{messages, dir.path()};
  OutingRec& Outing(int slot = 0) { return ws.FolderTable[0].Outings[static_cast<std::size_t>(slot)]; }
};

// A home holding the factory CHANNEL.DSC (or only its first `records` records) and a workspace
// started on it as the command line starts it.
class TestHome {
 public:
  explicit TestHome(int records = kKeyedDescriptorCount) {
    const QString setup = DefaultPaths(dir_.path()).SetupDirectory;
    QDir().mkpath(setup);
    ChannelDescriptorFile dsc = FactoryChannelDescriptors();
    dsc.Records.resize(static_cast<std::size_t>(std::min<int>(records, static_cast<int>(dsc.Records.size()))));
    WriteFileAtomically(JoinPath(setup, kChannelDscFileName), ChannelDescriptorFileBytes(dsc));
    ws_ = std::make_unique<Workspace>(messages, dir_.path());
    started = StartUp(*ws_, false);
    EXPECT_TRUE(started);
    ws_->KeepRecentFiles = true;  // loads here stand for the window's
  }
  Workspace& ws() { return *ws_; }
  QString Path(const QString& name) const { return dir_.filePath(name); }
  OutingRec& Outing(int slot) { return ws_->FolderTable[0].Outings[static_cast<std::size_t>(slot)]; }

  // Opens `path` into `slot` of folder 0.
  bool Load(int slot, const QString& path) {
    ws_->CurFolder = 0;
    ws_->CurOuting = static_cast<int16_t>(slot);
    return OpenOuting(*ws_, path);
  }

  RecordingMessages messages;
  bool started = false;

 private:
  QTemporaryDir dir_;
  std::unique_ptr<Workspace> ws_;
};

// The last message shown, or an empty entry.
inline RecordingMessages::Entry LastMessage(const RecordingMessages& m) {
  return m.entries.empty() ? RecordingMessages::Entry{} : m.entries.back();
}

// A logger header of the current version with nothing logged yet.
inline OutingHeader SmallHeader(int32_t end_time_ms) {
  OutingHeader h;
  h.MemoryBlocks = 64;
  h.LcuSerial = 4711;
  h.SystemName = QStringLiteral("ORLAN LOGGER");
  h.Version = QStringLiteral("8.2.1");
  h.EndTime = end_time_ms;
  return h;
}

// A channel block holding `values`, stored as the type that word size and key give.
inline ChannelBlockData Block(uint16_t key, uint8_t rate_code, uint8_t word_size, const std::vector<double>& values,
                              uint16_t lcu_serial = 4711) {
  ChannelBlockData b;
  b.Key = key;
  b.RateCode = rate_code;
  b.WordSize = word_size;
  b.Samples = EncodeSamples(SampleTypeFor(word_size, key, lcu_serial), values);
  return b;
}

inline std::vector<double> Ramp(int count, double first, double step) {
  std::vector<double> v(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) v[static_cast<std::size_t>(i)] = first + step * i;
  return v;
}

inline bool WriteOuting(const QString& path, const OutingHeader& header, const std::vector<ChannelBlockData>& blocks) {
  QString error;
  const bool ok = WriteOutingFile(path, header, blocks, nullptr, &error);
  EXPECT_TRUE(ok) << error.toStdString();
  return ok;
}

// One math definition, and small outings of a speed channel (10 Hz, 6 s) loaded into `slots` in
// that order; the outing in slot 0 carries `constants` when given. The math directory exists.
inline void LoadSpeedOutings(TestHome& home, const QString& math_line, std::initializer_list<int> slots,
                             const std::vector<ConstantEntry>* constants = nullptr) {
  Workspace& ws = home.ws();
  QDir().mkpath(ws.Paths.MathDirectory);
  ws.MathDefs[0].Line = math_line;
  ws.MathCount = 1;
  ProcessMathDefs(ws);
  for (int slot : slots) {
    const QString path = home.Path(QStringLiteral("OUT%1.DAT").arg(slot));
    QString error;
    EXPECT_TRUE(WriteOutingFile(path, SmallHeader(5990), {Block(68, 3, 2, Ramp(600, 0, 10))},
                                slot == 0 ? constants : nullptr, &error)) << error.toStdString();
    EXPECT_TRUE(home.Load(slot, path));
  }
}

// A writer killed at any moment leaves the old file or the new one, never a mix: a child calls
// write(0), write(1), ... (alternating between two contents) until it is killed at varying moments.
inline void ExpectKilledWriterLeavesOldOrNew(const QString& path, const std::function<void(int)>& write) {
  auto bytes = [&] {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
  };
  write(0);
  const QByteArray first = bytes();
  write(1);
  const QByteArray second = bytes();
  ASSERT_NE(first, second);
  for (int round = 0; round < 12; ++round) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      for (int k = 0;; ++k) write(k);
    }
    usleep(static_cast<useconds_t>(2000 + round * 2800));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    const QByteArray now = bytes();
    EXPECT_TRUE(now == first || now == second) << "round " << round;
  }
}

// A demo outing cut to a few timed laps, written to `dir`.
struct DemoOuting {
  DemoOutingSpec recipe;
  SimulatedOuting sim;
  QString path;
};

inline DemoOuting MakeDemoOuting(const QString& file_name, const QString& dir, int flying_laps) {
  DemoOuting d;
  for (const DemoOutingSpec& s : DemoOutingSpecs()) {
    if (s.FileName == file_name) d.recipe = s;
  }
  EXPECT_EQ(d.recipe.FileName, file_name);
  d.recipe.FlyingLaps = flying_laps;
  Centreline line;
  QString error;
  EXPECT_TRUE(ReadDrivenLine(JoinPath(ShippedDataDirectory(), "tracks"), d.recipe.Circuit, line, &error))
      << error.toStdString();
  SimulationOptions options;
  options.flying_laps = flying_laps;
  options.seed = d.recipe.Seed;
  d.sim = SimulateOuting(line, CarModel{}, options);
  d.path = JoinPath(dir, file_name);
  EXPECT_TRUE(WriteDemoOuting(d.recipe, d.sim, d.path, &error)) << error.toStdString();
  return d;
}

// A demo outing written once for the whole run, for the tests that only read it.
inline const DemoOuting& SharedDemoOuting(const QString& file_name, int flying_laps) {
  static QTemporaryDir dir;
  static std::map<std::pair<QString, int>, std::unique_ptr<DemoOuting>> made;
  std::unique_ptr<DemoOuting>& d = made[{file_name, flying_laps}];
  if (!d) {
    const QString laps = QString::number(flying_laps);  // the same name with other laps
    QDir(dir.path()).mkpath(laps);
    d = std::make_unique<DemoOuting>(MakeDemoOuting(file_name, dir.filePath(laps), flying_laps));
  }
  return *d;
}

// The time at which sample i of a lap's fetch was taken: a fetch starts at sample
// Floor(rate x start) of the block, and sample n of a demo block was taken at n / rate.
inline int SampleTimeMs(int32_t lap_start, float rate, int64_t i) {
  const double first = std::floor(static_cast<double>(rate) * lap_start);
  return static_cast<int>(std::nearbyint((first + static_cast<double>(i)) / static_cast<double>(rate)));
}

}  // namespace test_outings
