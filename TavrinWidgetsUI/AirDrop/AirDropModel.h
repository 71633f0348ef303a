#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/NearbyDevices.h"

#include <QString>
#include <filesystem>
#include <functional>
#include <optional>

namespace tavrin {

/// Files on their way to a device: dropped, given to one of those around, sent. One sending at a
/// time; files dropped meanwhile wait for the next.
class AirDropModel {
public:
  enum class State {
    /// Nothing to send.
    idle,
    /// Files wait for the user to choose a device.
    choosing,
    sending,
    sent,
    failed,
  };

  AirDropModel(NearbyDevices& nearby, RunLoop& runLoop, DockWidget widget);
  AirDropModel(const AirDropModel&) = delete;
  AirDropModel& operator=(const AirDropModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// Does not call `onChange`.
  void setWidget(const DockWidget& widget) { widget_ = widget; }

  State state() const { return state_; }
  const std::vector<NearbyDevice>& devices() const { return nearby_.devices(); }
  bool isAvailable() const { return nearby_.isAvailable(); }
  NearbyDevices::Advice advice() const { return nearby_.advice(); }
  void refresh() { nearby_.refresh(); }

  /// What waits for a device, or is being sent.
  const std::vector<std::filesystem::path>& files() const { return files_; }
  /// Bytes of all files; no value while they are being looked at.
  std::optional<std::int64_t> size() const { return size_; }
  /// The device of the sending that runs or ran last.
  const QString& deviceName() const { return deviceName_; }
  /// What reaches that device.
  const std::string& way() const { return way_; }
  const SendingProgress& progress() const { return progress_; }
  /// 0...1 over all files; no value where it is not known.
  std::optional<double> share() const;
  /// The desktop's service sends them from here by itself.
  bool isHandedOver() const { return isHandedOver_; }
  /// What went wrong, or what of a drop cannot be sent; empty for nothing.
  const std::string& trouble() const { return trouble_; }

  /// Takes addresses of files, in order. Folders and what is no file of this computer are left out,
  /// and that is said.
  void take(const std::vector<std::string>& fileURLs);
  /// The files wait no longer.
  void forget();
  void send(const NearbyDevice& device);
  void cancel();

  /// Something of the above differs.
  std::function<void()> onChange;
  /// Files wait for a device.
  std::function<void()> onTaken;

private:
  void examined(std::vector<std::filesystem::path> files, std::int64_t size, std::size_t refused);
  void finished(const SendingResult& result);
  void changed() const;

  NearbyDevices& nearby_;
  RunLoop& runLoop_;
  DockWidget widget_;
  State state_ = State::idle;
  std::vector<std::filesystem::path> files_;
  std::optional<std::int64_t> size_;
  std::vector<std::string> waiting_;
  QString deviceName_;
  SendingProgress progress_;
  bool isHandedOver_ = false;
  std::string way_;
  std::string trouble_;
  Lifetime examining_;
  TokenPtr observation_;
  TokenPtr sending_;
  TokenPtr resting_;
};

} // namespace tavrin
