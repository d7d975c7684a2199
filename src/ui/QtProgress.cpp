#include "ui/QtProgress.h"

#include <QApplication>

void QtProgress::Begin(const QString& title, int total, bool can_cancel) {
  if (depth_++ > 0) return;
  dialog_ = new QProgressDialog(title, can_cancel ? QStringLiteral("Cancel") : QString(), 0, std::max(total, 1), parent_);
  dialog_->setWindowTitle(title);
  dialog_->setWindowModality(Qt::WindowModal);
  dialog_->setMinimumDuration(500);
  dialog_->setAutoClose(false);
  dialog_->setValue(0);
}

bool QtProgress::Step(int done, const QString& what) {
  if (depth_ != 1 || !dialog_) return true;
  if (!what.isEmpty()) dialog_->setLabelText(what);
  dialog_->setValue(std::min(done, dialog_->maximum()));  // also keeps the window answering
  return !dialog_->wasCanceled();
}

void QtProgress::End() {
  if (--depth_ > 0) return;
  delete dialog_;
}
