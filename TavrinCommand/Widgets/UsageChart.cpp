#include "TavrinCommand/Widgets/UsageChart.h"

#include "TavrinCommand/Base/Console.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <array>

namespace tavrin {
namespace {

constexpr int rows = 5;
constexpr int levels = 8;
constexpr std::array<const char*, levels + 1> blocks{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i)
    result += text;
  return result;
}

/// How high a day stands, in eighths of a line; what was used at all is seen.
int heightOf(std::int64_t tokens, std::int64_t most) {
  const double share = static_cast<double>(tokens) / static_cast<double>(most);
  return tokens <= 0 ? 0 : std::max(1, static_cast<int>(share * rows * levels + 0.5));
}

} // namespace

std::vector<std::string> UsageChart::lines(int columns) const {
  const auto most = tokens.empty() ? 0 : *std::ranges::max_element(tokens);
  if (most <= 0)
    return {};
  const std::string top = ClaudeUsage::shortTokens(most);
  const int margin = displayWidth(top);
  const int days = static_cast<int>(tokens.size());
  const int room = columns - margin - 2;
  // Two places a day, the second of them free, where there is room.
  const int step = room >= 2 * days ? 2 : 1;
  if (room < days)
    return {};
  std::vector<std::string> lines;
  for (int row = rows - 1; row >= 0; --row) {
    std::string line =
        (row == rows - 1 ? top : repeated(" ", margin)) + (row == rows - 1 ? " ┤" : " │");
    for (const auto each : tokens) {
      const int level = std::clamp(heightOf(each, most) - row * levels, 0, levels);
      line += blocks[static_cast<std::size_t>(level)];
      line += repeated(" ", step - 1);
    }
    lines.push_back(std::move(line));
  }
  lines.push_back(repeated(" ", margin - 1) + "0 ┼" + repeated("─", days * step));
  const int between = days * step - displayWidth(first) - displayWidth(last);
  // The first day stands at the left in every language, as the chart does.
  const std::string mark(isRightToLeft() ? leftToRightMark : "");
  lines.push_back(mark + repeated(" ", margin + 2) + first + mark +
                  repeated(" ", std::max(between, 1)) + last + mark);
  return lines;
}

} // namespace tavrin
