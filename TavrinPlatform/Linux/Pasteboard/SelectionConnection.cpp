#include "TavrinPlatform/Linux/Pasteboard/SelectionConnection.h"

#include "TavrinPlatform/Linux/Base/XRequests.h"

#include <algorithm>
#include <xcb/xfixes.h>

namespace tavrin {

namespace {

constexpr std::size_t largestChunk = 256 * 1024;

constexpr std::string_view knownAtoms[] = {"CLIPBOARD",
                                           "TARGETS",
                                           "TIMESTAMP",
                                           "MULTIPLE",
                                           "INCR",
                                           "UTF8_STRING",
                                           "STRING",
                                           "TEXT",
                                           "text/plain",
                                           "text/plain;charset=utf-8",
                                           "text/html",
                                           "text/uri-list",
                                           "image/png",
                                           "image/tiff",
                                           "x-kde-passwordManagerHint",
                                           "TAVRIN_CLOCK",
                                           "TAVRIN_SELECTION_0",
                                           "TAVRIN_SELECTION_1",
                                           "TAVRIN_SELECTION_2",
                                           "TAVRIN_SELECTION_3",
                                           "TAVRIN_SELECTION_4",
                                           "TAVRIN_SELECTION_5",
                                           "TAVRIN_SELECTION_6",
                                           "TAVRIN_SELECTION_7"};

} // namespace

SelectionConnection::SelectionConnection() : x_(xcb_connect(nullptr, nullptr)) {
  if (!isOpen())
    return;
  root_ = xcb_setup_roots_iterator(xcb_get_setup(x_.get())).data->root;
  window_ = makeWindow();
  learnAtoms();
  watch();
  flush();
}

bool SelectionConnection::isOpen() const {
  return xcb_connection_has_error(x_.get()) == 0;
}

xcb_window_t SelectionConnection::makeWindow() const {
  const xcb_window_t window = xcb_generate_id(x_.get());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(x_.get(), 0, window, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  return window;
}

/// All in one round trip: between two quick copies there is no time for one each.
void SelectionConnection::learnAtoms() {
  const auto atoms = x11::atoms(x_.get(), knownAtoms);
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    atoms_.emplace(knownAtoms[i], atoms[i]);
    names_.emplace(atoms[i], knownAtoms[i]);
  }
}

void SelectionConnection::watch() {
  const auto* data = xcb_get_extension_data(x_.get(), &xcb_xfixes_id);
  if (data == nullptr || data->present == 0)
    return;
  const ReplyPtr<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(x_.get(), xcb_xfixes_query_version(x_.get(), 1, 0), nullptr));
  if (!version)
    return;
  fixesEvent_ = data->first_event;
  xcb_xfixes_select_selection_input(x_.get(), window_, atom("CLIPBOARD"),
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

xcb_atom_t SelectionConnection::atom(const std::string& name) {
  if (const auto found = atoms_.find(name); found != atoms_.end())
    return found->second;
  const std::string_view names[] = {name};
  const xcb_atom_t atom = x11::atoms(x_.get(), names).front();
  atoms_.emplace(name, atom);
  names_.emplace(atom, name);
  return atom;
}

std::vector<std::string> SelectionConnection::names(const std::vector<xcb_atom_t>& atoms) {
  std::map<xcb_atom_t, xcb_get_atom_name_cookie_t> asked;
  for (const xcb_atom_t atom : atoms)
    if (!names_.contains(atom) && !asked.contains(atom))
      asked.emplace(atom, xcb_get_atom_name(x_.get(), atom));
  for (const auto& [atom, cookie] : asked) {
    const ReplyPtr<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(x_.get(), cookie, nullptr));
    if (reply)
      names_.emplace(
          atom, std::string(xcb_get_atom_name_name(reply.get()),
                            static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))));
  }
  std::vector<std::string> found;
  for (const xcb_atom_t atom : atoms)
    if (const auto name = names_.find(atom); name != names_.end())
      found.push_back(name->second);
  return found;
}

std::size_t SelectionConnection::longestChunk() const {
  const std::size_t request = std::size_t{xcb_get_maximum_request_length(x_.get())} * 4;
  return std::min(largestChunk, request - 64);
}

} // namespace tavrin
