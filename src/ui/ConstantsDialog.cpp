#include "ui/ConstantsDialog.h"

#include <QButtonGroup>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "ui/MathForms.h"

namespace {

// The Value/Link column is edited as the value itself: a link shows what it gives beside it,
// and that part is no part of the value.
class ValueDelegate : public QStyledItemDelegate {
 public:
  ValueDelegate(QObject* parent, std::function<void(int, const QString&)> commit)
      : QStyledItemDelegate(parent), commit_(std::move(commit)) {}
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    static_cast<QLineEdit*>(editor)->setText(index.data(Qt::UserRole).toString());
  }
  void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
    commit_(index.row(), static_cast<QLineEdit*>(editor)->text());
  }

 private:
  std::function<void(int, const QString&)> commit_;
};

}  // namespace

ConstantsDialog::ConstantsDialog(DialogHost& host) : QDialog(host.parent), host_(host), ws_(host.ws) {
  setObjectName(QStringLiteral("frmConstants"));
  setWindowTitle(QStringLiteral("Constants"));
  form_.Form_Load(ws_);
  auto* layout = new QVBoxLayout(this);
  auto* bar = new QMenuBar;
  layout->setMenuBar(bar);
  BuildMenus(bar);

  optGlobal_ = new QRadioButton(QStringLiteral("&Global"));
  optOuting_ = new QRadioButton(QStringLiteral("&Outing"));
  optGlobal_->setObjectName(QStringLiteral("optGlobal"));
  optOuting_->setObjectName(QStringLiteral("optOuting"));
  auto* group = new QButtonGroup(this);
  group->addButton(optGlobal_);
  group->addButton(optOuting_);
  connect(optGlobal_, &QRadioButton::clicked, this, &ConstantsDialog::optGlobal_Click);
  connect(optOuting_, &QRadioButton::clicked, this, &ConstantsDialog::optOuting_Click);
  auto* options = new QHBoxLayout;
  options->addWidget(optGlobal_);
  options->addWidget(optOuting_);
  options->addStretch(1);
  layout->addLayout(options);

  lblTable_ = new QLabel;
  lblTable_->setObjectName(QStringLiteral("lblTable"));
  layout->addWidget(lblTable_);
  lvwConst_ = new QTreeWidget;
  lvwConst_->setObjectName(QStringLiteral("lvwConst"));
  lvwConst_->setHeaderLabels(frmConstants::kColumns);
  lvwConst_->setRootIsDecorated(false);
  lvwConst_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  lvwConst_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lvwConst_->header()->resizeSection(0, 220);
  lvwConst_->setMinimumSize(520, 300);
  lvwConst_->setItemDelegateForColumn(1, new ValueDelegate(this, [this](int row, const QString& v) { SetValue(row, v); }));
  connect(lvwConst_, &QTreeWidget::itemDoubleClicked, this,
          [this](QTreeWidgetItem* item) { lvwConst_->editItem(item, 1); });
  layout->addWidget(lvwConst_, 1);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Close);
  auto* add = buttons->addButton(QStringLiteral("&Add..."), QDialogButtonBox::ActionRole);
  add->setObjectName(QStringLiteral("cmdAdd"));
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("cmdClose"));
  connect(add, &QPushButton::clicked, this, &ConstantsDialog::mnuAddConstant);
  connect(buttons, &QDialogButtonBox::accepted, this, &ConstantsDialog::cmdOK);
  connect(buttons, &QDialogButtonBox::rejected, this, &ConstantsDialog::reject);
  layout->addWidget(buttons);
  resize(600, 460);
  Fill();
}

QAction* ConstantsDialog::AddMenu(QMenu* menu, const char* name, const QString& text, void (ConstantsDialog::*run)(),
                                  const QKeySequence& key) {
  QAction* a = menu->addAction(text);
  a->setObjectName(QLatin1String(name));
  if (!key.isEmpty()) {
    a->setShortcut(key);
    addAction(a);  // a value being typed keeps its own cut, copy and paste
  }
  connect(a, &QAction::triggered, this, run);
  return a;
}

QAction* ConstantsDialog::Menu(const char* name) const { return findChild<QAction*>(QLatin1String(name)); }

void ConstantsDialog::BuildMenus(QMenuBar* bar) {
  QMenu* file = bar->addMenu(QStringLiteral("&File"));
  AddMenu(file, "mnuSave", QStringLiteral("&Save"), &ConstantsDialog::mnuSave, QKeySequence::Save);
  file->addSeparator();
  AddMenu(file, "mnuExport", QStringLiteral("&Export..."), &ConstantsDialog::mnuExport);
  AddMenu(file, "mnuImport", QStringLiteral("&Import..."), &ConstantsDialog::mnuImport);
  QMenu* edit = bar->addMenu(QStringLiteral("&Edit"));
  AddMenu(edit, "mnuAddConstant", QStringLiteral("&Add Constant..."), &ConstantsDialog::mnuAddConstant, QKeySequence::New);
  QAction* value = edit->addAction(QStringLiteral("&Edit Value"));
  value->setObjectName(QStringLiteral("mnuEditValue"));
  value->setShortcut(Qt::Key_F2);
  addAction(value);
  connect(value, &QAction::triggered, this, [this] {
    if (QTreeWidgetItem* item = lvwConst_->currentItem()) lvwConst_->editItem(item, 1);
  });
  edit->addSeparator();
  AddMenu(edit, "mnuCut", QStringLiteral("Cu&t"), &ConstantsDialog::mnuCut, QKeySequence::Cut);
  AddMenu(edit, "mnuCopy", QStringLiteral("&Copy"), &ConstantsDialog::mnuCopy, QKeySequence::Copy);
  AddMenu(edit, "mnuPaste", QStringLiteral("&Paste"), &ConstantsDialog::mnuPaste, QKeySequence::Paste);
  QMenu* tables = bar->addMenu(QStringLiteral("&Constants"));
  AddMenu(tables, "mnuCopyToGlobal", QStringLiteral("Copy to &Global"), &ConstantsDialog::mnuCopyToGlobal);
  AddMenu(tables, "mnuCopyToOuting", QStringLiteral("Copy to &Outing"), &ConstantsDialog::mnuCopyToOuting);
  tables->addSeparator();
  AddMenu(tables, "mnuRefresh", QStringLiteral("&Refresh Links"), &ConstantsDialog::mnuRefresh, QKeySequence::Refresh);
}

void ConstantsDialog::Fill() {
  const bool outing = form_.optOuting();
  optGlobal_->setChecked(!outing);
  optOuting_->setChecked(outing);
  lblTable_->setText(form_.lblTable());
  lvwConst_->clear();
  for (int r = 0; r < form_.Count(); ++r) {
    auto* item = new QTreeWidgetItem(lvwConst_, {form_.Row(r).Name.trimmed(), form_.ValueText(r)});
    item->setData(1, Qt::UserRole, form_.Row(r).Value);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
  }
  // What each table allows: rows are added and removed in the global one, and values go
  // between the tables from the outing's.
  Menu("mnuAddConstant")->setEnabled(!outing);
  Menu("mnuCut")->setEnabled(!outing);
  Menu("mnuCopyToGlobal")->setEnabled(outing);
  Menu("mnuCopyToOuting")->setEnabled(outing);
  findChild<QPushButton*>(QStringLiteral("cmdAdd"))->setEnabled(!outing);
}

std::vector<int> ConstantsDialog::Selection() const {
  std::vector<int> rows;
  for (int r = 0; r < lvwConst_->topLevelItemCount(); ++r) {
    if (lvwConst_->topLevelItem(r)->isSelected()) rows.push_back(r);
  }
  return rows;
}

void ConstantsDialog::SetValue(int row, const QString& value) {
  if (row < 0 || row >= form_.Count() || value == form_.Row(row).Value) return;
  form_.SetValue(row, value);
  QTreeWidgetItem* item = lvwConst_->topLevelItem(row);
  item->setText(1, form_.ValueText(row));
  item->setData(1, Qt::UserRole, form_.Row(row).Value);
}

void ConstantsDialog::CommitEdit() {
  // A value still being typed belongs to what is saved: taking the focus from it commits it.
  QWidget* focus = focusWidget();
  if (focus != nullptr && lvwConst_->viewport()->isAncestorOf(focus)) lvwConst_->setFocus();
}

void ConstantsDialog::optGlobal_Click() {
  if (form_.optOuting()) form_.optGlobal_Click(ws_);
  Fill();  // a refusal puts the option back
}

void ConstantsDialog::optOuting_Click() {
  if (!form_.optOuting()) form_.optOuting_Click(ws_);
  Fill();
}

void ConstantsDialog::mnuAddConstant() {
  QString name, value;
  if (!AskNewConstant(this, ws_, name, value) || !form_.AddConstant(ws_, name, value)) return;
  Fill();
  for (int r = 0; r < form_.Count(); ++r) {
    if (form_.Row(r).Name.trimmed().compare(name.trimmed(), Qt::CaseInsensitive) == 0) {
      lvwConst_->setCurrentItem(lvwConst_->topLevelItem(r));
    }
  }
}

void ConstantsDialog::mnuCopyToGlobal() {
  if (form_.mnuCopyToGlobal(ws_)) Fill();
}

void ConstantsDialog::mnuCopyToOuting() {
  if (form_.mnuCopyToOuting(ws_)) Fill();
}

void ConstantsDialog::mnuCopy() {
  const QString text = form_.mnuCopy(Selection());
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void ConstantsDialog::mnuCut() {
  const std::vector<int> rows = Selection();
  QString text;
  if (rows.empty() || !form_.mnuCut(ws_, rows, text)) return;
  QGuiApplication::clipboard()->setText(text);
  Fill();
}

void ConstantsDialog::mnuPaste() {
  const QString text = QGuiApplication::clipboard()->text();
  if (!text.isEmpty() && form_.mnuPaste(ws_, text)) Fill();
}

void ConstantsDialog::mnuExport() {
  std::vector<int> rows = Selection();
  if (rows.empty()) {  // nothing picked: the whole table
    for (int r = 0; r < form_.Count(); ++r) rows.push_back(r);
  }
  const QString path = AskSaveFile(this, frmConstants::kExportTitle, frmConstants::kExportFilter, ws_.Paths.MathDirectory);
  if (!path.isEmpty()) form_.mnuExport(ws_, rows, path);
}

void ConstantsDialog::mnuImport() {
  const QString path = AskOpenFile(this, frmConstants::kImportTitle, frmConstants::kImportFilter, ws_.Paths.MathDirectory);
  if (!path.isEmpty() && form_.mnuImport(ws_, path)) Fill();
}

void ConstantsDialog::mnuRefresh() {
  form_.mnuRefresh();
  Fill();
}

void ConstantsDialog::mnuSave() {
  CommitEdit();
  if (!form_.SaveChanges(ws_)) return;
  Fill();
  host_.Changed();
}

void ConstantsDialog::cmdOK() {
  CommitEdit();
  if (form_.Changed() && !form_.SaveChanges(ws_)) return;
  accept();
}

void ConstantsDialog::reject() {
  CommitEdit();
  if (form_.Form_QueryUnload(ws_)) QDialog::reject();
}
