#include "TavrinStorage/WidgetStore.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <algorithm>
#include <system_error>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

FileError unreadable(const fs::path& file, const CodingError& error) {
  return FileError(failure("read " + file.string(), error.what()));
}

std::optional<WidgetsFile> migrated(const fs::path& legacyCollections) {
  const auto document = readJSONFile(legacyCollections);
  if (!document)
    return std::nullopt;
  try {
    return WidgetsFile::migrating(*document);
  } catch (const CodingError& error) {
    throw unreadable(legacyCollections, error);
  }
}

} // namespace

WidgetStore::WidgetStore(fs::path url, const std::optional<fs::path>& legacyCollections)
    : url_(std::move(url)) {
  if (legacyCollections && !readFile(url_)) {
    if (auto file = migrated(*legacyCollections)) {
      file_ = std::move(*file);
      save();
      std::error_code error;
      if (!fs::remove(*legacyCollections, error) && error)
        throw FileError(failure("remove " + legacyCollections->string(), error.message()));
      return;
    }
  }
  reload();
}

void WidgetStore::reload() {
  const auto document = readJSONFile(url_);
  try {
    file_ = document ? decode<WidgetsFile>(*document) : WidgetsFile{};
  } catch (const CodingError& error) {
    throw unreadable(url_, error);
  }
}

void WidgetStore::save() const {
  writeJSONFile(url_, encode(file_));
}

DockWidget* WidgetStore::find(const UUID& id) {
  const auto found = std::ranges::find(file_.widgets, id, &DockWidget::id);
  return found == file_.widgets.end() ? nullptr : &*found;
}

std::optional<DockWidget> WidgetStore::widget(const UUID& id) const {
  const auto found = std::ranges::find(file_.widgets, id, &DockWidget::id);
  return found == file_.widgets.end() ? std::nullopt : std::optional(*found);
}

std::optional<DockWidget> WidgetStore::widget(int slot) const {
  const auto found = std::ranges::find(file_.widgets, std::optional(slot), &DockWidget::slot);
  return found == file_.widgets.end() ? std::nullopt : std::optional(*found);
}

DockWidget WidgetStore::create(std::string_view name, DockWidget::Kind kind) {
  const auto bare = trimmed(name);
  const DockWidget widget(UUID::random(), std::string(bare.empty() ? "Widget" : bare), std::nullopt,
                          std::move(kind), 1);
  file_.widgets.push_back(widget);
  save();
  return widget;
}

std::optional<DockWidget> WidgetStore::claimSlot(const UUID& id) {
  auto* widget = find(id);
  if (widget == nullptr)
    return std::nullopt;
  if (widget->slot)
    return *widget;
  const auto slot = file_.freeSlot();
  if (!slot)
    return std::nullopt;
  widget->slot = slot;
  save();
  return *widget;
}

void WidgetStore::releaseSlot(const UUID& id) {
  auto* widget = find(id);
  if (widget == nullptr || !widget->slot)
    return;
  widget->slot.reset();
  save();
}

void WidgetStore::update(const DockWidget& widget) {
  auto* stored = find(widget.id);
  if (stored == nullptr)
    throw DockError::profileNotFound(widget.id.text());
  *stored = widget;
  save();
}

void WidgetStore::remove(const UUID& id) {
  std::erase_if(file_.widgets, [&](const DockWidget& widget) { return widget.id == id; });
  save();
}

} // namespace tavrin
