#include "ui/HistoWindow.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "core/plots/RefreshPlots.h"
#include "ui/PlotCanvas.h"

namespace {

constexpr double kTwips = 15;  // twips a pixel

}  // namespace

HistoWindow::HistoWindow(DialogHost& host, int folder, QWidget* parent)
    : PlotWindowBase(host.ws, folder, PlotWindow::Histo, parent), host_(host), plot_(host.ws, idle_) {
  setWindowTitle(QStringLiteral("Histograms"));
  bins_ = new QSpinBox;
  bins_->setRange(1, 200);
  bins_->setObjectName(QStringLiteral("HistoBins"));
  bins_->setToolTip(QStringLiteral("Histogram Bins"));
  total_ = new QCheckBox(QStringLiteral("&All Laps as One"));
  time_scale_ = new QCheckBox(QStringLiteral("&Seconds"));
  auto* scale = new QPushButton(QStringLiteral("S&cale..."));
  auto* options = new QHBoxLayout;
  options->addWidget(new QLabel(QStringLiteral("Bins :")));
  for (QWidget* w : std::initializer_list<QWidget*>{bins_, total_, time_scale_, scale}) options->addWidget(w);
  options->addStretch(1);
  canvas_ = new PlotCanvas;
  labels_ = new QLabel;
  labels_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  labels_->setMinimumWidth(170);
  auto* row = new QHBoxLayout;
  row->addWidget(canvas_, 1);
  row->addWidget(labels_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addLayout(options);
  layout->addLayout(row, 1);

  connect(bins_, &QSpinBox::valueChanged, this, [this](int n) {
    ws_.FolderTable[static_cast<std::size_t>(folder_)].Options.HistoBins = n;
    Redraw();
  });
  connect(total_, &QCheckBox::toggled, this, [this](bool on) {
    ws_.Options.HistoTotal = on;
    RefreshPlots(ws_);
  });
  connect(time_scale_, &QCheckBox::toggled, this, [this](bool on) {
    ws_.Options.HistoTimeScale = on;
    RefreshPlots(ws_);
  });
  connect(scale, &QPushButton::clicked, this, [this] { EditScale(); });
  canvas_->Resized = [this] { Redraw(); };
  canvas_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind != PlotCanvas::MouseKind::Press || e->button() != Qt::LeftButton || ws_.CurFolder != folder_) return;
    canvas_->Paint([&](Surface& s) {
      plot_.SetSurface(s);
      plot_.MouseDown(1, e->position().x() * kTwips, e->position().y() * kTwips);
      plot_.SetSurface(idle_);
    });
    ShowLabels();
  };
  ShowOptions();
}

bool HistoWindow::EditScale() {
  frmHistoScale form;
  form.Form_Load(ws_);
  QDialog d(this);
  d.setWindowTitle(QStringLiteral("Histogram Scales"));
  d.setObjectName(QStringLiteral("frmHistoScale"));
  auto* automatic = new QCheckBox(QStringLiteral("AutoScale"));
  automatic->setObjectName(QStringLiteral("chkAuto"));
  automatic->setChecked(form.chkAuto);
  auto* value = new QLineEdit(form.txtDataIn);
  value->setObjectName(QStringLiteral("txtDataIn"));
  value->setValidator(new QDoubleValidator(value));  // a number or nothing: OK refuses the rest
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  auto* layout = new QFormLayout(&d);
  layout->addRow(automatic);
  layout->addRow(QStringLiteral("Enter &Value :"), value);
  layout->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, &d, [&] {
    form.chkAuto = automatic->isChecked();
    form.txtDataIn = value->text();
    if (form.cmdOK(ws_)) d.accept();  // no number: the dialog stays
  });
  connect(buttons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
  return d.exec() == QDialog::Accepted;
}

void HistoWindow::ShowOptions() {
  const QSignalBlocker a(bins_), b(total_), c(time_scale_);
  bins_->setValue(ws_.FolderTable[static_cast<std::size_t>(folder_)].Options.HistoBins);
  total_->setChecked(ws_.Options.HistoTotal);
  time_scale_->setChecked(ws_.Options.HistoTimeScale);
}

void HistoWindow::ShowLabels() {
  QString text;
  for (const frmHisto::DataLabel& l : plot_.Labels) text += l.Caption + QStringLiteral("  <b>") + l.Value + QStringLiteral("</b><br>");
  labels_->setText(text);
}

void HistoWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;  // a window of a folder not in view waits for its tab
  ShowOptions();
  canvas_->Paint([this](Surface& s) {
    plot_.SetSurface(s);
    plot_.DrawHistograms();
    plot_.SetSurface(idle_);
  });
  plot_.LoadDataLabels();
  setWindowTitle(plot_.Caption.isEmpty() ? QStringLiteral("Histograms") : QStringLiteral("Histograms - ") + plot_.Caption);
  ShowLabels();
}
