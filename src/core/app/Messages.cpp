#include "core/app/Messages.h"

#include <cstdio>

void StderrMessages::Show(const QString& text, const QString& title, MessageIcon) {
  std::fprintf(stderr, "%s: %s\n", qUtf8Printable(title), qUtf8Printable(text));
}

bool StderrMessages::Ask(const QString& text, const QString& title) {
  std::fprintf(stderr, "%s: %s %s\n", qUtf8Printable(title), qUtf8Printable(text), answer_ ? "yes" : "no");
  return answer_;
}

void RecordingMessages::Show(const QString& text, const QString& title, MessageIcon icon) {
  entries.push_back({text, title, icon, false});
}

bool RecordingMessages::Ask(const QString& text, const QString& title) {
  entries.push_back({text, title, MessageIcon::Question, true});
  if (answers.empty()) return false;
  const bool a = answers.front();
  answers.pop_front();
  return a;
}
