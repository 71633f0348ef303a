#pragma once

#include "Tests/Support/XSettingsBytes.h"

#include <cstdlib>
#include <xcb/xcb.h>

namespace tavrin {

/// As the settings daemon of Xfce and others.
class SettingsManager {
public:
  SettingsManager() : connection_(xcb_connect(nullptr, nullptr)) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, 0, window_, root, -9, -9, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection_, window_, atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
    xcb_client_message_event_t come{};
    come.response_type = XCB_CLIENT_MESSAGE;
    come.format = 32;
    come.window = root;
    come.type = atom("MANAGER");
    come.data.data32[1] = atom("_XSETTINGS_S0");
    xcb_send_event(connection_, 0, root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&come));
    xcb_flush(connection_);
  }
  ~SettingsManager() { xcb_disconnect(connection_); }
  SettingsManager(const SettingsManager&) = delete;
  SettingsManager& operator=(const SettingsManager&) = delete;
  void tell(const std::string& name, const std::string& text) {
    tell(test::xsettings({{name, text}}));
  }
  void tell(const std::string& name, std::size_t number) {
    tell(test::xsettings({}, false, {{name, number}}));
  }

private:
  void tell(const std::string& bytes) {
    const auto property = atom("_XSETTINGS_SETTINGS");
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, property, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    xcb_flush(connection_);
  }
  xcb_atom_t atom(const std::string& name) {
    auto* reply = xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t atom = reply->atom;
    free(reply);
    return atom;
  }
  xcb_connection_t* connection_;
  xcb_window_t window_;
};

} // namespace tavrin
