#include "TavrinPlatform/Linux/Desktop/BusMediaPlayers.h"

#include "TavrinPlatform/Linux/Base/BusProperties.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr const char* prefix = "org.mpris.MediaPlayer2";
constexpr const char* rootInterface = "org.mpris.MediaPlayer2";
constexpr const char* playerInterface = "org.mpris.MediaPlayer2.Player";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* path = "/org/mpris/MediaPlayer2";
constexpr const char* noTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";
constexpr double answerLimit = 3;
constexpr std::size_t mostPlayers = 32;
/// A player that tells every change of its volume slider tells it often.
constexpr double gatheringTime = 0.05;
constexpr double second = 1e6;
constexpr std::size_t longestTitle = 100;

/// "vlc" of "org.mpris.MediaPlayer2.vlc"; empty for other names.
std::string shortName(const std::string& busName) {
  const std::string begin = std::string(prefix) + ".";
  return busName.starts_with(begin) ? busName.substr(begin.size()) : std::string();
}

MusicMetadata readMetadata(sd_bus_message* message) {
  MusicMetadata metadata;
  BusProperties values;
  values.read(message, [&](const std::string& name, sd_bus_message* list) {
    auto texts = readTexts(list);
    if (texts && name == "xesam:artist")
      metadata.artists = std::move(*texts);
    return texts.has_value();
  });
  metadata.title = values.text("xesam:title");
  metadata.album = values.text("xesam:album");
  metadata.url = values.text("xesam:url");
  metadata.artURL = values.text("mpris:artUrl");
  metadata.trackID = values.text("mpris:trackid");
  metadata.length = values.number("mpris:length");
  if (metadata.artists.empty() && values.has("xesam:artist"))
    metadata.artists = {values.text("xesam:artist")};
  return metadata;
}

} // namespace

BusMediaPlayers::BusMediaPlayers(Bus* session, RunLoop& runLoop, Clock& clock)
    : session_(session), runLoop_(runLoop), clock_(clock) {}

TokenPtr BusMediaPlayers::observe(std::function<void()> handler) {
  watch();
  return changes_.add(std::move(handler));
}

void BusMediaPlayers::watch() {
  if (!watches_.empty() || !isAvailable())
    return;
  const std::string from = std::string("type='signal',path='") + path + "',interface='";
  watches_.push_back(session_->match(
      std::string("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                  "arg0namespace='") +
          prefix + "'",
      [this](sd_bus_message* message) {
        const std::string name = textArgument(message);
        textArgument(message);
        owned(name, textArgument(message));
      }));
  watches_.push_back(session_->match(from + properties + "',member='PropertiesChanged'",
                                     [this](sd_bus_message* message) { changed(message); }));
  watches_.push_back(session_->match(from + playerInterface + "',member='Seeked'",
                                     [this](sd_bus_message* message) { seeked(message); }));
  list();
}

void BusMediaPlayers::list() {
  session_->call(session_->method(busDaemon, "ListNames"),
                 [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
                   if (weak.expired() || reply == nullptr ||
                       sd_bus_message_enter_container(reply, 'a', "s") <= 0)
                     return;
                   for (std::string name = textArgument(reply); !name.empty();
                        name = textArgument(reply)) {
                     if (shortName(name).empty())
                       continue;
                     BusMessage question = session_->method(busDaemon, "GetNameOwner");
                     question.append("s", name.c_str());
                     session_->call(question, [this, weak, name](sd_bus_message* owner, auto&) {
                       if (!weak.expired() && owner != nullptr)
                         owned(name, textArgument(owner));
                     });
                   }
                 });
}

void BusMediaPlayers::owned(const std::string& busName, const std::string& owner) {
  const std::string name = shortName(busName);
  if (name.empty())
    return;
  if (owner.empty()) {
    peers_.erase(name);
    announce();
    return;
  }
  const auto known = peers_.find(name);
  if ((known != peers_.end() && known->second.owner == owner) ||
      (known == peers_.end() && peers_.size() >= mostPlayers))
    return;
  Peer peer;
  peer.owner = owner;
  peer.player.name = name;
  peer.player.title = name;
  peers_[name] = std::move(peer);
  ask(name);
}

BusMessage BusMediaPlayers::message(const std::string& name, const char* interface,
                                    const char* member) const {
  const std::string service = std::string(prefix) + "." + name;
  BusMessage message = session_->method({service.c_str(), path, interface}, member);
  // A player that has just gone is not to be started by a question.
  if (message)
    sd_bus_message_set_auto_start(message.get(), 0);
  return message;
}

void BusMediaPlayers::call(const std::string& name, const BusMessage& message, Reply reply) {
  session_->call(
      message,
      [this, name, reply = std::move(reply), weak = alive_.watch()](sd_bus_message* answer,
                                                                    const std::string& error) {
        Peer* found = weak.expired() ? nullptr : peer(name);
        if (found == nullptr)
          return;
        const bool isSilent =
            answer == nullptr && (error == SD_BUS_ERROR_NO_REPLY || error == SD_BUS_ERROR_TIMEOUT ||
                                  error == "System.Error.ETIMEDOUT");
        if (found->player.isAnswering == isSilent) {
          found->player.isAnswering = !isSilent;
          announce();
        }
        if (answer != nullptr && reply)
          reply(*found, answer);
      },
      answerLimit);
}

void BusMediaPlayers::ask(const std::string& name) {
  BusMessage state = message(name, properties, "GetAll");
  call(name, state.append("s", playerInterface), [this](Peer& peer, sd_bus_message* reply) {
    const bool isNew = !std::exchange(peer.isKnown, true);
    const bool wasPlaying = peer.player.playback.isPlaying();
    take(peer, reply);
    // What plays already when it is first seen has been used before what comes later.
    if (isNew && !wasPlaying && peer.player.playback.isPlaying())
      noteUse(peer);
    announce();
  });
  BusMessage identity = message(name, properties, "Get");
  call(name, identity.append("ss", rootInterface, "Identity"),
       [this](Peer& peer, sd_bus_message* reply) {
         const auto value = readVariant(reply);
         const auto* text = value ? std::get_if<std::string>(&*value) : nullptr;
         if (text == nullptr)
           return;
         const auto title = MusicTrack::of({.title = *text,
                                            .artists = {},
                                            .album = {},
                                            .url = {},
                                            .artURL = {},
                                            .trackID = {},
                                            .length = {}})
                                .title;
         if (!title.empty() && title.size() <= longestTitle)
           peer.player.title = title;
         announce();
       });
}

void BusMediaPlayers::take(Peer& peer, sd_bus_message* message) {
  const Date now = clock_.now();
  MediaPlayer& player = peer.player;
  std::optional<MusicMetadata> metadata;
  BusProperties values;
  values.read(message, [&](const std::string& name, sd_bus_message* value) {
    if (name != "Metadata" || sd_bus_message_enter_container(value, 'v', "a{sv}") <= 0)
      return false;
    metadata = readMetadata(value);
    sd_bus_message_exit_container(value);
    return true;
  });
  const auto flag = [&](const char* name, bool& target) {
    if (values.has(name))
      target = values.flag(name);
  };
  flag("CanControl", peer.canControl);
  flag("CanPlay", player.canPlay);
  flag("CanPause", player.canPause);
  flag("CanGoNext", player.canGoNext);
  flag("CanGoPrevious", player.canGoPrevious);
  flag("CanSeek", player.canSeek);
  if (const auto volume = values.number("Volume"); volume && std::isfinite(*volume))
    player.volume = std::clamp(*volume, 0.0, 1.0);
  if (metadata) {
    auto track = MusicTrack::of(*metadata);
    if (track.id != player.playback.track.id || track.title != player.playback.track.title)
      player.playback.setPosition(0, now);
    player.playback.track = std::move(track);
  }
  if (const auto rate = values.number("Rate"))
    player.playback.setRate(*rate, now);
  if (const auto position = values.number("Position"))
    player.playback.setPosition(*position / second, now);
  if (values.has("PlaybackStatus"))
    player.playback.setStatus(playbackStatus(values.text("PlaybackStatus")), now);
}

void BusMediaPlayers::changed(sd_bus_message* signal) {
  auto* found = sender(signal);
  if (found == nullptr || textArgument(signal) != playerInterface)
    return;
  auto& [name, peer] = *found;
  const bool wasPlaying = peer.player.playback.isPlaying();
  const auto before = peer.player.playback;
  take(peer, signal);
  peer.player.isAnswering = true;
  const auto& after = peer.player.playback;
  if (!wasPlaying && after.isPlaying())
    noteUse(peer);
  if (after.status != before.status || after.track != before.track || after.rate != before.rate)
    askPosition(name);
  announce();
}

void BusMediaPlayers::askPosition(const std::string& name) {
  BusMessage question = message(name, properties, "Get");
  call(name, question.append("ss", playerInterface, "Position"),
       [this](Peer& peer, sd_bus_message* reply) {
         const auto value = readVariant(reply);
         const auto* position = value ? std::get_if<std::int64_t>(&*value) : nullptr;
         if (position == nullptr)
           return;
         peer.player.playback.setPosition(static_cast<double>(*position) / second, clock_.now());
         announce();
       });
}

void BusMediaPlayers::seeked(sd_bus_message* signal) {
  auto* found = sender(signal);
  std::int64_t position = 0;
  if (found == nullptr || sd_bus_message_read_basic(signal, 'x', &position) <= 0)
    return;
  found->second.player.playback.setPosition(static_cast<double>(position) / second, clock_.now());
  announce();
}

void BusMediaPlayers::refresh() {
  if (!isAvailable())
    return;
  watch();
  for (const auto& [name, peer] : peers_)
    ask(name);
}

void BusMediaPlayers::tell(const std::string& name, const char* member) {
  if (auto* found = peer(name)) {
    noteUse(*found);
    call(name, message(name, playerInterface, member), {});
    announce();
  }
}

void BusMediaPlayers::seek(const std::string& name, double seconds) {
  auto* found = peer(name);
  if (found == nullptr || !std::isfinite(seconds))
    return;
  noteUse(*found);
  auto& playback = found->player.playback;
  const double before = playback.elapsed(clock_.now());
  playback.setPosition(seconds, clock_.now());
  const auto microseconds = [](double value) { return static_cast<std::int64_t>(value * second); };
  const std::string& track = playback.track.id;
  if (track != noTrack && sd_bus_object_path_is_valid(track.c_str()) > 0) {
    BusMessage order = message(name, playerInterface, "SetPosition");
    call(name, order.append("ox", track.c_str(), microseconds(playback.position)), {});
  } else {
    BusMessage order = message(name, playerInterface, "Seek");
    call(name, order.append("x", microseconds(playback.position - before)), {});
  }
  announce();
}

void BusMediaPlayers::setVolume(const std::string& name, double volume) {
  auto* found = peer(name);
  if (found == nullptr || !found->player.volume || !std::isfinite(volume))
    return;
  found->player.volume = std::clamp(volume, 0.0, 1.0);
  BusMessage order = message(name, properties, "Set");
  call(name, order.append("ssv", playerInterface, "Volume", "d", *found->player.volume), {});
  announce();
}

void BusMediaPlayers::raise(const std::string& name) {
  if (peer(name) != nullptr)
    call(name, message(name, rootInterface, "Raise"), {});
}

BusMediaPlayers::Peer* BusMediaPlayers::peer(const std::string& name) {
  const auto found = peers_.find(name);
  return found == peers_.end() ? nullptr : &found->second;
}

std::pair<const std::string, BusMediaPlayers::Peer>*
BusMediaPlayers::sender(sd_bus_message* signal) {
  const char* owner = sd_bus_message_get_sender(signal);
  if (owner == nullptr)
    return nullptr;
  const auto found =
      std::ranges::find_if(peers_, [&](const auto& entry) { return entry.second.owner == owner; });
  return found == peers_.end() ? nullptr : &*found;
}

void BusMediaPlayers::noteUse(Peer& peer) {
  peer.usedAt = ++uses_;
}

void BusMediaPlayers::announce() {
  if (!announcing_)
    announcing_ = runLoop_.after(gatheringTime, [this] { publish(); });
}

void BusMediaPlayers::publish() {
  const TokenPtr ended = std::move(announcing_);
  std::vector<const Peer*> order;
  for (const auto& [name, peer] : peers_)
    if (peer.isKnown || !peer.player.isAnswering)
      order.push_back(&peer);
  std::ranges::stable_sort(order, std::ranges::greater(), &Peer::usedAt);
  std::vector<MediaPlayer> players;
  for (const auto* peer : order) {
    MediaPlayer player = peer->player;
    if (!peer->canControl)
      player.canPlay = player.canPause = player.canGoNext = player.canGoPrevious = player.canSeek =
          false;
    players.push_back(std::move(player));
  }
  if (players == players_)
    return;
  players_ = std::move(players);
  changes_.call();
}

} // namespace tavrin
