#include "platform/gtk/Snapshot.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace velto {

namespace {

constexpr double kLongestSide = 16384;

struct SurfaceDestroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

cairo_status_t append(void* png, const unsigned char* bytes, unsigned int length) {
  try {
    static_cast<std::string*>(png)->append(reinterpret_cast<const char*>(bytes), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

}  // namespace

std::optional<std::string> pngOf(cairo_surface_t* picture, double width) {
  if (cairo_surface_get_type(picture) != CAIRO_SURFACE_TYPE_IMAGE) return std::nullopt;
  double scaleX = 1;
  double scaleY = 1;
  cairo_surface_get_device_scale(picture, &scaleX, &scaleY);
  const double fromWidth = cairo_image_surface_get_width(picture) / scaleX;
  const double fromHeight = cairo_image_surface_get_height(picture) / scaleY;
  if (!(fromWidth > 0 && fromHeight > 0 && width >= 1 && width <= kLongestSide)) return std::nullopt;

  const double toWidth = std::round(width);
  const double toHeight = std::clamp(std::round(fromHeight * toWidth / fromWidth), 1.0, kLongestSide);
  const std::unique_ptr<cairo_surface_t, SurfaceDestroy> scaled(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(toWidth), static_cast<int>(toHeight)));
  const std::unique_ptr<cairo_t, ContextDestroy> context(cairo_create(scaled.get()));
  cairo_scale(context.get(), toWidth / fromWidth, toHeight / fromHeight);
  cairo_set_source_surface(context.get(), picture, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_GOOD);
  cairo_paint(context.get());
  std::string png;
  if (cairo_surface_write_to_png_stream(scaled.get(), append, &png) != CAIRO_STATUS_SUCCESS)
    return std::nullopt;
  return png;
}

}  // namespace velto
