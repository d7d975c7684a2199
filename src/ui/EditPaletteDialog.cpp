// Palette: frmEditPalette, the 20 colours of the traces.

#include <QColorDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <array>

#include "core/app/Workspace.h"
#include "core/plots/frmEditPalette.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

namespace {

QString EntryText(const frmEditPalette& form, int i) {
  const QString name = form.Name(i);
  return QStringLiteral("%1  %2").arg(i, 2, 10, QLatin1Char('0')).arg(name.isEmpty() ? QStringLiteral("-") : name);
}

}  // namespace

void EditPalette(DialogHost& host) {
  frmEditPalette form(host.ws);
  Frame d(host.parent, QStringLiteral("frmEditPalette"), QStringLiteral("Edit Palette"));
  d.Body()->addWidget(new QLabel(QStringLiteral("Click a colour to change it")));
  auto* grid = new QGridLayout;
  std::array<QToolButton*, kPaletteSize> swatches{};
  std::array<QLabel*, kPaletteSize> names{};
  const auto show = [&] {
    for (int i = 0; i < kPaletteSize; ++i) {
      PaintSwatch(swatches[static_cast<std::size_t>(i)], form.Colors[static_cast<std::size_t>(i)]);
      names[static_cast<std::size_t>(i)]->setText(EntryText(form, i));
    }
  };
  for (int i = 0; i < kPaletteSize; ++i) {
    QToolButton* swatch = Swatch(form.Colors[static_cast<std::size_t>(i)], QString());
    swatch->setObjectName(QStringLiteral("picColor%1").arg(i));
    auto* name = new QLabel;
    swatches[static_cast<std::size_t>(i)] = swatch;
    names[static_cast<std::size_t>(i)] = name;
    // Two columns of ten: swatch and name side by side.
    grid->addWidget(swatch, i % 10, (i / 10) * 2);
    grid->addWidget(name, i % 10, (i / 10) * 2 + 1);
    QObject::connect(swatch, &QToolButton::clicked, [&, i] {
      const QColor c = QColorDialog::getColor(ToQColor(form.Colors[static_cast<std::size_t>(i)]), &d,
                                              QStringLiteral("Palette Colour %1").arg(i, 2, 10, QLatin1Char('0')));
      if (c.isValid() && form.SetColor(i, ToBgr(c))) show();
    });
  }
  show();
  d.Body()->addLayout(grid);
  QObject::connect(d.AddButton(QStringLiteral("cmdDefault"), QStringLiteral("&Defaults")), &QPushButton::clicked, [&] {
    form.cmdDefault();
    show();
  });
  if (d.Run([&] {
        form.cmdOK(host.ws);
        return true;
      })) {
    host.Changed();
  }
}
