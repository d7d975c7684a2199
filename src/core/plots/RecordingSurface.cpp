#include "core/plots/RecordingSurface.h"

DrawOp RecordingSurface::Op(DrawOp::Kind kind) const {
  DrawOp op;
  op.kind = kind;
  op.color = ForeColor;
  op.style = DrawStyle;
  op.mode = DrawMode;
  op.width = DrawWidth;
  return op;
}

void RecordingSurface::Cls() { ops.push_back(Op(DrawOp::Kind::Cls)); }

void RecordingSurface::Line(double x1, double y1, double x2, double y2, int color, LineKind kind) {
  DrawOp op = Op(kind == LineKind::Line ? DrawOp::Kind::Line : kind == LineKind::Box ? DrawOp::Kind::Box : DrawOp::Kind::FilledBox);
  op.x1 = x1, op.y1 = y1, op.x2 = x2, op.y2 = y2, op.color = color;
  ops.push_back(op);
}

void RecordingSurface::Circle(double x, double y, double radius, int color) {
  DrawOp op = Op(DrawOp::Kind::Circle);
  op.x1 = x, op.y1 = y, op.x2 = radius, op.color = color;
  ops.push_back(op);
}

void RecordingSurface::Print(const QString& text) {
  DrawOp op = Op(DrawOp::Kind::Print);
  op.x1 = CurrentX, op.y1 = CurrentY, op.text = text;
  ops.push_back(op);
  CurrentY += TextHeight(text);  // the next line below, as printing does
}

void RecordingSurface::Polyline(const std::vector<PixelPoint>& points) {
  DrawOp op = Op(DrawOp::Kind::Polyline);
  op.points = points;
  ops.push_back(op);
}

std::vector<DrawOp> RecordingSurface::Of(DrawOp::Kind kind) const {
  std::vector<DrawOp> found;
  for (const DrawOp& op : ops) {
    if (op.kind == kind) found.push_back(op);
  }
  return found;
}

std::vector<QString> RecordingSurface::Texts() const {
  std::vector<QString> texts;
  for (const DrawOp& op : Of(DrawOp::Kind::Print)) texts.push_back(op.text);
  return texts;
}
