#pragma once

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Base/JSONValue.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace tavrin::test {

/// What one message used.
struct UsageNumbers {
  int input = 3;
  int output = 40;
  int cacheCreation = 500;
  int cacheRead = 6000;
};

/// Writes session logs as the tool writes them: typed lines, results of tools, and messages whose
/// parts are logged on a line each, with the same ids.
class UsageLogs {
public:
  UsageLogs(std::filesystem::path root, unsigned seed) : root_(std::move(root)), random_(seed) {}

  std::filesystem::path file(const std::string& folder, const std::string& name) const {
    const auto path = root_ / "projects" / folder / (name + ".jsonl");
    std::filesystem::create_directories(path.parent_path());
    return path;
  }

  int number(int lower, int upper) {
    return std::uniform_int_distribution<int>(lower, upper)(random_);
  }
  std::string newID(const std::string& prefix) { return prefix + std::to_string(++lastID_); }
  UsageNumbers numbers() {
    return {number(0, 60), number(1, 4000), number(0, 9000), number(0, 160'000)};
  }

  /// A line that tells what was used.
  std::string usageLine(Date date, const std::string& message, const std::string& request,
                        const UsageNumbers& used, const std::string& text = "Done: \"naïve\"\n") {
    JSONValue::Object usage{{"input_tokens", used.input},
                            {"output_tokens", used.output},
                            {"cache_creation_input_tokens", used.cacheCreation},
                            {"cache_read_input_tokens", used.cacheRead},
                            {"service_tier", "standard"}};
    JSONValue::Object part{{"type", "text"}, {"text", text}};
    JSONValue::Object body{{"role", "assistant"},
                           {"content", JSONValue::Array{JSONValue(std::move(part))}},
                           {"usage", JSONValue(std::move(usage))}};
    if (!message.empty())
      body.emplace("id", message);
    JSONValue::Object line{{"type", "assistant"},
                           {"uuid", newID("u")},
                           {"timestamp", iso8601WithMilliseconds(date)},
                           {"message", JSONValue(std::move(body))}};
    if (!request.empty())
      line.emplace("requestId", request);
    return JSONValue(std::move(line)).compact() + "\n";
  }
  /// A line without usage, of about `size` bytes.
  std::string otherLine(Date date, int size) {
    // The marker inside a text is not the marker: its quotes are escaped.
    const std::string words = "the word \"usage\" → größer\n";
    std::string result;
    while (result.size() < static_cast<std::size_t>(size))
      result += words;
    JSONValue::Object part{{"type", "tool_result"}, {"content", result}};
    JSONValue::Object body{{"role", "user"},
                           {"content", JSONValue::Array{JSONValue(std::move(part))}}};
    return JSONValue(JSONValue::Object{{"type", "user"},
                                       {"uuid", newID("u")},
                                       {"timestamp", iso8601WithMilliseconds(date)},
                                       {"message", JSONValue(std::move(body))}})
               .compact() +
           "\n";
  }
  /// Some lines about `date`, as a session goes: each up to a moment after the one before.
  std::string session(Date& date, int messages) {
    std::string lines;
    for (int i = 0; i < messages; ++i) {
      date = date + number(0, 400) * 0.25;
      lines += otherLine(date, number(0, 20) == 0 ? 100'000 : number(10, 4000));
      const auto message = newID("msg_");
      const auto request = newID("req_");
      auto used = numbers();
      for (int part = number(1, 3); part > 0; --part) {
        date = date + number(0, 4) * 0.25;
        lines += usageLine(date, message, request, used);
        used.output += 10;
      }
    }
    return lines;
  }

private:
  std::filesystem::path root_;
  std::mt19937 random_;
  int lastID_ = 0;
};

inline void append(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary | std::ios::app) << bytes;
}

} // namespace tavrin::test
