#include "ui/QtTreeHost.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/plots/frmChlColor.h"
#include "core/workspace/frmDatumFile.h"
#include "core/workspace/frmGroupLaps.h"
#include "core/workspace/frmLapHide.h"
#include "core/workspace/frmLapSelect.h"
#include "render/QtSurface.h"
#include "ui/ChannelDialogParts.h"

namespace {

// A dialog with a title, a body laid out top to bottom, and OK and Cancel.
struct Dialog {
  QDialog dialog;
  QVBoxLayout* body;
  QDialogButtonBox* buttons;

  Dialog(QWidget* parent, const QString& title) : dialog(parent) {
    dialog.setWindowTitle(title);
    body = new QVBoxLayout(&dialog);
    buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  }
  bool Run() {
    body->addWidget(buttons);
    return dialog.exec() == QDialog::Accepted;
  }
};

QTreeWidget* MakeTable(const QStringList& columns, bool multiple) {
  auto* table = new QTreeWidget;
  table->setHeaderLabels(columns);
  table->setRootIsDecorated(false);
  table->setSelectionMode(multiple ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
  table->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table->setMinimumSize(420, 260);
  return table;
}

// The rows chosen and in sight (a filter may hide selected rows), by the number each row was
// given as its data.
std::vector<int> Chosen(const QTreeWidget* table) {
  std::vector<int> out;
  for (int i = 0; i < table->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* item = table->topLevelItem(i);
    if (item->isSelected() && !item->isHidden()) out.push_back(table->topLevelItem(i)->data(0, Qt::UserRole).toInt());
  }
  return out;
}

void FillLapRow(QTreeWidgetItem* item, const frmLapSelect::Row& r) {
  const QString texts[] = {r.Number, r.Speed, r.Time, r.Info, r.Color};
  for (int c = 0; c < 5; ++c) item->setText(c, texts[c]);
  item->setData(0, Qt::UserRole, r.Lap);
}

}  // namespace

std::optional<QString> QtTreeHost::AskText(const QString& prompt, const QString& title, const QString& def) {
  bool ok = false;
  const QString text = QInputDialog::getText(parent_, title, prompt, QLineEdit::Normal, def, &ok);
  if (!ok) return std::nullopt;
  return text;
}

QStringList QtTreeHost::ChooseOutingFiles(const QString& title, bool multiple) {
  // The loggers write upper-case names; copies off other systems may not be.
  const QString filter = QStringLiteral("Outings %1 (*.DAT *.CNV *.dat *.cnv)").arg(QString::fromLatin1(kOutingFilter));
  if (multiple) return QFileDialog::getOpenFileNames(parent_, title, ws_.Paths.DataDirectory, filter);
  const QString file = QFileDialog::getOpenFileName(parent_, title, ws_.Paths.DataDirectory, filter);
  return file.isEmpty() ? QStringList() : QStringList{file};
}

std::vector<int> QtTreeHost::ChooseLaps(const QString& title, frmLapSelect& form, bool multiple) {
  Dialog d(parent_, title);
  QTreeWidget* table = MakeTable(frmLapSelect::kColumns, multiple);
  for (const frmLapSelect::Row& r : form.Rows()) FillLapRow(new QTreeWidgetItem(table), r);
  d.body->addWidget(table);
  auto* color = new QPushButton(QStringLiteral("&Color..."));
  QObject::connect(color, &QPushButton::clicked, [&] {
    const int row = table->indexOfTopLevelItem(table->currentItem());
    if (row < 0) return;
    const int index = PickColor();
    if (index < 0) return;
    form.cmdColor(row, index);
    FillLapRow(table->topLevelItem(row), form.Rows()[static_cast<std::size_t>(row)]);
  });
  d.buttons->addButton(color, QDialogButtonBox::ActionRole);
  if (!d.Run()) return {};
  return Chosen(table);
}

std::vector<int> QtTreeHost::ChooseChannels(const QString& title, int outing, bool multiple) {
  const FolderRec& folder = ws_.FolderTable[static_cast<std::size_t>(ws_.CurFolder)];
  if (outing < 0 || outing >= kOutingsPerFolder) return {};
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(outing)];
  Dialog d(parent_, title);
  auto* filter = new QLineEdit;
  filter->setPlaceholderText(QStringLiteral("Filter"));
  QTreeWidget* table = MakeTable({QStringLiteral("Channel"), QStringLiteral("Units"), QStringLiteral("Rate")}, multiple);
  for (int c = 0; c < static_cast<int>(o.Channels.size()); ++c) {
    const ChannelRec& ch = o.Channels[static_cast<std::size_t>(c)];
    auto* item = new QTreeWidgetItem(table, {ch.Name.trimmed(), ch.Units.trimmed(), QString::number(ch.Rate * 1000.0, 'g', 4) + " Hz"});
    item->setData(0, Qt::UserRole, c);
  }
  QObject::connect(filter, &QLineEdit::textChanged, [table](const QString& text) {
    for (int i = 0; i < table->topLevelItemCount(); ++i) {
      QTreeWidgetItem* item = table->topLevelItem(i);
      item->setHidden(!item->text(0).contains(text, Qt::CaseInsensitive));
    }
  });
  d.body->addWidget(filter);
  d.body->addWidget(table);
  if (!d.Run()) return {};
  return Chosen(table);
}

int QtTreeHost::PickColor() {
  // The same palette dialog as a channel's colour, without the channel's default.
  frmChlColor form(ws_);
  return channel_dialogs::RunChlColor(parent_, form) ? form.Selected : -1;
}

int QtTreeHost::ChooseDatumOuting(const frmDatumFile& form) {
  Dialog d(parent_, frmDatumFile::kTitle);
  QTreeWidget* table = MakeTable(frmDatumFile::kColumns, false);
  for (const frmDatumFile::Row& r : form.Rows()) {
    auto* item = new QTreeWidgetItem(table, {r.File, r.Driver, r.Fast, r.LapTime});
    item->setData(0, Qt::UserRole, r.Outing);
  }
  d.body->addWidget(table);
  if (!d.Run()) return -1;
  const std::vector<int> chosen = Chosen(table);
  return chosen.empty() ? -1 : chosen.front();
}

bool QtTreeHost::ChooseHiddenLaps(frmLapHide& form) {
  Dialog d(parent_, QStringLiteral("Hide Laps"));
  auto* list = new QListWidget;
  list->setSelectionMode(QAbstractItemView::MultiSelection);
  for (const frmLapHide::Row& r : form.Rows()) {
    list->addItem(r.Text);
    list->item(list->count() - 1)->setSelected(r.Selected);
  }
  d.body->addWidget(new QLabel(QStringLiteral("Selected laps are left out of the plots")));
  d.body->addWidget(list);
  if (!d.Run()) return false;
  for (int i = 0; i < list->count(); ++i) form.Rows()[static_cast<std::size_t>(i)].Selected = list->item(i)->isSelected();
  return true;
}

bool QtTreeHost::ChooseGroupLaps(frmGroupLaps& form) {
  Dialog d(parent_, QStringLiteral("Group Laps"));
  auto* laps = new QLineEdit(form.txtLaps);
  auto* entire = new QCheckBox(QStringLiteral("&Entire Outing"));
  entire->setChecked(form.chkEntireOuting);
  d.body->addWidget(new QLabel(QStringLiteral("Laps in each group")));
  d.body->addWidget(laps);
  d.body->addWidget(entire);
  if (!d.Run()) return false;
  form.txtLaps = laps->text();
  form.chkEntireOuting = entire->isChecked();
  return true;
}
