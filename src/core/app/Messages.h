#pragma once

// How operations talk to the person at the machine. A failing operation shows its message with
// its title and returns false; questions come back as yes or no. The window shows message boxes,
// the command line prints to stderr, tests record.

#include <QString>
#include <deque>
#include <vector>

enum class MessageIcon { None, Critical, Question, Exclamation, Information };

class Messages {
 public:
  virtual ~Messages() = default;
  virtual void Show(const QString& text, const QString& title, MessageIcon icon) = 0;
  virtual bool Ask(const QString& text, const QString& title) = 0;
};

// Prints "title: text" to stderr; answers every question with a fixed answer.
class StderrMessages : public Messages {
 public:
  explicit StderrMessages(bool answer = false) : answer_(answer) {}
  void Show(const QString& text, const QString& title, MessageIcon icon) override;
  bool Ask(const QString& text, const QString& title) override;

 private:
  bool answer_;
};

// Keeps what was shown and asked; answers questions from a queue (no when it is empty).
class RecordingMessages : public Messages {
 public:
  struct Entry {
    QString text;
    QString title;
    MessageIcon icon = MessageIcon::None;
    bool question = false;
  };
  void Show(const QString& text, const QString& title, MessageIcon icon) override;
  bool Ask(const QString& text, const QString& title) override;

  std::vector<Entry> entries;
  std::deque<bool> answers;
};
