#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>
#include <variant>

namespace tavrin {

/// Properties of one interface: texts, numbers and flags; values of other types are left out.
class BusProperties {
public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  /// Takes in a dictionary of variants, the next in `message`: new values replace old ones.
  void read(sd_bus_message* message);
  void erase(const std::string& name) { values_.erase(name); }

  std::string text(std::string_view name) const;
  /// A number of any kind.
  std::optional<double> number(std::string_view name) const;
  bool flag(std::string_view name) const;
  bool has(std::string_view name) const { return values_.find(name) != values_.end(); }
  bool isEmpty() const { return values_.empty(); }
  bool operator==(const BusProperties&) const = default;

private:
  std::map<std::string, Value, std::less<>> values_;
};

/// The next argument of a message, when it is a text.
std::string textArgument(sd_bus_message* message);

/// The interfaces of an object, the next in `message`: each is handed to `take`, which reads its
/// dictionary of variants.
void readInterfaces(sd_bus_message* message,
                    const std::function<void(const std::string& interface)>& take);

} // namespace tavrin
