#pragma once

#include "TavrinCore/Text/ForeignText.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// How a piece of text stands out on a terminal.
enum class TextStyle { plain, bold, dim, good, bad, accent };

/// Where the command reads and writes.
struct Console {
  std::ostream& out;
  std::ostream& err;
  std::istream& in;
  /// A person sits at both ends: questions may be asked.
  bool isInteractive = false;
  bool coloursOut = false;
  bool coloursErr = false;
  /// The terminal's width in characters; 0 where `out` is none, and lines may be of any length.
  int columns = 0;

  std::string styled(std::string_view text, TextStyle style) const;
  /// Asks until the answer is yes or no. A blank line means `fallback`, the end of the input no:
  /// nobody is there to agree, or to be asked again.
  bool confirm(std::string_view question, bool fallback) const;
};

/// The process's own standard streams. Colours only on terminals, and not where NO_COLOR is set
/// or TERM is "dumb".
Console standardConsole();

/// Columns that `text` takes on a terminal: two for wide characters, none for combining ones.
int displayWidth(std::string_view text);

/// At most `columns` wide, the last of them an ellipsis where something was cut.
std::string truncated(std::string_view text, int columns);

/// What stands on both sides of it keeps its place, whatever direction its letters have (Unicode
/// Standard Annex 9). Takes no column.
inline constexpr std::string_view leftToRightMark = "\u200E";

/// Text in aligned columns.
class Table {
public:
  struct Cell {
    Cell(std::string cellText, TextStyle cellStyle = TextStyle::plain)
        : text(std::move(cellText)), style(cellStyle) {}
    Cell(const char* cellText) : text(cellText) {}
    std::string text;
    TextStyle style = TextStyle::plain;
  };
  struct Column {
    std::string title;
    bool alignsRight = false;
    /// 0 for no bound.
    int maximumWidth = 0;
  };

  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  void add(std::vector<Cell> row);
  bool isEmpty() const { return rows_.empty(); }
  /// Columns of the terminal that the widest row takes.
  int width() const;
  void print(const Console& console) const;

private:
  std::vector<int> columnWidths() const;

  std::vector<Column> columns_;
  std::vector<std::vector<Cell>> rows_;
};

} // namespace tavrin
