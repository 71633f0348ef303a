#pragma once

#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinSettings/Form/FormServices.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

class FormRow;

/// All that can be set of one widget: its name, its span, then each setting of its kind, in the
/// order of the kind's field table, which alone says what stands here. As wide as it is let, as
/// high as its rows; whoever shows it scrolls it.
///
///     auto* form = new WidgetForm(services, look);
///     form->onEdit = [&](const std::vector<SettingValue>& values) { return editor.apply(values);
///     }; form->show(record);     // and again whenever the record changed, from wherever
class WidgetForm : public QWidget {
public:
  /// `services` must outlive the form.
  WidgetForm(const FormServices& services, const PanelAppearance& appearance,
             QWidget* parent = nullptr);
  ~WidgetForm() override;

  using QWidget::show;
  /// Shows the record. Another widget, or another kind, makes all rows anew. For the same one only
  /// what changed is refreshed: a text that is being typed stays, with a remark where its setting
  /// was changed from elsewhere meanwhile.
  void show(const DockWidget& widget);

  /// The user has set something: to be applied with `withValues` to the record as it is stored.
  /// Answers why that is refused, as one sentence, or nothing; what was refused stays in its
  /// control with the sentence below. Values of one call belong together. May call `show`.
  std::function<std::string(const std::vector<SettingValue>& values)> onEdit;
  /// Another height is needed.
  std::function<void()> onHeightChange;

  /// Takes what is half typed as if the user had left its control: before the form goes away.
  /// False where something was refused; its control then has the focus.
  bool commit();

  void setAppearance(const PanelAppearance& appearance);
  /// The row of a setting, "name" or "span", for finding a field from a list of troubles; does
  /// nothing for an unknown path.
  void focusSetting(std::string_view path);

  QSize sizeHint() const override;

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void makeRows();

  struct State;
  std::unique_ptr<State> state_;
};

} // namespace tavrin
