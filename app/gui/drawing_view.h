// drawing_view.h - model space in a window: the picture the SVG export
// draws, panned with the middle button, zoomed with the wheel about the
// cursor, and clicked for points or dragged for selection windows.
#ifndef VORHOST_APP_GUI_DRAWING_VIEW_H
#define VORHOST_APP_GUI_DRAWING_VIEW_H

#include <QPointF>
#include <QRectF>
#include <QSvgRenderer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/gui/snap.h"
#include "emulator/core/numbers.h"

namespace vorhost::gui {

class DrawingView : public QWidget {
  Q_OBJECT

 public:
  // What a left click answers.
  enum class Pick {
    kNone,     // nothing is asked
    kPoint,    // a point
    kObjects,  // objects: a click picks, a drag draws a window
  };

  explicit DrawingView(QWidget* parent = nullptr);

  // Shows picture, an SVG of model space whose page is the world with y
  // negated (as the SVG export writes it). Until the user pans or zooms,
  // and again after ZoomExtents, each picture is fitted to the view.
  void SetPicture(const std::string& svg);
  // Fits what is drawn (with the picture's margin) into the view, and
  // keeps fitting new pictures until the user pans or zooms.
  void ZoomExtents();
  // Fits what is drawn into area, a part of the view (for a picture with a
  // dialog over the rest); new pictures are fitted to the whole again.
  void ZoomExtentsInto(const QRectF& area);
  // Zooms by factor, keeping the world point under screen where it is.
  void ZoomAbout(QPointF screen, double factor);
  void PanBy(QPointF pixels);
  // Puts centre at the middle of the view at scale pixels per unit.
  void SetView(const Point3& centre, double scale);

  Point3 WorldAt(QPointF screen) const;
  QPointF ScreenAt(const Point3& world) const;
  double scale() const { return scale_; }  // pixels per drawing unit
  // Whether new pictures are fitted to the view (the user has not moved it).
  bool fitting() const { return fitting_; }

  void set_pick(Pick pick);
  Pick pick() const { return pick_; }
  // The points a click for a point snaps to, when the cursor comes within
  // kSnapRadius pixels of one; the one it would snap to now, if any.
  void SetSnaps(std::vector<SnapPoint> snaps);
  static constexpr int kSnapRadius = 8;
  // Half the side of the box a click picks an object with, in pixels.
  static constexpr int kPickBox = 5;
  std::optional<SnapPoint> snapped() const { return snapped_; }
  // The point a point asked for is measured from: while one is asked for,
  // a line follows the cursor (or the point it snaps to) from it.
  void SetBase(std::optional<Point3> base);
  const std::optional<Point3>& base() const { return base_; }
  // The outlines of the objects chosen so far, drawn over the picture.
  void SetHighlight(std::vector<std::vector<Point3>> outlines);
  const std::vector<std::vector<Point3>>& highlight() const { return highlight_; }

  // Called with a point clicked (kPoint, or a click in kObjects), and with
  // a window dragged in kObjects: from the first corner to the second, and
  // whether it was dragged right to left (crossing).
  std::function<void(const Point3&)> on_point;
  std::function<void(const Point3&, const Point3&, bool)> on_window;
  std::function<void(const Point3&)> on_cursor;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QSvgRenderer renderer_;
  std::string svg_;
  QRectF page_;       // the picture's frame, page coordinates (y down)
  double cx_ = 0, cy_ = 0;  // world point at the view's centre
  double scale_ = 1;
  bool fitting_ = true;  // new pictures are fitted to the view
  Pick pick_ = Pick::kNone;
  bool panning_ = false;
  QPointF pan_from_;
  bool dragging_ = false;
  QPointF drag_from_, drag_to_;
  std::vector<SnapPoint> snaps_;
  std::optional<SnapPoint> snapped_;
  std::vector<std::vector<Point3>> highlight_;
  std::optional<Point3> base_;
  std::optional<QPointF> cursor_;  // where the mouse is over the view
};

}  // namespace vorhost::gui

#endif
