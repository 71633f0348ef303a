#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>
#include <variant>
#include <vector>

namespace tavrin {

/// Properties of one interface: texts, numbers and flags; values of other types are left out.
class BusProperties {
public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  /// Offered a value of another type, in the variant that is next in the message: reads the whole
  /// variant and answers true, or leaves it alone.
  using Other = std::function<bool(const std::string& name, sd_bus_message* message)>;

  /// Takes in a dictionary of variants, the next in `message`: new values replace old ones.
  void read(sd_bus_message* message, const Other& other = {});
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

/// What the variant holds that is next in `message`, however many lie round it; it is left behind
/// in any case. No value for a list or the like.
std::optional<BusProperties::Value> readVariant(sd_bus_message* message);

/// The texts in a variant of a list of texts, the next in `message`, at most `most`. No value, and
/// nothing read, where that is something else.
std::optional<std::vector<std::string>> readTexts(sd_bus_message* message, std::size_t most = 64);

/// The interfaces of an object, the next in `message`: each is handed to `take`, which reads its
/// dictionary of variants.
void readInterfaces(sd_bus_message* message,
                    const std::function<void(const std::string& interface)>& take);

} // namespace tavrin
