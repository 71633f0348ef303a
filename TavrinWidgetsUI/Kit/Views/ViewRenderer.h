#pragma once

#include "TavrinWidgetsUI/Kit/Views/View.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <QImage>

namespace tavrin {

/// Paints views, and keeps what is dear to make: fonts, laid-out texts, still layers. Its memory
/// is bounded. One per window is enough.
class ViewPainter {
public:
  ViewPainter();
  ~ViewPainter();
  ViewPainter(ViewPainter&&) noexcept;
  ViewPainter& operator=(ViewPainter&&) noexcept;

  /// Paints `view` into `rect` (points, in the painter's coordinates); `scale` is the pixels per
  /// point of the device. Forgets the buttons and elements of the last painting.
  void paint(QPainter& painter, const AnyView& view, const QRectF& rect, double scale);
  /// The size `view` takes of `offer`.
  QSizeF measure(const AnyView& view, const QSizeF& offer, double scale = 1);

  const std::vector<ViewButton>& buttons() const { return buttons_; }
  const std::vector<AccessibleElement>& elements() const { return elements_; }
  /// The uppermost button at `point`.
  const ViewAction* buttonAt(QPointF point) const;

private:
  struct Caches;
  Caches& caches();

  std::unique_ptr<Caches> caches_;
  std::vector<ViewButton> buttons_;
  std::vector<AccessibleElement> elements_;
};

/// A view as one picture that is used again and again.
class ViewRenderer {
public:
  /// Paints `view` at `size` points and `scale` pixels a point. False when it would look as it
  /// does: nothing is painted then.
  bool render(const AnyView& view, const QSizeF& size, double scale);

  /// ARGB32 premultiplied, `size * scale` pixels rounded, its device pixel ratio 1.
  const QImage& image() const { return image_; }
  const ViewAction* buttonAt(QPointF point) const { return painter_.buttonAt(point); }
  const std::vector<ViewButton>& buttons() const { return painter_.buttons(); }
  const std::vector<AccessibleElement>& elements() const { return painter_.elements(); }

private:
  ViewPainter painter_;
  QImage image_;
  std::optional<AnyView> view_;
  QSizeF size_;
  double scale_ = 0;
  QString family_;
};

} // namespace tavrin
