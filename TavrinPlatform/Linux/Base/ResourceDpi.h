#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>
#include <string>
#include <string_view>

namespace tavrin {

/// The entry "Xft.dpi" of a resource database's text; empty without one.
std::string dpiInResources(std::string_view resources);

/// Tells of another "Xft.dpi" in the X server's resource database, where no settings manager tells
/// of it: the toolkit asks the database once.
class ResourceDpi final : private QAbstractNativeEventFilter {
public:
  explicit ResourceDpi(std::function<void()> changed);
  ~ResourceDpi() override;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  const std::function<void()> changed_;
  std::string dpi_;
};

} // namespace tavrin
