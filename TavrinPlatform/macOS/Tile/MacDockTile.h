#pragma once

#include "TavrinPlatform/DockTile.h"

#include <memory>

namespace tavrin {

/// The Dock's own tile of this process: always square, and always there. A click on it comes as a
/// reopen request, so `onClick` and `onHover` are never called.
class MacDockTile final : public DockTile {
public:
  MacDockTile();
  ~MacDockTile() override;

  Format format() const override;
  void setPlace(const Place& place) override;
  void setLabel(const std::string& name, const std::string& value) override;
  void display(const QImage& image) override;
  bool isVisible() const override;

private:
  struct Parts;

  void wake(bool areScreensAwake);

  std::unique_ptr<Parts> parts_;
};

} // namespace tavrin
