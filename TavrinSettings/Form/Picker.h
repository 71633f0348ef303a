#pragma once

#include "TavrinSettings/Form/FormControl.h"
#include "TavrinSettings/Form/FormPopup.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"

#include <QPointer>

namespace tavrin {

/// One thing that a picker offers.
struct PickerItem {
  PanelRow row;
  std::vector<SettingValue> values;
};

/// Answers what there is for the words in the search line; at once or later, and again when more is
/// known. `trouble` is a sentence for an empty list.
using PickerAnswer = std::function<void(std::vector<PickerItem> items, const QString& trouble)>;
using PickerSource = std::function<TokenPtr(const QString& words, PickerAnswer answer)>;

/// A list to choose from that drops down from a button, with a line to search in.
class PickerPopup : public FormPopup {
public:
  /// `prompt` is what the empty search line says; empty for a list without one.
  PickerPopup(QWidget* owner, const QString& name, const QString& prompt, PickerSource source);

  std::function<void(const PickerItem& item)> onChoose;
  void open();

private:
  void ask(const QString& words);
  void keepHeight();
  void take(std::vector<PickerItem> items, const QString& trouble);
  void choose(int index);

  PickerSource source_;
  std::vector<PickerItem> items_;
  class PanelSearchField* search_ = nullptr;
  PanelList* list_;
  class PanelText* trouble_;
  TokenPtr asking_;
};

/// What everything is dropped down from: its title is what is chosen. Down and Up open it as a press
/// does.
class DropButton : public PanelButton {
public:
  explicit DropButton(std::function<void()> open);
  /// `name` is what is chosen of, `chosen` what.
  void show(const QString& name, const QString& chosen);

protected:
  void keyPressEvent(QKeyEvent* event) override;
};

/// A button with what is chosen, and the list that it opens.
class PickerControl : public FormControl {
public:
  PickerControl(const FieldInfo& field, const QString& prompt, PickerSource source,
                std::function<QString(const JSONValue& value, const JSONValue& record)> titleOf);
  ~PickerControl() override { delete popup_; }
  void setValue(const JSONValue& value, const JSONValue& record) override;
  QWidget* target() override;

  /// Further fields that lose their values with this one.
  void setAlso(std::vector<std::string> paths) { also_ = std::move(paths); }
  /// Opens the list; for the keyboard and tests.
  void open();
  PickerPopup* popup() const { return popup_; }

private:
  void refresh();

  QString prompt_;
  std::vector<std::string> also_;
  PickerSource source_;
  std::function<QString(const JSONValue&, const JSONValue&)> titleOf_;
  JSONValue value_;
  JSONValue record_;
  DropButton* button_;
  QPointer<PickerPopup> popup_;
};

} // namespace tavrin
