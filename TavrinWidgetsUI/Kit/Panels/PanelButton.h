#pragma once

#include <QColor>
#include <QPushButton>
#include <functional>

namespace tavrin {

/// A push button with a text, a symbol, or both. Space presses it when it has the focus; Return
/// anywhere in the panel presses the prominent one.
class PanelButton : public QPushButton {
public:
  enum class Kind {
    prominent, // filled with the accent; at most one in a panel
    quiet,     // a soft ground
    plain,     // words in the accent without a ground: links
    faint,     // quiet words without a ground: footers
    icon,      // a square symbol without a ground; `name` is what it does
  };

  PanelButton(Kind kind, const QString& title, std::function<void()> action = {},
              QWidget* parent = nullptr);
  /// A square button that shows a symbol alone; `name` is its accessible name and tooltip.
  static PanelButton* icon(const QString& symbol, const QString& name,
                           std::function<void()> action = {}, QWidget* parent = nullptr);

  Kind kind() const { return kind_; }
  void setKind(Kind kind);
  /// The symbol before the title, by its name in Symbols.h; empty for none.
  void setSymbol(const QString& symbol);
  const QString& symbol() const { return symbol_; }
  void setTitle(const QString& title);
  const QString& title() const { return title_; }
  /// What is shown in place of the title while there is no room for that; assistive technology is
  /// told the title all the same.
  void setShortTitle(const QString& title);
  void setShort(bool isShort);
  const QString& shownTitle() const { return isShort_ ? shortTitle_ : title_; }
  /// The width it wants with the one or the other.
  int widthOf(bool isShort) const;
  void setAction(std::function<void()> action) { action_ = std::move(action); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

private:
  Kind kind_;
  QString title_;
  QString shortTitle_;
  bool isShort_ = false;
  QString symbol_;
  std::function<void()> action_;
};

/// A square of colour one can press, with a check when it is the chosen one.
class PanelSwatch : public QPushButton {
public:
  /// `name` is what assistive technology says, such as "Yellow" or "#FBBF24".
  PanelSwatch(const QColor& colour, const QString& name, std::function<void()> action = {},
              QWidget* parent = nullptr);
  void setColour(const QColor& colour, const QString& name);
  const QColor& colour() const { return colour_; }
  void setChosen(bool chosen);
  /// The side in points, 24 at least.
  void setSide(int side);
  QSize sizeHint() const override { return {side_, side_}; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QColor colour_;
  int side_ = 28;
  /// The panel, not the user, is changing what is chosen.
  bool isTold_ = false;
};

} // namespace tavrin
