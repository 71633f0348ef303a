#include "TavrinPlatform/Linux/Wayland/DataControlOffer.h"

#include "TavrinPlatform/Linux/Pasteboard/Latin1.h"
#include "TavrinPlatform/Linux/Pasteboard/OfferedTypes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr std::chrono::seconds receiverPatience{20};
constexpr std::size_t mostTransfers = 16;

std::shared_ptr<const Data> dataFor(const std::vector<Pasteboard::Format>& formats,
                                    std::string_view type) {
  const bool isText = std::ranges::find(textTargets, type) != std::end(textTargets);
  const auto format =
      std::ranges::find(formats, isText ? Pasteboard::textType : type,
                        [](const auto& each) { return std::string_view(each.type); });
  if (format == formats.end())
    return nullptr;
  if (type == "STRING")
    return std::make_shared<const Data>(Data::fromText(latin1FromUTF8(format->data->view())));
  return format->data;
}

} // namespace

DataControlOffer::DataControlOffer(zwlr_data_control_manager_v1* manager,
                                   zwlr_data_control_device_v1* device)
    : manager_(manager), device_(device),
      mark_("application/x-tavrin-offer;process=" + std::to_string(::getpid())) {}

void DataControlOffer::take(std::vector<Pasteboard::Format> formats) {
  std::erase_if(formats, [](const auto& format) { return !format.data; });
  auto* proxy = zwlr_data_control_manager_v1_create_data_source(manager_);
  auto& source =
      *sources_.emplace_back(new Source{decltype(Source::proxy)(proxy), std::move(formats), *this});
  static const zwlr_data_control_source_v1_listener listener{
      [](void* data, zwlr_data_control_source_v1*, const char* type, std::int32_t end) {
        const auto& self = *static_cast<Source*>(data);
        self.offer.send(self, type, Descriptor(end));
      },
      [](void* data, zwlr_data_control_source_v1*) {
        auto& owner = static_cast<Source*>(data)->offer;
        std::erase_if(owner.sources_, [data](const auto& each) { return each.get() == data; });
      }};
  zwlr_data_control_source_v1_add_listener(proxy, &listener, &source);
  for (const auto& format : source.formats) {
    if (format.type != Pasteboard::textType)
      zwlr_data_control_source_v1_offer(proxy, format.type.c_str());
    else
      for (const char* name : textTargets)
        zwlr_data_control_source_v1_offer(proxy, name);
  }
  zwlr_data_control_source_v1_offer(proxy, mark_.c_str());
  zwlr_data_control_device_v1_set_selection(device_, proxy);
}

bool DataControlOffer::isOwn(const std::vector<std::string>& types) const {
  return std::ranges::find(types, mark_) != types.end();
}

void DataControlOffer::send(const Source& source, const std::string& type, Descriptor end) {
  auto data = dataFor(source.formats, type);
  if (!data)
    return;
  ::fcntl(end.number(), F_SETFL, O_NONBLOCK);
  if (transfers_.size() >= mostTransfers)
    transfers_.erase(transfers_.begin());
  transfers_.push_back(
      {std::move(end), std::move(data), 0, std::chrono::steady_clock::now() + receiverPatience});
}

void DataControlOffer::watch(std::vector<pollfd>& descriptors) const {
  for (const auto& transfer : transfers_)
    descriptors.push_back({transfer.end.number(), POLLOUT, 0});
}

/// False when there is nothing more to do.
bool DataControlOffer::write(Transfer& transfer) {
  const auto view = transfer.data->view();
  const auto now = std::chrono::steady_clock::now();
  while (transfer.sent < view.size()) {
    const auto count =
        ::write(transfer.end.number(), view.data() + transfer.sent, view.size() - transfer.sent);
    if (count < 0)
      return (errno == EAGAIN || errno == EINTR) && now < transfer.deadline;
    transfer.sent += static_cast<std::size_t>(count);
    transfer.deadline = now + receiverPatience;
  }
  return false;
}

void DataControlOffer::proceed() {
  std::erase_if(transfers_, [](Transfer& transfer) { return !write(transfer); });
}

std::optional<DataControlOffer::Time> DataControlOffer::deadline() const {
  const auto first = std::ranges::min_element(transfers_, {}, &Transfer::deadline);
  return first == transfers_.end() ? std::nullopt : std::optional(first->deadline);
}

} // namespace tavrin
