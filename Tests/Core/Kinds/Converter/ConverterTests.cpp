#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinCore/Kinds/Converter/NumberNotation.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <unistd.h>

namespace tavrin {
namespace {

using enum ConverterCategory;

double converted(ConverterCategory category, double value, const char* from, const char* to) {
  return convert(value, *findUnit(category, from), *findUnit(category, to));
}

/// The units whose name there differs from the symbol here.
const std::map<std::string, std::string>& gnuNames() {
  static const std::map<std::string, std::string> names{{"µm", "micrometer"},
                                                        {"in", "inch"},
                                                        {"nmi", "nauticalmile"},
                                                        {"ly", "c julianyear"},
                                                        {"pc", "parsec"},
                                                        {"µg", "microgram"},
                                                        {"t", "tonne"},
                                                        {"ct", "carat"},
                                                        {"st", "stone"},
                                                        {"US ton", "2000 lb"},
                                                        {"imp ton", "2240 lb"},
                                                        {"oz t", "troyounce"},
                                                        {"cm³", "cm^3"},
                                                        {"m³", "m^3"},
                                                        {"in³", "in^3"},
                                                        {"ft³", "ft^3"},
                                                        {"tsp", "teaspoon"},
                                                        {"tbsp", "tablespoon"},
                                                        {"US fl oz", "usfloz"},
                                                        {"US cup", "uscup"},
                                                        {"US pt", "uspint"},
                                                        {"US qt", "usquart"},
                                                        {"US gal", "usgallon"},
                                                        {"imp fl oz", "brfloz"},
                                                        {"imp pt", "brpint"},
                                                        {"imp qt", "brquart"},
                                                        {"imp gal", "brgallon"},
                                                        {"bbl", "42 usgallon"},
                                                        {"mm²", "mm^2"},
                                                        {"cm²", "cm^2"},
                                                        {"m²", "m^2"},
                                                        {"a", "are"},
                                                        {"ha", "hectare"},
                                                        {"km²", "km^2"},
                                                        {"in²", "in^2"},
                                                        {"ft²", "ft^2"},
                                                        {"yd²", "yd^2"},
                                                        {"ac", "43560 ft^2"},
                                                        {"mi²", "mi^2"},
                                                        {"km/h", "km/hour"},
                                                        {"kn", "knot"},
                                                        {"µs", "microsecond"},
                                                        {"h", "hour"},
                                                        {"d", "day"},
                                                        {"wk", "week"},
                                                        {"mo", "30.436875 day"},
                                                        {"yr", "gregorianyear"},
                                                        {"kbit", "kilobit"},
                                                        {"Mbit", "megabit"},
                                                        {"Gbit", "gigabit"},
                                                        {"B", "byte"},
                                                        {"kB", "kilobyte"},
                                                        {"MB", "megabyte"},
                                                        {"GB", "gigabyte"},
                                                        {"TB", "terabyte"},
                                                        {"PB", "petabyte"},
                                                        {"KiB", "kibibyte"},
                                                        {"MiB", "mebibyte"},
                                                        {"GiB", "gibibyte"},
                                                        {"TiB", "tebibyte"},
                                                        {"PiB", "pebibyte"},
                                                        {"cal", "calorie_th"},
                                                        {"kcal", "1000 calorie_th"},
                                                        {"BTU", "btu_IT"},
                                                        {"therm", "100000 btu_IT"},
                                                        {"ft⋅lb", "ft lbf"},
                                                        {"Torr", "atm/760"},
                                                        {"″", "arcsec"},
                                                        {"′", "arcmin"},
                                                        {"°", "degree"},
                                                        {"gon", "grade"},
                                                        {"mrad", "milliradian"},
                                                        {"rad", "radian"},
                                                        {"turn", "circle"},
                                                        {"°C", "tempC"},
                                                        {"°F", "tempF"},
                                                        {"K", "tempK"},
                                                        {"°R", "tempR"}};
  return names;
}

std::string gnuName(const ConverterUnit& unit) {
  const auto found = gnuNames().find(std::string(unit.symbol));
  return found == gnuNames().end() ? std::string(unit.symbol) : found->second;
}

/// "3 mile", and "tempC(3)".
std::string quantity(const ConverterUnit& unit, double value) {
  if (unit.category == temperature)
    return gnuName(unit) + "(" + std::to_string(value) + ")";
  return std::to_string(value) + " " + gnuName(unit);
}

struct Pair {
  const ConverterUnit* from;
  const ConverterUnit* to;
};

std::vector<Pair> everyPair() {
  std::vector<Pair> pairs;
  for (const auto category : allCases<ConverterCategory>())
    for (const auto& from : converterUnits(category))
      for (const auto& to : converterUnits(category))
        if (&from != &to)
          pairs.push_back({&from, &to});
  return pairs;
}

TEST(ConverterUnits, AgreeWithAnIndependentTableForEveryPairInBothDirections) {
  if (access("/usr/bin/units", X_OK) != 0)
    GTEST_SKIP() << "GNU units is not installed";
  constexpr double value = 3;
  const auto pairs = everyPair();
  char path[] = "/tmp/tavrin-units-XXXXXX";
  const int file = mkstemp(path);
  ASSERT_GE(file, 0);
  close(file);
  {
    std::ofstream questions(path);
    for (const auto& [from, to] : pairs)
      questions << quantity(*from, value) << "\n" << gnuName(*to) << "\n";
  }
  const std::string command =
      std::string("LC_ALL=C.UTF-8 /usr/bin/units --quiet --terse --digits 15 < ") + path;
  FILE* answers = popen(command.c_str(), "r");
  ASSERT_NE(answers, nullptr);
  char line[256];
  for (const auto& [from, to] : pairs) {
    const std::string name = std::string(from->symbol) + " in " + std::string(to->symbol);
    ASSERT_NE(std::fgets(line, sizeof line, answers), nullptr) << name;
    char* end = nullptr;
    const double theirs = std::strtod(line, &end);
    ASSERT_NE(end, line) << name << ": " << line;
    const double ours = convert(value, *from, *to);
    EXPECT_NEAR(ours / theirs, 1, 1e-9) << name;
    EXPECT_NEAR(convert(ours, *to, *from), value, 1e-9) << name;
  }
  pclose(answers);
  std::remove(path);
  EXPECT_GT(pairs.size(), 1000U);
}

TEST(ConverterUnits, ExactFactorsGiveTheExactNumber) {
  EXPECT_EQ(converted(length, 1, "mi", "km"), 1.609344);
  EXPECT_EQ(converted(length, 1, "ft", "in"), 12);
  EXPECT_EQ(converted(mass, 1, "lb", "oz"), 16);
  EXPECT_EQ(converted(volume, 1, "US gal", "l"), 3.785411784);
  EXPECT_EQ(converted(temperature, 36.6, "°C", "°F"), 97.88);
  EXPECT_EQ(converted(temperature, -40, "°C", "°F"), -40);
  EXPECT_EQ(converted(temperature, 0, "K", "°C"), -273.15);
  EXPECT_EQ(converted(speed, 36, "km/h", "m/s"), 10);
  EXPECT_EQ(converted(data, 1, "GiB", "B"), 1073741824);
  EXPECT_EQ(converted(pressure, 1, "atm", "Torr"), 760);
  EXPECT_EQ(converted(angle, 180, "°", "rad"), 3.141592653589793);
  EXPECT_TRUE(std::isinf(converted(length, 1e300, "pc", "nm")));
}

TEST(ConverterUnits, SymbolsAreUniqueAndEveryCategoryHasItsPair) {
  std::size_t count = 0;
  for (const auto category : allCases<ConverterCategory>()) {
    std::set<std::string_view> symbols;
    for (const auto& unit : converterUnits(category)) {
      symbols.insert(unit.symbol);
      EXPECT_EQ(findUnit(category, unit.symbol), &unit);
    }
    EXPECT_EQ(symbols.size(), converterUnits(category).size());
    count += symbols.size();
    const Conversion usual(withCategory({}, category));
    EXPECT_NE(usual.from, usual.to);
    EXPECT_FALSE(title(category).empty());
  }
  EXPECT_EQ(count, converterUnits().size()) << "the table is sorted by category";
}

TEST(ConverterUnits, UnitsThatDoNotExistGiveWayToTheUsualPair) {
  struct Case {
    const char* from;
    const char* to;
    const char* usedFrom;
    const char* usedTo;
  };
  for (const auto& [from, to, usedFrom, usedTo] :
       {Case{"furlong", "", "kg", "lb"}, Case{"g", "km", "g", "lb"}, Case{"lb", "?", "lb", "kg"},
        Case{"g", "g", "g", "g"}}) {
    const Conversion made(ConverterSettings{mass, from, to, 2});
    EXPECT_EQ(made.from->symbol, usedFrom);
    EXPECT_EQ(made.to->symbol, usedTo);
  }
  EXPECT_EQ(Conversion(ConverterSettings{mass, "g", "kg", std::nan("")}).value, 0);
  EXPECT_TRUE(Conversion(ConverterSettings{temperature, "°F", "K", -459.68}).isImpossible());
  EXPECT_FALSE(Conversion(ConverterSettings{temperature, "°F", "K", -459.67}).isImpossible());
  const ConverterSettings back = swapped(swapped({length, "mi", "km", 26.2}));
  EXPECT_EQ(back.from, "mi");
  EXPECT_DOUBLE_EQ(back.value, 26.2);
}

TEST(NumberNotation, ReadsWhatTheLocaleWrites) {
  struct Case {
    const char* locale;
    const char* text;
    std::optional<double> value;
  };
  for (const auto& [locale, text, value] : {Case{"en_US", "1,234.5", 1234.5},
                                            Case{"de_DE", "1.234,5", 1234.5},
                                            Case{"de_DE", "1,5", 1.5},
                                            Case{"de_DE", "1.5", 1.5},
                                            Case{"de_DE", "1.500", 1500},
                                            Case{"en_US", "1,5", 1.5},
                                            Case{"en_US", "1.234,5", {}},
                                            Case{"fr_FR", "1 234,5", 1234.5},
                                            Case{"fr_FR", "1\u202f234,5", 1234.5},
                                            Case{"fr_FR", "1.234", 1.234},
                                            Case{"de_CH", "1’234.5", 1234.5},
                                            Case{"hi_IN", "12,34,567.5", 1234567.5},
                                            Case{"ar_EG", "١٬٢٣٤٫٥", 1234.5},
                                            Case{"en_US", "12 5", {}},
                                            Case{"en_US", "1,23,4", {}},
                                            Case{"en_US", ".5", 0.5},
                                            Case{"en_US", "5.", 5.0},
                                            Case{"en_US", ".", {}},
                                            Case{"en_US", "1e3", 1000.0},
                                            Case{"en_US", "1e", {}},
                                            Case{"en_US", "1e999", {}},
                                            Case{"C", "1,234.5", 1234.5},
                                            Case{"no such locale", "2.5", 2.5},
                                            Case{"en_US", "", {}},
                                            Case{"en_US", "   ", {}},
                                            Case{"en_US", "ten", {}},
                                            Case{"en_US", "\xff\xfe", {}},
                                            Case{"en_US", "5 km", {}}})
    EXPECT_EQ(NumberNotation(std::string(locale)).evaluate(text), value) << locale << " " << text;
}

TEST(NumberNotation, WorksOutSums) {
  const NumberNotation english(std::string("en_US"));
  struct Case {
    const char* text;
    std::optional<double> value;
  };
  for (const auto& [text, value] : {Case{"1+2*3", 7.0},
                                    Case{"(1 + 2) × 3", 9.0},
                                    Case{"10 ÷ 4 − 1", 1.5},
                                    Case{"-3", -3.0},
                                    Case{"−3 - -3", 0.0},
                                    Case{"2^3^2", 512.0},
                                    Case{"-2^2", -4.0},
                                    Case{"1/3*3", 1.0},
                                    Case{"1,000+1", 1001.0},
                                    Case{"5*", {}},
                                    Case{"(1", {}},
                                    Case{"1)", {}},
                                    Case{"1/0", {}},
                                    Case{"2^9999", {}},
                                    Case{"()", {}},
                                    Case{"10%", 0.1},
                                    Case{"50 % * 8", 4.0},
                                    Case{"200 + 10%", 220.0},
                                    Case{"200 - 10 %", 180.0},
                                    Case{"200 + 10% * 5", 200.5},
                                    Case{"2 * 10% + 1", 1.2},
                                    Case{"8^50%", std::sqrt(8.0)},
                                    Case{"%", {}},
                                    Case{"10%%", {}},
                                    Case{"½", 0.5},
                                    Case{"1½", 1.5},
                                    Case{"1 ½", 1.5},
                                    Case{"-2¾", -2.75},
                                    Case{"⅓*3", 1.0},
                                    Case{"½ + ¼", 0.75},
                                    Case{"1.5½", {}},
                                    Case{"½½", {}},
                                    Case{"1⁄2", 0.5},
                                    Case{"⅟2", {}}})
    EXPECT_EQ(english.evaluate(text), value) << text;
  EXPECT_EQ(english.evaluate(std::string(100, '(') + "1" + std::string(99, ')')), std::nullopt);
  EXPECT_EQ(english.evaluate(std::string(201, '1')), std::nullopt);
}

TEST(NumberNotation, KnowsACurrencyWhenItSeesOne) {
  for (const char* text : {"10 €", "$5", "5 usd", "EUR 10", "10EUR", "₹ 5", "3 gbp + 1"})
    EXPECT_TRUE(namesCurrency(text)) << text;
  for (const char* text : {"10", "", "ten", "5 km", "1e3", "abc", "euros", "\xff€"})
    EXPECT_FALSE(namesCurrency(text)) << text;
}

TEST(NumberNotation, WritesAsTheLocaleDoes) {
  struct Case {
    const char* locale;
    double value;
    int digits;
    const char* text;
  };
  for (const auto& [locale, value, digits, text] :
       {Case{"en_US", 1234.5678, 6, "1,234.57"}, Case{"de_DE", 1234.5678, 6, "1.234,57"},
        Case{"en_US", 0.1 + 0.2, 12, "0.3"}, Case{"en_US", 1234567.8, 5, "1,234,568"},
        Case{"en_US", 0, 5, "0"}, Case{"en_US", -40, 5, "-40"},
        Case{"en_US", 1.0 / 3, 5, "0.33333"}, Case{"en_US", 1e15, 5, "1E15"},
        Case{"en_US", 1.5e-7, 5, "1.5E-7"}, Case{"en_US", 1.0 / 0.0, 5, "∞"}})
    EXPECT_EQ(NumberNotation(std::string(locale)).format(value, digits), text) << text;
  EXPECT_EQ(NumberNotation("de_DE").format(1234567.25, 12, NumberNotation::Grouping::plain),
            "1234567,25");
  for (const auto& [value, text] : {std::pair{1'186'123.4, "1.19M"}, std::pair{42.195, "42.2"},
                                    std::pair{-2500.0, "-2.5K"}, std::pair{1e20, "1E20"}})
    EXPECT_EQ(NumberNotation("en_US").formatShort(value), text);
  // What is written can be read back.
  for (const char* locale : {"en_US", "de_DE", "fr_FR", "de_CH", "hi_IN", "ar_EG", "fa_IR"})
    for (const double value : {1234567.25, -0.5, 0.001, 1e20}) {
      const NumberNotation notation{std::string(locale)};
      EXPECT_EQ(notation.evaluate(notation.format(value, 12)), value) << locale << value;
    }
}

} // namespace
} // namespace tavrin
