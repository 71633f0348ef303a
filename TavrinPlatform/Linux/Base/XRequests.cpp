#include "TavrinPlatform/Linux/Base/XRequests.h"

#include "TavrinPlatform/Linux/Base/OwnedReply.h"

namespace tavrin::x11 {

std::vector<xcb_atom_t> atoms(xcb_connection_t* x, std::span<const std::string_view> names) {
  std::vector<xcb_intern_atom_cookie_t> asked;
  asked.reserve(names.size());
  for (const auto name : names)
    asked.push_back(xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  std::vector<xcb_atom_t> atoms;
  atoms.reserve(names.size());
  for (const auto cookie : asked) {
    const auto reply = owned(xcb_intern_atom_reply(x, cookie, nullptr));
    atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
  }
  return atoms;
}

xcb_get_property_cookie_t askProperty(xcb_connection_t* x, xcb_window_t window, xcb_atom_t property,
                                      std::uint32_t longest) {
  return xcb_get_property(x, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
}

std::vector<std::uint32_t> numbers(xcb_connection_t* x, xcb_get_property_cookie_t asked) {
  const auto reply = owned(xcb_get_property_reply(x, asked, nullptr));
  if (!reply || reply->format != 32)
    return {};
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

std::string text(xcb_connection_t* x, xcb_get_property_cookie_t asked) {
  const auto reply = owned(xcb_get_property_reply(x, asked, nullptr));
  if (!reply || reply->format != 8)
    return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

} // namespace tavrin::x11
