#pragma once

#include "TavrinSettings/Form/Picker.h"

class QLineEdit;
class QVBoxLayout;

namespace tavrin {

class FormRow;

/// What all lists have in common: the elements as rows that can be moved and taken out.
class ListControl : public FormControl {
public:
  ListControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool leavesTyping() const override { return true; }
  QWidget* target() override;
  bool isWide() const override { return true; }

protected:
  /// How an element is shown.
  virtual PanelRow rowOf(const JSONValue& element) const = 0;
  /// Sends the list with other elements; false where they are refused.
  bool sendList(JSONValue::Array elements) { return send(std::move(elements)); }
  std::string offerList(JSONValue::Array elements) { return offer(std::move(elements)); }
  bool append(JSONValue element);

  const FormServices& services() const { return services_; }
  const JSONValue::Array& elements() const { return elements_; }
  PanelList* list() { return list_; }
  QVBoxLayout* column() { return column_; }

private:
  void act(int row, int action);
  void take(int row, int by);

  const FormServices& services_;
  JSONValue::Array elements_;
  QVBoxLayout* column_;
  PanelList* list_;
};

/// Elements that are written as one text each: lengths of time, repositories, paths. A line below
/// adds one; Return on an element takes it back into the line.
class TextListControl : public ListControl {
public:
  TextListControl(const FieldInfo& field, const FormServices& services);
  bool isTyping() const override;
  bool commit() override { return !isTyping() || add(); }
  QWidget* target() override;

protected:
  PanelRow rowOf(const JSONValue& element) const override;

private:
  bool add();
  void choose();

  QLineEdit* line_;
};

/// Applications, added from those that menus show; each with its picture, or that it is not
/// installed.
class ApplicationListControl : public ListControl {
public:
  ApplicationListControl(const FieldInfo& field, const FormServices& services);
  QWidget* target() override;

protected:
  PanelRow rowOf(const JSONValue& element) const override;

private:
  TokenPtr apps_;
  class PanelButton* add_;
  QPointer<PickerPopup> popup_;
};

/// Records, of which the chosen one shows its fields below the list. Lists in lists make a tree.
/// A new one that is not whole yet, a link without its address, is kept here until it is.
class RecordListControl : public ListControl {
public:
  RecordListControl(const FieldInfo& field, const FormServices& services);
  void setValue(const JSONValue& value, const JSONValue& record) override;
  bool isTyping() const override;
  bool commit() override;

protected:
  PanelRow rowOf(const JSONValue& element) const override;

private:
  void add();
  /// Leads to what keeps the open record from being stored. False where nothing does.
  bool leadToMissing();
  void open(int index, std::optional<JSONValue::Object> draft = {});
  void showOpen();
  /// Why it is refused; nothing where it is not.
  std::string change(const std::vector<SettingValue>& values);
  bool lacks(const JSONValue::Object& record, const FieldInfo& field) const;
  bool lacksOtherThan(const JSONValue::Object& record, const std::string& key) const;

  /// The element whose fields are shown; -1 for none. That of a draft is one beyond the last.
  int open_ = -1;
  std::optional<JSONValue::Object> draft_;
  /// The draft that another record was opened over: the next that is added goes on with it.
  std::optional<JSONValue::Object> aside_;
  QWidget* editor_;
  std::vector<FormRow*> rows_;
};

} // namespace tavrin
