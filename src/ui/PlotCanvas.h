#pragma once

// A widget that shows a picture the plots painted into, and passes on its mouse and its size.
// The picture is kept between paints: moving the cursor paints on it and shows it again, the
// traces under it stay as they are.

#include <QImage>
#include <QWidget>
#include <functional>

class Surface;

class PlotCanvas : public QWidget {
 public:
  explicit PlotCanvas(QWidget* parent = nullptr);

  QImage Image;
  enum class MouseKind { Press, Move, Release, DoubleClick };
  std::function<void(MouseKind, QMouseEvent*)> Mouse;
  std::function<void()> Resized;

  // The picture is as large as the widget; false when it already was.
  bool FitImage();
  // Paints on the picture through a QtSurface (twips), then shows it.
  void Paint(const std::function<void(Surface&)>& draw);

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;
  void mouseReleaseEvent(QMouseEvent* e) override;
  void mouseDoubleClickEvent(QMouseEvent* e) override;
};

// Paints with a plot class on the canvas's picture, then leaves the plot on `idle` (a surface
// that outlives every paint).
template <class Plot>
void PaintWith(PlotCanvas* canvas, Plot& plot, Surface& idle, const std::function<void()>& draw) {
  canvas->Paint([&](Surface& s) {
    plot.SetSurface(s);
    draw();
    plot.SetSurface(idle);
  });
}
