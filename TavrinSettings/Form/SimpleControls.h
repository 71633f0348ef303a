#pragma once

#include "TavrinSettings/Form/FormControl.h"

#include <QPointer>
#include <vector>

class QDateTimeEdit;

namespace tavrin {

class DropButton;
class NumberBox;
class PanelSegments;
class PanelSwitch;
class PanelTextEdit;
class TypedLine;

class ToggleControl : public FormControl {
public:
  explicit ToggleControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;
  bool hasTitle() const override { return true; }

private:
  PanelSwitch* toggle_;
};

/// One of a few values: side by side where they are few and short, otherwise in a list that drops
/// down.
class ChoiceControl : public FormControl {
public:
  /// A value and what it is called.
  using Choice = std::pair<JSONValue, QString>;

  /// `choices` are those beside the record's other settings.
  ChoiceControl(const FieldInfo& field,
                std::function<std::vector<Choice>(const JSONValue& record)> choices);
  ~ChoiceControl() override;
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;

private:
  void make();
  void chose(int index);
  void open();

  std::function<std::vector<Choice>(const JSONValue&)> makeChoices_;
  std::vector<Choice> choices_;
  JSONValue value_;
  PanelSegments* segments_ = nullptr;
  DropButton* drop_ = nullptr;
  QPointer<QWidget> popup_;
};

/// A number in a range, in the unit it is shown in.
class NumberControl : public FormControl {
public:
  explicit NumberControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override;
  bool commit() override;
  QWidget* target() override;

private:
  void changed(double shown);
  void showUnit();

  NumberBox* box_;
  FieldDisplay display_;
  JSONValue value_;
};

/// A line of text; also what is written as one: a number without a range.
class TextControl : public FormControl {
public:
  TextControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override { return isTyping_; }
  bool showsWhatIsStored() const override;
  bool commit() override;
  QWidget* target() override;
  bool isWide() const override;
  /// What is typed gives way to a value that was chosen.
  void giveWay() { isTyping_ = false; }

private:
  bool take();

  const FormServices& services_;
  TypedLine* line_;
  bool isTyping_ = false;
};

class LinesControl : public FormControl {
public:
  explicit LinesControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override { return isTyping_; }
  bool commit() override;
  QWidget* target() override;
  bool isWide() const override { return true; }

private:
  PanelTextEdit* edit_;
  bool isTyping_ = false;
};

class DateControl : public FormControl {
public:
  explicit DateControl(const FieldInfo& field);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;

private:
  QDateTimeEdit* edit_;
};

} // namespace tavrin
