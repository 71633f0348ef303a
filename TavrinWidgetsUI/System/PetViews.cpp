#include "TavrinWidgetsUI/System/PetViews.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include "TavrinCore/Kinds/System/PetSettings.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

/// How many of its pixels a meadow is high, at least.
constexpr double leastHeight = 24;

struct MeadowKey {
  PetSpecies species;
  PetPose pose;
  PetSky sky;
  bool operator==(const MeadowKey&) const = default;
};

void paintMeadow(QPainter& painter, const QRectF& rect, const MeadowKey& key) {
  const double scale = std::max(std::abs(painter.worldTransform().m11()), 1.0);
  const PetCanvas canvas = petCanvas(rect.size());
  const QImage scene = petScene(key.species, key.pose, key.sky, canvas.pixels);
  const QSizeF whole = QSizeF(canvas.pixels) * canvas.unit;
  // From the lower edge up, centred; what is over at the top and the sides is cut by the tile.
  const QRectF target(rect.center().x() - whole.width() / 2, rect.bottom() - whole.height(),
                      whole.width(), whole.height());
  const double ratio = canvas.unit * scale;
  if (std::abs(ratio - std::round(ratio)) < 0.01) {
    const QPointF corner = painter.worldTransform().map(target.topLeft());
    const QPointF snapped(std::round(corner.x()), std::round(corner.y()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(target.translated((snapped - corner) / scale), scene);
    return;
  }
  // Half a pixel over: drawn large and made smaller, so that all pixels look alike.
  const QImage large = scene.scaled(scene.size() * static_cast<int>(std::ceil(ratio * 2)));
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(target, large);
}

} // namespace

PetCanvas petCanvas(QSizeF size) {
  PetCanvas canvas;
  canvas.unit = std::max(std::floor(size.height() / leastHeight * 2) / 2, 0.5);
  canvas.pixels = QSize(static_cast<int>(std::ceil(size.width() / canvas.unit)),
                        static_cast<int>(std::ceil(size.height() / canvas.unit)));
  return canvas;
}

AnyView petMeadow(PetSpecies species, const PetPose& pose, PetSky sky) {
  return canvas(MeadowKey{species, pose, sky}, paintMeadow);
}

AnyView petTile(const PetSettings& settings, const PetPose& pose, PetSky sky,
                const TileSize& size) {
  return tile(palette::ground, petMeadow(settings.species, pose, sky), size)
      .accessibility(petName(settings.species), petWords(pose));
}

QString petName(PetSpecies species) {
  static const char* const names[] = {marked("Cat"), marked("Dog"), marked("Fox"), marked("Rabbit"),
                                      marked("Turtle")};
  return worded(names[static_cast<std::size_t>(species)]);
}

QString petWords(const PetPose& pose) {
  switch (pose.activity) {
  case PetActivity::sitting:
    return worded("Sitting");
  case PetActivity::walking:
    return worded("Walking");
  case PetActivity::running:
    return worded("Running");
  case PetActivity::sleeping:
    return worded("Asleep");
  case PetActivity::happy:
    return worded("Happy");
  }
  return {};
}

} // namespace tavrin
