#include "ui/EditMathDialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "ui/MathForms.h"

EditMathDialog::EditMathDialog(DialogHost& host) : QDialog(host.parent), host_(host), ws_(host.ws) {
  setObjectName(QStringLiteral("frmEditMath"));
  setWindowTitle(QStringLiteral("Math Channels"));
  form_.Form_Load(ws_);
  auto* layout = new QVBoxLayout(this);
  auto* bar = new QMenuBar;
  layout->setMenuBar(bar);
  BuildMenus(bar);
  layout->addWidget(BuildBody(), 1);
  layout->addWidget(BuildWarning());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Close);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
  buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("cmdClose"));
  connect(buttons, &QDialogButtonBox::accepted, this, &EditMathDialog::cmdOK);
  connect(buttons, &QDialogButtonBox::rejected, this, &EditMathDialog::reject);
  layout->addWidget(buttons);
  auto* status = new QStatusBar;
  status->setSizeGripEnabled(false);
  lblID_ = new QLabel;
  lblName_ = new QLabel;
  lblID_->setObjectName(QStringLiteral("lblID"));
  lblName_->setObjectName(QStringLiteral("lblName"));
  status->addWidget(lblID_);
  status->addWidget(lblName_, 1);
  layout->addWidget(status);
  resize(760, 420);
  Push();
  txtMath_->setFocus();
}

void EditMathDialog::showEvent(QShowEvent* e) {
  QDialog::showEvent(e);
  // The first focus selects the whole formula, and the first key typed would replace it: the
  // caret goes where the editor keeps it instead, once the window has taken the focus.
  QTimer::singleShot(0, this, [this] { Push(); });
}

void EditMathDialog::keyPressEvent(QKeyEvent* e) {
  // Return in the formula validates it (returnPressed); it must not press OK as well.
  const bool enter = e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
  if (enter && txtMath_->hasFocus()) return e->accept();
  QDialog::keyPressEvent(e);
}

QAction* EditMathDialog::AddMenu(QMenu* menu, const char* name, const QString& text, void (EditMathDialog::*run)(),
                                 const QKeySequence& key) {
  QAction* a = menu->addAction(text);
  a->setObjectName(QLatin1String(name));
  if (!key.isEmpty()) {
    a->setShortcut(key);
    addAction(a);  // the key works wherever the focus is in the window
  }
  connect(a, &QAction::triggered, this, run);
  return a;
}

QAction* EditMathDialog::Menu(const char* name) const { return findChild<QAction*>(QLatin1String(name)); }

void EditMathDialog::BuildMenus(QMenuBar* bar) {
  QMenu* file = bar->addMenu(QStringLiteral("&File"));
  AddMenu(file, "mnuSave", QStringLiteral("&Save"), &EditMathDialog::mnuSave, QKeySequence::Save);
  file->addSeparator();
  AddMenu(file, "mnuExport", QStringLiteral("&Export..."), &EditMathDialog::mnuExport);
  AddMenu(file, "mnuImport", QStringLiteral("&Import..."), &EditMathDialog::mnuImport);
  QMenu* channel = bar->addMenu(QStringLiteral("&Channel"));
  AddMenu(channel, "mnuDefineNew", QStringLiteral("&Define New..."), &EditMathDialog::mnuDefineNew, QKeySequence::New);
  AddMenu(channel, "mnuRename", QStringLiteral("&Rename..."), &EditMathDialog::mnuRename);
  AddMenu(channel, "mnuDelete", QStringLiteral("De&lete"), &EditMathDialog::mnuDelete);
  channel->addSeparator();
  AddMenu(channel, "mnuNextChannel", QStringLiteral("&Next Channel"), &EditMathDialog::mnuNextChannel, Qt::Key_PageDown);
  AddMenu(channel, "mnuPreviousChannel", QStringLiteral("&Previous Channel"), &EditMathDialog::mnuPreviousChannel,
          Qt::Key_PageUp);
  AddMenu(channel, "mnuSelectChannel", QStringLiteral("&Select Channel..."), &EditMathDialog::mnuSelectChannel);
  channel->addSeparator();
  AddMenu(channel, "mnuScales", QStringLiteral("Display &Scales..."), &EditMathDialog::mnuScales);
  QAction* validate = bar->addAction(QStringLiteral("&Validate"));
  validate->setObjectName(QStringLiteral("mnuValidate"));
  validate->setShortcut(Qt::Key_F5);
  addAction(validate);  // the shortcut works from the text box too
  connect(validate, &QAction::triggered, this, &EditMathDialog::mnuValidate);
}

QWidget* EditMathDialog::BuildBody() {
  auto* body = new QWidget;
  auto* row = new QHBoxLayout(body);
  row->setContentsMargins(0, 0, 0, 0);
  lstFunction_ = new QListWidget;
  lstFunction_->setObjectName(QStringLiteral("lstFunction"));
  lstFunction_->addItems(form_.lstFunction());
  lstFunction_->setFixedWidth(120);
  lstFunction_->setToolTip(QStringLiteral("Double-click to put the function or operator at the caret"));
  connect(lstFunction_, &QListWidget::itemDoubleClicked, this, &EditMathDialog::lstFunction_DblClick);
  row->addWidget(lstFunction_);

  auto* column = new QVBoxLayout;
  column->addWidget(new QLabel(QStringLiteral("Formula :")));
  txtMath_ = new QLineEdit;
  txtMath_->setObjectName(QStringLiteral("txtMath"));
  txtMath_->setMinimumWidth(560);
  connect(txtMath_, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (!pushing_) form_.txtMath = text;
  });
  connect(txtMath_, &QLineEdit::cursorPositionChanged, this, [this](int, int now) {
    if (!pushing_) form_.SelStart = now;
  });
  connect(txtMath_, &QLineEdit::returnPressed, this, &EditMathDialog::mnuValidate);
  column->addWidget(txtMath_);
  auto* buttons = new QHBoxLayout;
  cmdChannel_ = new QPushButton(QStringLiteral("C&hannels..."));
  cmdChannel_->setObjectName(QStringLiteral("cmdChannel"));
  cmdChannel_->setAutoDefault(false);
  connect(cmdChannel_, &QPushButton::clicked, this, &EditMathDialog::cmdChannel);
  buttons->addWidget(cmdChannel_);
  buttons->addStretch(1);
  column->addLayout(buttons);
  column->addStretch(1);
  row->addLayout(column, 1);
  return body;
}

QWidget* EditMathDialog::BuildWarning() {
  // The alert of a refused formula stays in sight until the text is fixed or accepted.
  warning_ = new QWidget;
  warning_->setObjectName(QStringLiteral("fraWarning"));
  auto* row = new QHBoxLayout(warning_);
  row->setContentsMargins(0, 0, 0, 0);
  auto* text = new QLabel(QStringLiteral("The formula was refused. Correct it, or accept it as it stands."));
  text->setStyleSheet(QStringLiteral("color: #b00000"));
  auto* accept = new QPushButton(QStringLiteral("&Accept Formula"));
  accept->setObjectName(QStringLiteral("cmdAccept"));
  accept->setAutoDefault(false);
  connect(accept, &QPushButton::clicked, this, &EditMathDialog::cmdAccept);
  row->addWidget(text, 1);
  row->addWidget(accept);
  warning_->hide();
  return warning_;
}

void EditMathDialog::Pull() {
  form_.txtMath = txtMath_->text();
  form_.SelStart = txtMath_->cursorPosition();
}

void EditMathDialog::Push() {
  pushing_ = true;
  if (txtMath_->text() != form_.txtMath) txtMath_->setText(form_.txtMath);
  txtMath_->setCursorPosition(static_cast<int>(form_.SelStart));
  pushing_ = false;
  lblID_->setText(form_.StatusID());
  lblName_->setText(form_.StatusName());
  const int count = form_.MathCount(), row = form_.CurrentRow();
  const bool any = count > 0;
  txtMath_->setEnabled(any);
  lstFunction_->setEnabled(any);
  cmdChannel_->setEnabled(any);
  for (const char* name : {"mnuRename", "mnuDelete", "mnuSelectChannel", "mnuScales", "mnuExport", "mnuValidate"}) {
    Menu(name)->setEnabled(any);
  }
  Menu("mnuNextChannel")->setEnabled(row + 1 < count);
  Menu("mnuPreviousChannel")->setEnabled(any && row > 0);
}

bool EditMathDialog::Validate() {
  Pull();
  if (!form_.ValidateString(ws_)) {
    Refused();
    return false;
  }
  warning_->hide();
  Push();
  return true;
}

void EditMathDialog::Refused() {
  warning_->show();
  txtMath_->setFocus();
  txtMath_->setCursorPosition(static_cast<int>(form_.SelStart));
}

bool EditMathDialog::Save() {
  if (!Validate()) return false;
  if (form_.Changed() && !form_.SaveMathChanges(ws_)) return false;
  Push();
  return true;
}

void EditMathDialog::mnuValidate() { Validate(); }

void EditMathDialog::mnuNextChannel() {
  Pull();
  if (!form_.mnuNextChannel(ws_)) return Refused();
  warning_->hide();
  Push();
}

void EditMathDialog::mnuPreviousChannel() {
  Pull();
  if (!form_.mnuPreviousChannel(ws_)) return Refused();
  warning_->hide();
  Push();
}

void EditMathDialog::mnuSelectChannel() {
  if (!Validate()) return;
  const std::vector<int> rows = ChooseMathRows(this, form_, QStringLiteral("Select Channel"), false);
  if (rows.empty()) return;
  form_.mnuSelectChannel(ws_, rows.front());
  Push();
}

void EditMathDialog::mnuDefineNew() {
  // The text of the row being left must pass first; asked before the name, not after it.
  if (!Validate()) return;
  const QString name = AskMathName(this, ws_, form_, false);
  if (name.isEmpty() || !form_.mnuDefineNew(ws_, name)) return;
  Push();
  txtMath_->setFocus();
}

void EditMathDialog::mnuRename() {
  const QString name = AskMathName(this, ws_, form_, true);
  if (name.isEmpty()) return;
  Pull();
  form_.mnuRename(ws_, name);
  Push();
}

void EditMathDialog::mnuDelete() {
  form_.mnuDelete();
  warning_->hide();
  Push();
}

void EditMathDialog::mnuExport() {
  if (!Validate()) return;
  const std::vector<int> rows = ChooseMathRows(this, form_, frmEditMath::kExportTitle, true);
  if (rows.empty()) return;
  const QString path = AskSaveFile(this, frmEditMath::kExportTitle, frmEditMath::kExportFilter, ws_.Paths.MathDirectory);
  if (!path.isEmpty()) form_.mnuExport(ws_, rows, path);
}

void EditMathDialog::mnuImport() {
  const QString path = AskOpenFile(this, frmEditMath::kImportTitle, frmEditMath::kImportFilter, ws_.Paths.MathDirectory);
  if (path.isEmpty()) return;
  Pull();
  form_.mnuImport(ws_, path);
  Push();
}

void EditMathDialog::mnuScales() {
  if (form_.MathCount() == 0) return;
  if (EditMathScales(this, ws_, form_.Row(form_.CurrentRow()).Name)) host_.Changed();
}

void EditMathDialog::mnuSave() {
  if (Save()) host_.Changed();
}

void EditMathDialog::cmdAccept() {
  form_.AcceptWarning();
  Validate();
}

void EditMathDialog::cmdChannel() {
  const QString name = ChooseOperand(this, ws_);
  if (name.isEmpty()) return;
  Pull();
  form_.InsertChannel(name);
  Push();
  txtMath_->setFocus();
}

void EditMathDialog::lstFunction_DblClick(QListWidgetItem* item) {
  Pull();
  form_.InsertFunction(item->text());
  Push();
  txtMath_->setFocus();
}

void EditMathDialog::cmdOK() {
  if (Save()) accept();
}

void EditMathDialog::reject() {
  Pull();
  if (form_.Form_QueryUnload(ws_)) return QDialog::reject();
  // Refused on its way to the file: a text that did not pass stays as typed, with the alert.
  if (form_.MathCount() > 0 && form_.txtMath != form_.Row(form_.CurrentRow()).Expression) Refused();
}
