#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace tavrin {

/// The last lines that a command wrote, as a terminal of one column would show them: a carriage
/// return begins the line anew, colours and other control sequences are left out.
class ShortcutOutput {
public:
  static constexpr std::size_t mostLines = 200;
  /// Bytes; what a longer line has behind them is left out.
  static constexpr std::size_t longestLine = 500;

  void append(std::string_view bytes);
  void clear() { *this = {}; }

  bool isEmpty() const { return lines_.empty() && line_.empty(); }
  /// Lines were dropped from the front.
  bool isCut() const { return isCut_; }
  /// All kept lines in UTF-8, parted by line feeds.
  std::string text() const;
  /// The last line with something on it.
  std::string lastLine() const;

private:
  enum class Mode { text, escape, sequence, command };
  void take(char c);
  void takeControl(char c);
  void finishLine();

  std::deque<std::string> lines_;
  std::string line_;
  Mode mode_ = Mode::text;
  bool isReturned_ = false;
  bool isCut_ = false;
};

} // namespace tavrin
