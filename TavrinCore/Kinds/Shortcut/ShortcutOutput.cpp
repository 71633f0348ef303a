#include "TavrinCore/Kinds/Shortcut/ShortcutOutput.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinCore/Text/Text.h"

namespace tavrin {
namespace {

constexpr char escape = '\x1B';
constexpr char bell = '\a';
constexpr std::size_t tabWidth = 8;

} // namespace

void ShortcutOutput::append(std::string_view bytes) {
  for (const char c : bytes)
    take(c);
}

void ShortcutOutput::take(char c) {
  switch (mode_) {
  case Mode::escape:
    mode_ = c == '[' ? Mode::sequence : c == ']' ? Mode::command : Mode::text;
    return;
  case Mode::sequence:
    // Parameters until a letter or a sign of that range ends it.
    if (c >= '@' && c <= '~')
      mode_ = Mode::text;
    return;
  case Mode::command:
    // A window's title and the like, ended by a bell or a further escape.
    if (c == bell || c == '\n')
      mode_ = Mode::text;
    else if (c == escape)
      mode_ = Mode::escape;
    return;
  case Mode::text:
    break;
  }
  const auto code = static_cast<unsigned char>(c);
  if (code < 0x20 || code == 0x7F) {
    takeControl(c);
    return;
  }
  if (isReturned_)
    line_.clear();
  isReturned_ = false;
  if (line_.size() < longestLine)
    line_.push_back(c);
}

void ShortcutOutput::takeControl(char c) {
  switch (c) {
  case '\n':
    finishLine();
    break;
  case '\r':
    isReturned_ = true;
    break;
  case '\t':
    if (line_.size() < longestLine)
      line_.append(tabWidth - line_.size() % tabWidth, ' ');
    break;
  case '\b':
    if (!line_.empty())
      line_.pop_back();
    break;
  case escape:
    mode_ = Mode::escape;
    break;
  default:
    break;
  }
}

void ShortcutOutput::finishLine() {
  isReturned_ = false;
  lines_.push_back(std::move(line_));
  line_.clear();
  if (lines_.size() > mostLines) {
    lines_.pop_front();
    isCut_ = true;
  }
}

std::string ShortcutOutput::text() const {
  std::string all;
  for (const auto& line : lines_)
    all += cleanText(line, longestLine) + '\n';
  all += cleanText(line_, longestLine);
  while (all.ends_with('\n'))
    all.pop_back();
  return all;
}

std::string ShortcutOutput::lastLine() const {
  if (!trimmed(line_).empty())
    return cleanText(trimmed(line_), longestLine);
  for (auto line = lines_.rbegin(); line != lines_.rend(); ++line)
    if (!trimmed(*line).empty())
      return cleanText(trimmed(*line), longestLine);
  return {};
}

} // namespace tavrin
