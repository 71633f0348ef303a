#include "TavrinCore/Text/NameOrder.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>

namespace tavrin {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names, const char* locale) {
  const NameOrder order(locale);
  std::ranges::stable_sort(names, std::cref(order));
  return names;
}

TEST(NameOrder, NumbersGoByTheirValueAndWordsByTheLocale) {
  for (const char* locale : {"en_US_POSIX", "c", "", "de_DE", "en_GB"})
    EXPECT_THAT(
        sorted({"Zeta", "photo 10.png", "photo 9.png", "apple", "Öl", "Ofen", "Photo 2.png"},
               locale),
        ElementsAre("apple", "Ofen", "Öl", "Photo 2.png", "photo 9.png", "photo 10.png", "Zeta"))
        << locale;
  EXPECT_THAT(sorted({"Ö", "Z", "A"}, "sv_SE"), ElementsAre("A", "Z", "Ö"));
}

} // namespace
} // namespace tavrin
