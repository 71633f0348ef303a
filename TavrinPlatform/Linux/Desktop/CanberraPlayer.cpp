#include "TavrinPlatform/Linux/Desktop/CanberraPlayer.h"

#include "TavrinPlatform/SharedLibrary.h"

#include <canberra.h>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tavrin {

namespace {

constexpr std::chrono::seconds longestSound{10};

struct Library {
  decltype(&ca_context_create) create = nullptr;
  decltype(&ca_context_destroy) destroy = nullptr;
  decltype(&ca_context_play_full) play = nullptr;
  decltype(&ca_proplist_create) createList = nullptr;
  decltype(&ca_proplist_sets) set = nullptr;
  decltype(&ca_proplist_destroy) destroyList = nullptr;

  bool load() {
    const SharedLibrary library{"libcanberra.so.0"};
    return library.find(create, "ca_context_create") &&
           library.find(destroy, "ca_context_destroy") &&
           library.find(play, "ca_context_play_full") &&
           library.find(createList, "ca_proplist_create") &&
           library.find(set, "ca_proplist_sets") &&
           library.find(destroyList, "ca_proplist_destroy");
  }
};

const Library* library() {
  static Library loaded;
  static const bool isLoaded = loaded.load();
  return isLoaded ? &loaded : nullptr;
}

struct Ending {
  std::mutex mutex;
  std::condition_variable changed;
  bool isOver = false;
};

void noteEnd(ca_context*, std::uint32_t, int, void* data) {
  auto& ending = *static_cast<Ending*>(data);
  const std::lock_guard lock(ending.mutex);
  ending.isOver = true;
  ending.changed.notify_all();
}

void playAndWait(const char* event) {
  const Library* ca = library();
  ca_context* context = nullptr;
  if (ca == nullptr || ca->create(&context) != CA_SUCCESS)
    return;
  ca_proplist* list = nullptr;
  Ending ending;
  if (ca->createList(&list) == CA_SUCCESS) {
    ca->set(list, CA_PROP_EVENT_ID, event);
    ca->set(list, CA_PROP_APPLICATION_NAME, "Tavrin");
    ca->set(list, CA_PROP_CANBERRA_CACHE_CONTROL, "never");
    if (ca->play(context, 0, list, noteEnd, &ending) == CA_SUCCESS) {
      std::unique_lock lock(ending.mutex);
      ending.changed.wait_for(lock, longestSound, [&] { return ending.isOver; });
    }
    ca->destroyList(list);
  }
  // Ends the callbacks: none comes after this.
  ca->destroy(context);
}

} // namespace

const char* CanberraPlayer::eventFor(const std::string& name) {
  if (name == "Glass")
    return "complete";
  if (name == "Submarine")
    return "dialog-information";
  if (name == "Tink")
    return "button-pressed";
  return "message";
}

void CanberraPlayer::play(const std::string& name) {
  if (!queue_)
    queue_ = runLoop_.makeSerialQueue();
  queue_->run([event = eventFor(name)] { playAndWait(event); });
}

} // namespace tavrin
