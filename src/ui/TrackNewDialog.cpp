// frmTrackNew (New Map): the map made from a lap of the current outing, remade as the person
// steps laps or changes the settings, corners and straights marked by hand on the picture, and
// saved under a name through Track Data.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "core/track/Laps.h"
#include "core/track/TrackFile.h"
#include "core/track/frmTrackNew.h"
#include "ui/Dialogs.h"
#include "ui/TrackDialogs.h"
#include "ui/TrackPicture.h"

namespace {

struct NumberBox {
  const char* name;
  const char* caption;
  double TrackSettings::*field;
};
constexpr NumberBox kNumbers[] = {
    {"txtLatGOffset", "Sensor &Offset :", &TrackSettings::LatGOffset},
    {"txtLatGIncrement", "Straight &Below :", &TrackSettings::LatGIncrement},
    {"txtLatGStartLimit", "Corner &Above :", &TrackSettings::LatGStartLimit},
    {"txtLatGEndLimit", "Corner &Ends Below :", &TrackSettings::LatGEndLimit},
    {"txtGlobalAngle", "Start &Heading (deg) :", &TrackSettings::GlobalAngle},
};

struct CheckBox {
  const char* name;
  const char* caption;
  bool TrackSettings::*field;
};
constexpr CheckBox kChecks[] = {
    {"chkClosed", "Close the &Loop", &TrackSettings::Closed},
    {"chkInvert", "&Invert Turns", &TrackSettings::Invert},
    {"chkFigureOfEight", "&Figure of Eight", &TrackSettings::FigureOfEight},
    {"chkInvertCalibration", "Invert &Calibration", &TrackSettings::InvertCalibration},
};

const QString kHint = QStringLiteral("Drag along the map to mark a stretch, then make it a corner or a straight");

double ParsedOr(const QString& text, double old) {
  bool ok = false;
  double v = QLocale().toDouble(text, &ok);
  if (!ok) v = text.toDouble(&ok);  // a point typed under a comma locale
  return ok ? v : old;
}

bool SameLook(const TrackDrawOptions& a, const TrackDrawOptions& b) {
  return a.Highlight == b.Highlight && a.MarkFrom == b.MarkFrom && a.MarkTo == b.MarkTo;
}

class TrackNewDialog : public QDialog {
 public:
  TrackNewDialog(Workspace& ws, int slot, QWidget* parent) : QDialog(parent), ws_(ws), slot_(slot) {
    setObjectName(QStringLiteral("frmTrackNew"));
    picture_ = new TrackPicture(ws);
    picture_->Options.ShowSplits = false;  // a new map has none until it is saved
    picture_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) { OnMouse(kind, e); };
    cursor_ = new QLabel(kHint);
    cursor_->setObjectName(QStringLiteral("lblCursor"));
    auto* top = new QHBoxLayout;
    top->addWidget(picture_, 1);
    top->addWidget(BuildSettings());
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(cursor_, 1);
    bottom->addWidget(save_ = Button("cmdSave", QStringLiteral("&Save..."), [this] { Save(); }));
    bottom->addWidget(cancel_ = Button("cmdCancel", QStringLiteral("Cancel"), [this] { reject(); }));
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(BuildMenus());
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
    resize(1000, 640);
    Remake([&] {
      form_ = std::make_unique<frmTrackNew>(ws_, slot_);
      return form_->Created();
    });
    FillSettings();
  }

  bool Saved() const { return saved_; }

  void done(int r) override {
    form_->Close();  // the settings go back to the store however the window closes
    QDialog::done(r);
  }

 private:
  QPushButton* Button(const char* name, const QString& text, const std::function<void()>& run) {
    auto* b = new QPushButton(text);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);  // Enter in a settings box remakes the map, it doesn't save or close
    connect(b, &QPushButton::clicked, this, run);
    return b;
  }

  QAction* Command(QMenu* menu, const char* name, const QString& text, const std::function<void()>& run,
                   const QKeySequence& key = {}) {
    QAction* a = menu->addAction(text);
    a->setObjectName(QString::fromLatin1(name));
    a->setShortcut(key);
    connect(a, &QAction::triggered, this, run);
    return a;
  }

  QMenuBar* BuildMenus() {
    auto* bar = new QMenuBar;
    QMenu* lap = bar->addMenu(QStringLiteral("La&p"));
    Command(lap, "mnuPreviousLap", QStringLiteral("&Previous Lap"), [this] { Remake([&] { return form_->mnuPreviousLap(); }); },
            Qt::Key_PageUp);
    Command(lap, "mnuNextLap", QStringLiteral("&Next Lap"), [this] { Remake([&] { return form_->mnuNextLap(); }); },
            Qt::Key_PageDown);
    Command(lap, "mnuSelectLap", QStringLiteral("&Select Lap..."), [this] { SelectLap(); });
    QMenu* map = bar->addMenu(QStringLiteral("&Map"));
    corner_ = Command(map, "mnuCorner", QStringLiteral("Mark as &Corner"), [this] { Mark(true); });
    straight_ = Command(map, "mnuStraight", QStringLiteral("Mark as S&traight"), [this] { Mark(false); });
    map->addSeparator();
    Command(map, "mnuReset", QStringLiteral("&Reset Settings"), [this] {
      Remake([&] { return form_->mnuReset(); });
      FillSettings();
    });
    return bar;
  }

  QWidget* BuildSettings() {
    auto* box = new QGroupBox(QStringLiteral("Settings"));
    auto* form = new QFormLayout(box);
    mode_ = new QComboBox;
    mode_->setObjectName(QStringLiteral("cboCreateMode"));
    mode_->addItems({QStringLiteral("Lateral G"), QStringLiteral("Gyro"), QStringLiteral("GPS")});
    connect(mode_, &QComboBox::activated, this, [this] { Settle(); });
    form->addRow(QStringLiteral("Create &From :"), mode_);
    for (const NumberBox& n : kNumbers) {
      auto* edit = new QLineEdit;
      edit->setObjectName(QString::fromLatin1(n.name));
      // Only a typed change remakes: leaving a box as it was keeps corners marked by hand.
      connect(edit, &QLineEdit::editingFinished, this, [this, edit] {
        if (!edit->isModified()) return;
        edit->setModified(false);
        Settle();
      });
      numbers_.push_back(edit);
      form->addRow(QString::fromLatin1(n.caption), edit);
    }
    for (const CheckBox& c : kChecks) {
      auto* check = new QCheckBox(QString::fromLatin1(c.caption));
      check->setObjectName(QString::fromLatin1(c.name));
      connect(check, &QCheckBox::clicked, this, [this] { Settle(); });
      checks_.push_back(check);
      form->addRow(check);
    }
    return box;
  }

  void FillSettings() {
    const TrackSettings& s = form_->Settings;
    mode_->setCurrentIndex(s.CreateMode);
    for (std::size_t i = 0; i < numbers_.size(); ++i) numbers_[i]->setText(QLocale().toString(s.*kNumbers[i].field));
    for (std::size_t i = 0; i < checks_.size(); ++i) checks_[i]->setChecked(s.*kChecks[i].field);
  }

  TrackSettings Typed() const {
    TrackSettings t = form_->Settings;
    t.CreateMode = mode_->currentIndex();
    for (std::size_t i = 0; i < numbers_.size(); ++i) t.*kNumbers[i].field = ParsedOr(numbers_[i]->text(), t.*kNumbers[i].field);
    for (std::size_t i = 0; i < checks_.size(); ++i) t.*kChecks[i].field = checks_[i]->isChecked();
    return t;
  }

  // The settings as typed (limits made positive, an angle out of range dropped) make the map anew.
  void Settle() {
    const TrackSettings typed = Typed();
    Remake([&] { return form_->Recreate(typed); });
    FillSettings();
  }

  // The map reports its passes as progress; a cancel leaves the map, lap and settings shown.
  void Remake(const std::function<bool()>& make) {
    make();
    picture_->Options = TrackDrawOptions{.ShowSplits = false};
    marking_ = false;
    setWindowTitle(form_->Title());
    save_->setEnabled(form_->Created());
    UpdateCommands();
    picture_->Redraw();
  }

  void UpdateCommands() {
    const bool marked = picture_->Options.MarkFrom >= 0 && picture_->Options.MarkTo >= 0;
    corner_->setEnabled(marked);
    straight_->setEnabled(marked);
  }

  // Dragging marks a stretch of the map; the point under the mouse is reported and picked out.
  void OnMouse(PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind == PlotCanvas::MouseKind::DoubleClick) return;
    if (kind == PlotCanvas::MouseKind::Press && e->button() == Qt::RightButton) {
      QMenu menu;
      menu.addAction(corner_);
      menu.addAction(straight_);
      menu.exec(e->globalPosition().toPoint());
      return;
    }
    TrackDrawOptions& o = picture_->Options;
    const TrackDrawOptions before = o;
    const int point = picture_->PointAt(e->position(), marking_);
    if (kind == PlotCanvas::MouseKind::Press && e->button() == Qt::LeftButton) {
      marking_ = point >= 0;
      o.MarkFrom = o.MarkTo = point;
    } else if (kind == PlotCanvas::MouseKind::Move && marking_ && point >= 0) {
      o.MarkTo = point;
    } else if (kind == PlotCanvas::MouseKind::Release) {
      marking_ = false;
    }
    o.Highlight = point;
    cursor_->setText(point >= 0 ? form_->CursorText(point) : kHint);
    UpdateCommands();
    if (!SameLook(before, o)) picture_->Redraw();
  }

  void Mark(bool corner) {
    const TrackDrawOptions& o = picture_->Options;
    if (o.MarkFrom < 0 || o.MarkTo < 0) return;
    if (corner) {
      form_->mnuCorner(o.MarkFrom, o.MarkTo);
    } else {
      form_->mnuStraight(o.MarkFrom, o.MarkTo);
    }
    picture_->Options = TrackDrawOptions{.ShowSplits = false};  // the stretch now shows its new colour
    UpdateCommands();
    picture_->Redraw();
  }

  void SelectLap() {
    const OutingRec& o = OutingAt(ws_, slot_);
    QStringList laps;
    for (int lap = 0; lap < o.LastLap; ++lap) {
      laps << QStringLiteral("%1   %2   %3").arg(LapNumberText(o, lap), LapTimeText(LapTimeMs(o, lap)), LapLabel(o, lap));
    }
    QInputDialog d(this);
    d.setWindowTitle(QStringLiteral("Select Lap"));
    d.setLabelText(QStringLiteral("Lap :"));
    d.setComboBoxItems(laps);
    d.setComboBoxEditable(false);
    if (form_->Lap() >= 0 && form_->Lap() < laps.size()) d.setTextValue(laps[form_->Lap()]);
    if (d.exec() != QDialog::Accepted) return;
    const int lap = static_cast<int>(laps.indexOf(d.textValue()));
    Remake([&] { return form_->mnuSelectLap(lap); });
  }

  // cmdSave: the name, comment and correction through Track Data, then NAME.MAP is written. The
  // window stays for another lap; Cancel becomes Close, since the map is kept.
  void Save() {
    const OutingRec& o = OutingAt(ws_, slot_);
    frmTrackData data(ws_);
    data.TrackName = o.TrackName.trimmed();  // the circuit the logger was set up for
    data.TrackComment.clear();
    data.OfficialLength = ws_.TrackLength / ((o.UnitsMask & 1) != 0 ? 1000.0f : 5280.0f);  // as the file will hold it
    const auto commit = [&] { return data.Accept() && form_->cmdSave(data.TrackName, data.TrackComment); };
    if (!RunTrackData(this, data, true, commit)) return;
    saved_ = true;
    cancel_->setText(QStringLiteral("&Close"));
  }

  Workspace& ws_;
  int slot_;
  std::unique_ptr<frmTrackNew> form_;
  TrackPicture* picture_;
  QLabel* cursor_;
  QComboBox* mode_ = nullptr;
  std::vector<QLineEdit*> numbers_;
  std::vector<QCheckBox*> checks_;
  QAction* corner_ = nullptr;
  QAction* straight_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* cancel_ = nullptr;
  bool marking_ = false;
  bool saved_ = false;
};

}  // namespace

void NewTrackMap(DialogHost& host) {
  Workspace& ws = host.ws;
  if (!CanMakeNewMap(ws)) return;
  const int slot = TrackOuting(ws);
  if (slot < 0) return;
  // Making a map works in the one map of memory: unless one was saved, the folder's comes back.
  const TrackState kept = ws.Track;
  const float kept_length = ws.TrackLength;
  bool saved = false;
  {
    TrackNewDialog d(ws, slot, host.parent);
    d.exec();
    saved = d.Saved();
  }
  if (!saved) {
    ws.Track = kept;
    ws.TrackLength = kept_length;
  }
  LoadFolderTrack(ws);  // a saved map is the folder's now
  if (host.Changed) host.Changed();
}
