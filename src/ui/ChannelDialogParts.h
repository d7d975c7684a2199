#pragma once

// What the dialogs of beacons, channel settings, colours and options share: a dialog frame with
// its command buttons, palette swatches, the current outing and channel, and the sub-dialogs
// that the screenshots open on their own.

#include <QColor>
#include <QDialog>
#include <QString>
#include <optional>

class QBoxLayout;
class QDialogButtonBox;
class QPushButton;
class QToolButton;
class frmChlColor;
struct Workspace;

namespace channel_dialogs {

// A modal dialog named after its class, with a body laid out top to bottom and a row of buttons
// at the bottom: cmdOK (its caption given) and cmdCancel.
class Frame : public QDialog {
 public:
  Frame(QWidget* parent, const QString& object_name, const QString& title,
        const QString& ok_caption = QStringLiteral("OK"));
  QBoxLayout* Body() const { return body_; }
  QPushButton* Ok() const { return ok_; }
  // Adds a command button to the left of OK.
  QPushButton* AddButton(const QString& object_name, const QString& caption);
  // Shows the dialog; true when OK closed it. `accept` runs on OK and keeps the dialog open
  // when it refuses (its message was shown).
  bool Run(const std::function<bool()>& accept);

 private:
  QBoxLayout* body_;
  QDialogButtonBox* buttons_;
  QPushButton* ok_;
};

QColor ToQColor(int bgr);
int ToBgr(const QColor& c);
// A square button filled with a colour.
QToolButton* Swatch(int bgr, const QString& tip);
void PaintSwatch(QToolButton* swatch, int bgr);

// The outing of the folder in view that the commands act on; shows "No Outing Loaded" with the
// title and gives nothing when the folder holds none.
std::optional<int> NeedOuting(Workspace& ws, const QString& title);
// The outing, current lap and channel of the tree's current node; the same message without one.
struct Trace {
  int slot, lap, channel;
};
std::optional<Trace> NeedChannel(Workspace& ws, const QString& title);

// frmInsertLap: the new lap time for the selected lap; nothing when cancelled.
std::optional<QString> AskInsertLap(QWidget* parent, const QString& default_time);
// frmInsertDistance: the distance into lap `lap_number` at which the new beacon lies.
std::optional<QString> AskInsertDistance(QWidget* parent, const QString& default_distance, const QString& lap_number);
// frmChlColor: true when a colour was picked and stored.
bool RunChlColor(QWidget* parent, frmChlColor& form);

}  // namespace channel_dialogs
