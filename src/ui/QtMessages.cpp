#include "ui/QtMessages.h"

#include <QMessageBox>

void QtMessages::Show(const QString& text, const QString& title, MessageIcon icon) {
  QMessageBox::Icon box = QMessageBox::NoIcon;
  switch (icon) {
    case MessageIcon::Critical: box = QMessageBox::Critical; break;
    case MessageIcon::Question: box = QMessageBox::Question; break;
    case MessageIcon::Exclamation: box = QMessageBox::Warning; break;
    case MessageIcon::Information: box = QMessageBox::Information; break;
    case MessageIcon::None: break;
  }
  QMessageBox(box, title, text, QMessageBox::Ok, Parent).exec();
}

bool QtMessages::Ask(const QString& text, const QString& title) {
  return QMessageBox::question(Parent, title, text, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}
