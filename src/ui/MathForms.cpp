#include "ui/MathForms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/compute/frmConstants.h"
#include "core/compute/frmEditMath.h"
#include "core/compute/frmMathScales.h"
#include "core/compute/frmNewMath.h"
#include "render/QtSurface.h"

namespace {

QLineEdit* NamedEdit(const char* name, const QString& text = QString()) {
  auto* edit = new QLineEdit(text);
  edit->setObjectName(QLatin1String(name));
  return edit;
}

std::vector<MathDefRec> TableOf(const frmEditMath& editor) {
  std::vector<MathDefRec> rows;
  for (int r = 0; r < editor.MathCount(); ++r) rows.push_back(editor.Row(r));
  return rows;
}

QString RowText(const MathDefRec& row) {
  return QStringLiteral("%1  %2").arg(row.ID, 3, 10, QLatin1Char('0')).arg(row.Name.trimmed());
}

// "Export Math (*.TXT)|*.TXT" as Qt writes it. Files copied off other systems may have their
// extension in lower case, so both cases are offered.
QString QtFilter(const QString& filter, QString* extension = nullptr) {
  const QStringList parts = filter.split(QLatin1Char('|'));
  QStringList out;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString pattern = parts[i + 1].trimmed();
    const QString name = parts[i].left(parts[i].indexOf(QLatin1Char('('))).trimmed();
    out << QStringLiteral("%1 (%2 %3)").arg(name, pattern, pattern.toLower());
    if (extension && extension->isEmpty()) *extension = pattern.mid(pattern.lastIndexOf(QLatin1Char('.')) + 1);
  }
  return out.join(QStringLiteral(";;"));
}

QIcon Swatch(const Workspace& ws, int index) {
  QPixmap box(24, 14);
  box.fill(QtSurface::ToQColor(ws.Palette[static_cast<std::size_t>(index)]));
  return QIcon(box);
}

}  // namespace

FormDialog::FormDialog(QWidget* parent, const QString& name, const QString& title) : dialog(parent) {
  dialog.setObjectName(name);
  dialog.setWindowTitle(title);
  body = new QVBoxLayout(&dialog);
  buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, [this] {
    if (!accept_if || accept_if()) dialog.accept();
  });
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
}

bool FormDialog::Run() {
  body->addWidget(buttons);
  return dialog.exec() == QDialog::Accepted;
}

QString AskMathName(QWidget* parent, Workspace& ws, const frmEditMath& editor, bool rename) {
  const int skip = rename ? editor.CurrentRow() : -1;
  FormDialog d(parent, QStringLiteral("frmNewMath"), rename ? QStringLiteral("Rename Function") : frmNewMath::kCaption);
  auto* id = new QLabel(rename ? editor.StatusID() : frmNewMath(editor.NextID()).lblID());
  id->setObjectName(QStringLiteral("lblID"));
  QLineEdit* name = NamedEdit("txtName", rename ? editor.Row(skip).Name.trimmed() : QString());
  name->setMaxLength(kNameWidth);
  name->setMinimumWidth(280);
  d.body->addWidget(id);
  d.body->addWidget(new QLabel(QStringLiteral("Name :")));
  d.body->addWidget(name);
  d.accept_if = [&] { return !frmNewMath::CheckName(ws, name->text(), TableOf(editor), skip).isEmpty(); };
  return d.Run() ? name->text() : QString();
}

std::vector<int> ChooseMathRows(QWidget* parent, const frmEditMath& editor, const QString& title, bool multiple) {
  FormDialog d(parent, QStringLiteral("frmChlMath"), title);
  auto* list = new QListWidget;
  list->setObjectName(QStringLiteral("lstMath"));
  list->setSelectionMode(multiple ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
  list->setMinimumSize(300, 320);
  for (int r = 0; r < editor.MathCount(); ++r) list->addItem(RowText(editor.Row(r)));
  if (multiple) {
    list->selectAll();
  } else if (editor.MathCount() > 0) {
    list->setCurrentRow(editor.CurrentRow());
  }
  d.body->addWidget(list);
  if (multiple) {
    auto* all = d.buttons->addButton(QStringLiteral("Select &All"), QDialogButtonBox::ActionRole);
    all->setObjectName(QStringLiteral("cmdSelectAll"));
    QObject::connect(all, &QPushButton::clicked, list, &QListWidget::selectAll);
  } else {
    QObject::connect(list, &QListWidget::itemDoubleClicked, &d.dialog, &QDialog::accept);
  }
  if (!d.Run()) return {};
  std::vector<int> rows;
  for (int r = 0; r < list->count(); ++r) {
    if (list->item(r)->isSelected()) rows.push_back(r);
  }
  return rows;
}

QString ChooseOperand(QWidget* parent, Workspace& ws) {
  FormDialog d(parent, QStringLiteral("frmChlList"), QStringLiteral("Channels and Constants"));
  QLineEdit* filter = NamedEdit("txtFilter");
  filter->setPlaceholderText(QStringLiteral("Filter"));
  auto* list = new QListWidget;
  list->setObjectName(QStringLiteral("lstChannel"));
  list->setMinimumSize(300, 360);
  list->addItems(frmEditMath::ChannelList(ws));
  if (list->count() > 0) list->setCurrentRow(0);
  QObject::connect(filter, &QLineEdit::textChanged, list, [list](const QString& text) {
    for (int r = 0; r < list->count(); ++r) list->item(r)->setHidden(!list->item(r)->text().contains(text, Qt::CaseInsensitive));
  });
  QObject::connect(list, &QListWidget::itemDoubleClicked, &d.dialog, &QDialog::accept);
  d.body->addWidget(filter);
  d.body->addWidget(list);
  if (!d.Run() || list->currentItem() == nullptr || list->currentItem()->isHidden()) return {};
  return list->currentItem()->text();
}

bool EditMathScales(QWidget* parent, Workspace& ws, const QString& name) {
  frmMathScales form;
  if (!form.Form_Load(ws, name)) return false;
  FormDialog d(parent, QStringLiteral("frmMathScales"), form.Caption());
  QLineEdit* units = NamedEdit("txtUnits", form.txtUnits);
  units->setMaxLength(16);
  QLineEdit* min = NamedEdit("txtMin", form.txtMin);
  QLineEdit* max = NamedEdit("txtMax", form.txtMax);
  auto* automatic = new QCheckBox(QStringLiteral("&Scale from the lap's values"));
  automatic->setObjectName(QStringLiteral("chkAutoScale"));
  automatic->setChecked(form.chkAutoScale);
  auto* decimals = new QComboBox;
  decimals->setObjectName(QStringLiteral("cboDecimals"));
  for (int n = 0; n <= frmMathScales::kMaxDecimals; ++n) decimals->addItem(QString::number(n));
  decimals->setCurrentIndex(form.cboDecimals);
  auto* colour = new QComboBox;
  colour->setObjectName(QStringLiteral("cboColor"));
  // Numbered as the palette's entries are, "00" to "19".
  for (int i = 0; i < kPaletteSize; ++i)
    colour->addItem(Swatch(ws, i), QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0')));
  colour->setCurrentIndex(form.Color);
  auto* grid = new QFormLayout;
  grid->addRow(QStringLiteral("&Units :"), units);
  grid->addRow(QStringLiteral("M&inimum :"), min);
  grid->addRow(QStringLiteral("M&aximum :"), max);
  grid->addRow(QString(), automatic);
  grid->addRow(QStringLiteral("&Decimals :"), decimals);
  grid->addRow(QStringLiteral("&Colour :"), colour);
  d.body->addLayout(grid);
  d.accept_if = [&] {
    form.txtUnits = units->text();
    form.txtMin = min->text();
    form.txtMax = max->text();
    form.chkAutoScale = automatic->isChecked();
    form.cboDecimals = decimals->currentIndex();
    form.Color = colour->currentIndex();
    return form.cmdOK(ws);
  };
  return d.Run();
}

bool AskNewConstant(QWidget* parent, Workspace& ws, QString& name, QString& value) {
  FormDialog d(parent, QStringLiteral("frmNewConst"), QStringLiteral("New Constant"));
  QLineEdit* txt_name = NamedEdit("txtName", QStringLiteral("New"));
  txt_name->setMaxLength(kNameWidth);
  txt_name->selectAll();
  QLineEdit* link = NamedEdit("txtLink");
  link->setMinimumWidth(280);
  link->setPlaceholderText(QStringLiteral("a number, or a link as topic!item"));
  auto* grid = new QFormLayout;
  grid->addRow(QStringLiteral("&Name :"), txt_name);
  grid->addRow(QStringLiteral("&Value/Link :"), link);
  d.body->addLayout(grid);
  d.accept_if = [&] { return !frmNewConst::CheckName(ws, txt_name->text()).isEmpty(); };
  if (!d.Run()) return false;
  name = txt_name->text();
  value = link->text();
  return true;
}

QString AskSaveFile(QWidget* parent, const QString& title, const QString& filter, const QString& dir) {
  QString extension;
  const QString qt_filter = QtFilter(filter, &extension);
  QString path = QFileDialog::getSaveFileName(parent, title, dir, qt_filter);
  if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty() && !extension.isEmpty()) path += QLatin1Char('.') + extension;
  return path;
}

QString AskOpenFile(QWidget* parent, const QString& title, const QString& filter, const QString& dir) {
  return QFileDialog::getOpenFileName(parent, title, dir, QtFilter(filter));
}
