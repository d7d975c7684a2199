#include "ui/FrequencyWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/outing/HeaderProcessing.h"
#include "ui/ChannelDialogParts.h"
#include "ui/PlotCanvas.h"

using namespace channel_dialogs;

namespace {

constexpr double kTwips = 15;  // twips a pixel

QHBoxLayout* Row(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  for (QWidget* w : widgets) row->addWidget(w);
  row->addStretch(1);
  return row;
}

QVBoxLayout* Column(QWidget* owner, QLayout* options, QWidget* canvas, QWidget* status) {
  auto* layout = new QVBoxLayout(owner);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addLayout(options);
  layout->addWidget(canvas, 1);
  layout->addWidget(status);
  return layout;
}

}  // namespace

FrequencyWindow::FrequencyWindow(DialogHost& host, int folder, QWidget* parent)
    : PlotWindowBase(host.ws, folder, PlotWindow::Frequency, parent), host_(host), plot_(host.ws, idle_) {
  setWindowTitle(QStringLiteral("Frequency"));
  auto* scale = new QPushButton(QStringLiteral("FFT &Scale..."));
  auto* spectrogram = new QPushButton(QStringLiteral("Spectro&gram"));
  spectrogram->setObjectName(QStringLiteral("cmdSpectrogram"));
  max_hz_ = new QSpinBox;
  max_hz_->setObjectName(QStringLiteral("FreqPlotView"));
  max_hz_->setRange(0, 100000);
  max_hz_->setSuffix(QStringLiteral(" Hz"));
  max_hz_->setSpecialValueText(QStringLiteral("All"));
  max_hz_->setToolTip(QStringLiteral("The highest frequency shown"));
  canvas_ = new PlotCanvas;
  status_ = new QLabel;
  Column(this, Row({new QLabel(QStringLiteral("Up to :")), max_hz_, scale, spectrogram}), canvas_, status_);

  connect(max_hz_, &QSpinBox::valueChanged, this, [this](int hz) {
    ws_.Options.FreqPlotView = hz;
    Redraw();
  });
  connect(scale, &QPushButton::clicked, this, [this] { EditScale(); });
  connect(spectrogram, &QPushButton::clicked, this, [this] {
    if (OpenSpectrogram) OpenSpectrogram();
  });
  canvas_->Resized = [this] { Redraw(); };
  canvas_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind == PlotCanvas::MouseKind::Release || !(e->buttons() & Qt::LeftButton) || ws_.CurFolder != folder_) return;
    PaintWith(canvas_, plot_, idle_, [&] { plot_.MoveFreqCursor(e->position().x() * kTwips); });
    status_->setText(plot_.StatusLine);
  };
}

bool FrequencyWindow::EditScale() {
  const FolderRec& f = ws_.FolderTable[static_cast<std::size_t>(folder_)];
  const OutingRec& o = f.Outings[static_cast<std::size_t>(f.SelOuting)];
  if (o.Loaded == 0 || f.ActiveChannel < 0 || f.ActiveChannel >= static_cast<int>(o.Channels.size())) return false;
  frmFFTEdit form(ws_, f.SelOuting, f.ActiveChannel);
  Frame d(this, QStringLiteral("frmFFTEdit"), QStringLiteral("Edit FFT Scalings"));
  auto* channel = new QLineEdit(form.txtChannel);
  channel->setObjectName(QStringLiteral("txtChannel"));
  channel->setReadOnly(true);
  auto* min = new QLineEdit(form.txtFFTscaleMin);
  auto* max = new QLineEdit(form.txtFFTscaleMax);
  min->setObjectName(QStringLiteral("txtFFTscale(0)"));
  max->setObjectName(QStringLiteral("txtFFTscale(1)"));
  auto* automatic = new QCheckBox(QStringLiteral("&Auto Scale"));
  automatic->setObjectName(QStringLiteral("chkFFTAuto"));
  automatic->setChecked(form.chkFFTAuto);
  auto* decimals = new QComboBox;
  decimals->setObjectName(QStringLiteral("cboFFTDec"));
  for (int k = 0; k <= 4; ++k) decimals->addItem(QString::number(k));
  decimals->setCurrentIndex(form.cboFFTDec);
  auto* global = new QCheckBox(QStringLiteral("Ma&ke Global"));
  global->setObjectName(QStringLiteral("chkGlobal"));
  auto* grid = new QFormLayout;
  grid->addRow(QStringLiteral("Channel :"), channel);
  grid->addRow(QStringLiteral("Minimum :"), min);
  grid->addRow(QStringLiteral("Maximum :"), max);
  grid->addRow(QStringLiteral("Decimals :"), decimals);
  grid->addRow(automatic);
  grid->addRow(global);
  d.Body()->addLayout(grid);
  if (!d.Run([&] {
        form.txtFFTscaleMin = min->text();
        form.txtFFTscaleMax = max->text();
        form.chkFFTAuto = automatic->isChecked();
        form.cboFFTDec = decimals->currentIndex();
        form.chkGlobal = global->isChecked();
        return form.cmdOK();
      })) {
    return false;
  }
  if (host_.Changed) host_.Changed();
  return true;
}

void FrequencyWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;  // a window of a folder not in view waits for its tab
  {
    const QSignalBlocker quiet(max_hz_);
    max_hz_->setValue(ws_.Options.FreqPlotView);
  }
  PaintWith(canvas_, plot_, idle_, [this] { plot_.DoFrequencyPlot(); });
  setWindowTitle(QStringLiteral("Frequency - ") + plot_.Caption);
  status_->setText(plot_.StatusLine);
}

SpectrogramWindow::SpectrogramWindow(DialogHost& host, int folder, QWidget* parent)
    : PlotWindowBase(host.ws, folder, PlotWindow::Spectrogram, parent), plot_(host.ws, idle_) {
  setWindowTitle(QStringLiteral("Spectrogram"));
  points_ = new QComboBox;
  points_->setObjectName(QStringLiteral("cboWindowPoints"));
  for (int n = 16; n <= 4096; n *= 2) points_->addItem(QString::number(n), n);
  overlap_ = new QComboBox;
  overlap_->setObjectName(QStringLiteral("cboOverlap"));
  for (int p : {0, 25, 50, 75, 90}) overlap_->addItem(QStringLiteral("%1 %").arg(p), p);
  canvas_ = new PlotCanvas;
  status_ = new QLabel;
  Column(this, Row({new QLabel(QStringLiteral("Window :")), points_, new QLabel(QStringLiteral("Overlap :")), overlap_}), canvas_,
         status_);
  const auto option = [this](QComboBox* box, int FolderOptions::*field) {
    connect(box, &QComboBox::currentIndexChanged, this, [this, box, field] {
      ws_.FolderTable[static_cast<std::size_t>(folder_)].Options.*field = box->currentData().toInt();
      Redraw();
    });
  };
  option(points_, &FolderOptions::SpectrogramPoints);
  option(overlap_, &FolderOptions::SpectrogramOverlap);
  canvas_->Resized = [this] { Redraw(); };
  canvas_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind == PlotCanvas::MouseKind::Release || !(e->buttons() & Qt::LeftButton) || ws_.CurFolder != folder_) return;
    bool moved = false;
    PaintWith(canvas_, plot_, idle_, [&] { moved = plot_.MouseDown(e->position().x() * kTwips); });
    if (moved && CursorMoved) CursorMoved();
  };
}

void SpectrogramWindow::ShowOptions() {
  const QSignalBlocker a(points_), b(overlap_);
  points_->setCurrentIndex(std::max(0, points_->findData(plot_.WindowPoints())));
  overlap_->setCurrentIndex(std::max(0, overlap_->findData(plot_.OverlapPercent())));
}

void SpectrogramWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;
  ShowOptions();
  PaintWith(canvas_, plot_, idle_, [this] { plot_.DrawSpectrogram(); });
  setWindowTitle(plot_.Caption);
  status_->setText(plot_.StatusLine);
}

void SpectrogramWindow::FollowCursor() {
  if (ws_.CurFolder != folder_) return;
  PaintWith(canvas_, plot_, idle_, [this] { plot_.FollowCursor(); });
}
