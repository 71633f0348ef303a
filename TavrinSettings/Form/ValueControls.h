#pragma once

#include "TavrinSettings/Form/SimpleControls.h"

#include <QPointer>

namespace tavrin {

class DropButton;
class PanelButton;
class PanelGrid;
class PanelSwatch;
class ShortcutRecorder;

/// The value as a line of text, beside other ways to give it.
class LineAndMoreControl : public FormControl {
public:
  LineAndMoreControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override {
    line_->setValue(value, record);
  }
  bool isTyping() const override { return line_->isTyping(); }
  bool showsWhatIsStored() const override { return line_->showsWhatIsStored(); }
  bool commit() override { return line_->commit(); }
  QWidget* target() override { return line_->target(); }
  bool isWide() const override { return true; }

protected:
  TextControl* line() { return line_; }
  /// Sets a value that was not typed.
  bool sendChosen(JSONValue value) {
    line_->giveWay();
    return send(std::move(value));
  }

private:
  TextControl* line_;
};

/// Swatches, the colour as text, and the dropper.
class ColourControl : public LineAndMoreControl {
public:
  ColourControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;

private:
  const FormServices& services_;
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
  DropButton* button_;
  QPointer<class FormPopup> popup_;
};

/// A path, typed or chosen in the desktop's dialog.
class PathControl : public LineAndMoreControl {
public:
  PathControl(const FieldInfo& field, const FormServices& services);
};

/// A shortcut, set by pressing it.
class ShortcutControl : public FormControl {
public:
  explicit ShortcutControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;

private:
  ShortcutRecorder* recorder_;
};

} // namespace tavrin
