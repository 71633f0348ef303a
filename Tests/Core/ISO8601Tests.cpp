#include "TavrinCore/Base/ISO8601.h"

#include <cmath>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <utility>

namespace tavrin {
namespace {

TEST(ISO8601Test, Texts) {
  const double base = 1'743'296'399;
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"2025-03-30T00:59:59Z", base},
      {"2025-03-30T00:59:59.250Z", base + 0.25},
      {"2025-03-30T01:59:59+01:00", base},
      {"2025-03-29T19:29:59-0530", base},
      {"2025-03-30T00:59:60Z", base + 1},
      {"2024-02-29T00:00:00Z", 1'709'164'800},
      {"2025-02-29T00:00:00Z", std::nullopt},
      {"2025-03-30T00:59:59", std::nullopt},
      {"2025-03-30T00:59:59.Z", std::nullopt},
      {"2025-03-30T24:00:00Z", std::nullopt},
      {"2025-03-30T00:59:59Zx", std::nullopt},
      {"+025-03-30T00:59:59Z", std::nullopt},
      {"2025-03-30", std::nullopt},
      {"", std::nullopt}};
  for (const auto& [text, seconds] : cases) {
    const auto date = dateFromISO8601(text);
    ASSERT_EQ(date.has_value(), seconds.has_value()) << text;
    EXPECT_NEAR(date.value_or(Date()).unixSeconds(), seconds.value_or(Date().unixSeconds()), 1e-6);
  }
}

TEST(ISO8601Test, WhatIsWrittenIsRead) {
  const auto withFraction = Date::fromUnixSeconds(1'743'296'399.25);
  EXPECT_EQ(iso8601(withFraction), "2025-03-30T00:59:59Z");
  EXPECT_EQ(iso8601WithMilliseconds(withFraction), "2025-03-30T00:59:59.250Z");
  EXPECT_EQ(iso8601WithMilliseconds(Date::fromUnixSeconds(-0.001)), "1969-12-31T23:59:59.999Z");
  for (int milliseconds = 0; milliseconds < 1000; ++milliseconds) {
    const auto text = fmt::format("2038-01-19T03:14:07.{:03}Z", milliseconds);
    EXPECT_EQ(iso8601WithMilliseconds(dateFromISO8601(text).value()), text);
  }
  EXPECT_EQ(iso8601(Date::fromUnixSeconds(1e300)), "9999-12-31T23:59:59Z");
  EXPECT_EQ(iso8601(Date::fromUnixSeconds(-1e300)), "0000-01-01T00:00:00Z");
  EXPECT_EQ(iso8601(Date::fromUnixSeconds(std::nan(""))), "1970-01-01T00:00:00Z");
}

} // namespace
} // namespace tavrin
