#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Emoji/EmojiPanelView.h"
#include "TavrinWidgetsUI/Emoji/EmojiViews.h"
#include "Tools/Gallery/Gallery.h"
#include "Tools/Gallery/GalleryRunLoop.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QPixmap>

namespace tavrin {
namespace {

constexpr const char* usualFolder = "/usr/share/unicode";

GalleryRunLoop& loop() {
  static GalleryRunLoop made;
  return made;
}
EmojiGlyphs& glyphs() {
  static EmojiGlyphs made(loop());
  return made;
}

const std::vector<Emoji>& recents() {
  return samples::emoji();
}

GalleryPanel panelOf(const char* name, std::vector<Emoji> used, EmojiSkinTone tone, int group,
                     const char* query = "", const char* folder = usualFolder,
                     const char* trouble = "") {
  return {name, emojiTint, [=](const PanelAppearance& look) {
            auto* model = new EmojiModel(loop(), {folder, "de_DE"});
            model->load();
            auto* panel = new EmojiPanelView(look, *model,
                                             {.name = [] { return std::string("Emoji"); },
                                              .recents = [used] { return used; },
                                              .uses = [] { return std::vector<EmojiUse>(); },
                                              .settings =
                                                  [tone] {
                                                    return EmojiSettings{tone, 24};
                                                  },
                                              .trouble = [trouble] { return std::string(trouble); },
                                              .copy = [](const Emoji&) {},
                                              .setTone = [](EmojiSkinTone) {},
                                              .clear = [] {},
                                              .edit = [] {}});
            QObject::connect(panel, &QObject::destroyed, [model] { delete model; });
            panel->setAttribute(Qt::WA_DontShowOnScreen);
            panel->show();
            panel->showGroup(group);
            panel->findChild<QLineEdit*>()->setText(query);
            panel->resize(panel->fittingSize());
            // The pictures asked for while it is drawn are there the next time.
            for (int i = 0; i < 2; ++i) {
              QCoreApplication::processEvents();
              QPixmap picture(panel->size() * 2);
              picture.setDevicePixelRatio(2);
              panel->render(&picture);
            }
            return panel;
          }};
}

} // namespace

GallerySheet emojiGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const std::vector<Emoji>& used, EmojiSkinTone tone) {
    for (const int span : {1, 2, 3, 4})
      sheet.push_back({name, span, [=](const TileSize& size) {
                         return size.isWide()
                                    ? emojiWideTile(used, tone, glyphs(), size, [](const Emoji&) {})
                                    : emojiTileIcon(used, tone, glyphs(), size);
                       }});
  };
  show("none yet", {}, EmojiSkinTone::standard);
  show("recents", recents(), EmojiSkinTone::standard);
  show("dark", {recents().begin() + 1, recents().end()}, EmojiSkinTone::mediumDark);
  return sheet;
}

GalleryPanels emojiPanels() {
  return {panelOf("recents", recents(), EmojiSkinTone::standard, -1),
          panelOf("smileys", recents(), EmojiSkinTone::standard, 0),
          panelOf("people", recents(), EmojiSkinTone::medium, 1),
          panelOf("search", recents(), EmojiSkinTone::standard, 0, "Katze"),
          panelOf("nothing", recents(), EmojiSkinTone::standard, 0, "qwertz"),
          panelOf("first", {}, EmojiSkinTone::standard, -1),
          panelOf("no data", {}, EmojiSkinTone::standard, -1, "", "/nonexistent"),
          panelOf("trouble", recents(), EmojiSkinTone::standard, 0, "", usualFolder,
                  "Failed to write emoji.json because the disk is full")};
}

const GalleryEntry emojiEntries[] = {{"emoji", emojiGallery}, {"emoji-panels", emojiPanels}};

} // namespace tavrin
