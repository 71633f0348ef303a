#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"

namespace tavrin {

inline constexpr const char* portalService = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
inline constexpr BusAddress portalSettings{portalService, portalPath,
                                           "org.freedesktop.portal.Settings"};
/// A setting of the portal's is another: arguments are its group, its key and the value.
inline constexpr const char* portalSettingChanged =
    "type='signal',path='/org/freedesktop/portal/desktop',member='SettingChanged',"
    "interface='org.freedesktop.portal.Settings'";

/// The part of an object path of the portal's that stands for this connection.
std::string portalSender(const Bus& bus);
/// A word that no other request or session of this process has.
std::string newPortalToken();

/// Hands each entry of the dictionary of variants that is next in `message` to `take`, which reads
/// the variant and says true, or says false and leaves it.
void eachPortalEntry(sd_bus_message* message,
                     const std::function<bool(const std::string& name)>& take);

/// A call of the desktop's portal, answered by a signal of an object made for it. Dropping the
/// token takes the request back.
class PortalRequest final : public Token {
public:
  enum class Outcome { granted, declined, failed, unavailable };
  /// Appends the arguments; the options carry `token` as "handle_token".
  using Build = std::function<void(BusMessage& call, const char* token)>;
  /// `results` stands before its dictionary; null where nothing was granted.
  using Done = std::function<void(Outcome outcome, sd_bus_message* results)>;

  /// `done` is called once, on the main thread, and may drop this token. `bus` must outlive it.
  PortalRequest(Bus& bus, const char* interface, const char* member, const Build& build, Done done);
  ~PortalRequest() override;

private:
  void expectAnswerAt(const std::string& path);
  void finish(Outcome outcome, sd_bus_message* results);

  Bus& bus_;
  Done done_;
  std::string handle_;
  TokenPtr response_;
  std::shared_ptr<PortalRequest*> self_ = std::make_shared<PortalRequest*>(this);
};

} // namespace tavrin
