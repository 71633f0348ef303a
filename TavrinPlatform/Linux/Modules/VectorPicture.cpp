#include <cairo.h>
#include <cstdio>
#include <cstdlib>
#include <librsvg/rsvg.h>
#include <memory>
#include <sys/resource.h>

/// tavrin-svg FILE PIXELS: draws a vector picture as a square and writes its points, premultiplied
/// ARGB of four bytes each in the computer's order, to the standard output.

namespace {

constexpr rlim_t mostSeconds = 2;
constexpr int mostPixels = 4096;

struct Drop {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class T> using Owned = std::unique_ptr<T, Drop>;

bool draw(const char* file, int pixels) {
  const Owned<RsvgHandle> handle(rsvg_handle_new_from_file(file, nullptr));
  if (!handle)
    return false;
  const Owned<cairo_surface_t> surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels));
  const Owned<cairo_t> context(cairo_create(surface.get()));
  const RsvgRectangle viewport{0, 0, static_cast<double>(pixels), static_cast<double>(pixels)};
  if (rsvg_handle_render_document(handle.get(), context.get(), &viewport, nullptr) == 0)
    return false;
  cairo_surface_flush(surface.get());
  const unsigned char* points = cairo_image_surface_get_data(surface.get());
  const auto line = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  const auto width = static_cast<std::size_t>(pixels) * 4;
  for (std::size_t y = 0; points != nullptr && y < static_cast<std::size_t>(pixels); ++y)
    if (std::fwrite(points + y * line, 1, width, stdout) != width)
      return false;
  return points != nullptr && std::fflush(stdout) == 0;
}

} // namespace

int main(int argc, char** argv) {
  const rlimit time{mostSeconds, mostSeconds};
  ::setrlimit(RLIMIT_CPU, &time);
  const int pixels = argc == 3 ? std::atoi(argv[2]) : 0;
  return pixels > 0 && pixels <= mostPixels && draw(argv[1], pixels) ? 0 : 1;
}
