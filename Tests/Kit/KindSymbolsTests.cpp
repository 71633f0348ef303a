#include "TavrinWidgetsUI/Kit/Pictures/KindSymbols.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

TEST(KindSymbols, EveryKindHasADrawing) {
  for (const auto& kind : allKinds()) {
    EXPECT_TRUE(hasSymbol(kindSymbol(kind.key))) << kind.key;
    EXPECT_NE(kindSymbol(kind.key), "questionmark.square") << kind.key;
  }
}

} // namespace
} // namespace tavrin::test
