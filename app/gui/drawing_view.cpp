#include "app/gui/drawing_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace vorhost::gui {

namespace {
constexpr double kWheelStep = 1.2;     // zoom factor per notch of the wheel
constexpr double kMinScale = 1e-9, kMaxScale = 1e9;
constexpr double kDragThreshold = 4;  // pixels a press moves before it is a drag
}  // namespace

DrawingView::DrawingView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setAutoFillBackground(true);
  QPalette pal = palette();
  pal.setColor(QPalette::Window, Qt::white);
  setPalette(pal);
  setMinimumSize(320, 200);
  setCursor(Qt::CrossCursor);
}

void DrawingView::SetPicture(const std::string& svg) {
  if (svg == svg_) return;
  svg_ = svg;
  renderer_.load(QByteArray(svg_.data(), static_cast<qsizetype>(svg_.size())));
  page_ = renderer_.viewBoxF();
  if (fitting_) ZoomExtents();
  update();
}

void DrawingView::ZoomExtents() {
  fitting_ = true;
  if (page_.isEmpty()) return;
  cx_ = page_.center().x();
  cy_ = -page_.center().y();
  scale_ = std::clamp(std::min(width() / page_.width(), height() / page_.height()), kMinScale, kMaxScale);
  update();
}

void DrawingView::ZoomExtentsInto(const QRectF& area) {
  if (page_.isEmpty() || area.isEmpty()) return;
  scale_ = std::clamp(std::min(area.width() / page_.width(), area.height() / page_.height()), kMinScale, kMaxScale);
  // The page's centre goes to the area's.
  cx_ = page_.center().x() - (area.center().x() - width() / 2.0) / scale_;
  cy_ = -page_.center().y() + (area.center().y() - height() / 2.0) / scale_;
  update();
}

void DrawingView::ZoomAbout(QPointF screen, double factor) {
  fitting_ = false;
  Point3 before = WorldAt(screen);
  scale_ = std::clamp(scale_ * factor, kMinScale, kMaxScale);
  Point3 after = WorldAt(screen);
  cx_ += before[0] - after[0];
  cy_ += before[1] - after[1];
  update();
}

void DrawingView::PanBy(QPointF pixels) {
  fitting_ = false;
  cx_ -= pixels.x() / scale_;
  cy_ += pixels.y() / scale_;
  update();
}

void DrawingView::SetView(const Point3& centre, double scale) {
  fitting_ = false;
  cx_ = centre[0];
  cy_ = centre[1];
  scale_ = std::clamp(scale, kMinScale, kMaxScale);
  update();
}

Point3 DrawingView::WorldAt(QPointF screen) const {
  return {cx_ + (screen.x() - width() / 2.0) / scale_, cy_ - (screen.y() - height() / 2.0) / scale_, 0};
}

QPointF DrawingView::ScreenAt(const Point3& world) const {
  return {(world[0] - cx_) * scale_ + width() / 2.0, height() / 2.0 - (world[1] - cy_) * scale_};
}

void DrawingView::set_pick(Pick pick) {
  pick_ = pick;
  dragging_ = false;
  if (pick_ != Pick::kPoint) snapped_.reset();
  update();
}

void DrawingView::SetHighlight(std::vector<std::vector<Point3>> outlines) {
  highlight_ = std::move(outlines);
  update();
}

void DrawingView::SetSnaps(std::vector<SnapPoint> snaps) {
  snaps_ = std::move(snaps);
  snapped_.reset();
  update();
}

void DrawingView::SetBase(std::optional<Point3> base) {
  base_ = base;
  update();
}

void DrawingView::leaveEvent(QEvent*) {
  cursor_.reset();
  if (base_) update();
}

void DrawingView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!page_.isEmpty()) {
    // The page's y runs down like the screen's: its frame maps straight.
    QPointF top_left = ScreenAt({page_.left(), -page_.top(), 0});
    renderer_.render(&painter, QRectF(top_left, QSizeF(page_.width() * scale_, page_.height() * scale_)));
  }
  if (!highlight_.empty()) {
    QPen pen(QColor(0, 120, 255), 2, Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    for (const auto& chain : highlight_) {
      QPolygonF line;
      for (const Point3& p : chain) line << ScreenAt(p);
      if (line.size() == 1) painter.drawEllipse(line.front(), 3, 3);
      else painter.drawPolyline(line);
    }
  }
  if (base_ && cursor_ && pick_ == Pick::kPoint) {
    painter.setPen(QPen(QColor(200, 0, 120), 1));
    painter.drawLine(ScreenAt(*base_), snapped_ ? ScreenAt(snapped_->at) : *cursor_);
  }
  if (snapped_) {
    // A square on an end, a triangle on a middle.
    QPointF at = ScreenAt(snapped_->at);
    constexpr double r = kSnapRadius * 0.75;
    painter.setPen(QPen(QColor(230, 120, 0), 2));
    painter.setBrush(Qt::NoBrush);
    if (snapped_->mid) {
      const QPointF corners[] = {at + QPointF(0, -r), at + QPointF(r, r * 0.8), at + QPointF(-r, r * 0.8)};
      painter.drawPolygon(corners, 3);
    } else {
      painter.drawRect(QRectF(at - QPointF(r, r), at + QPointF(r, r)));
    }
  }
  if (dragging_) {
    bool crossing = drag_to_.x() < drag_from_.x();
    QPen pen(crossing ? QColor(0, 128, 0) : QColor(0, 0, 200));
    pen.setStyle(crossing ? Qt::DashLine : Qt::SolidLine);
    painter.setPen(pen);
    painter.setBrush(crossing ? QColor(0, 160, 0, 40) : QColor(0, 0, 200, 40));
    painter.drawRect(QRectF(drag_from_, drag_to_).normalized());
  }
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    panning_ = true;
    pan_from_ = event->position();
    setCursor(Qt::ClosedHandCursor);
  } else if (event->button() == Qt::LeftButton && pick_ != Pick::kNone) {
    drag_from_ = drag_to_ = event->position();
    dragging_ = false;
  }
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
  cursor_ = event->position();
  if (base_ && pick_ == Pick::kPoint) update();
  if (panning_) {
    PanBy(event->position() - pan_from_);
    pan_from_ = event->position();
  }
  if (pick_ == Pick::kObjects && (event->buttons() & Qt::LeftButton)) {
    drag_to_ = event->position();
    QPointF moved = drag_to_ - drag_from_;
    dragging_ = dragging_ || std::hypot(moved.x(), moved.y()) >= kDragThreshold;
    update();
  }
  if (pick_ == Pick::kPoint) {
    std::optional<SnapPoint> nearest;
    double best = kSnapRadius * kSnapRadius;
    for (const SnapPoint& snap : snaps_) {
      QPointF d = ScreenAt(snap.at) - event->position();
      double d2 = d.x() * d.x() + d.y() * d.y();
      if (d2 <= best) {
        best = d2;
        nearest = snap;
      }
    }
    bool changed = nearest.has_value() != snapped_.has_value() ||
                   (nearest && (nearest->at[0] != snapped_->at[0] || nearest->at[1] != snapped_->at[1]));
    snapped_ = nearest;
    if (changed) update();
  }
  if (on_cursor) on_cursor(snapped_ ? snapped_->at : WorldAt(event->position()));
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::MiddleButton) {
    panning_ = false;
    setCursor(Qt::CrossCursor);
    return;
  }
  if (event->button() != Qt::LeftButton || pick_ == Pick::kNone) return;
  if (dragging_) {
    dragging_ = false;
    update();
    if (on_window)
      on_window(WorldAt(drag_from_), WorldAt(event->position()), event->position().x() < drag_from_.x());
    return;
  }
  Point3 at = pick_ == Pick::kPoint && snapped_ ? snapped_->at : WorldAt(event->position());
  if (on_point) on_point(at);
}

void DrawingView::wheelEvent(QWheelEvent* event) {
  double notches = event->angleDelta().y() / 120.0;
  if (notches != 0) ZoomAbout(event->position(), std::pow(kWheelStep, notches));
  event->accept();
}

void DrawingView::resizeEvent(QResizeEvent*) {
  if (fitting_) ZoomExtents();
}

}  // namespace vorhost::gui
