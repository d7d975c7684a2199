#pragma once

// Work that can pass half a second tells how far it is: the window shows a progress dialog
// (with Cancel where stopping leaves nothing half-done), the command line and the tests nothing.
// An operation opens a ProgressScope over its steps; the steps are whole units (an outing
// loaded, an outing compiled), so a cancel only ever falls between two of them.

#include <QString>

struct Workspace;

class Progress {
 public:
  virtual ~Progress() = default;
  virtual void Begin(const QString& title, int total, bool can_cancel) = 0;
  // `done` of the total are finished; false when the person cancelled.
  virtual bool Step(int done, const QString& what) = 0;
  virtual void End() = 0;
};

class ProgressScope {
 public:
  // Nothing is shown when the workspace has no Progress (the command line, the tests).
  ProgressScope(Workspace& ws, const QString& title, int total, bool can_cancel);
  ~ProgressScope();
  ProgressScope(const ProgressScope&) = delete;
  ProgressScope& operator=(const ProgressScope&) = delete;
  // After `done` steps, the next being `what`: false when the person asked to stop.
  bool Step(int done, const QString& what = QString());

 private:
  Progress* progress_;
};
