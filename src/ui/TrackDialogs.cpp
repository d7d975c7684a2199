// Load Track, Track Data, and what the track dialogs share.

#include "ui/TrackDialogs.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/track/TrackFile.h"
#include "ui/Dialogs.h"

namespace {

template <class Widget>
Widget* Named(Widget* w, const char* name) {
  w->setObjectName(QString::fromLatin1(name));
  return w;
}

QLineEdit* TextBox(const QString& text, const char* name) {
  auto* box = Named(new QLineEdit(text), name);
  box->setMaxLength(32);  // the map's text fields hold 32 characters
  return box;
}

// A number box with its units to the right.
QWidget* WithUnits(QWidget* box, const QString& units) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box, 1);
  layout->addWidget(new QLabel(units));
  return row;
}

}  // namespace

bool RunTrackData(QWidget* parent, frmTrackData& form, bool new_map, const std::function<bool()>& commit) {
  QDialog d(parent);
  d.setObjectName(QStringLiteral("frmTrackData"));
  d.setWindowTitle(QStringLiteral("Track Data"));
  auto* name = TextBox(form.TrackName, "txtTrackName");
  auto* length = Named(new QDoubleSpinBox, "txtOfficialLength");
  length->setRange(0, 1000);
  length->setDecimals(3);
  length->setValue(form.OfficialLength);
  length->setEnabled(!new_map);
  auto* comment = TextBox(form.TrackComment, "txtComment");
  auto* correction = Named(new QSpinBox, "txtCorrection");
  correction->setRange(0, 100);
  correction->setValue(static_cast<int>(form.Correction));
  auto* laptime = Named(new QSpinBox, "txtMinLaptime");
  laptime->setRange(0, 3600);
  laptime->setValue(static_cast<int>(form.MinLaptime));
  auto* form_layout = new QFormLayout;
  form_layout->addRow(QStringLiteral("&Track Name :"), name);
  form_layout->addRow(QStringLiteral("&Official Length :"), WithUnits(length, form.LengthUnits()));
  form_layout->addRow(QStringLiteral("&Comment :"), comment);
  form_layout->addRow(QStringLiteral("&Correction : (%)"), correction);
  form_layout->addRow(QStringLiteral("&Min Laptime : (sec)"), laptime);

  auto* display = new QGroupBox(QStringLiteral("&Lap Display"));
  auto* speed = Named(new QRadioButton(QStringLiteral("&Avg Speed")), "optAvgSpeed");
  auto* time = Named(new QRadioButton(QStringLiteral("&Lap Time")), "optLapTime");
  (form.LapDisplayMode == 1 ? time : speed)->setChecked(true);
  auto* options = new QHBoxLayout(display);
  options->addWidget(speed);
  options->addWidget(time);

  auto* buttons = new QDialogButtonBox;
  auto* ok = Named(buttons->addButton(QDialogButtonBox::Ok), "cmdOK");
  Named(buttons->addButton(QDialogButtonBox::Cancel), "cmdCancel");
  QObject::connect(buttons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
  QObject::connect(ok, &QPushButton::clicked, &d, [&] {
    form.TrackName = name->text();
    form.OfficialLength = static_cast<float>(length->value());
    form.TrackComment = comment->text();
    form.Correction = correction->value();
    form.MinLaptime = laptime->value();
    form.LapDisplayMode = time->isChecked() ? 1 : 0;
    if (commit()) d.accept();
  });
  auto* layout = new QVBoxLayout(&d);
  layout->addLayout(form_layout);
  layout->addWidget(display);
  layout->addWidget(buttons);
  return d.exec() == QDialog::Accepted;
}

bool NeedTrack(Workspace& ws, const QString& title) {
  if (ws.TrackLoaded) return true;
  ws.messages.Show(QStringLiteral("No Current Track Selected"), title, MessageIcon::Exclamation);
  return false;
}

int TrackOuting(const Workspace& ws) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (ws.CurOuting >= 0 && ws.CurOuting < kOutingsPerFolder && folder.Outings[static_cast<std::size_t>(ws.CurOuting)].Loaded != 0) {
    return ws.CurOuting;
  }
  for (int slot = 0; slot < kOutingsPerFolder; ++slot) {
    if (folder.Outings[static_cast<std::size_t>(slot)].Loaded != 0) return slot;
  }
  return -1;
}

void LoadTrack(DialogHost& host) {
  Workspace& ws = host.ws;
  QFileDialog d(host.parent, QStringLiteral("Load Track"), ws.Paths.TrackDirectory, QStringLiteral("Track Maps (*.MAP)"));
  d.setObjectName(QStringLiteral("SelectTrackFile"));
  d.setFileMode(QFileDialog::ExistingFile);
  d.setAcceptMode(QFileDialog::AcceptOpen);
  if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return;
  SelectTrackFile(ws, d.selectedFiles().front());
  if (host.Changed) host.Changed();
}

void EditTrackData(DialogHost& host) {
  Workspace& ws = host.ws;
  if (!NeedTrack(ws, QStringLiteral("Track Data"))) return;
  frmTrackData form(ws);
  if (RunTrackData(host.parent, form, false, [&] { return form.cmdOK(); }) && host.Changed) host.Changed();
}
