#include "TavrinPlatform/Linux/Desktop/CanberraPlayer.h"

#include "TavrinPlatform/Files/SharedLibrary.h"

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

} // namespace

/// What a playing sound waits for: its own end, or that of all sounds.
class CanberraPlayer::Silence {
public:
  /// Waits until the sound that `begin` starts is over. `begin` is given what the library is to
  /// call at its end, and answers whether it plays.
  template <class Begin> void follow(Begin begin) {
    {
      const std::lock_guard lock(mutex_);
      isOver_ = false;
    }
    if (!begin(&Silence::noteEnd, this))
      return;
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, longestSound, [this] { return isOver_ || isFinal_; });
  }
  void makeFinal() {
    const std::lock_guard lock(mutex_);
    isFinal_ = true;
    changed_.notify_all();
  }
  bool isFinal() {
    const std::lock_guard lock(mutex_);
    return isFinal_;
  }

private:
  static void noteEnd(ca_context*, std::uint32_t, int, void* data) {
    auto& self = *static_cast<Silence*>(data);
    const std::lock_guard lock(self.mutex_);
    self.isOver_ = true;
    self.changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isOver_ = false;
  bool isFinal_ = false;
};

CanberraPlayer::CanberraPlayer(RunLoop& runLoop)
    : runLoop_(runLoop), silence_(std::make_shared<Silence>()) {}

CanberraPlayer::~CanberraPlayer() {
  silence_->makeFinal();
}

void CanberraPlayer::playAndWait(const char* event, Silence& silence) {
  const Library* ca = silence.isFinal() ? nullptr : library();
  ca_context* context = nullptr;
  if (ca == nullptr || ca->create(&context) != CA_SUCCESS)
    return;
  ca_proplist* list = nullptr;
  if (ca->createList(&list) == CA_SUCCESS) {
    ca->set(list, CA_PROP_EVENT_ID, event);
    ca->set(list, CA_PROP_APPLICATION_NAME, "Tavrin");
    ca->set(list, CA_PROP_CANBERRA_CACHE_CONTROL, "never");
    silence.follow([&](ca_finish_callback_t ended, void* data) {
      return ca->play(context, 0, list, ended, data) == CA_SUCCESS;
    });
    ca->destroyList(list);
  }
  // Ends the callbacks: none comes after this.
  ca->destroy(context);
}

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
  queue_->run([event = eventFor(name), silence = silence_] { playAndWait(event, *silence); });
}

} // namespace tavrin
