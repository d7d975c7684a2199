#include "ui/AxisPanels.h"

#include <QHBoxLayout>
#include <QPainter>

#include "core/app/Workspace.h"
#include "core/plots/PlotAxes.h"
#include "render/QtSurface.h"
#include "ui/PlotCanvas.h"

namespace {

constexpr double kTwips = 15;  // twips a pixel

}  // namespace

AxisPanels::AxisPanels() : left_(new PlotCanvas), right_(new PlotCanvas) {
  left_->setFixedWidth(static_cast<int>(2 * kPanelColumn / kTwips));
  right_->setFixedWidth(static_cast<int>(kPanelColumn / kTwips));
}

void AxisPanels::AddAround(QHBoxLayout* row, QWidget* plot) {
  row->addWidget(left_);
  row->addWidget(plot, 1);
  row->addWidget(right_);
}

void AxisPanels::Show(const FolderRec& folder) {
  // A tiled folder has a scale in every band and no side panels.
  const auto& names = folder.AxisPanelChannels;
  const bool tiled = folder.Options.TileGraphs;
  left_->setVisible(!tiled && (!names[0].trimmed().isEmpty() || !names[1].trimmed().isEmpty()));
  right_->setVisible(!tiled && !names[2].trimmed().isEmpty());
}

void AxisPanels::Paint(const std::function<void(Surface*, Surface*)>& draw) {
  left_->FitImage();
  right_->FitImage();
  {
    QPainter left_painter(&left_->Image), right_painter(&right_->Image);
    QtSurface left(left_painter, left_->Image.size()), right(right_painter, right_->Image.size());
    draw(left_->isHidden() ? nullptr : &left, right_->isHidden() ? nullptr : &right);
  }
  left_->update();
  right_->update();
}
