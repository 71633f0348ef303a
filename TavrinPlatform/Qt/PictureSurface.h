#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/Qt/TileSurface.h"

#include <QTimer>

namespace tavrin {

/// The tile as a PNG file that is replaced whenever the picture changes, for machines without a
/// screen and for bars that show pictures. The file goes with the surface. Takes clicks from
/// nowhere. A picture that could not be written is tried again every few seconds.
class PictureSurface final : public TileSurface {
public:
  PictureSurface(std::filesystem::path file, double tileSize, LogSink& log);
  ~PictureSurface() override;
  PictureSurface(const PictureSurface&) = delete;
  PictureSurface& operator=(const PictureSurface&) = delete;

  DockTile::Format format() const override { return format_; }
  void setPlace(const DockTile::Place& place) override;
  void display(const QImage& image) override;
  bool isVisible() const override { return true; }

private:
  void complain(const std::string& reason);
  /// The reason why the file could not be replaced; empty for none.
  std::string write(const QImage& image) const;

  std::filesystem::path file_;
  DockTile::Format format_;
  Log log_;
  QImage shown_;
  /// What the file should show and does not.
  QImage unwritten_;
  QTimer retry_;
  bool hasComplained_ = false;
};

} // namespace tavrin
