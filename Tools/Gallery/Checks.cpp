#include "Tools/Gallery/Checks.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "Tools/Gallery/CutWords.h"
#include "Tools/Gallery/ShownTexts.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <fmt/format.h>

namespace tavrin {

namespace {

constexpr double dockSizes[] = {48, 64, 96, 128};
constexpr double leastContrast = 4.5;

struct KnownCut {
  std::string_view sheet;
  std::string_view name;
  std::string_view where;
};

/// On the smallest tiles the words of a state stand in as many lines of the smallest type that can
/// be read (6.5 points) as there is room for; still smaller type, or fewer words than "Does not
/// answer", would say less than what is cut. German and Arabic stand whole there; the tile's
/// tooltip, its accessible name and the panel say all of it in every language.
constexpr KnownCut knownCuts[] = {
    {"usage", "reading", "64 points"},  {"github", "nothing", "48 points"},
    {"weather", "partly", "48 points"}, {"weather", "thunder", "48 points"},
    {"music", "silent", "48 points"},   {"airdrop", "idle", "48 points"},
};

int tellCut(const char* sheet, const std::string& name, const std::string& where,
            const QStringList& words) {
  const auto isHere = [&](const KnownCut& known) {
    return known.sheet == sheet && known.name == name && known.where == where;
  };
  const bool isPseudo = worded("Open").startsWith(u'[');
  if (isPseudo && std::ranges::any_of(knownCuts, isHere))
    return 0;
  for (const QString& each : words)
    std::printf("%s, %s, %s: %s\n", sheet, name.c_str(), where.c_str(), qUtf8Printable(each));
  return int(words.size());
}

/// What the looking below would tell of a tile and a panel that are made wrong.
bool findsWhatIsWrong() {
  const TileSize size{48, 1};
  const AnyView wide = tile(palette::ground, text("8888888888").size(20).figure(20), size);
  const AnyView pale = tile(palette::ground, text("8").colour(palette::track), size);
  PanelView panel({});
  auto* low = new PanelText(QStringLiteral("Low"), PanelTextStyle::body, &panel);
  low->setFixedHeight(6);
  panel.add(low);
  panel.setAttribute(Qt::WA_DontShowOnScreen);
  panel.show();
  panel.resize(panel.fittingSize());
  QCoreApplication::processEvents();
  return !cutWords(wide, size).isEmpty() && !cutWords(panel).isEmpty() &&
         shownTexts(pale, size, Wanted::contrast).front().contrast < leastContrast;
}

} // namespace

int tellAllCut() {
  if (!findsWhatIsWrong()) {
    std::printf("What is made wrong is not found.\n");
    return 1;
  }
  int count = 0;
  int looked = 0;
  for (const NamedSheet& sheet : gallerySheets())
    for (const GalleryTile& tile : sheet.tiles())
      for (const double side : dockSizes) {
        const TileSize size{side, tile.span};
        count += tellCut(sheet.name, tile.name, fmt::format("{} points", side),
                         cutWords(tile.view(size), size));
        ++looked;
      }
  for (const NamedPanels& each : galleryPanels())
    for (const GalleryPanel& made : each.panels()) {
      count += tellCut(each.name, made.name, "panel",
                       cutWords(*laidOut(made, {false, false, made.tint})));
      ++looked;
    }
  std::printf("%d pictures, %d texts cut\n", looked, count);
  return count;
}

namespace {

struct Palette {
  const char* name;
  bool dark;
  bool highContrast;
};
constexpr Palette palettes[] = {{"light", false, false},
                                {"dark", true, false},
                                {"light, high contrast", false, true},
                                {"dark, high contrast", true, true}};

/// The least contrast of some pictures, and what has it.
struct Least {
  double contrast = 21;
  double ofDisabled = 21;
  std::string at;
  int texts = 0;
  int tooLow = 0;

  void add(const std::string& place, const std::vector<ShownText>& shown) {
    for (const ShownText& text : shown) {
      ++texts;
      if (text.isDisabled)
        ofDisabled = std::min(ofDisabled, text.contrast);
      if (text.contrast < leastContrast) {
        ++tooLow;
        std::printf("%s: %.2f %s\n", place.c_str(), text.contrast, qUtf8Printable(text.words));
      }
      if (text.contrast < contrast) {
        contrast = text.contrast;
        at = place + ", " + text.words.toStdString();
      }
    }
  }
  void tell(const char* name) const {
    std::printf("%s: %d texts, the least %.2f (%s), of disabled controls %.2f\n", name, texts,
                contrast, at.c_str(), ofDisabled);
  }
};

} // namespace

int tellContrast() {
  int count = 0;
  Least ofTiles;
  for (const NamedSheet& sheet : gallerySheets())
    for (const GalleryTile& tile : sheet.tiles())
      for (const double side : dockSizes) {
        const TileSize size{side, tile.span};
        ofTiles.add(fmt::format("{}, {}, {} points", sheet.name, tile.name, side),
                    shownTexts(tile.view(size), size, Wanted::contrast));
      }
  ofTiles.tell("tiles");
  count += ofTiles.tooLow;
  for (const Palette& palette : palettes) {
    Least least;
    for (const NamedPanels& each : galleryPanels())
      for (const GalleryPanel& made : each.panels())
        least.add(fmt::format("{}, {}, {}", each.name, made.name, palette.name),
                  shownTexts(*laidOut(made, {palette.dark, false, made.tint, palette.highContrast}),
                             Wanted::contrast));
    least.tell(palette.name);
    count += least.tooLow;
  }
  return count;
}

} // namespace tavrin
