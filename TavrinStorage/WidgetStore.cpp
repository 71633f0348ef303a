#include "TavrinStorage/WidgetStore.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <system_error>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

std::optional<WidgetsFile> migrated(const fs::path& legacyCollections) {
  const auto document = readJSONFile(legacyCollections);
  if (!document)
    return std::nullopt;
  try {
    return WidgetsFile::migrating(*document);
  } catch (const CodingError& error) {
    throw FileError(
        failure(translated("read {file}", {{"file", legacyCollections.string()}}), error.what()),
        error.what());
  }
}

DockWidget* find(WidgetsFile& file, const UUID& id) {
  const auto found = std::ranges::find(file.widgets, id, &DockWidget::id);
  return found == file.widgets.end() ? nullptr : &*found;
}

} // namespace

WidgetStore::WidgetStore(fs::path url, const std::optional<fs::path>& legacyCollections)
    : document_(std::move(url)) {
  reload();
  if (legacyCollections && !document_.existed())
    migrate(*legacyCollections);
}

void WidgetStore::migrate(const fs::path& legacyCollections) {
  auto legacy = migrated(legacyCollections);
  if (!legacy)
    return;
  const bool isMigrated = document_.change([&](WidgetsFile& file) {
    if (document_.existed())
      return false;
    file = *legacy;
    return true;
  });
  std::error_code error;
  if (isMigrated && !fs::remove(legacyCollections, error) && error)
    throw FileError(failure(translated("remove {file}", {{"file", legacyCollections.string()}}),
                            error.message()),
                    error.message());
}

DockWidget& WidgetStore::required(WidgetsFile& file, const UUID& id) {
  auto* widget = find(file, id);
  if (widget == nullptr)
    throw DockError::profileNotFound(id.text());
  return *widget;
}

std::optional<DockWidget> WidgetStore::widget(const UUID& id) const {
  const auto found = std::ranges::find(file().widgets, id, &DockWidget::id);
  return found == file().widgets.end() ? std::nullopt : std::optional(*found);
}

std::optional<DockWidget> WidgetStore::widget(int slot) const {
  const auto found = std::ranges::find(file().widgets, std::optional(slot), &DockWidget::slot);
  return found == file().widgets.end() ? std::nullopt : std::optional(*found);
}

DockWidget WidgetStore::create(std::string_view name, const DockWidget::Kind& kind) {
  const auto bare = trimmed(name);
  const DockWidget widget(UUID::random(), std::string(bare.empty() ? "Widget" : bare), std::nullopt,
                          kind, 1);
  document_.change([&](WidgetsFile& file) { file.widgets.push_back(widget); });
  return widget;
}

std::optional<DockWidget> WidgetStore::claimSlot(UUID id) {
  std::optional<DockWidget> claimed;
  document_.change([&](WidgetsFile& file) {
    claimed.reset();
    auto* widget = find(file, id);
    if (widget == nullptr)
      return false;
    const bool isPlaced = widget->slot.has_value();
    if (!isPlaced)
      widget->slot = file.freeSlot();
    if (widget->slot)
      claimed = *widget;
    return claimed && !isPlaced;
  });
  return claimed;
}

void WidgetStore::releaseSlot(UUID id) {
  document_.change([&](WidgetsFile& file) {
    auto* widget = find(file, id);
    const bool isPlaced = widget != nullptr && widget->slot;
    if (isPlaced)
      widget->slot.reset();
    return isPlaced;
  });
}

void WidgetStore::update(DockWidget widget) {
  change(widget.id, [&](DockWidget& stored) { stored = widget; });
}

void WidgetStore::put(DockWidget widget) {
  document_.change([&](WidgetsFile& file) {
    if (auto* present = find(file, widget.id))
      *present = widget;
    else
      file.widgets.push_back(widget);
  });
}

void WidgetStore::remove(UUID id) {
  document_.change([&](WidgetsFile& file) {
    std::erase_if(file.widgets, [&](const DockWidget& widget) { return widget.id == id; });
  });
}

} // namespace tavrin
