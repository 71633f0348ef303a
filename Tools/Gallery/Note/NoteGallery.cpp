#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinWidgetsUI/Note/NoteModel.h"
#include "TavrinWidgetsUI/Note/NotePanelView.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <deque>

namespace tavrin {
namespace {

/// One word that no tile has room for.
const char* const address =
    "https://tavrin.example/a/very/long/way/to/what/somebody/wanted/to/read?"
    "later=1&from=the+paper&page=1234567890";
const char* const shortNote = "Milk, bread\nCall Ada";
const char* const longNote =
    "Groceries: milk, bread, a kilogram of unreasonably small potatoes, soap, "
    "Donaudampfschifffahrtsgesellschaftskapitän, and whatever looks good. Then home.";

struct NoteCase {
  const char* name;
  const char* text;
  const char* paper;
};

constexpr NoteCase noteCases[] = {
    {"empty", "", "#FBBF24"},        {"short", shortNote, "#FBBF24"},
    {"long", longNote, "#FBBF24"},   {"blue", longNote, "#0A84FF"},
    {"black", shortNote, "#000000"}, {"white", longNote, "#FFFFFF"},
    {"grey", shortNote, "#777777"},  {"pink", shortNote, "#FF9EC4"},
    {"address", address, "#FBBF24"},
};

NoteModel& noteModel(const NoteSettings& settings) {
  static test::FakePlatform platform;
  static std::deque<NoteModel> notes;
  return notes.emplace_back(platform.fakeClock, platform.loop, settings);
}

} // namespace

GallerySheet noteGallery() {
  GallerySheet sheet;
  for (const int span : {1, 2, 4})
    for (const auto& note : noteCases)
      sheet.push_back({note.name, span, [note](const TileSize& size) {
                         const NoteSettings settings{note.text, note.paper};
                         return size.isWide() ? noteWideTile(settings, size)
                                              : noteTileIcon(settings, size);
                       }});
  return sheet;
}

GalleryPanels notePanels() {
  GalleryPanels panels;
  for (const auto& note : noteCases)
    panels.push_back({note.name, notePaper(note.paper), [note](const PanelAppearance& look) {
                        return new NotePanelView(
                            look, noteModel({note.text, note.paper}), [] { return "Note"; }, [] {});
                      }});
  panels.push_back({"conflict", notePaper("#FBBF24"), [](const PanelAppearance& look) {
                      auto& model = noteModel({shortNote, "#FBBF24"});
                      model.edit(std::string(shortNote) + "\nBuy flowers");
                      model.settingsChanged({longNote, "#FBBF24"});
                      return new NotePanelView(
                          look, model, [] { return "Note"; }, [] {});
                    }});
  return panels;
}

const GalleryEntry noteEntries[] = {{"note", noteGallery}, {"note-panels", notePanels}};

} // namespace tavrin
