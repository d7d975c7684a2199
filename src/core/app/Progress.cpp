#include "core/app/Progress.h"

#include "core/app/Workspace.h"

ProgressScope::ProgressScope(Workspace& ws, const QString& title, int total, bool can_cancel) : progress_(ws.progress) {
  if (progress_) progress_->Begin(title, total, can_cancel);
}

ProgressScope::~ProgressScope() {
  if (progress_) progress_->End();
}

bool ProgressScope::Step(int done, const QString& what) { return !progress_ || progress_->Step(done, what); }
