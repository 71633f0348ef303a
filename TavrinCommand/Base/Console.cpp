#include "TavrinCommand/Base/Console.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fmt/format.h>
#include <iostream>
#include <numeric>
#include <string>
#include <sys/ioctl.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::string_view ellipsis = "…";
/// Between columns.
constexpr int gapWidth = 2;

/// Calls `visit(code point, its UTF-8)`; bytes that are no UTF-8 come as U+FFFD.
template <class Visit> void eachCharacter(std::string_view text, Visit visit) {
  if (std::ranges::all_of(text, [](unsigned char byte) { return byte < 0x80; })) {
    for (std::size_t at = 0; at < text.size(); ++at)
      visit(static_cast<UChar32>(text[at]), text.substr(at, 1));
    return;
  }
  const auto units = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  for (int32_t at = 0; at < units.length(); at = units.moveIndex32(at, 1)) {
    const UChar32 character = units.char32At(at);
    std::string bytes;
    visit(character, std::string_view(icu::UnicodeString(character).toUTF8String(bytes)));
  }
}

int widthOf(UChar32 character) {
  if (character >= ' ' && character <= '~')
    return 1;
  const auto category = u_charType(character);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR ||
      category == U_CONTROL_CHAR)
    return 0;
  const auto width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

bool speaksColour(int descriptor) {
  const char* refusal = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  return isatty(descriptor) != 0 && (refusal == nullptr || *refusal == '\0') &&
         terminal != nullptr && std::string_view(terminal) != "dumb";
}

int terminalColumns(int descriptor) {
  winsize size{};
  return isatty(descriptor) != 0 && ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::string wrapped(std::string_view text, TextStyle style) {
  switch (style) {
  case TextStyle::plain:
    return std::string(text);
  case TextStyle::bold:
    return fmt::format("\033[1m{}\033[0m", text);
  case TextStyle::dim:
    return fmt::format("\033[2m{}\033[0m", text);
  case TextStyle::good:
    return fmt::format("\033[32m{}\033[0m", text);
  case TextStyle::bad:
    return fmt::format("\033[31m{}\033[0m", text);
  case TextStyle::accent:
    return fmt::format("\033[36m{}\033[0m", text);
  }
  return std::string(text);
}

} // namespace

std::string Console::styled(std::string_view text, TextStyle style) const {
  return coloursOut ? wrapped(text, style) : std::string(text);
}

bool Console::confirm(std::string_view question, bool fallback) const {
  // What is typed by users of the language, whose words do as well as the English ones.
  const std::string yes = translatedIn("answer", "yes");
  const std::string no = translatedIn("answer", "no");
  const auto offered = [](const std::string& word, bool isFallback) {
    auto first = icu::UnicodeString(icu::UnicodeString::fromUTF8(word).char32At(0));
    std::string letter;
    (isFallback ? first.toUpper() : first).toUTF8String(letter);
    return letter;
  };
  for (std::string line;;) {
    out << question << fmt::format(" [{}/{}] ", offered(yes, fallback), offered(no, !fallback))
        << std::flush;
    if (!std::getline(in, line))
      return false;
    if (line.empty())
      return fallback;
    line = asciiLowered(line);
    for (const auto& [word, answer] :
         {std::pair<std::string_view, bool>(yes, true), {no, false}, {"yes", true}, {"no", false}})
      if (line == word || line == offered(std::string(word), false))
        return answer;
    out << translated("Please answer yes or no.") << '\n';
  }
}

Console standardConsole() {
  return {.out = std::cout,
          .err = std::cerr,
          .in = std::cin,
          .isInteractive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0,
          .coloursOut = speaksColour(STDOUT_FILENO),
          .coloursErr = speaksColour(STDERR_FILENO),
          .columns = terminalColumns(STDOUT_FILENO)};
}

int displayWidth(std::string_view text) {
  int width = 0;
  eachCharacter(text, [&](UChar32 character, std::string_view) { width += widthOf(character); });
  return width;
}

std::string truncated(std::string_view text, int columns) {
  if (displayWidth(text) <= columns)
    return std::string(text);
  std::string result;
  int width = 0;
  bool isFull = false;
  eachCharacter(text, [&](UChar32 character, std::string_view bytes) {
    isFull = isFull || width + widthOf(character) > columns - 1;
    if (isFull)
      return;
    width += widthOf(character);
    result += bytes;
  });
  return result.append(ellipsis);
}

void Table::add(std::vector<Cell> row) {
  row.resize(columns_.size(), Cell(""));
  for (std::size_t i = 0; i < row.size(); ++i) {
    row[i].text = printable(row[i].text);
    if (columns_[i].maximumWidth > 0)
      row[i].text = truncated(row[i].text, columns_[i].maximumWidth);
  }
  rows_.push_back(std::move(row));
}

std::vector<int> Table::columnWidths() const {
  std::vector<int> widths;
  for (const auto& column : columns_)
    widths.push_back(displayWidth(column.title));
  for (const auto& row : rows_)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], displayWidth(row[i].text));
  return widths;
}

int Table::width() const {
  const auto widths = columnWidths();
  return std::accumulate(widths.begin(), widths.end(), -gapWidth) +
         gapWidth * static_cast<int>(widths.size());
}

void Table::print(const Console& console) const {
  const auto widths = columnWidths();
  // Cells beside each other would be one run of text from right to left, and change places.
  const std::string_view mark = isRightToLeft() ? leftToRightMark : "";
  const auto printRow = [&](const std::vector<Cell>& row) {
    std::string line(mark);
    std::string gap;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(static_cast<std::size_t>(widths[i] - displayWidth(row[i].text)),
                                ' ');
      const bool isRight = columns_[i].alignsRight;
      if (!row[i].text.empty() || isRight) {
        line += gap + (isRight ? padding : "") + console.styled(row[i].text, row[i].style);
        line += mark;
        gap = isRight ? "" : padding;
      } else {
        gap += padding;
      }
      gap.append(gapWidth, ' ');
    }
    console.out << line << '\n';
  };

  std::vector<Cell> header;
  for (const auto& column : columns_)
    header.emplace_back(column.title, TextStyle::dim);
  printRow(header);
  for (const auto& row : rows_)
    printRow(row);
}

} // namespace tavrin
