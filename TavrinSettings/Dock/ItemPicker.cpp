#include "TavrinSettings/Dock/ItemPicker.h"

#include "TavrinHost/Dock/DockItems.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinSettings/Form/SystemControls.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

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

void ItemPicker::identify(const std::vector<std::filesystem::path>& files,
                          std::function<void(const std::vector<DockItem>&)> answer) {
  const auto tell = [this, files,
                     answer = std::move(answer)](const std::vector<ApplicationInfo>& apps) {
    std::vector<DockItem> items;
    for (const auto& file : files) {
      const auto found = std::ranges::find_if(apps, [&](const ApplicationInfo& app) {
        return std::filesystem::path(app.path).lexically_normal() == file.lexically_normal();
      });
      items.push_back(found == apps.end() ? itemNamed(context_, file.string(), true)
                                          : DockItem{entryOf(*found)});
    }
    if (!items.empty())
      answer(items);
  };
  const bool mayBeApplication = std::ranges::any_of(files, [](const auto& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
  });
  if (mayBeApplication && forms_.applications)
    identifying_ = forms_.applications(tell);
  else
    tell({});
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
    const bool isFolder = sort == folderSort;
    if (sort == appSort)
      choose(std::vector{DockItem{decode<AppEntry>(value)}});
    else if (sort == spacerSort)
      choose(std::vector{DockItem{*enumNamed<SpacerVariant>(*value.string())}});
    else if (sort != wordSort)
      identify(forms_.choosePaths(window,
                                  isFolder ? FormServices::Choosing::folder
                                           : FormServices::Choosing::files,
                                  forms_.system.home),
               choose);
    else if (const auto& word = *value.string(); isPath(utf8(word)))
      identify({absolutePath(context_, word)}, choose);
    else
      choose(std::vector{itemNamed(context_, word, true)});
  };
  popup_->open();
}

} // namespace tavrin
