#include "TavrinPlatform/Linux/Pasteboard/SelectionOffer.h"

#include "TavrinPlatform/Linux/Pasteboard/Latin1.h"
#include "TavrinPlatform/Linux/Pasteboard/OfferedTypes.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr std::chrono::seconds patience{20};
constexpr std::size_t mostTransfers = 16;
constexpr const char* clockProperty = "TAVRIN_CLOCK";

std::uint32_t count(std::size_t number) {
  return static_cast<std::uint32_t>(number);
}

} // namespace

void SelectionOffer::take(std::vector<Pasteboard::Format> formats) {
  std::erase_if(formats, [](const auto& format) { return !format.data; });
  waiting_ = std::move(formats);
  isWaiting_ = true;
  // Nothing added to a property is still told, with the server's time.
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, connection_.window(),
                      connection_.atom(clockProperty), XCB_ATOM_STRING, 8, 0, nullptr);
  connection_.flush();
}

void SelectionOffer::handle(const xcb_property_notify_event_t& event) {
  if (event.window == connection_.window()) {
    if (!isWaiting_ || event.atom != connection_.atom(clockProperty))
      return;
    isWaiting_ = false;
    formats_ = std::move(waiting_);
    since_ = event.time;
    xcb_set_selection_owner(connection_.get(), connection_.window(), connection_.atom("CLIPBOARD"),
                            since_);
    connection_.flush();
    return;
  }
  if (event.state != XCB_PROPERTY_DELETE)
    return;
  const auto transfer = std::ranges::find_if(transfers_, [&](const Transfer& each) {
    return each.window == event.window && each.property == event.atom;
  });
  if (transfer == transfers_.end())
    return;
  const bool isLast = transfer->sent >= transfer->data->bytes.size();
  sendPiece(*transfer);
  if (isLast)
    transfers_.erase(transfer);
}

void SelectionOffer::handle(const xcb_selection_clear_event_t& event) {
  if (event.selection == connection_.atom("CLIPBOARD"))
    formats_.clear();
}

void SelectionOffer::handle(const xcb_selection_request_event_t& event) {
  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = event.time;
  answer.requestor = event.requestor;
  answer.selection = event.selection;
  answer.target = event.target;
  // Programs of old leave the property to the owner.
  const xcb_atom_t property = event.property == XCB_ATOM_NONE ? event.target : event.property;
  const bool isKnown = event.selection == connection_.atom("CLIPBOARD") && !formats_.empty();
  if (isKnown &&
      (event.target == connection_.atom("MULTIPLE") ? putMultiple(event.requestor, property)
                                                    : put(event.requestor, event.target, property)))
    answer.property = property;
  xcb_send_event(connection_.get(), 0, event.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&answer));
  connection_.flush();
}

std::vector<xcb_atom_t> SelectionOffer::targets() {
  std::vector<xcb_atom_t> all;
  for (const char* name : {"TARGETS", "TIMESTAMP", "MULTIPLE"})
    all.push_back(connection_.atom(name));
  for (const auto& format : formats_) {
    if (format.type != Pasteboard::textType)
      all.push_back(connection_.atom(format.type));
    else
      for (const char* name : textTargets)
        all.push_back(connection_.atom(name));
  }
  return all;
}

std::shared_ptr<const Data> SelectionOffer::dataFor(xcb_atom_t target) {
  const bool isText = std::ranges::any_of(
      textTargets, [&](const char* name) { return connection_.atom(name) == target; });
  for (const auto& format : formats_)
    if (isText ? format.type == Pasteboard::textType : connection_.atom(format.type) == target)
      return format.data;
  return nullptr;
}

bool SelectionOffer::put(xcb_window_t window, xcb_atom_t target, xcb_atom_t property) {
  if (target == connection_.atom("TARGETS")) {
    const auto all = targets();
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM,
                        32, count(all.size()), all.data());
    return true;
  }
  if (target == connection_.atom("TIMESTAMP")) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property,
                        XCB_ATOM_INTEGER, 32, 1, &since_);
    return true;
  }
  auto data = dataFor(target);
  if (!data)
    return false;
  if (target == connection_.atom("STRING"))
    data = std::make_shared<const Data>(Data::fromText(latin1FromUTF8(data->view())));
  const bool isAnyText = target == connection_.atom("TEXT");
  putBytes(window, property, isAnyText ? connection_.atom("UTF8_STRING") : target, std::move(data));
  return true;
}

bool SelectionOffer::putMultiple(xcb_window_t window, xcb_atom_t property) {
  constexpr std::uint32_t mostPairs = 64;
  const auto cookie = xcb_get_property(connection_.get(), 0, window, property,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * mostPairs);
  const ReplyPtr<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->format != 32)
    return false;
  const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  std::vector<xcb_atom_t> pairs(first, first + xcb_get_property_value_length(reply.get()) / 4);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
    if (pairs[i + 1] == XCB_ATOM_NONE || pairs[i] == connection_.atom("MULTIPLE") ||
        !put(window, pairs[i], pairs[i + 1]))
      pairs[i + 1] = XCB_ATOM_NONE;
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property,
                      connection_.atom("ATOM_PAIR"), 32, count(pairs.size()), pairs.data());
  return true;
}

void SelectionOffer::putBytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::shared_ptr<const Data> data) {
  if (data->bytes.size() <= connection_.longestChunk()) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        count(data->bytes.size()), data->bytes.data());
    return;
  }
  if (transfers_.size() >= mostTransfers)
    transfers_.erase(transfers_.begin());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &events);
  const std::uint32_t size = count(data->bytes.size());
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property,
                      connection_.atom("INCR"), 32, 1, &size);
  transfers_.push_back(
      {window, property, type, std::move(data), 0, std::chrono::steady_clock::now() + patience});
}

void SelectionOffer::sendPiece(Transfer& transfer) {
  const auto& bytes = transfer.data->bytes;
  const std::size_t length = std::min(connection_.longestChunk(), bytes.size() - transfer.sent);
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, transfer.window, transfer.property,
                      transfer.type, 8, count(length), bytes.data() + transfer.sent);
  transfer.sent += length;
  transfer.deadline = std::chrono::steady_clock::now() + patience;
  connection_.flush();
}

std::optional<SelectionOffer::Time> SelectionOffer::deadline() const {
  const auto first = std::ranges::min_element(transfers_, {}, &Transfer::deadline);
  return first == transfers_.end() ? std::nullopt : std::optional(first->deadline);
}

void SelectionOffer::expire() {
  const auto now = std::chrono::steady_clock::now();
  std::erase_if(transfers_, [&](const Transfer& each) { return each.deadline <= now; });
}

} // namespace tavrin
