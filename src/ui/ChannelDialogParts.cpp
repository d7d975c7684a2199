#include "ui/ChannelDialogParts.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"

namespace channel_dialogs {

Frame::Frame(QWidget* parent, const QString& object_name, const QString& title, const QString& ok_caption)
    : QDialog(parent) {
  setObjectName(object_name);
  setWindowTitle(title);
  auto* outer = new QVBoxLayout(this);
  body_ = new QVBoxLayout;
  outer->addLayout(body_);
  buttons_ = new QDialogButtonBox;
  ok_ = buttons_->addButton(ok_caption, QDialogButtonBox::AcceptRole);
  ok_->setObjectName(QStringLiteral("cmdOK"));
  ok_->setDefault(true);
  QPushButton* cancel = buttons_->addButton(QDialogButtonBox::Cancel);
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  outer->addWidget(buttons_);
}

QPushButton* Frame::AddButton(const QString& object_name, const QString& caption) {
  QPushButton* b = buttons_->addButton(caption, QDialogButtonBox::ActionRole);
  b->setObjectName(object_name);
  b->setAutoDefault(false);
  return b;
}

bool Frame::Run(const std::function<bool()>& accept) {
  connect(ok_, &QPushButton::clicked, this, [this, accept] {
    if (accept()) QDialog::accept();
  });
  return exec() == QDialog::Accepted;
}

QColor ToQColor(int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

int ToBgr(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }

void PaintSwatch(QToolButton* swatch, int bgr) {
  swatch->setStyleSheet(QStringLiteral("QToolButton { background-color: %1; border: 1px solid gray; }"
                                       "QToolButton:checked { border: 3px solid palette(highlight); }")
                            .arg(ToQColor(bgr).name()));
}

QToolButton* Swatch(int bgr, const QString& tip) {
  auto* b = new QToolButton;
  b->setFixedSize(36, 28);
  b->setToolTip(tip);
  PaintSwatch(b, bgr);
  return b;
}

std::optional<int> NeedOuting(Workspace& ws, const QString& title) {
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  if (ws.CurOuting < 0 || ws.CurOuting >= kOutingsPerFolder ||
      folder.Outings[static_cast<std::size_t>(ws.CurOuting)].Loaded == 0) {
    ws.messages.Show(QStringLiteral("No Outing Loaded"), title, MessageIcon::Exclamation);
    return std::nullopt;
  }
  return ws.CurOuting;
}

std::optional<Trace> NeedChannel(Workspace& ws, const QString& title) {
  const auto slot = NeedOuting(ws, title);
  if (!slot) return std::nullopt;
  const FolderRec& folder = ws.FolderTable[static_cast<std::size_t>(ws.CurFolder)];
  const OutingRec& o = folder.Outings[static_cast<std::size_t>(*slot)];
  const int lap = o.CurLap, channel = folder.SelChannel;
  const bool on_lap = lap >= 0 && lap < static_cast<int>(o.Laps.size()) && channel >= 0 &&
                      channel < static_cast<int>(o.Channels.size()) &&
                      channel < static_cast<int>(o.Laps[static_cast<std::size_t>(lap)].LapChannels.size());
  if (!on_lap) {
    ws.messages.Show(QStringLiteral("No Channel Selected"), title, MessageIcon::Exclamation);
    return std::nullopt;
  }
  return Trace{*slot, lap, channel};
}

}  // namespace channel_dialogs
