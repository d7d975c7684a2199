#include "ui/PlotCanvas.h"

#include <QMouseEvent>
#include <QPainter>

#include "render/QtSurface.h"

PlotCanvas::PlotCanvas(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // the picture covers every pixel
  setMinimumSize(40, 40);
}

bool PlotCanvas::FitImage() {
  if (Image.size() == size()) return false;
  Image = QImage(size(), QImage::Format_RGB32);
  Image.fill(Qt::white);
  return true;
}

void PlotCanvas::Paint(const std::function<void(Surface&)>& draw) {
  FitImage();
  {
    QPainter painter(&Image);
    QtSurface surface(painter, Image.size());
    draw(surface);
  }
  update();
}

void PlotCanvas::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.drawImage(0, 0, Image);
}

void PlotCanvas::resizeEvent(QResizeEvent*) {
  if (Resized) Resized();
}

void PlotCanvas::mousePressEvent(QMouseEvent* e) {
  if (Mouse) Mouse(MouseKind::Press, e);
}

void PlotCanvas::mouseMoveEvent(QMouseEvent* e) {
  if (Mouse) Mouse(MouseKind::Move, e);
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent* e) {
  if (Mouse) Mouse(MouseKind::Release, e);
}

void PlotCanvas::mouseDoubleClickEvent(QMouseEvent* e) {
  if (Mouse) Mouse(MouseKind::DoubleClick, e);
}
