#include "ui/XYWindow.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Workspace.h"
#include "ui/PlotCanvas.h"

namespace {

constexpr double kTwips = 15;  // twips a pixel

FolderOptions& Options(Workspace& ws, int folder) { return ws.FolderTable[static_cast<std::size_t>(folder)].Options; }

}  // namespace

XYWindow::XYWindow(DialogHost& host, int folder, QWidget* parent)
    : PlotWindowBase(host.ws, folder, PlotWindow::XYPlot, parent), host_(host), plot_(host.ws, idle_) {
  setWindowTitle(QStringLiteral("XY Plot"));
  axis_ = new QPushButton;
  axis_->setObjectName(QStringLiteral("cmdXAxis"));
  connected_ = new QCheckBox(QStringLiteral("&Connected"));
  line_fit_ = new QCheckBox(QStringLiteral("&Line Fit"));
  // The square as a superscript beside the option: the fit's own text can't show it.
  curve_fit_ = new QCheckBox(QStringLiteral("y = ax\u00B2 + bx + c"));
  manual_ = new QPushButton(QStringLiteral("&Manual Fit"));
  manual_->setCheckable(true);
  manual_->setToolTip(QStringLiteral("The next two clicks on the plot set a line by hand"));
  auto* options = new QHBoxLayout;
  for (QWidget* w : std::initializer_list<QWidget*>{axis_, connected_, line_fit_, curve_fit_, manual_}) options->addWidget(w);
  options->addStretch(1);
  canvas_ = new PlotCanvas;
  labels_ = new QLabel;
  labels_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  labels_->setMinimumWidth(170);
  auto* row = new QHBoxLayout;
  row->setSpacing(0);
  panels_.AddAround(row, canvas_);
  row->addWidget(labels_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->addLayout(options);
  layout->addLayout(row, 1);

  connect(axis_, &QPushButton::clicked, this, [this] {
    FolderRec& f = ws_.FolderTable[static_cast<std::size_t>(folder_)];
    const int c = ChooseAxisChannel(host_, f.SelOuting);
    if (c < 0) return;
    f.Options.AxisXYChannel = f.Outings[static_cast<std::size_t>(f.SelOuting)].Channels.at(static_cast<std::size_t>(c)).ShortName.trimmed();
    Redraw();
  });
  const auto toggle = [this](QCheckBox* box, bool FolderOptions::*option) {
    connect(box, &QCheckBox::toggled, this, [this, option](bool on) {
      Options(ws_, folder_).*option = on;
      Redraw();
    });
  };
  toggle(connected_, &FolderOptions::XYConnected);
  toggle(line_fit_, &FolderOptions::XYLineFit);
  toggle(curve_fit_, &FolderOptions::XYCurveFit);
  canvas_->Resized = [this] { Redraw(); };
  canvas_->Mouse = [this](PlotCanvas::MouseKind kind, QMouseEvent* e) {
    if (kind != PlotCanvas::MouseKind::Press || e->button() != Qt::LeftButton || ws_.CurFolder != folder_) return;
    const bool manual = manual_->isChecked();
    canvas_->Paint([&](Surface& s) {
      plot_.SetSurface(s);
      plot_.MouseDown(1, e->position().x() * kTwips, e->position().y() * kTwips, manual);
      plot_.SetSurface(idle_);
    });
    if (manual && !plot_.Manual[0].Set) manual_->setChecked(false);  // the line is drawn
    ShowLabels();
  };
  ShowOptions();
}

void XYWindow::ShowOptions() {
  const FolderOptions& o = Options(ws_, folder_);
  for (auto [box, on] : {std::pair{connected_, o.XYConnected}, {line_fit_, o.XYLineFit}, {curve_fit_, o.XYCurveFit}}) {
    const QSignalBlocker quiet(box);
    box->setChecked(on);
  }
  axis_->setText(QStringLiteral("X : ") + o.AxisXYChannel + QStringLiteral("..."));
}

void XYWindow::ShowLabels() {
  QString text;
  for (const frmXYPlot::DataLabel& l : plot_.Labels) text += l.Caption + QStringLiteral("  <b>") + l.Value + QStringLiteral("</b><br>");
  if (!plot_.LineText.isEmpty()) text += QStringLiteral("<br>") + plot_.LineText.toHtmlEscaped();
  if (!plot_.CurveText.isEmpty()) text += QStringLiteral("<br>") + plot_.CurveText.toHtmlEscaped();
  labels_->setText(text);
}

void XYWindow::Redraw() {
  if (ws_.CurFolder != folder_) return;  // a window of a folder not in view waits for its tab
  ShowOptions();
  panels_.Show(ws_.FolderTable[static_cast<std::size_t>(folder_)]);
  panels_.Paint([this](Surface* left, Surface* right) {
    plot_.SetAxisPanels(left, right);
    canvas_->Paint([this](Surface& s) {
      plot_.SetSurface(s);
      plot_.DrawXYPlots();
      plot_.SetSurface(idle_);
    });
    plot_.SetAxisPanels(nullptr, nullptr);
  });
  setWindowTitle(plot_.Caption.isEmpty() ? QStringLiteral("XY Plot") : QStringLiteral("XY Plot - ") + plot_.Caption);
  ShowLabels();
}

void XYWindow::FollowCursor() {
  if (ws_.CurFolder != folder_) return;
  canvas_->Paint([this](Surface& s) {
    plot_.SetSurface(s);
    plot_.FollowCursor();
    plot_.SetSurface(idle_);
  });
  ShowLabels();
}
