#pragma once

// Messages and questions as message boxes over the main window.

#include "core/app/Messages.h"

class QWidget;

class QtMessages : public Messages {
 public:
  void Show(const QString& text, const QString& title, MessageIcon icon) override;
  bool Ask(const QString& text, const QString& title) override;
  QWidget* Parent = nullptr;  // the main window once it exists
};
