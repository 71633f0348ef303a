#include "TavrinSettings/Widget/WidgetPage.h"

#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinSettings/Editing/StepField.h"
#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Form/TabOrder.h"
#include "TavrinSettings/Form/WidgetForm.h"
#include "TavrinSettings/Widget/TilePreview.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

/// From this width on the preview stands beside the form.
constexpr int wideEnough = 860;
/// What the form is to have of the height before the preview has anything.
constexpr int leastForm = 220;

} // namespace

WidgetPage::WidgetPage(PageServices& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  makeHeader(column);
  body_ = new QBoxLayout(QBoxLayout::TopToBottom);
  body_->setSpacing(panel::padding);
  preview_ = new TilePreview(services_, this);
  scroll_ = ScrollFade::makeArea(this);
  form_ = new WidgetForm(services_.forms, services_.appearance);
  form_->onEdit = [this](const std::vector<SettingValue>& values) { return set(values); };
  scroll_->setWidget(form_);
  body_->addWidget(preview_, 0, Qt::AlignTop);
  body_->addWidget(scroll_, 1);
  column->addLayout(body_, 1);
}

void WidgetPage::makeHeader(QBoxLayout* column) {
  auto* row = new QHBoxLayout;
  row->setSpacing(panel::grid);
  back_ = PanelButton::icon(
      QStringLiteral("chevron.left"), worded("All Widgets"),
      [this] {
        if (onBack)
          onBack();
      },
      this);
  title_ = new PanelText({}, PanelTextStyle::heading, this);
  title_->setSingleLine(true);
  kind_ = new PanelText({}, PanelTextStyle::secondary, this);
  kind_->setSingleLine(true);
  place_ = new PanelButton(
      PanelButton::Kind::quiet, {}, [this] { place(); }, this);
  delete_ = new PanelButton(
      PanelButton::Kind::quiet, worded("Delete"), [this] { remove(); }, this);
  delete_->setSymbol(QStringLiteral("trash"));
  row->addWidget(back_);
  row->addWidget(title_);
  row->addWidget(kind_, 1);
  row->addWidget(place_);
  row->addWidget(delete_);
  column->addLayout(row);
}

bool WidgetPage::show(const UUID& id) {
  const auto* widget = services_.editor.widget(id);
  if (widget == nullptr)
    return false;
  const bool isAnother = std::exchange(id_, id) != id;
  const auto title = widget->kind.title();
  const auto kind = utf8(title);
  const auto name = QString::fromStdString(widget->name);
  title_->setWords(name);
  kind_->setWords(kind == name ? QString() : kind);
  place_->setTitle(isOnStrip(services_.editor.file(), id) ? worded("Take Off")
                                                          : worded("Put on the Strip"));
  place_->setAccessibleName(place_->title());
  preview_->setRecord(*widget);
  form_->show(*widget);
  if (isAnother)
    followInTabOrder(*delete_, *form_);
  return true;
}

void WidgetPage::commit() {
  form_->commit();
}

void WidgetPage::setAppearance() {
  form_->setAppearance(services_.appearance);
}

void WidgetPage::focusForm() {
  form_->focusSetting("name");
}

void WidgetPage::refreshTiles() {
  preview_->update();
}

std::string WidgetPage::set(const std::vector<SettingValue>& values) {
  if (values.empty())
    return {};
  const auto& path = values.front().path;
  const auto* widget = services_.editor.widget(id_);
  const std::string name = widget == nullptr ? std::string() : widget->name;
  try {
    services_.editor.edit(id_,
                          path == "name" ? translated("Rename {name}", {{"name", name}})
                                         : translated("Set Up {name}", {{"name", name}}),
                          stepField(values.front()), [&](DockWidget& current) {
                            current = withValues(current, values, services_.forms.system);
                          });
    return {};
  } catch (const SettingError& error) {
    return error.what();
  } catch (const std::exception& error) {
    services_.tell(QString::fromUtf8(error.what()) + QLatin1Char('.'), true);
    return error.what();
  }
}

void WidgetPage::place() {
  const auto& file = services_.editor.file();
  services_.attempt([&] {
    if (isOnStrip(file, id_))
      services_.editor.takeOff(id_);
    else
      services_.editor.place(id_, stripOf(file).size());
  });
}

void WidgetPage::remove() {
  const auto name = title_->text();
  const UUID id = id_;
  if (services_.attempt([&] { services_.editor.remove(id); }))
    services_.offerUndo(worded("“{name}” is deleted. Undo brings it back.", {{"name", name}}));
}

void WidgetPage::resizeEvent(QResizeEvent*) {
  const bool isBeside = width() >= wideEnough;
  body_->setDirection(isBeside ? QBoxLayout::RightToLeft : QBoxLayout::TopToBottom);
  preview_->setUpright(isBeside);
  const int form =
      height() - body_->geometry().top() - (isBeside ? 0 : preview_->sizeHint().height());
  preview_->setVisible(isBeside ? form >= preview_->sizeHint().height() : form >= leastForm);
}

} // namespace tavrin
