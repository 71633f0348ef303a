#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <memory>

class QScreen;

namespace tavrin {

class ViewWidget;
struct KeyboardLockStatus;

/// Covers every screen while it exists, those that come meanwhile too.
class KeyboardLockOverlay final : public QObject {
public:
  /// `status` answers for as long as this lives; `unlock` is the button's, where there is one.
  KeyboardLockOverlay(std::function<KeyboardLockStatus()> status, std::function<void()> unlock);
  ~KeyboardLockOverlay() override;

  /// The status is another one.
  void refresh();

private:
  void cover(QScreen* screen);

  std::function<KeyboardLockStatus()> status_;
  std::function<void()> unlock_;
  struct Later {
    void operator()(ViewWidget* window) const;
  };
  std::map<QScreen*, std::unique_ptr<ViewWidget, Later>> windows_;
};

} // namespace tavrin
