// Options: frmOptions, the options of the whole program.

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <map>

#include "core/app/Workspace.h"
#include "core/app/frmOptions.h"
#include "ui/ChannelDialogParts.h"
#include "ui/Dialogs.h"

using namespace channel_dialogs;

namespace {

QLineEdit* Box(const char* name, const QString& text) {
  auto* box = new QLineEdit(text);
  box->setObjectName(QString::fromLatin1(name));
  box->setMaximumWidth(80);
  return box;
}

// A swatch that opens the colour dialog on a custom colour of the theme.
QToolButton* CustomColor(QWidget* parent, const char* name, int& color) {
  QToolButton* swatch = Swatch(color, QString());
  swatch->setObjectName(QString::fromLatin1(name));
  QObject::connect(swatch, &QToolButton::clicked, [parent, swatch, &color] {
    const QColor c = QColorDialog::getColor(ToQColor(color), parent);
    if (!c.isValid()) return;
    color = ToBgr(c);
    PaintSwatch(swatch, color);
  });
  return swatch;
}

}  // namespace

void EditOptions(DialogHost& host) {
  frmOptions form(host.ws);
  Frame d(host.parent, QStringLiteral("frmOptions"), frmOptions::kTitle);
  auto* columns = new QGridLayout;
  d.Body()->addLayout(columns);

  // The check boxes, in their groups, in the order of the table.
  std::map<QString, QVBoxLayout*> groups;
  std::vector<std::pair<const frmOptions::Check*, QCheckBox*>> checks;
  for (const frmOptions::Check& c : frmOptions::kChecks) {
    const QString group = QString::fromLatin1(c.Group);
    if (groups.count(group) == 0) {
      auto* box = new QGroupBox(group);
      groups[group] = new QVBoxLayout(box);
      columns->addWidget(box, 0, static_cast<int>(groups.size()) - 1, Qt::AlignTop);
    }
    auto* check = new QCheckBox(QString::fromLatin1(c.Caption));
    check->setObjectName(QString::fromLatin1(c.Name));
    check->setChecked(form.Checked(c));
    if (c.Tip != nullptr) check->setToolTip(QString::fromLatin1(c.Tip));
    groups[group]->addWidget(check);
    checks.emplace_back(&c, check);
  }
  QLineEdit* zoom = Box("txtZoomPercent", form.txtZoomPercent);
  QLineEdit* scroll = Box("txtScrollPercent", form.txtScrollPercent);
  auto* percents = new QFormLayout;
  percents->addRow(QStringLiteral("&Zoom percent"), zoom);
  percents->addRow(QStringLiteral("Sc&roll percent"), scroll);
  groups[QStringLiteral("Graphs")]->addLayout(percents);

  auto* colours = new QGroupBox(QStringLiteral("Colours"));
  auto* colour_rows = new QFormLayout(colours);
  auto* theme = new QComboBox;
  theme->setObjectName(QStringLiteral("cboColorTheme"));
  theme->addItems(frmOptions::kThemes);
  theme->setCurrentIndex(form.Values.ColorTheme);
  QToolButton* background = CustomColor(&d, "picBackground", form.Values.CustomBackground);
  QToolButton* foreground = CustomColor(&d, "picForeground", form.Values.CustomForeground);
  colour_rows->addRow(QStringLiteral("&Theme"), theme);
  colour_rows->addRow(QStringLiteral("&Background"), background);
  colour_rows->addRow(QStringLiteral("&Foreground"), foreground);
  columns->addWidget(colours, 1, 0, 1, 3);
  const auto custom = [&] {
    form.Values.ColorTheme = theme->currentIndex();
    background->setEnabled(form.Values.ColorTheme == frmOptions::kCustomTheme);
    foreground->setEnabled(form.Values.ColorTheme == frmOptions::kCustomTheme);
  };
  custom();
  QObject::connect(theme, &QComboBox::currentIndexChanged, custom);

  const bool ok = d.Run([&] {
    for (const auto& [c, check] : checks) form.SetChecked(*c, check->isChecked());
    form.txtZoomPercent = zoom->text();
    form.txtScrollPercent = scroll->text();
    return form.cmdOK(host.ws);
  });
  if (ok) host.Changed();
}
