#include "TavrinSettings/Form/WidgetForm.h"

#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinSettings/Form/FormRow.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelAccessible.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {
namespace {

/// Below this width titles stand above their controls.
constexpr int narrowWidth = 420;

/// The lines that every widget has before those of its kind.
std::vector<FieldInfo> ownFields(const DockWidget& widget) {
  FieldInfo name;
  name.key = "name";
  name.title = marked("Name");
  name.help = marked("What the widget is called in its panel and in lists.");
  name.isRequired = true;
  FieldInfo span;
  span.key = "span";
  span.title = marked("Width");
  span.help = marked("How many tiles it takes in the Dock.");
  span.type = FieldType::integer;
  span.range = FieldRange{1, static_cast<double>(widget.kind.maxSpan())};
  std::vector<FieldInfo> fields{name};
  if (widget.kind.maxSpan() > 1)
    fields.push_back(span);
  return fields;
}

/// The fields that show, the ungrouped first, then group by group in the table's order.
std::vector<FieldInfo> shownFields(const DockWidget::Kind& kind) {
  auto fields = describeSettings(kind);
  std::erase_if(fields, [](const FieldInfo& field) {
    return field.isHidden || isCoveredByAnother(field) || !controlFor(field);
  });
  std::vector<std::string_view> groups{""};
  for (const auto& field : fields)
    if (std::ranges::count(groups, field.group) == 0)
      groups.push_back(field.group);
  std::ranges::stable_sort(fields, {}, [&](const FieldInfo& field) {
    return std::ranges::find(groups, field.group) - groups.begin();
  });
  return fields;
}

} // namespace

struct WidgetForm::State {
  State(const FormServices& asked, const PanelAppearance& look)
      : services(asked), appearance(look) {}

  const FormServices& services;
  PanelAppearance appearance;
  QVBoxLayout* column = nullptr;
  QWidget* body = nullptr;
  std::vector<FormRow*> rows;
  std::optional<DockWidget> widget;
};

WidgetForm::WidgetForm(const FormServices& services, const PanelAppearance& appearance,
                       QWidget* parent)
    : QWidget(parent), state_(std::make_unique<State>(services, appearance)) {
  PanelStyle::install();
  installPanelAccessibility();
  setFont(panelFont(PanelTextStyle::body));
  setAccessibleName(worded("Settings"));
  state_->column = new QVBoxLayout(this);
  state_->column->setContentsMargins(panel::padding, panel::grid, panel::padding, panel::padding);
  setAppearance(appearance);
  new PanelFocus(this);
}

WidgetForm::~WidgetForm() = default;

void WidgetForm::setAppearance(const PanelAppearance& appearance) {
  state_->appearance = appearance;
  setPalette(PanelPalette::make(appearance).palette());
}

void WidgetForm::show(const DockWidget& widget) {
  auto& state = *state_;
  const bool isSame = state.widget && state.widget->id == widget.id &&
                      state.widget->kind.index() == widget.kind.index();
  state.widget = widget;
  if (!isSame)
    makeRows();
  JSONValue record = settingsJSON(widget.kind);
  const JSONValue own = JSONValue::Object{{"name", widget.name}, {"span", widget.span}};
  const auto rows = state.rows;
  for (auto* row : rows)
    row->show(row->path() == "name" || row->path() == "span" ? own : record);
  updateGeometry();
}

void WidgetForm::makeRows() {
  auto& state = *state_;
  state.rows.clear();
  delete state.body;
  state.body = new QWidget(this);
  auto* column = new QVBoxLayout(state.body);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  std::string_view group;
  const auto add = [&](const FieldInfo& field) {
    if (field.group != group) {
      group = field.group;
      auto* title = new PanelText(worded(group), PanelTextStyle::section, state.body);
      title->setContentsMargins(0, panel::padding, 0, 0);
      column->addWidget(title);
    } else if (!state.rows.empty()) {
      column->addWidget(new PanelDivider(state.body));
    }
    auto* row = new FormRow(field, field.key, state.services, state.body);
    row->onEdit = [this](const std::vector<SettingValue>& values) {
      return onEdit ? onEdit(values) : std::string();
    };
    row->onHeightChange = [this] {
      updateGeometry();
      if (onHeightChange)
        onHeightChange();
    };
    row->setNarrow(width() < narrowWidth);
    state.rows.push_back(row);
    column->addWidget(row);
  };
  for (const auto& field : ownFields(*state.widget))
    add(field);
  for (const auto& field : shownFields(state.widget->kind))
    add(field);
  column->addStretch(1);
  state.column->addWidget(state.body);
  state.body->show();
}

bool WidgetForm::commit() {
  for (auto* row : state_->rows)
    if (!row->commit()) {
      row->focusControl();
      return false;
    }
  return true;
}

void WidgetForm::focusSetting(std::string_view path) {
  for (auto* row : state_->rows)
    if (row->path() == path)
      row->focusControl();
}

QSize WidgetForm::sizeHint() const {
  const int wide = std::max(width(), 320);
  return {480, state_->column->hasHeightForWidth() ? state_->column->totalHeightForWidth(wide)
                                                   : state_->column->totalSizeHint().height()};
}

void WidgetForm::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  for (auto* row : state_->rows)
    row->setNarrow(width() < narrowWidth);
}

} // namespace tavrin
