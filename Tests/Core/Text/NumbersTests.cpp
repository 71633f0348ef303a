#include "TavrinCore/Text/Numbers.h"

#include <clocale>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <version>

namespace tavrin {
namespace {

struct Reading {
  std::string text;
  std::size_t length;
  double value;
  std::errc error = std::errc();
};

const Reading readings[] = {
    {"0", 1, 0},
    {"-12.50 litres", 6, -12.5},
    {".25", 3, 0.25},
    {"7.", 2, 7},
    {"1e3x", 3, 1000},
    {"1E-2", 4, 0.01},
    {"2e", 1, 2},
    {"2e+", 1, 2},
    {"0x1F", 1, 0},
    {"1,5", 1, 1},
    {"0.1", 3, 0.1},
    {"9007199254740993", 16, 9007199254740992.0},
    {"2.2250738585072014e-308", 23, 2.2250738585072014e-308},
    {"5e-324", 6, 5e-324},
    {"-inf", 4, -INFINITY},
    {"Infinity!", 8, INFINITY},
    {"infinite", 3, INFINITY},
    {"1e999", 5, -1, std::errc::result_out_of_range},
    {"1e-999", 6, -1, std::errc::result_out_of_range},
    {"0.1e-2147483648", 15, -1, std::errc::result_out_of_range},
    {"0.00e-2147483648", 16, 0},
    {"", 0, -1, std::errc::invalid_argument},
    {"+1", 0, -1, std::errc::invalid_argument},
    {" 1", 0, -1, std::errc::invalid_argument},
    {"-", 0, -1, std::errc::invalid_argument},
    {".", 0, -1, std::errc::invalid_argument},
    {"e5", 0, -1, std::errc::invalid_argument},
};

TEST(Numbers, areReadAsTheStandardDoesWhateverTheLocale) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  for (const auto& reading : readings) {
    double value = -1;
    const char* first = reading.text.data();
    const char* last = first + reading.text.size();
    const auto [end, error] = doubleFromChars(first, last, value);
    EXPECT_EQ(error, reading.error) << reading.text;
    EXPECT_EQ(end - first, std::ptrdiff_t(reading.length)) << reading.text;
    EXPECT_EQ(value, reading.value) << reading.text;
#ifdef __cpp_lib_to_chars
    double standard = -1;
    const auto expected = std::from_chars(first, last, standard);
    EXPECT_EQ(expected.ec, error) << reading.text;
    EXPECT_EQ(expected.ptr, end) << reading.text;
    EXPECT_EQ(standard, value) << reading.text;
#endif
  }
  std::setlocale(LC_NUMERIC, before.c_str());
}

} // namespace
} // namespace tavrin
