#include "TavrinSettings/Dock/ItemPicker.h"

#include "TavrinSettings/Form/Picker.h"
#include "TavrinSettings/Form/SystemControls.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

// What an item of the list is.
constexpr const char* appSort = "app";
constexpr const char* linkSort = "link";
constexpr const char* filesSort = "files";
constexpr const char* folderSort = "folder";
constexpr const char* spacerSort = "spacer";

PickerItem listItem(const char* sort, const QString& title, const char* symbol,
                    const JSONValue& value = {}) {
  return {
      .row = {.id = QString::fromUtf8(sort), .title = title, .symbol = QString::fromUtf8(symbol)},
      .values = {{sort, value, {}}}};
}

/// Those that are no applications and go by the words.
std::vector<PickerItem> otherItems(const FormServices& forms, const QString& words) {
  std::vector<PickerItem> items;
  if (words.contains(QLatin1String("://")))
    return {listItem(linkSort, words.trimmed(), "globe", words.trimmed().toStdString())};
  std::vector<PickerItem> all;
  if (forms.choosePaths) {
    all.push_back(listItem(folderSort, worded("Folder…"), "folder.fill"));
    all.push_back(listItem(filesSort, worded("Files…"), "doc.fill"));
  }
  all.push_back(listItem(spacerSort, worded("Empty place"), "arrow.left.arrow.right"));
  for (auto& each : all)
    if (each.row.title.contains(words.trimmed(), Qt::CaseInsensitive))
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
  for (const auto& path : forms_.choosePaths(window, how, forms_.system.home)) {
    FileEntry entry;
    entry.path = path.string();
    entry.isDirectory = isFolder;
    items.push_back({entry});
  }
  return items;
}

void ItemPicker::open(QWidget* owner) {
  if (popup_ && popup_->isVisible())
    return;
  const auto source = [this, apps = applicationsSource(forms_)](const QString& words,
                                                                const PickerAnswer& answer) {
    const auto others = otherItems(forms_, words);
    return apps(words, [others, answer](std::vector<PickerItem> items, const QString& trouble) {
      for (auto& each : items)
        each.values.front().path = appSort;
      items.insert(items.begin(), others.begin(), others.end());
      const bool isEmpty = items.empty();
      answer(std::move(items), isEmpty ? trouble : QString());
    });
  };
  popup_ = new PickerPopup(owner, worded("Add an Item"), worded("Application or address"), source);
  popup_->onChoose = [this, window = owner->window()](const PickerItem& chosen) {
    const auto& [sort, value, unused] = chosen.values.front();
    std::vector<DockItem> items;
    if (sort == appSort)
      items.push_back({decode<AppEntry>(value)});
    else if (sort == linkSort)
      items.push_back({URLEntry{*value.string(), std::nullopt, std::nullopt}});
    else if (sort == spacerSort)
      items.push_back({SpacerVariant::standard});
    else
      items = filesChosen(window, sort == folderSort);
    if (onChoose && !items.empty())
      onChoose(items);
  };
  popup_->open();
}

} // namespace tavrin
