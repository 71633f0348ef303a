#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

/// Requests to an X server, on any connection. Whoever has several sends them all before waiting
/// for the first answer: one round trip instead of one each.
namespace tavrin::x11 {

/// The server's numbers for `names`, in their order, in one round trip; XCB_ATOM_NONE for what it
/// does not answer.
std::vector<xcb_atom_t> atoms(xcb_connection_t* x, std::span<const std::string_view> names);

/// Sends only; each has to be given to `numbers` or `text` once. `longest` counts units of four
/// bytes.
xcb_get_property_cookie_t askProperty(xcb_connection_t* x, xcb_window_t window, xcb_atom_t property,
                                      std::uint32_t longest);
/// The items of a property of 32-bit items; empty for any other, and without one.
std::vector<std::uint32_t> numbers(xcb_connection_t* x, xcb_get_property_cookie_t asked);
/// A property of bytes, whatever its encoding is called; empty for any other, and without one.
std::string text(xcb_connection_t* x, xcb_get_property_cookie_t asked);

} // namespace tavrin::x11
