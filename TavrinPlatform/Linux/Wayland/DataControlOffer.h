#pragma once

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"
#include "TavrinPlatform/Pasteboard.h"

#include <chrono>
#include <optional>
#include <poll.h>
#include <string>

namespace tavrin {

/// Offers what this process copies, and hands it out to whoever reads, however slowly.
class DataControlOffer {
public:
  using Time = std::chrono::steady_clock::time_point;

  DataControlOffer(zwlr_data_control_manager_v1* manager, zwlr_data_control_device_v1* device);

  void take(std::vector<Pasteboard::Format> formats);
  /// Whether an offer with these types is one of this object's.
  bool isOwn(const std::vector<std::string>& types) const;

  void watch(std::vector<pollfd>& descriptors) const;
  /// Writes what is taken, and drops transfers whose receivers stopped reading.
  void proceed();
  std::optional<Time> deadline() const;

private:
  struct Source {
    ProxyPtr<zwlr_data_control_source_v1> proxy;
    std::vector<Pasteboard::Format> formats;
    DataControlOffer& offer;
  };
  struct Transfer {
    Descriptor end;
    std::shared_ptr<const Data> data;
    std::size_t sent = 0;
    Time deadline;
  };

  void send(const Source& source, const std::string& type, Descriptor end);
  static bool write(Transfer& transfer);

  zwlr_data_control_manager_v1* manager_;
  zwlr_data_control_device_v1* device_;
  /// A type that only this object offers, by which it knows its own.
  const std::string mark_;
  std::vector<std::unique_ptr<Source>> sources_;
  std::vector<Transfer> transfers_;
};

} // namespace tavrin
