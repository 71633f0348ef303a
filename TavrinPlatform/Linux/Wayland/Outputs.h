#pragma once

#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <QSize>
#include <string>

namespace tavrin {

/// The outputs of a registry by their names. What is known of them comes with the next round trip.
class Outputs {
public:
  explicit Outputs(const WaylandRegistry& registry);
  struct Output {
    ProxyPtr<wl_output> proxy;
    std::string name;
    /// In pixels, before it is turned.
    QSize mode;
    std::int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;

    /// The pixels for a point, where the whole output is `points`: by hundred-and-twentieths, as
    /// compositors count scales.
    double scale(QSize points) const;
  };
  const std::vector<std::unique_ptr<Output>>& all() const { return outputs_; }
  /// Null where there is none of this name.
  const Output* find(std::string_view name) const;

private:
  std::vector<std::unique_ptr<Output>> outputs_;
};

} // namespace tavrin
