#pragma once

#include "TavrinCore/Base/FieldInfo.h"
#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinSettings/Form/FormServices.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QWidget>

namespace tavrin {

/// What sets one field. It shows what it is given, and tells what the user makes of it.
class FormControl : public QWidget {
public:
  FormControl(FieldInfo field, QWidget* parent = nullptr)
      : QWidget(parent), field_(std::move(field)) {}

  /// Shows the value beside the record's other settings. While `isTyping` it is called only where
  /// `leavesTyping`.
  virtual void setValue(const JSONValue& value, const JSONValue& record) = 0;
  /// There is a text that has not been taken.
  virtual bool isTyping() const { return false; }
  /// `setValue` does not touch what is being typed.
  virtual bool leavesTyping() const { return false; }
  /// What was taken stands there as it is stored, not as it was written.
  virtual bool showsWhatIsStored() const { return false; }
  /// Takes what is half typed. False where it was refused.
  virtual bool commit() { return true; }
  /// Where the keyboard goes for this field.
  virtual QWidget* target() = 0;
  /// Draws the field's title itself.
  virtual bool hasTitle() const { return false; }
  /// Wants a line of its own below the title.
  virtual bool isWide() const { return false; }
  /// Sets the values, of which one may have a path of its own; an empty path is the field's.
  /// Why they were not taken; nothing where they were.
  std::function<std::string(std::vector<SettingValue> values)> onEdit;
  /// A sentence about what was typed and cannot be a value; empty when it can.
  std::function<void(const QString& sentence)> onTrouble;
  std::function<void()> onHeightChange;

  const FieldInfo& field() const { return field_; }
  QString title() const { return worded(field_.title); }

protected:
  /// What the control is made of stands side by side in it.
  QHBoxLayout* makeRow() {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    return row;
  }
  bool send(JSONValue value) { return offer(std::move(value)).empty(); }
  std::string offer(JSONValue value) {
    return onEdit ? onEdit({{{}, std::move(value), {}}}) : translated("this is not taken");
  }
  void complain(const QString& sentence) {
    if (onTrouble)
      onTrouble(sentence);
  }

private:
  FieldInfo field_;
};

/// The control that `controlFor` names; null for a field that has none. `services` must outlive it.
FormControl* makeFormControl(const FieldInfo& field, const FormServices& services);

} // namespace tavrin
