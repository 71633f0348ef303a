#include "TavrinWidgetsUI/System/PetSprites.h"

#include "TavrinCore/Kinds/System/PetSettings.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/System/PetMaps.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace tavrin {
namespace {

using pets::PetMap;

struct PetPalette {
  QRgb outline;
  QRgb fur;
  QRgb shade;
  QRgb light;
  QRgb nose;
  QRgb inner = 0xFFF2A0A0;
  QRgb first = 0xFFFFFFFF;
  QRgb second = 0xFFFFFFFF;
};

constexpr QRgb eyeColour = 0xFF2A1E1A;
constexpr QRgb heartColour = 0xFFFF4D6D;

constexpr PetPalette palettes[] = {
    {0xFF7A3E1D, 0xFFF2A154, 0xFFD97B34, 0xFFFFE9CC, 0xFFE0707A},
    {0xFF5A3A22, 0xFFD9A066, 0xFF8F5B34, 0xFFF7E3C4, 0xFF3A2620, 0xFFF2A0A0, 0xFFD8434B},
    {0xFF6B2A14, 0xFFF07B3A, 0xFF5A2A1C, 0xFFFFF3E6, 0xFF3A2620},
    {0xFF7D7482, 0xFFE8E3EA, 0xFFC9C0CE, 0xFFFFFFFF, 0xFFE88A9A, 0xFFF5B6C0},
    // A turtle's first and second colours are its shell's.
    {0xFF2F5A36, 0xFF8CCB6B, 0xFF5E9C4C, 0xFFE9E0A8, 0xFF2F5A36, 0xFFF2A0A0, 0xFF8A6A3C,
     0xFFC79A55},
};

/// The colour of a map's character; 0 for none.
QRgb colourOf(char character, const PetPalette& palette, bool hasClosedEyes) {
  switch (character) {
  case 'o':
    return palette.outline;
  case 'f':
    return palette.fur;
  case 'd':
    return palette.shade;
  case 'l':
    return palette.light;
  case 'n':
    return palette.nose;
  case 'p':
    return palette.inner;
  case 'c':
  case 's':
    return palette.first;
  case 'h':
    return palette.second;
  case 'w':
  case 'z':
    return 0xFFFFFFFF;
  case 'r':
    return heartColour;
  case 'E':
    return hasClosedEyes ? palette.fur : eyeColour;
  case 'e':
    return hasClosedEyes ? palette.outline : eyeColour;
  default:
    return 0;
  }
}

struct Part {
  const PetMap* map;
  int x;
  int y;
};

/// What a four-legged animal is made of.
struct Animal {
  const PetMap& head;
  const PetMap& body;
  const PetMap& tail;
  const PetMap& otherTail;
  const PetMap& sitting;
  const PetMap& lying;
  QPoint tailPlace;
  int headHeight;
  /// How far the head reaches down over the body.
  int headDrop;
};

const Animal& animal(PetSpecies species) {
  using namespace pets;
  static const Animal animals[] = {
      {catHead, catBody, catTailA, catTailB, catSit, catLoaf, {1, 9}, 8, 1},
      {dogHead, dogBody, dogTailA, dogTailB, dogSit, dogLoaf, {1, 10}, 9, 2},
      {foxHead, foxBody, foxTailA, foxTailB, foxSit, foxLoaf, {0, 10}, 9, 1},
      {rabbitHead, rabbitBody, rabbitTail, rabbitTail, rabbitSit, rabbitLoaf, {2, 12}, 9, 1}};
  return animals[static_cast<std::size_t>(species)];
}

std::vector<Part> walkingParts(PetSpecies species, int frame) {
  using namespace pets;
  const Animal& made = animal(species);
  const bool isHopping = species == PetSpecies::rabbit;
  const int lift = isHopping && frame % 2 == 1 ? -2 : 0;
  const int nod = frame % 2 == 1 ? std::min(lift, -1) : 0;
  const PetMap* gait[] = {&legsA, &legsB, &legsC, &legsB};
  const PetMap* hop[] = {&rabbitLegsA, &rabbitLegsB};
  const PetMap* legs = isHopping ? hop[frame % 2] : gait[frame % 4];
  return {{frame < 2 ? &made.tail : &made.otherTail, made.tailPlace.x(), made.tailPlace.y() + lift},
          {legs, 4, 17 + lift},
          {&made.body, 4, 12 + lift},
          {&made.head, 11, 15 - made.headHeight + made.headDrop + nod}};
}

std::vector<Part> turtleParts(const PetPose& pose) {
  using namespace pets;
  if (pose.activity == PetActivity::sleeping)
    return {{&turtleLoaf, 4, 13}, {&snore, 17, 8}};
  const bool walks = pose.activity == PetActivity::walking || pose.activity == PetActivity::running;
  const int reach = walks && (pose.frame == 1 || pose.frame == 2) ? 1 : 0;
  const bool isHappy = pose.activity == PetActivity::happy;
  std::vector<Part> parts{{&turtleTail, 1, 15},
                          {walks && pose.frame < 2 ? &turtleLegsA : &turtleLegsB, 4, 18},
                          {&turtleHead, 14 + reach,
                           isHappy ? 8 - pose.frame % 2
                           : walks ? 10
                                   : 9},
                          {&turtleBody, 2, 11}};
  if (isHappy)
    parts.push_back({&heart, 14, pose.frame / 2 % 2});
  return parts;
}

std::vector<Part> partsOf(PetSpecies species, const PetPose& pose) {
  using namespace pets;
  if (species == PetSpecies::turtle)
    return turtleParts(pose);
  const Animal& made = animal(species);
  switch (pose.activity) {
  case PetActivity::walking:
  case PetActivity::running:
    return walkingParts(species, pose.frame % 4);
  case PetActivity::sleeping:
    return {{&made.lying, 2, 14},
            {&made.head, 11, petHeight - made.headHeight + (made.headDrop - 1)},
            {&snore, 18, 5}};
  case PetActivity::happy: {
    constexpr int jump[] = {0, -1, -2, -1};
    const int lift = jump[pose.frame % 4];
    return {{&made.sitting, 6, 14 + lift},
            {&made.head, 6, 15 - made.headHeight + made.headDrop - 1 + lift},
            {&heart, 15, pose.frame / 2 % 2}};
  }
  case PetActivity::sitting:
    break;
  }
  return {{&made.sitting, 6, 14}, {&made.head, 6, 15 - made.headHeight + made.headDrop - 1}};
}

void draw(QImage& image, const Part& part, const PetPalette& palette, bool hasClosedEyes) {
  for (std::size_t row = 0; row < part.map->rows.size(); ++row)
    for (std::size_t column = 0; column < part.map->rows[row].size(); ++column) {
      const QRgb colour = colourOf(part.map->rows[row][column], palette, hasClosedEyes);
      const QPoint place(part.x + static_cast<int>(column), part.y + static_cast<int>(row));
      if (colour != 0 && image.rect().contains(place))
        image.setPixel(place, colour);
    }
}

struct Meadow {
  QColor top;
  QColor bottom;
  QRgb grass;
  QRgb tuft;
  QRgb lamp;
};

const Meadow& meadow(PetSky sky) {
  static const Meadow meadows[] = {
      {{0x16, 0x1D, 0x45}, {0x3A, 0x45, 0x80}, 0xFF2F5A48, 0xFF24483A, 0xFFF3EFC8},
      {{0x8A, 0xB4, 0xE8}, {0xFF, 0xD2, 0xA8}, 0xFF86B968, 0xFF6FA455, 0xFFFFE08A},
      {{0x7F, 0xC4, 0xF4}, {0xCF, 0xEC, 0xFB}, 0xFF8CCB62, 0xFF72B34C, 0xFFFFE066},
      {{0x5A, 0x5C, 0xA6}, {0xFF, 0xA2, 0x78}, 0xFF6E9A58, 0xFF587F49, 0xFFFF8A5C}};
  return meadows[static_cast<std::size_t>(sky)];
}

/// The same for the same place, as scattered as it need be.
unsigned scatter(int x) {
  auto mixed = static_cast<unsigned>(x) * 2654435761U;
  mixed ^= mixed >> 15;
  return mixed * 2246822519U >> 16;
}

void drawSky(QImage& image, const Meadow& colours, PetSky sky, int horizon) {
  constexpr int bands = 6;
  for (int y = 0; y < horizon; ++y) {
    const int band = y * bands / std::max(horizon, 1);
    const QRgb colour = mix(colours.top, colours.bottom, band / double(bands - 1)).rgb();
    for (int x = 0; x < image.width(); ++x)
      image.setPixel(x, y, colour);
  }
  if (sky == PetSky::night)
    for (int x = 0; x < image.width(); ++x)
      if (const unsigned star = scatter(x); star % 5 == 0 && horizon > 10)
        image.setPixel(x, 1 + static_cast<int>(star / 5 % static_cast<unsigned>(horizon - 8)),
                       0xFFC9D2F5);
  // Sun and moon, a disc of five pixels.
  const QPoint centre(6, 6);
  for (int y = -2; y <= 2; ++y)
    for (int x = -2; x <= 2; ++x)
      if (const QPoint place = centre + QPoint(x, y); std::abs(x) + std::abs(y) < 4 &&
                                                      image.rect().contains(place) &&
                                                      !(sky == PetSky::night && x > 0 && y < 1))
        image.setPixel(place, colours.lamp);
}

void drawGrass(QImage& image, const Meadow& colours, int horizon, int way) {
  for (int x = 0; x < image.width(); ++x) {
    const unsigned kind = scatter(x + way);
    for (int y = horizon; y < image.height(); ++y)
      image.setPixel(x, y, colours.grass);
    if (kind % 4 == 0 && horizon + 1 < image.height())
      image.setPixel(x, horizon + 1 + static_cast<int>(kind / 4 % 2), colours.tuft);
    if (kind % 7 == 0 && horizon > 0)
      image.setPixel(x, horizon - 1, colours.grass);
    if (kind % 23 == 0 && horizon > 1)
      image.setPixel(x, horizon - 1, kind % 2 == 0 ? 0xFFFFFFFF : 0xFFFFE066);
  }
}

} // namespace

QImage petSprite(PetSpecies species, const PetPose& pose) {
  QImage image(petWidth, petHeight, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  const bool hasClosedEyes = pose.activity == PetActivity::sleeping ||
                             pose.activity == PetActivity::happy ||
                             (pose.activity == PetActivity::sitting && pose.frame == 1);
  for (const Part& part : partsOf(species, pose))
    draw(image, part, palettes[static_cast<std::size_t>(species)], hasClosedEyes);
  // Letters and hearts are not mirrored along.
  return pose.facesLeft ? image.mirrored(true, false) : image;
}

QImage petScene(PetSpecies species, const PetPose& pose, PetSky sky, QSize size) {
  constexpr int groundHeight = 4;
  constexpr int standing = 2;
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  const Meadow& colours = meadow(sky);
  const int horizon = std::max(size.height() - groundHeight, 0);
  drawSky(image, colours, sky, horizon);
  drawGrass(image, colours, horizon, pose.way);
  const int room = petRoom(size.width());
  const int margin = (size.width() - petWidth - room) / 2;
  QPainter painter(&image);
  painter.drawImage(margin + std::clamp(pose.place, 0, room), size.height() - standing - petHeight,
                    petSprite(species, pose));
  return image;
}

int petRoom(int width) {
  constexpr int least = 12;
  constexpr int margin = 4;
  const int room = width - petWidth - 2 * margin;
  return room < least ? 0 : room;
}

} // namespace tavrin
