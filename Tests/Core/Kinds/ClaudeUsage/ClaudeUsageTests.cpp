#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLine.h"
#include "TavrinCore/Text/ByteSearch.h"

#include <gtest/gtest.h>
#include <random>

namespace tavrin {
namespace {

std::optional<ClaudeUsageEntry> entry(const std::string& line) {
  const std::string padded = line + std::string(ClaudeUsageLineReader::padding, '\0');
  return ClaudeUsageLineReader().entry(std::string_view(padded).substr(0, line.size()));
}

std::string line(const std::string& usage, const std::string& rest = {}) {
  return R"({"timestamp":"2026-01-02T03:04:05.250Z",)" + rest + R"("message":{"id":"m","usage":)" +
         usage + "}}";
}

TEST(ClaudeUsageTest, ShortTokens) {
  const std::pair<std::int64_t, const char*> cases[] = {{0, "0"},
                                                        {999, "999"},
                                                        {1000, "1.0k"},
                                                        {12'345, "12.3k"},
                                                        {99'949, "99.9k"},
                                                        {99'950, "100.0k"},
                                                        {100'000, "100k"},
                                                        {250'000, "250k"},
                                                        {999'999, "999k"},
                                                        {1'000'000, "1.0M"},
                                                        {3'400'000, "3.4M"},
                                                        {9'999'999, "10.0M"},
                                                        {10'000'000, "10M"},
                                                        {12'000'000, "12M"},
                                                        {5'210'000'000, "5210M"}};
  for (const auto& [tokens, text] : cases)
    EXPECT_EQ(ClaudeUsage::shortTokens(tokens), text);
}

TEST(ClaudeUsageTest, ProjectNames) {
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"-home-ann-app", "app"},   {"-Users-ann-Code-app", "Code-app"},
      {"-home-ann", "~"},         {"-srv-build", "srv-build"},
      {"-home", "home"},          {"", std::nullopt},
      {"-", std::nullopt},        {"---", std::nullopt},
      {"subagents", std::nullopt}};
  for (const auto& [folder, name] : cases)
    EXPECT_EQ(ClaudeUsage::projectName(folder), name) << folder;
}

TEST(ClaudeUsageTest, LinesThatTellUsageAndLinesThatDoNot) {
  const auto read =
      entry(line(R"({"input_tokens":1,"output_tokens":20,"cache_creation_input_tokens":300,
      "cache_read_input_tokens":4000,"server_tool_use":{"input_tokens":9}})",
                 R"("requestId":"r",)"));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->tokens(), 4321);
  EXPECT_EQ(read->timestamp, *dateFromISO8601("2026-01-02T03:04:05.250Z"));
  EXPECT_EQ(read->id, ClaudeUsageID::of("m", "r", "other uuid"));

  EXPECT_EQ(entry(line("{}"))->tokens(), 0) << "counts that are missing";
  EXPECT_EQ(entry(line(R"({"input_tokens":null,"output_tokens":"7","cache_read_input_tokens":5})"))
                ->tokens(),
            5);
  EXPECT_EQ(entry(line(R"({"input_tokens":-5,"output_tokens":1.0})"))->tokens(), 1);
  for (const char* many :
       {"99999999999999999999", "1000000000000000000000000000000", "1e30", "9e999"})
    EXPECT_EQ(entry(line("{\"input_tokens\":" + std::string(many) + "}"))->tokens(),
              mostTokensPerLine)
        << many;
  for (const char* few : {"-99999999999999999999", "1e-999", "99999999999999999999x"}) {
    const auto read = entry(line("{\"input_tokens\":" + std::string(few) + "}"));
    EXPECT_EQ(read ? read->tokens() : 0, 0) << few;
  }
  EXPECT_EQ(entry(line(R"({"input_tokens":9999999999999999999})"))->tokens(), mostTokensPerLine);
  for (const std::string& bad :
       {line("null"), line("[1]"), std::string(R"({"message":{"usage":{"input_tokens":1}}})"),
        std::string(R"({"timestamp":"yesterday","message":{"usage":{}}})"),
        std::string(R"({"timestamp":5,"message":{"usage":{}}})"),
        std::string(R"({"timestamp":"2026-01-02T03:04:05Z","usage":{}})"),
        std::string(R"(["usage"])"), line("{}").substr(0, 60), std::string("\"usage\""),
        line("{}") + line("{}"), line("{}") + " 1", line("{}") + "}", std::string(" ")})
    EXPECT_FALSE(entry(bad)) << bad;
}

TEST(ClaudeUsageTest, AMessageCountsOnceWhateverTheOrder) {
  const auto shared = std::make_shared<const std::string>("b");
  const auto other = std::make_shared<const std::string>("a");
  const auto id = ClaudeUsageID::of("m", "r", "");
  std::vector<ClaudeUsageEntry> lines = {
      {id, {10}, shared, 1, 1, 0, 0},     {id, {20}, shared, 1, 50, 0, 0},
      {id, {20}, other, 1, 50, 0, 0},     {id, {15}, shared, 1, 99, 0, 0},
      {{}, {20}, nullptr, 1000, 0, 0, 0}, {{}, {20}, nullptr, 1000, 0, 0, 0}};
  std::mt19937 random(3);
  for (int round = 0; round < 20; ++round) {
    std::shuffle(lines.begin(), lines.end(), random);
    ClaudeUsageEntries entries;
    for (const auto& each : lines)
      entries.add(each);
    const auto totals = ClaudeUsage::totals(entries, {{0}, {100}});
    EXPECT_EQ(totals.tokens, 2051) << "the latest line of it; those without ids are their own";
    EXPECT_EQ(totals.projects, (std::vector<ClaudeUsageProject>{{"a", 51}}));
    const auto periods = ClaudeUsage::totalsBetween(entries, {{10}, {15}, {20}, {21}});
    ASSERT_EQ(periods.size(), 4);
    EXPECT_EQ(periods[0].messages + periods[1].messages + periods[3].messages, 0);
    EXPECT_EQ(periods[2], totals);
  }
  EXPECT_NE(ClaudeUsageID::of("ab", "c", ""), ClaudeUsageID::of("a", "bc", ""));
  EXPECT_NE(ClaudeUsageID::of("m", "", "u1"), ClaudeUsageID::of("", "m", "u1"));
  EXPECT_EQ(ClaudeUsageID::of("m", "", "u1"), ClaudeUsageID::of("m", "", "u2"));
  EXPECT_FALSE(ClaudeUsageID::of("", "", "").isKnown());
}

TEST(ByteSearchTest, AgreesWithPlainSearch) {
  std::mt19937 random(11);
  std::uniform_int_distribution<int> letter(0, 3);
  for (int round = 0; round < 400; ++round) {
    std::string text(static_cast<std::size_t>(round), ' ');
    for (auto& character : text)
      character = "ug\"x"[letter(random)];
    for (const std::string_view needle : {"\"ug\"", "ux", "xx\"gu"})
      for (std::size_t from = 0; from <= text.size(); from += 13)
        ASSERT_EQ(findBytes(text, needle, from), text.find(needle, from)) << text;
    ASSERT_EQ(findLastByte(text, 'x'), text.rfind('x'));
    ASSERT_EQ(findLastByte(text, 'n'), std::string::npos);
  }
}

} // namespace
} // namespace tavrin
