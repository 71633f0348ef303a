#pragma once

#include "TavrinSettings/Form/FormControl.h"

class QBoxLayout;

namespace tavrin {

class PanelButton;
class PanelText;

/// One setting: its title, its control, the sentence on what it does, and what is wrong with it.
class FormRow : public QWidget {
public:
  /// `path` is where the value stands in the widget, or in the record that `show` is given.
  FormRow(const FieldInfo& field, std::string path, const FormServices& services,
          QWidget* parent = nullptr);

  /// Shows the value of the field in `record`. What is being typed stays, with a remark where the
  /// value was changed meanwhile.
  void show(const JSONValue& record);
  bool isTyping() const;
  bool commit();
  void focusControl();
  /// Says what its value must be.
  void demand();
  /// Title above the control instead of beside it.
  void setNarrow(bool isNarrow);

  const std::string& path() const { return path_; }

  std::function<std::string(const std::vector<SettingValue>& values)> onEdit;
  std::function<void()> onHeightChange;

private:
  /// Says what the control sets, for assistive technology.
  void label();
  void fill(const JSONValue& value, const JSONValue& record);
  std::string edit(std::vector<SettingValue> values);
  void complain(const QString& sentence);
  void warn();
  void showMessage();

  FieldInfo field_;
  std::string path_;
  const FormServices& services_;
  FormControl* control_;
  QBoxLayout* line_;
  PanelText* title_ = nullptr;
  PanelText* message_;
  PanelButton* takeOther_;
  QString trouble_;
  QString warning_;
  QString remark_;
  /// What is stored, as the user saw it when they began.
  JSONValue known_;
  JSONValue record_;
  bool isShown_ = false;
};

} // namespace tavrin
