#pragma once

// The progress of long work as a dialog over the main window, shown only when the work passes
// half a second; nested work shows in the outermost dialog.

#include <QPointer>
#include <QProgressDialog>

#include "core/app/Progress.h"

class QtProgress : public Progress {
 public:
  explicit QtProgress(QWidget* parent) : parent_(parent) {}
  void Begin(const QString& title, int total, bool can_cancel) override;
  bool Step(int done, const QString& what) override;
  void End() override;

 private:
  QWidget* parent_;
  QPointer<QProgressDialog> dialog_;
  int depth_ = 0;
};
