#pragma once

#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr const char* emptyNoteText = marked("Click to write a note");

/// Faint lines across a paper, as far apart as lines of text are high. Points.
struct NoteRules {
  double firstLine = 0;
  double spacing = 12;
  QColor colour = {};
  bool operator==(const NoteRules&) const = default;
};
AnyView noteRules(const NoteRules& rules);

/// The paper's colour; a warm yellow where `colorHex` is none.
QColor notePaper(const std::string& colorHex);
/// Ink that can be read on `paper`.
QColor noteInk(const QColor& paper);

AnyView noteTileIcon(const NoteSettings& note, const TileSize& size);
AnyView noteWideTile(const NoteSettings& note, const TileSize& size);

} // namespace tavrin
