#include <QImage>
#include <cairo.h>
#include <librsvg/rsvg.h>
#include <memory>

namespace {

struct Drop {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class T> using Owned = std::unique_ptr<T, Drop>;

} // namespace

/// Draws the vector picture in `file` over the whole of `image`, which is premultiplied ARGB.
/// From any thread.
extern "C" __attribute__((visibility("default"))) bool tavrinDrawVector(const char* file,
                                                                        QImage& image) {
  const Owned<RsvgHandle> handle(rsvg_handle_new_from_file(file, nullptr));
  if (!handle)
    return false;
  const Owned<cairo_surface_t> surface(
      cairo_image_surface_create_for_data(image.bits(), CAIRO_FORMAT_ARGB32, image.width(),
                                          image.height(), static_cast<int>(image.bytesPerLine())));
  const Owned<cairo_t> context(cairo_create(surface.get()));
  const RsvgRectangle viewport{0, 0, static_cast<double>(image.width()),
                               static_cast<double>(image.height())};
  const bool isDrawn =
      rsvg_handle_render_document(handle.get(), context.get(), &viewport, nullptr) != 0;
  cairo_surface_flush(surface.get());
  return isDrawn;
}
