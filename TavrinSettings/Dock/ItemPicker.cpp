#include "TavrinSettings/Dock/ItemPicker.h"

#include "TavrinHost/Dock/DockItems.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinSettings/Form/SystemControls.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

// What an item of the list is.
constexpr const char* appSort = "app";
/// A path or an address, as it was typed.
constexpr const char* wordSort = "word";
constexpr const char* filesSort = "files";
constexpr const char* folderSort = "folder";
constexpr const char* spacerSort = "spacer";

PickerItem listItem(const char* sort, const QString& title, const char* symbol,
                    const JSONValue& value = {}) {
  return {.row = {.id = QString::fromUtf8(sort) + title,
                  .title = title,
                  .symbol = QString::fromUtf8(symbol)},
          .values = {{sort, value, {}}}};
}

bool isPath(const QString& words) {
  return words.startsWith(QLatin1Char('/')) || words.startsWith(QLatin1String("~/"));
}

/// What a path leads to, and whether there is such a thing.
PickerItem pathItem(HostContext& context, const QString& words) {
  const auto path = absolutePath(context, words.toStdString());
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  auto item =
      listItem(wordSort, words, std::filesystem::is_directory(status) ? "folder.fill" : "doc.fill",
               words.toStdString());
  item.row.isFileName = true;
  if (!std::filesystem::exists(status))
    item.row.subtitle = worded("It is not on this computer");
  return item;
}

/// Those that are no applications and go by the words.
std::vector<PickerItem> otherItems(HostContext& context, const FormServices& forms,
                                   const QString& words) {
  if (words.contains(QLatin1String("://")))
    return {listItem(wordSort, words, "globe", words.toStdString())};
  if (isPath(words))
    return {pathItem(context, words)};
  std::vector<PickerItem> items;
  std::vector<PickerItem> all;
  if (forms.choosePaths) {
    all.push_back(listItem(folderSort, worded("Folder…"), "folder.fill"));
    all.push_back(listItem(filesSort, worded("Files…"), "doc.fill"));
  }
  for (const auto variant : {SpacerVariant::standard, SpacerVariant::small, SpacerVariant::flex})
    all.push_back(listItem(spacerSort, utf8(DockItem{variant}.displayName()),
                           "arrow.left.arrow.right", std::string(nameOf(variant))));
  for (auto& each : all)
    if (each.row.title.contains(words, Qt::CaseInsensitive))
      items.push_back(std::move(each));
  return items;
}

} // namespace

ItemPicker::~ItemPicker() {
  delete popup_;
}

std::vector<DockItem> ItemPicker::filesChosen(QWidget* window, bool isFolder) const {
  std::vector<DockItem> items;
  const auto how = isFolder ? FormServices::Choosing::folder : FormServices::Choosing::files;
  for (const auto& path : forms_.choosePaths(window, how, forms_.system.home))
    items.push_back(itemNamed(context_, path.string(), true));
  return items;
}

void ItemPicker::open(QWidget* owner, const QString& title,
                      std::function<void(const std::vector<DockItem>& items)> choose) {
  if (popup_ && popup_->isVisible())
    return;
  const auto source = [this, apps = applicationsSource(forms_)](const QString& typed,
                                                                const PickerAnswer& answer) {
    const auto words = typed.trimmed();
    const auto others = otherItems(context_, forms_, words);
    // Applications take their time.
    if (!others.empty())
      answer(others, {});
    return apps(words, [others, answer](std::vector<PickerItem> items, const QString& trouble) {
      for (auto& each : items)
        each.values.front().path = appSort;
      items.insert(items.begin(), others.begin(), others.end());
      const bool isEmpty = items.empty();
      answer(std::move(items), isEmpty ? trouble : QString());
    });
  };
  popup_ = new PickerPopup(owner, title, worded("Application, path or address"), source);
  popup_->onChoose = [this, window = owner->window(),
                      choose = std::move(choose)](const PickerItem& chosen) {
    const auto& [sort, value, unused] = chosen.values.front();
    std::vector<DockItem> items;
    if (sort == appSort)
      items.push_back({decode<AppEntry>(value)});
    else if (sort == wordSort)
      items.push_back(itemNamed(context_, *value.string(), true));
    else if (sort == spacerSort)
      items.push_back({*enumNamed<SpacerVariant>(*value.string())});
    else
      items = filesChosen(window, sort == folderSort);
    if (!items.empty())
      choose(items);
  };
  popup_->open();
}

} // namespace tavrin
