#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/MediaPlayers.h"
#include "TavrinPlatform/POSIX/HandlerList.h"

#include <map>

namespace tavrin {

class BusProperties;

/// The players that stand on the session bus by MPRIS 2 of freedesktop.org (the interface
/// org.mpris.MediaPlayer2). A position is asked for once where it may have jumped, and
/// reckoned from there on.
class BusMediaPlayers final : public MediaPlayers {
public:
  /// `session` may be null. All outlive this.
  BusMediaPlayers(Bus* session, RunLoop& runLoop, Clock& clock);

  const std::vector<MediaPlayer>& players() const override { return players_; }
  bool isAvailable() const override { return session_ != nullptr && session_->isOpen(); }
  void refresh() override;
  void playPause(const std::string& name) override { tell(name, "PlayPause"); }
  void next(const std::string& name) override { tell(name, "Next"); }
  void previous(const std::string& name) override { tell(name, "Previous"); }
  void seek(const std::string& name, double seconds) override;
  void setVolume(const std::string& name, double volume) override;
  void raise(const std::string& name) override;
  [[nodiscard]] TokenPtr observe(std::function<void()> handler) override;

private:
  /// One player as it is known so far.
  struct Peer {
    /// Its connection, which signals come from.
    std::string owner;
    MediaPlayer player;
    bool canControl = false;
    /// Its properties have been read once.
    bool isKnown = false;
    std::uint64_t usedAt = 0;
  };
  using Reply = std::function<void(Peer&, sd_bus_message*)>;

  void watch();
  void list();
  void owned(const std::string& busName, const std::string& owner);
  void ask(const std::string& name);
  void askPosition(const std::string& name);
  void take(Peer& peer, sd_bus_message* message);
  void changed(sd_bus_message* signal);
  void seeked(sd_bus_message* signal);
  void tell(const std::string& name, const char* member);
  /// Calls `reply` when `name` is still there and answers; where it does not, that is noted.
  void call(const std::string& name, const BusMessage& message, Reply reply);
  BusMessage message(const std::string& name, const char* interface, const char* member) const;
  Peer* peer(const std::string& name);
  std::pair<const std::string, Peer>* sender(sd_bus_message* signal);
  void noteUse(Peer& peer);
  /// Tells who observes, in a moment and once for all changes till then.
  void announce();
  void publish();

  Bus* session_;
  RunLoop& runLoop_;
  Clock& clock_;
  HandlerList changes_;
  std::map<std::string, Peer> peers_;
  std::vector<MediaPlayer> players_;
  std::vector<TokenPtr> watches_;
  TokenPtr announcing_;
  std::uint64_t uses_ = 0;
  Lifetime alive_;
};

} // namespace tavrin
