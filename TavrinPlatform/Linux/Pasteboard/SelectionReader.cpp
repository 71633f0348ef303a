#include "TavrinPlatform/Linux/Pasteboard/SelectionReader.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tavrin {

namespace {

/// Without an answer, or without the next piece.
constexpr std::chrono::milliseconds answerPatience{1500};
constexpr std::chrono::seconds longestFormat{6};
constexpr unsigned propertyCount = 8;
constexpr const char* targetList = "TARGETS";
constexpr std::string_view usualTargets[] = {CapturePlan::passwordHint, Pasteboard::filesType,
                                             Pasteboard::pngType, "UTF8_STRING"};

} // namespace

SelectionReader::SelectionReader(SelectionConnection& connection,
                                 std::function<void(Pasteboard::Capture)> done)
    : connection_(connection), done_(std::move(done)) {}

SelectionReader::~SelectionReader() {
  abandon();
}

void SelectionReader::begin(std::int64_t changeCount, std::string copyName, xcb_window_t owner,
                            xcb_timestamp_t time) {
  abandon();
  plan_.begin(changeCount, std::move(copyName), limits_);
  time_ = time;
  hasTargets_ = false;
  isReading_ = true;
  if (std::exchange(owner_, owner) != owner)
    offered_.clear();
  else if (!offered_.empty())
    asked_.emplace(targetList, ask(targetList));
  for (const auto& target : offered_)
    asked_.emplace(target, ask(target));
  request(targetList);
}

void SelectionReader::abandon() {
  if (window_ != XCB_NONE)
    xcb_destroy_window(connection_.get(), window_);
  for (const auto& [target, asked] : asked_)
    xcb_destroy_window(connection_.get(), asked.window);
  asked_.clear();
  window_ = XCB_NONE;
  isReading_ = false;
  isIncremental_ = false;
  bytes_.clear();
  connection_.flush();
}

/// By a window of its own: one that is destroyed ends even a transfer without end.
SelectionReader::Asked SelectionReader::ask(const std::string& target) {
  // An answer that comes too late finds its property out of use.
  const Asked asked{
      connection_.makeWindow(),
      connection_.atom("TAVRIN_SELECTION_" + std::to_string(requests_++ % propertyCount))};
  xcb_convert_selection(connection_.get(), asked.window, connection_.atom("CLIPBOARD"),
                        connection_.atom(target), asked.property, time_);
  return asked;
}

void SelectionReader::request(const std::string& target) {
  isIncremental_ = false;
  bytes_.clear();
  size_ = 0;
  announced_ = 0;
  target_ = connection_.atom(target);
  const auto known = asked_.extract(target);
  const Asked asked = known.empty() ? ask(target) : known.mapped();
  if (window_ != XCB_NONE)
    xcb_destroy_window(connection_.get(), window_);
  window_ = asked.window;
  property_ = asked.property;
  connection_.flush();
  formatEnd_ = std::chrono::steady_clock::now() + longestFormat;
  extend();
  if (asked.answer)
    answered(*asked.answer);
}

void SelectionReader::extend() {
  deadline_ = std::min(std::chrono::steady_clock::now() + answerPatience, formatEnd_);
}

std::size_t SelectionReader::bound() const {
  return hasTargets_ ? plan_.bound(*plan_.wish()) : CapturePlan::longestTypes;
}

/// The property's value, at most `longest` bytes of it; the property is gone afterwards.
SelectionReader::Value SelectionReader::take(xcb_atom_t property, std::size_t longest) {
  Value value;
  const auto words = static_cast<std::uint32_t>((longest + 3) / 4);
  const auto cookie = xcb_get_property(connection_.get(), 0, window_, property,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, words);
  const ReplyPtr<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection_.get(), cookie, nullptr));
  xcb_delete_property(connection_.get(), window_, property);
  connection_.flush();
  if (!reply)
    return value;
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
  value.type = reply->type;
  value.isInteger = reply->format == 32;
  value.bytes.assign(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
  value.size = length + reply->bytes_after;
  return value;
}

void SelectionReader::handle(const xcb_selection_notify_event_t& event) {
  if (isReading_ && event.requestor == window_ && event.target == target_ && !isIncremental_) {
    answered(event.property);
    return;
  }
  for (auto& [target, asked] : asked_)
    if (event.requestor == asked.window)
      asked.answer = event.property;
}

void SelectionReader::answered(xcb_atom_t property) {
  if (property == XCB_ATOM_NONE) {
    arrived({});
    return;
  }
  if (property != property_)
    return;
  Value value = take(property_, bound());
  if (value.type != connection_.atom("INCR")) {
    size_ = value.size;
    arrived(std::move(value));
    return;
  }
  isIncremental_ = true;
  if (value.isInteger && value.bytes.size() >= 4)
    announced_ = *reinterpret_cast<const std::uint32_t*>(value.bytes.data());
  extend();
}

void SelectionReader::handle(const xcb_property_notify_event_t& event) {
  if (!isReading_ || !isIncremental_ || event.window != window_ || event.atom != property_ ||
      event.state != XCB_PROPERTY_NEW_VALUE)
    return;
  const std::size_t left = bound() > bytes_.size() ? bound() - bytes_.size() : 0;
  const Value piece = take(property_, left);
  size_ += piece.size;
  bytes_ += piece.bytes;
  extend();
  const bool isWhole = piece.size == 0;
  const bool isTooLong =
      size_ > bound() && (!plan_.wish()->isImage() || size_ > CapturePlan::mostCounted ||
                          announced_ > limits_.imageBytes);
  if (!isWhole && !isTooLong)
    return;
  size_ = std::max(size_, isTooLong ? announced_ : 0);
  if (isTooLong) {
    // The rest would come for as long as there is a window to send it to.
    xcb_destroy_window(connection_.get(), std::exchange(window_, XCB_NONE));
  }
  Value value;
  value.size = size_;
  value.bytes = std::move(bytes_);
  bytes_.clear();
  arrived(std::move(value));
}

void SelectionReader::arrived(Value value) {
  isIncremental_ = false;
  if (!hasTargets_) {
    targetsArrived(value);
    return;
  }
  plan_.arrived(std::move(value.bytes), value.size);
  next();
}

void SelectionReader::targetsArrived(const Value& value) {
  std::vector<std::string> types;
  if (value.isInteger) {
    const auto* atoms = reinterpret_cast<const xcb_atom_t*>(value.bytes.data());
    types = connection_.names({atoms, atoms + value.bytes.size() / 4});
    for (const auto& type : types)
      if (std::ranges::find(usualTargets, type) != std::end(usualTargets))
        offered_.insert(type);
  }
  plan_.offered(std::move(types), value.size > bound() || (value.size > 0 && !value.isInteger));
  hasTargets_ = true;
  next();
}

void SelectionReader::next() {
  if (const auto* wish = plan_.wish())
    request(wish->target);
  else
    finish();
}

void SelectionReader::finish() {
  abandon();
  done_(plan_.finish());
}

void SelectionReader::expire() {
  if (!isReading_ || std::chrono::steady_clock::now() < deadline_)
    return;
  if (!hasTargets_) {
    finish();
    return;
  }
  xcb_destroy_window(connection_.get(), std::exchange(window_, XCB_NONE));
  isIncremental_ = false;
  bytes_.clear();
  plan_.missed();
  next();
}

} // namespace tavrin
