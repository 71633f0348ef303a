#include "TavrinHost/Widgets/WidgetLibrary.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Dock/WorkspaceBackups.h"
#include "TavrinHost/FoldedName.h"
#include "TavrinStorage/StoragePath.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <numeric>
#include <utility>

namespace tavrin {
namespace {

/// Shorter starts of an identifier are taken for names only.
constexpr std::size_t shortestIdentifierStart = 4;

std::string described(const DockWidget& widget) {
  return fmt::format("\"{}\" ({}, {})", widget.name, widget.kind.key(),
                     widget.id.text().substr(0, 8));
}

template <class Matches>
std::vector<const DockWidget*> matching(const WidgetsFile& file, Matches matches) {
  std::vector<const DockWidget*> found;
  for (const auto& widget : file.widgets)
    if (matches(widget))
      found.push_back(&widget);
  return found;
}

/// How many letters have to be put in, taken out or replaced to make one word of the other.
std::size_t changesBetween(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    auto diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j)
      diagonal = std::exchange(
          row[j + 1], std::min({row[j] + 1, row[j + 1] + 1, diagonal + (a[i] == b[j] ? 0 : 1)}));
  }
  return row.back();
}

/// The kinds that a folded word nobody knows may have meant: those it is a part of, else those
/// within a slip or two.
std::vector<std::string> kindsLike(const std::string& word) {
  std::vector<std::string> parts;
  std::vector<std::string> slips;
  for (const auto& kind : allKinds()) {
    const auto key = folded(kind.key);
    const auto title = folded(kind.title);
    if (word.size() > 2 &&
        (key.find(word) != std::string::npos || title.find(word) != std::string::npos))
      parts.emplace_back(kind.key);
    if (std::min(changesBetween(word, key), changesBetween(word, title)) <= word.size() / 4)
      slips.emplace_back(kind.key);
  }
  return parts.empty() ? slips : parts;
}

[[noreturn]] void throwNoKind(std::string_view reference) {
  std::vector<std::string> keys;
  for (const auto& kind : allKinds())
    keys.emplace_back(kind.key);
  std::ranges::sort(keys, {}, folded);
  const auto meant = kindsLike(folded(reference));
  throw HostError(
      ExitCode::notFound,
      meant.empty()
          ? translated("there is no kind \"{kind}\"; the kinds are {kinds}",
                       {{"kind", reference}, {"kinds", enumeration(keys)}})
          : translated("there is no kind \"{kind}\"; did you mean {meant}? the kinds are {kinds}",
                       {{"kind", reference},
                        {"meant", alternatives(meant)},
                        {"kinds", enumeration(keys)}}));
}

[[noreturn]] void throwNoWidget(const WidgetsFile& file, std::string_view reference) {
  std::vector<std::string> names;
  for (const auto& widget : file.widgets)
    names.push_back(widget.name);
  throw HostError(ExitCode::notFound, noneCalled("widget", reference, names));
}

} // namespace

WidgetLibrary::WidgetLibrary(HostContext& context) : context_(context) {
  auto& platform = context.platform();
  const StoragePath paths(platform.fileManager(), platform.mainBundle());
  const auto url = paths.widgetsFileURL();
  try {
    store_.emplace(url, paths.legacyCollectionsFileURL());
  } catch (const FileError& error) {
    const auto backup = newestWholeBackup(context);
    throw HostError(
        ExitCode::failed,
        fmt::format(
            "{}; {}", error.what(),
            backup
                ? translated("`tavrin backups restore {identifier}` brings back the copy of {date}",
                             {{"identifier", backup->id()}, {"date", dateText(backup->date)}})
                : translated(
                      "there is no backup of it, so mend it, or move it away to begin anew")));
  }
  warnOfNewerVersion();
}

void WidgetLibrary::warnOfNewerVersion() const {
  if (file().version > WidgetsFile::currentVersion)
    context_.remarkOnce(printable(translated(
        "\"{url}\" has version {version}, and this tavrin knows version {currentVersion}: "
        "settings unknown to it are lost when it saves, widgets unknown to it stay",
        {{"url", store_->url().string()},
         {"version", file().version},
         {"currentVersion", WidgetsFile::currentVersion}})));
}

const DockWidget& WidgetLibrary::find(std::string_view reference) const {
  const auto word = folded(reference);
  const auto startOf = [&](const std::string& text) {
    return !word.empty() && folded(text).starts_with(word);
  };
  const auto one = [&](const std::vector<const DockWidget*>& found) -> const DockWidget* {
    if (found.size() <= 1)
      return found.empty() ? nullptr : found.front();
    std::vector<std::string> candidates;
    for (const auto* widget : found)
      candidates.push_back(described(*widget));
    throw HostError(ExitCode::ambiguous, translated("\"{reference}\" may be {candidates}",
                                                    {{"reference", reference},
                                                     {"candidates", alternatives(candidates)}}));
  };
  const auto by = [&](auto matches) { return one(matching(file(), matches)); };

  if (const auto id = UUID::parse(reference))
    if (const auto* widget = by([&](const DockWidget& w) { return w.id == *id; }))
      return *widget;
  if (const auto* widget = by([&](const DockWidget& w) { return w.name == reference; }))
    return *widget;
  if (const auto* widget = by([&](const DockWidget& w) { return folded(w.name) == word; }))
    return *widget;
  if (const auto* widget =
          by([&](const DockWidget& w) { return w.slot && word == fmt::format("slot{}", *w.slot); }))
    return *widget;
  if (const auto* widget = by([&](const DockWidget& w) {
        return startOf(w.name) || (word.size() >= shortestIdentifierStart && startOf(w.id.text()));
      }))
    return *widget;
  throwNoWidget(file(), reference);
}

void WidgetLibrary::announce() {
  context_.platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
}

std::string slotFault(const WidgetsFile& file, const DockWidget& widget) {
  if (!widget.slot)
    return {};
  const auto placed = file.placedWidgets();
  const auto shown = placed.find(*widget.slot);
  if (shown == placed.end())
    return translated("there is no slot {slot}; they are 1 to {most}",
                      {{"slot", *widget.slot}, {"most", DockSlot::count}});
  if (shown->second->id != widget.id)
    return translated("slot {slot} shows \"{name}\"",
                      {{"slot", *widget.slot}, {"name", shown->second->name}});
  return {};
}

std::string freeName(const WidgetsFile& file, std::string_view title) {
  std::string name(title);
  for (int number = 2; std::ranges::count(file.widgets, name, &DockWidget::name) > 0; ++number)
    name = fmt::format("{} {}", title, number);
  return name;
}

const KindInfo& kindNamed(std::string_view reference) {
  const auto word = folded(reference);
  std::vector<const KindInfo*> begun;
  for (const auto& kind : allKinds()) {
    const auto key = folded(kind.key);
    const auto title = folded(kind.title);
    const auto shown = folded(translation(kind.title));
    if (key == word || title == word || shown == word)
      return kind;
    if (!word.empty() &&
        (key.starts_with(word) || title.starts_with(word) || shown.starts_with(word)))
      begun.push_back(&kind);
  }
  if (begun.size() == 1)
    return *begun.front();
  std::vector<std::string> keys;
  for (const auto* kind : begun)
    keys.emplace_back(kind->key);
  if (!keys.empty())
    throw HostError(ExitCode::ambiguous,
                    translated("\"{reference}\" may be {keys}",
                               {{"reference", reference}, {"keys", alternatives(keys)}}));
  throwNoKind(reference);
}

} // namespace tavrin
