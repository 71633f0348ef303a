#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"

#include <QLabel>
#include <functional>

namespace tavrin {

class PanelButton;
class ViewWidget;

/// Words in one of the panel's text styles, wrapping; or on one line, cut with an ellipsis and
/// whole in the accessible name and the tooltip.
class PanelText : public QLabel {
public:
  explicit PanelText(const QString& text = {}, PanelTextStyle style = PanelTextStyle::body,
                     QWidget* parent = nullptr);

  void setStyle(PanelTextStyle style);
  PanelTextStyle textStyle() const { return style_; }
  /// One line that gives way instead of wrapping, cut at its end or, as suits a file's name, in its
  /// middle.
  void setSingleLine(bool single, Qt::TextElideMode elision = Qt::ElideRight);
  /// Does nothing when the text is the same. Plain text, never markup.
  void setWords(const QString& text);
  /// Whether the words do not fit the line now.
  bool isElided() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void paintFromTheRight(QPainter& painter) const;

  PanelTextStyle style_;
  bool single_ = false;
  Qt::TextElideMode elision_ = Qt::ElideRight;
};

/// A line across, 1 point.
class PanelDivider : public QWidget {
public:
  explicit PanelDivider(QWidget* parent = nullptr);
  QSize sizeHint() const override { return {16, 1}; }

protected:
  void paintEvent(QPaintEvent* event) override;
};

/// What stands where nothing is, or where something went wrong: a symbol, one sentence, one next
/// step.
class PanelEmptyState : public QWidget {
public:
  PanelEmptyState(const QString& symbol, const QString& sentence, QWidget* parent = nullptr);

  void setSentence(const QString& symbol, const QString& sentence);
  /// A quieter line below the sentence; empty for none.
  void setHint(const QString& hint);
  /// The next step as a button; an empty title for none.
  void setStep(const QString& title, std::function<void()> action);
  void setTrouble(bool trouble);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QString symbol_;
  bool trouble_ = false;
  PanelText* sentence_;
  PanelText* hint_;
  PanelButton* step_;
};

} // namespace tavrin
