#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// What the desktop tells X programs of its settings, as Xfce, MATE, Cinnamon and others do, over
/// the toolkit's connection. Without an X server or a manager on it every question has no answer.
class DesktopXSettings final : private QAbstractNativeEventFilter {
public:
  DesktopXSettings();

  std::optional<std::string> text(std::string_view name) const;
  std::optional<std::int32_t> integer(std::string_view name) const;

  /// Something was changed, or another manager came.
  std::function<void()> onChange;

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
  void findManager();

  std::uint32_t manager_ = 0;
};

} // namespace tavrin
