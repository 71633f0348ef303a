#include "TavrinWidgetsUI/Clipboard/ClipboardSource.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinCore/Text/Text.h"

#include <QCryptographicHash>
#include <algorithm>
#include <system_error>

namespace tavrin {
namespace {

/// The first file's address in a list of addresses; empty when it names none.
std::string firstFileURL(std::string_view list) {
  while (!list.empty()) {
    const auto end = std::min(list.find_first_of("\r\n"), list.size());
    const auto line = list.substr(0, end);
    if (line.starts_with("file:"))
      return cleanText(line, 4096);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return {};
}

std::filesystem::path pathOf(std::string_view url) {
  url.remove_prefix(std::string_view("file:").size());
  if (url.starts_with("//"))
    url.remove_prefix(std::min(url.find('/', 2), url.size()));
  return percentDecoded(url);
}

std::int64_t sizeOf(const std::string& url) {
  std::error_code error;
  const auto size = std::filesystem::file_size(pathOf(url), error);
  return error ? 0 : static_cast<std::int64_t>(size);
}

/// Links copied faster than their previews come: the oldest go without.
constexpr std::size_t mostWaitingPreviews = 20;

ClipboardList::const_iterator find(const ClipboardList& items, const UUID& id) {
  return std::ranges::find_if(items, [&](const auto& entry) { return entry->item.id == id; });
}

const Pasteboard::Format* format(const Pasteboard::Capture& capture, std::string_view type) {
  const auto found = std::ranges::find(capture.formats, type, &Pasteboard::Format::type);
  return found == capture.formats.end() ? nullptr : &*found;
}

bool isTIFF(const Data& data) {
  return data.view().starts_with("II*") || data.view().starts_with("MM");
}

} // namespace

namespace {

/// By name, as RFC 4122 makes them; random for a copy without one.
UUID identity(const std::string& copyName, const ClipboardItem& item) {
  if (copyName.empty())
    return UUID::random();
  QCryptographicHash hash(QCryptographicHash::Sha1);
  const auto add = [&hash](std::string_view part) {
    hash.addData(QByteArrayView(part.data(), static_cast<qsizetype>(part.size())));
    hash.addData(QByteArrayView("", 1));
  };
  add("dev.quellby.tavrin.clipboard");
  add(copyName);
  add(std::to_string(item.byteSize));
  // A server that starts anew counts from the beginning.
  add(item.text ? *item.text : item.fileURL.value_or(""));
  UUID id;
  const QByteArray digest = hash.result();
  std::copy_n(digest.begin(), id.bytes.size(), id.bytes.begin());
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x50);
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
  return id;
}

std::optional<ClipboardItem> contentOf(const Pasteboard::Capture& capture,
                                       const ClipboardSettings& settings) {
  if (const auto* files = format(capture, Pasteboard::filesType); files && files->data)
    if (auto url = firstFileURL(files->data->view()); !url.empty()) {
      const auto size = sizeOf(url);
      return ClipboardItem::ofFile(std::move(url), size);
    }
  for (const char* type : {Pasteboard::tiffType, Pasteboard::pngType})
    if (const auto* image = format(capture, type)) {
      const auto limit = static_cast<std::size_t>(std::max(0, settings.maxImageBytes));
      const bool isKept = image->data && image->size <= limit;
      return ClipboardItem::ofImage(isKept ? std::optional(*image->data) : std::nullopt,
                                    static_cast<std::int64_t>(image->size));
    }
  if (const auto* text = format(capture, Pasteboard::textType); text && text->data)
    if (!text->data->bytes.empty())
      return ClipboardItem::ofText(text->data->view());
  return std::nullopt;
}

} // namespace

std::optional<ClipboardItem> clipboardItem(const Pasteboard::Capture& capture,
                                           const ClipboardSettings& settings) {
  auto item = contentOf(capture, settings);
  if (item)
    item->id = identity(capture.copyName, *item);
  return item;
}

ClipboardSource::ClipboardSource(const Services& services, const std::filesystem::path& storeURL,
                                 const ClipboardSettings& settings)
    : services_(services), settings_(settings),
      vault_(std::make_shared<ClipboardVault>(storeURL, services.keychain)),
      self_(std::make_shared<ClipboardSource*>(this)),
      captures_(services.runLoop.makeSerialQueue()), files_(services.runLoop.makeSerialQueue()) {}

ClipboardSource::~ClipboardSource() {
  observation_.reset();
  captures_.reset();
  // Nothing runs beside this any more once the queue is gone.
  files_.reset();
  if (saveTimer_ && settings_.persistAcrossRestarts && state_.items != lastSaved_)
    vault_->save(state_.items, settings_, services_.clock.now(), dropped_);
}

void ClipboardSource::start() {
  listen();
  if (!settings_.persistAcrossRestarts) {
    forgetStored();
    state_.hasRead = true;
    tell();
    return;
  }
  files_->run([vault = vault_, weak = std::weak_ptr(self_), &loop = services_.runLoop] {
    loop.post([weak, outcome = vault->read()] {
      const auto self = weak.lock();
      if (!self)
        return;
      (*self)->state_.hasRead = true;
      (*self)->adopt(outcome);
    });
  });
}

void ClipboardSource::listen() {
  if (!canCapture())
    return;
  Pasteboard::Observer observer;
  observer.changed = [this](std::int64_t count) {
    if (auto application = services_.workspace.frontmostApplication())
      frontmost_[count] = std::move(*application);
  };
  observer.captured = [this](Pasteboard::Capture capture) { captured(std::move(capture)); };
  observer.abandoned = [this](std::int64_t count) { abandoned(count); };
  const Pasteboard::Limits limits{4 * ClipboardItem::longestText,
                                  static_cast<std::size_t>(std::max(0, settings_.maxImageBytes))};
  observation_.reset();
  observation_ = services_.pasteboard.observe(limits, std::move(observer));
}

void ClipboardSource::captured(Pasteboard::Capture capture) {
  const bool isTransient =
      std::ranges::find(capture.types, Pasteboard::transientType) != capture.types.end();
  if (capture.isOwn || (settings_.ignorePasswordManagers && isTransient)) {
    frontmost_.erase(frontmost_.begin(), frontmost_.upper_bound(capture.changeCount));
    return;
  }
  const Copied copied{capture.changeCount, isTransient};
  captures_->run([capture = std::move(capture), copied, settings = settings_,
                  weak = std::weak_ptr(self_), &loop = services_.runLoop] {
    auto item = clipboardItem(capture, settings);
    if (item)
      loop.post([weak, copied, item = std::move(*item)]() mutable {
        if (const auto self = weak.lock())
          (*self)->accept(copied, std::move(item));
      });
  });
}

void ClipboardSource::accept(const Copied& copied, ClipboardItem item) {
  // Of two copies in one moment the second is called so by everybody.
  while (find(state_.items, item.id) != state_.items.end())
    ++item.id.bytes.back();
  item.capturedAt = {services_.clock.now()};
  if (const auto found = frontmost_.find(copied.changeCount); found != frontmost_.end()) {
    item.sourceAppBundleID = found->second.bundleIdentifier;
    item.sourceAppName = found->second.name;
  }
  frontmost_.erase(frontmost_.begin(), frontmost_.upper_bound(copied.changeCount));
  offered_.reset();
  // Offered by the slot it would have lost its mark.
  if (!copied.isTransient)
    offered_ = Offered{copied.changeCount, item.id};
  ClipboardList items{std::make_shared<const ClipboardEntry>(std::move(item))};
  items.insert(items.end(), state_.items.begin(), state_.items.end());
  ++state_.unseenCount;
  const ClipboardEntryPtr entry = items.front();
  change(std::move(items));
  wantPreview(entry->item);
}

void ClipboardSource::wantPreview(const ClipboardItem& item) {
  if (!settings_.fetchWebsitePreviews || item.kind != ClipboardItem::Kind::text ||
      item.isSensitive || !ClipboardItem::looksLikeURL(*item.text) ||
      !ClipboardItem::isFetchableHost(*item.text))
    return;
  ogWaiting_.push_back(item.id);
  if (ogWaiting_.size() > mostWaitingPreviews)
    ogWaiting_.erase(ogWaiting_.begin() + (ogTask_ ? 1 : 0));
  if (!ogTask_)
    fetchNextPreview();
}

void ClipboardSource::fetchNextPreview() {
  ogTask_.reset();
  const auto isThere = [this](const UUID& id) {
    return find(state_.items, id) != state_.items.end();
  };
  while (!ogWaiting_.empty() && !isThere(ogWaiting_.front()))
    ogWaiting_.pop_front();
  if (ogWaiting_.empty())
    return;
  const UUID id = ogWaiting_.front();
  const auto entry = find(state_.items, id);
  const std::string url(trimmed(*(*entry)->item.text));
  ogTask_ = services_.ogSource.fetch(url, [this, id](const LinkPreview& preview) {
    ogTask_.reset();
    ogWaiting_.pop_front();
    adoptPreview(id, preview);
    if (!ogTask_)
      fetchNextPreview();
  });
}

void ClipboardSource::adoptPreview(const UUID& id, const LinkPreview& preview) {
  ClipboardList items = state_.items;
  const auto found = find(items, id);
  if (found == items.end() || preview.isEmpty())
    return;
  ClipboardItem item = (*found)->item;
  item.ogTitle = preview.title;
  item.ogDescription = preview.description;
  item.ogImageData = preview.image;
  item.ogFetchedAt = ISO8601Date{services_.clock.now()};
  items[static_cast<std::size_t>(found - items.begin())] =
      std::make_shared<const ClipboardEntry>(std::move(item));
  change(std::move(items));
}

/// Items that have gone want none, and none does where that is switched off.
void ClipboardSource::dropUnwantedPreviews() {
  if (ogWaiting_.empty())
    return;
  const UUID first = ogWaiting_.front();
  std::erase_if(ogWaiting_, [this](const UUID& id) {
    return !settings_.fetchWebsitePreviews || find(state_.items, id) == state_.items.end();
  });
  if (ogTask_ && (ogWaiting_.empty() || ogWaiting_.front() != first))
    fetchNextPreview();
}

void ClipboardSource::abandoned(std::int64_t changeCount) {
  if (!offered_ || offered_->changeCount != changeCount)
    return;
  // What retention dropped, or somebody removed, is offered no more.
  if (const auto entry = find(state_.items, offered_->item); entry != state_.items.end())
    write((*entry)->item);
}

void ClipboardSource::setSettings(const ClipboardSettings& settings) {
  const ClipboardSettings before = std::exchange(settings_, settings);
  if (before == settings)
    return;
  if (before.maxImageBytes != settings.maxImageBytes && observation_)
    listen();
  if (before.persistAcrossRestarts && !settings.persistAcrossRestarts)
    forgetStored();
  change(state_.items);
}

void ClipboardSource::forgetStored() {
  saveTimer_.reset();
  lastSaved_.clear();
  if (!services_.isKeptByAnother || !services_.isKeptByAnother())
    files_->run([vault = vault_] { vault->forget(); });
}

void ClipboardSource::write(const ClipboardItem& item) {
  std::vector<Pasteboard::Format> formats;
  const auto offer = [&](const char* type, Data data) {
    const std::size_t size = data.bytes.size();
    if (size > 0)
      formats.push_back({type, std::make_shared<const Data>(std::move(data)), size});
  };
  if (item.kind == ClipboardItem::Kind::text) {
    offer(Pasteboard::textType, Data::fromText(item.text.value_or("")));
  } else if (item.fileURL) {
    offer(Pasteboard::filesType, Data::fromText(*item.fileURL + "\r\n"));
  } else if (item.imageData) {
    offer(isTIFF(*item.imageData) ? Pasteboard::tiffType : Pasteboard::pngType, *item.imageData);
  }
  if (!formats.empty())
    services_.pasteboard.write(std::move(formats));
}

void ClipboardSource::togglePin(const UUID& id) {
  ClipboardList items = state_.items;
  for (auto& entry : items)
    if (entry->item.id == id) {
      ClipboardItem item = entry->item;
      item.isPinned = !item.isPinned;
      entry = std::make_shared<const ClipboardEntry>(std::move(item));
    }
  change(std::move(items));
}

template <class Wanted> void ClipboardSource::removeWhere(const Wanted& isWanted) {
  ClipboardList items;
  for (const auto& entry : state_.items)
    if (!isWanted(entry->item))
      items.push_back(entry);
    else if (find(lastSaved_, entry->item.id) == lastSaved_.end())
      dropped_.insert(entry->item.id);
  change(std::move(items));
}

void ClipboardSource::remove(const UUID& id) {
  removeWhere([&](const ClipboardItem& item) { return item.id == id; });
}

void ClipboardSource::clearUnpinned() {
  removeWhere([](const ClipboardItem& item) { return !item.isPinned; });
}

void ClipboardSource::markAllSeen() {
  if (std::exchange(state_.unseenCount, 0) != 0)
    tell();
}

void ClipboardSource::forgetEverything() {
  state_.items.clear();
  dropUnwantedPreviews();
  state_.unseenCount = 0;
  state_.trouble.reset();
  lastSaved_.clear();
  saveTimer_.reset();
  files_->run([vault = vault_] { vault->forget(); });
  tell();
}

void ClipboardSource::change(ClipboardList items) {
  state_.items = ClipboardBoard::retained(items, settings_, services_.clock.now());
  dropUnwantedPreviews();
  scheduleSave();
  tell();
}

void ClipboardSource::scheduleSave() {
  if (!settings_.persistAcrossRestarts || !state_.hasRead)
    return;
  const Date now = services_.clock.now();
  if (!unsavedSince_)
    unsavedSince_ = now;
  const double waited = std::max(0.0, now.since(*unsavedSince_));
  saveTimer_ = services_.runLoop.after(std::clamp(longestSaveDelay - waited, 0.0, saveDelay),
                                       [this] { save(); });
}

void ClipboardSource::save() {
  saveTimer_.reset();
  unsavedSince_.reset();
  if (state_.items == lastSaved_ && !state_.trouble)
    return;
  files_->run([vault = vault_, items = state_.items, dropped = dropped_, settings = settings_,
               now = services_.clock.now(), weak = std::weak_ptr(self_),
               &loop = services_.runLoop] {
    loop.post([weak, outcome = vault->save(items, settings, now, dropped)] {
      if (const auto self = weak.lock())
        (*self)->adopt(outcome);
    });
  });
}

/// What is in the file comes into the list, which may have changed while that was read or written.
void ClipboardSource::adopt(const ClipboardVault::Outcome& outcome) {
  state_.trouble = outcome.trouble;
  if (!settings_.persistAcrossRestarts) {
    tell();
    return;
  }
  if (outcome.stored) {
    auto items = ClipboardBoard::merged(outcome.base, state_.items, *outcome.stored);
    std::erase_if(items, [this](const auto& entry) { return dropped_.contains(entry->item.id); });
    const bool isPlain = items == *outcome.stored;
    state_.items = ClipboardBoard::retained(items, settings_, services_.clock.now());
    dropUnwantedPreviews();
    if (!outcome.trouble)
      lastSaved_ = isPlain ? state_.items : *outcome.stored;
  }
  if (!outcome.trouble && state_.items != lastSaved_)
    scheduleSave();
  tell();
}

void ClipboardSource::tell() {
  if (onChange)
    onChange();
}

} // namespace tavrin
