#pragma once

#include "TavrinSettings/Form/SimpleControls.h"

#include <QPointer>

namespace tavrin {

class PanelButton;
class PanelGrid;
class PanelSwatch;

/// Swatches, the colour as text, and the dropper.
class ColourControl : public FormControl {
public:
  ColourControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override { return line_->isTyping(); }
  bool commit() override { return line_->commit(); }
  QWidget* target() override { return line_->target(); }
  bool isWide() const override { return true; }

private:
  const FormServices& services_;
  TextControl* line_;
  std::vector<PanelSwatch*> swatches_;
  TokenPtr picking_;
};

/// A symbol, chosen from a grid of all of them, drawn.
class SymbolControl : public FormControl {
public:
  explicit SymbolControl(const FieldInfo& field);
  ~SymbolControl() override;
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;

private:
  void open();

  JSONValue value_;
  PanelButton* button_;
  QPointer<QWidget> popup_;
};

/// A path, typed or chosen in the desktop's dialog.
class PathControl : public FormControl {
public:
  PathControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override { return line_->isTyping(); }
  bool commit() override { return line_->commit(); }
  QWidget* target() override { return line_->target(); }
  bool isWide() const override { return true; }

private:
  TextControl* line_;
};

/// A shortcut, pressed while the button has the focus.
class ShortcutControl : public FormControl {
public:
  explicit ShortcutControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  void listen(bool on);
  void show();

  JSONValue value_;
  bool isListening_ = false;
  PanelButton* button_;
  PanelButton* clear_;
};

} // namespace tavrin
