#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Tile/TileLabel.h"
#include "TavrinPlatform/Qt/TileSurface.h"

namespace tavrin {

/// The tile as a status notifier item ("org.kde.StatusNotifierItem"), square only. Registers
/// itself whenever a watcher appears, at once or hours later.
class TraySurface final : public TileSurface {
public:
  TraySurface(Bus& bus, std::string identifier);

  DockTile::Format format() const override;
  void setLabel(const std::string& name, const std::string& value) override;
  void display(const QImage& image) override;
  bool isVisible() const override { return isRegistered_; }
  void setAttention(bool isWanted) override;

private:
  static const sd_bus_vtable vtable[];
  static int property(sd_bus*, const char*, const char*, const char* name, sd_bus_message* reply,
                      void* self, sd_bus_error*);
  static int activate(sd_bus_message* message, void* self, sd_bus_error*);
  static int scroll(sd_bus_message* message, void* self, sd_bus_error*);
  int appendIcon(sd_bus_message* reply) const;
  int appendToolTip(sd_bus_message* reply) const;
  void registerItem();
  void tell(const char* member);

  Bus& bus_;
  std::string identifier_;
  TileLabel<std::string> label_;
  QImage icon_;
  bool isRegistered_ = false;
  bool wantsAttention_ = false;
  TokenPtr item_;
  TokenPtr watcher_;
};

} // namespace tavrin
