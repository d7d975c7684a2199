// The math and constants commands of the main window, and their pictures.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>

#include "ui/ConstantsDialog.h"
#include "ui/Dialogs.h"
#include "ui/EditMathDialog.h"
#include "ui/Screenshots.h"

void EditMathChannels(DialogHost& host) {
  EditMathDialog dialog(host);
  dialog.exec();
}

void EditConstants(DialogHost& host) {
  ConstantsDialog dialog(host);
  dialog.exec();
}

void MathScreenshots(DialogHost& host, const Screenshot& shot) {
  // The editors are shown without a loop of their own so that their menus can open the small
  // windows; each of those is closed as by Cancel and nothing is saved.
  {
    EditMathDialog editor(host);
    editor.show();
    QApplication::processEvents();
    shot(&editor, QStringLiteral("frmEditMath"));
    const struct {
      const char* menu;
      const char* name;
    } forms[] = {{"mnuDefineNew", "frmNewMath"}, {"mnuSelectChannel", "frmChlMath"}, {"mnuScales", "frmMathScales"}};
    for (const auto& f : forms) {
      ShootModal(shot, QString::fromLatin1(f.name), [&] {
        if (QAction* a = editor.Menu(f.menu)) a->trigger();
      });
    }
    ShootModal(shot, QStringLiteral("frmChlList"), [&] {
      if (auto* b = editor.findChild<QAbstractButton*>("cmdChannel")) b->click();
    });
    editor.hide();
  }
  ConstantsDialog constants(host);
  constants.show();
  QApplication::processEvents();
  shot(&constants, QStringLiteral("frmConstants"));
  ShootModal(shot, QStringLiteral("frmNewConst"), [&] {
    if (QAction* a = constants.Menu("mnuAddConstant")) a->trigger();
  });
  constants.hide();
}
