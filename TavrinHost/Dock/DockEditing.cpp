#include "TavrinHost/Dock/DockEditing.h"

#include "TavrinCore/Base/Overloaded.h"
#include "TavrinCore/Dock/DockURLString.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/NamedReference.h"

#include <algorithm>
#include <charconv>

namespace tavrin {
namespace {

ReferenceTiers<PlacedDockItem> tiers(const std::string& reference) {
  const auto path = DockURLString::path(reference);
  const auto isNamed = [](const PlacedDockItem& one) { return one.item.spacer() == nullptr; };
  return {
      [=](const PlacedDockItem& one) {
        return isNamed(one) && one.item.displayName() == reference;
      },
      [=](const PlacedDockItem& one) {
        return isNamed(one) && (addressOf(one.item) == path || addressOf(one.item) == reference);
      },
      [=](const PlacedDockItem& one) {
        const auto* app = one.item.app();
        return app != nullptr && app->bundleIdentifier == reference;
      },
      [=](const PlacedDockItem& one) {
        return isNamed(one) && folded(one.item.displayName()) == folded(reference);
      },
      [=](const PlacedDockItem& one) {
        const auto* app = one.item.app();
        return app != nullptr && app->bundleIdentifier &&
               folded(*app->bundleIdentifier) == folded(reference);
      },
  };
}

std::vector<PlacedDockItem> inSection(const DockSnapshot& dock,
                                      std::optional<DockSection> section) {
  auto items = placedItems(dock);
  std::erase_if(items, [&](const auto& one) { return section && one.section != *section; });
  return items;
}

/// Where the item that a reference means stands.
PlacedDockItem only(const DockSnapshot& dock, const std::string& reference) {
  return select(dock, {.references = {reference}, .section = {}}).front();
}

struct Target {
  DockSection section;
  std::size_t index;
};

Target resolve(const DockSnapshot& dock, const DockPlace& place, DockSection section) {
  const auto count = section == DockSection::apps ? dock.apps.size() : dock.others.size();
  return std::visit(
      Overloaded{[&](DockPlace::First) {
                   return Target{section, 0};
                 },
                 [&](DockPlace::Last) {
                   return Target{section, count};
                 },
                 [&](DockPlace::Number number) {
                   return Target{section, std::min(number.value - 1, count)};
                 },
                 [&](const DockPlace::Beside& beside) {
                   const auto found = only(dock, beside.reference);
                   return Target{found.section, found.index + (beside.isAfter ? 1U : 0U)};
                 }},
      place.where);
}

void insert(DockSnapshot& dock, Target target, const std::vector<DockItem>& items) {
  auto& section = sectionOf(dock, target.section);
  section.insert(section.begin() + static_cast<std::ptrdiff_t>(target.index), items.begin(),
                 items.end());
}

void erase(DockSnapshot& dock, const std::vector<PlacedDockItem>& items) {
  for (auto one = items.rbegin(); one != items.rend(); ++one) {
    auto& section = sectionOf(dock, one->section);
    section.erase(section.begin() + static_cast<std::ptrdiff_t>(one->index));
  }
}

bool contains(const DockSnapshot& dock, DockSection section, const DockItem& item) {
  const auto& items = section == DockSection::apps ? dock.apps : dock.others;
  return item.spacer() == nullptr &&
         std::any_of(items.begin(), items.end(), [&](const DockItem& one) {
           return one.payload.index() == item.payload.index() && addressOf(one) == addressOf(item);
         });
}

} // namespace

DockPlace DockPlace::parse(std::string_view text) {
  if (text == "first")
    return {First{}};
  if (text == "last")
    return {Last{}};
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number == 0)
    throw HostError(ExitCode::refusedValue,
                    translated("\"{text}\" is no position: it is first, last or a number from 1",
                               {{"text", text}}));
  return {Number{number}};
}

std::vector<PlacedDockItem> placedItems(const DockSnapshot& dock) {
  std::vector<PlacedDockItem> items;
  for (std::size_t i = 0; i < dock.apps.size(); ++i)
    items.push_back({DockSection::apps, i, dock.apps[i]});
  for (std::size_t i = 0; i < dock.others.size(); ++i)
    items.push_back({DockSection::others, i, dock.others[i]});
  return items;
}

std::vector<PlacedDockItem> select(const DockSnapshot& dock, const DockSelection& selection) {
  const auto items = inSection(dock, selection.section);
  std::vector<bool> isMeant(items.size(), selection.everything);
  for (std::size_t i = 0; i < items.size(); ++i)
    if (selection.allSpacers && items[i].item.spacer() != nullptr)
      isMeant[i] = true;
  for (const auto& reference : selection.references) {
    const auto found = nearest(items, tiers(reference));
    if (found.empty())
      throw HostError(ExitCode::notFound, translated("no item of the Dock goes by \"{reference}\"",
                                                     {{"reference", reference}}));
    if (found.size() > 1 && !selection.everyMatch)
      throwAmbiguous(reference, found, [](const PlacedDockItem& one) { return described(one); });
    for (const auto* one : found)
      isMeant[static_cast<std::size_t>(one - items.data())] = true;
  }
  std::vector<PlacedDockItem> meant;
  for (std::size_t i = 0; i < items.size(); ++i)
    if (isMeant[i])
      meant.push_back(items[i]);
  return meant;
}

std::vector<DockItem>& sectionOf(DockSnapshot& dock, DockSection section) {
  return section == DockSection::apps ? dock.apps : dock.others;
}

DockItem fitting(const DockItem& item, DockSection section) {
  if (const auto* app = item.app(); app != nullptr && section == DockSection::others)
    return {FileEntry{app->path, app->displayName, false, app->tile, std::nullopt}};
  if (const auto* file = item.file();
      file != nullptr && !file->isDirectory && section == DockSection::apps)
    return {AppEntry{file->path, std::nullopt, file->displayName, file->tile}};
  return item;
}

DockEdit adding(DockAddition addition, std::function<void(const DockItem&)> alreadyThere) {
  return
      [addition = std::move(addition), alreadyThere = std::move(alreadyThere)](DockSnapshot& dock) {
        std::optional<Target> replaced;
        if (addition.replacing) {
          const auto present = placedItems(dock);
          const auto found = nearest(present, tiers(*addition.replacing));
          if (found.size() > 1)
            throwAmbiguous(*addition.replacing, found,
                           [](const PlacedDockItem& one) { return described(one); });
          if (!found.empty()) {
            replaced = Target{found.front()->section, found.front()->index};
            erase(dock, {*found.front()});
          }
        }
        std::optional<Target> next;
        for (const auto& item : addition.items) {
          auto section = addition.section.value_or(
              item.belongsInAppsSection() ? DockSection::apps : DockSection::others);
          if (replaced && !addition.section && !addition.place)
            section = replaced->section;
          Target target = next && next->section == section ? *next
                          : replaced && !addition.place && replaced->section == section
                              ? *replaced
                              : resolve(dock, addition.place.value_or(DockPlace{}), section);
          const auto fit = fitting(item, target.section);
          if (contains(dock, target.section, fit)) {
            alreadyThere(fit);
            continue;
          }
          insert(dock, target, {fit});
          next = Target{target.section, target.index + 1};
        }
      };
}

DockEdit removing(DockSelection selection) {
  return [selection = std::move(selection)](DockSnapshot& dock) {
    erase(dock, select(dock, selection));
  };
}

DockEdit moving(DockSelection selection, std::optional<DockSection> section, DockPlace place) {
  return [=](DockSnapshot& dock) {
    const auto moved = select(dock, selection);
    if (moved.empty())
      return;
    DockSnapshot rest = dock;
    erase(rest, moved);
    const auto target = resolve(rest, place, section.value_or(moved.front().section));
    std::vector<DockItem> items;
    for (const auto& one : moved)
      items.push_back(fitting(one.item, target.section));
    insert(rest, target, items);
    dock = std::move(rest);
  };
}

std::string described(const PlacedDockItem& placed) {
  return fmt::format("\"{}\" ({}, {})", placed.item.displayName(),
                     placed.section == DockSection::apps ? "apps" : "others", placed.index + 1);
}

std::string_view kindWord(const DockItem& item) {
  if (item.app() != nullptr)
    return marked("app");
  if (item.url() != nullptr)
    return marked("link");
  if (item.spacer() != nullptr)
    return marked("spacer");
  return item.file()->isDirectory ? marked("folder") : marked("file");
}

std::string addressOf(const DockItem& item) {
  if (const auto* app = item.app())
    return app->path;
  if (const auto* file = item.file())
    return file->path;
  return item.url() != nullptr ? item.url()->url : std::string();
}

} // namespace tavrin
