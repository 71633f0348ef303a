#include "TavrinSettings/Form/SymbolTitles.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include <gtest/gtest.h>
#include <set>

namespace tavrin {
namespace {

TEST(SymbolTitles, EverySymbolHasOneOfItsOwnInWords) {
  std::set<QString> titles;
  for (const auto name : symbolNames()) {
    const auto title = symbolTitle(name);
    EXPECT_FALSE(title.contains(QLatin1Char('.'))) << name;
    EXPECT_TRUE(title.front().isUpper()) << title.toStdString();
    EXPECT_TRUE(titles.insert(title).second) << title.toStdString();
  }
}

} // namespace
} // namespace tavrin
