#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"
#include "Tests/Kit/Spoken.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

TEST(NoteInk, CanBeReadOnAnyPaper) {
  for (int red = 0; red <= 255; red += 51)
    for (int green = 0; green <= 255; green += 51)
      for (int blue = 0; blue <= 255; blue += 51) {
        const QColor paper(red, green, blue);
        EXPECT_GE(contrast(noteInk(paper), paper), 4.5) << paper.name().toStdString();
      }
  EXPECT_EQ(notePaper("no colour"), notePaper("#FBBF24"));
}

TEST(NoteTile, IsOneElementWithItsWholeReading) {
  for (const int span : {1, 3}) {
    const TileSize size{48, span};
    EXPECT_EQ(spoken(noteTileIcon({"", "#FBBF24"}, size), size),
              std::pair(QString("Note"), QString("Click to write a note")));
  }
}

} // namespace
} // namespace tavrin::test
