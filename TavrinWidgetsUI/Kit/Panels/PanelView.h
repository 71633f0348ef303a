#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <QWidget>
#include <functional>

class QHBoxLayout;
class QVBoxLayout;

namespace tavrin {

class PanelButton;
class PanelDivider;
class PanelFocus;
class PanelText;

/// A kind's panel: the widget's name and state on top, the thing itself in the middle, a quiet
/// row with the edit button at the bottom. A panel shows what its model says each time `refresh`
/// is called, and owns no state that must outlive it. Tab goes through the controls in the order
/// they were added; Return presses the prominent button; Escape is the popover's.
///
///     class WaterPanelView : public PanelView {
///       WaterPanelView(const PanelAppearance& look, WaterModel& model) : PanelView(look) {
///         amount_ = new PanelFigure(44);
///         add(amount_);
///         add(new PanelButton(PanelButton::Kind::prominent, "Drink 250 ml", [&] { ... }));
///         setEditButton("Edit Water…", onEdit);
///         refresh();
///       }
///       void refresh() override { setTitle(model.name()); amount_->setText(...); }
///     };
class PanelView : public QWidget {
public:
  enum class Width { controls = 280, lists = 320, grids = 360 };
  enum class State { plain, active, trouble };

  explicit PanelView(const PanelAppearance& appearance, Width width = Width::controls,
                     QWidget* parent = nullptr);

  /// Shows what the model says now. Cheap where nothing changed: setters compare first.
  virtual void refresh() {}

  /// The widget's name: cut at its end where it is too long, whole to assistive technology.
  void setTitle(const QString& title);
  QString title() const;
  /// What the user calls the widget, for lists of windows and assistive technology, where the title
  /// is another.
  void setWidgetName(const QString& name);
  /// The word at the right of the name, such as "Paused"; empty for none.
  void setState(const QString& state, State kind = State::plain);

  /// What the panel is opened for: it has the focus then, while it can be used. Needed only where
  /// that is not the first list, field or prominent button.
  void setMainControl(QWidget* control);

  /// Puts a control, a list or a text at the end of the middle; the panel owns it.
  void add(QWidget* widget, Qt::Alignment alignment = {});
  /// Controls side by side. With `stretch` they share the whole width.
  QHBoxLayout* addRow(std::initializer_list<QWidget*> widgets, bool stretch = true);
  /// Room between two parts of the middle, in points, beyond the usual 8.
  void addSpace(int points);
  /// The middle's own layout, for what the above does not cover.
  QVBoxLayout* body() const { return body_; }

  /// "Edit Water…" at the left of the bottom row. Without one and without `footer` there is no
  /// bottom row.
  void setEditButton(const QString& title, std::function<void()> action);
  /// A quiet button at the right of the bottom row.
  void addFooterButton(PanelButton* button);

  const PanelAppearance& appearance() const { return appearance_; }
  const PanelPalette& colours() const { return colours_; }
  /// Light, dark or another tint, while it is open.
  void setAppearance(const PanelAppearance& appearance);

  /// The size for the popover: the width, and the content's height up to 560. It does not get lower
  /// while there is something in a search field.
  QSize fittingSize() const;
  QSize sizeHint() const override { return told_ = fittingSize(); }
  /// The fitting size may differ from before: something was added, hidden or reworded. Called
  /// once per round of changes.
  std::function<void()> onFittingSizeChange;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  /// After another appearance, for what a subclass coloured by hand.
  virtual void appearanceChanged() {}

private:
  PanelAppearance appearance_;
  PanelPalette colours_;
  /// The size that whoever holds the panel knows.
  mutable QSize told_;
  mutable int keptHeight_ = 0;
  QString widgetName_;
  PanelFocus* focus_ = nullptr;
  PanelText* title_ = nullptr;
  PanelText* state_ = nullptr;
  QVBoxLayout* body_ = nullptr;
  QWidget* footer_ = nullptr;
  QHBoxLayout* footerRow_ = nullptr;
  PanelDivider* hairline_ = nullptr;
  PanelButton* edit_ = nullptr;

  void makeHeader(QVBoxLayout* column);
  QHBoxLayout* footerRow();
  /// Where they are too wide to stand beside each other the edit button's title is shortened, and
  /// where that is not enough they stand under each other.
  void arrangeFooter() const;
  void askForLayout();
  bool isSearching() const;
};

} // namespace tavrin
