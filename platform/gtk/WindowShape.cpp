#include "platform/gtk/WindowShape.h"

#include <cmath>
#include <utility>

#include "platform/gtk/Guard.h"
#include "platform/gtk/NativeWidget.h"

namespace velto {

namespace {

bool isComposited(GtkWindow* toplevel) {
  return gdk_screen_is_composited(gtk_window_get_screen(toplevel)) != FALSE;
}

/// What brings a widget of its own is not drawn by its view; it fills its frame.
void fillNative(const View& view, const Cairo::RefPtr<Cairo::Context>& context) {
  if (view.isHidden()) return;
  if (dynamic_cast<const NativeWidgetView*>(&view) != nullptr) {
    const Point origin = view.convertToContent({0, 0});
    context->rectangle(origin.x, origin.y, view.frame().size.width, view.frame().size.height);
    context->fill();
  }
  for (const auto& subview : view.subviews()) fillNative(*subview, context);
}

}  // namespace

WindowShape::WindowShape(GtkWindow* toplevel, Window& window)
    : toplevel_(toplevel),
      window_(window),
      draw_(toplevel, "draw", G_CALLBACK(onDraw), this),
      map_(toplevel, "map-event", G_CALLBACK(onMap), this),
      composited_(gtk_window_get_screen(toplevel), "composited-changed", G_CALLBACK(onCompositedChanged),
                  this) {}

/// Before the toplevel has its place on the X server: there its visual and its kind are for good.
void WindowShape::prepare() {
  GtkWidget* const widget = GTK_WIDGET(toplevel_);
  const bool isNotice = window_.isNonactivating() && window_.ignoresMouseEvents();
  gtk_window_set_type_hint(toplevel_,
                           isNotice ? GDK_WINDOW_TYPE_HINT_NOTIFICATION : GDK_WINDOW_TYPE_HINT_NORMAL);
  gtk_window_set_accept_focus(toplevel_, isNotice ? FALSE : TRUE);
  GdkScreen* const screen = gtk_window_get_screen(toplevel_);
  gtk_widget_set_visual(widget, window_.isOpaque() ? nullptr : gdk_screen_get_rgba_visual(screen));
}

void WindowShape::attributesChanged() {
  GtkWidget* const widget = GTK_WIDGET(toplevel_);
  if (gtk_widget_get_realized(widget) == FALSE) prepare();
  gtk_widget_set_app_paintable(widget, window_.isOpaque() ? FALSE : TRUE);
  if (ignoresMouse_ != window_.ignoresMouseEvents()) {
    ignoresMouse_ = window_.ignoresMouseEvents();
    shapeInput();
  }
  alpha_ = window_.alpha();
  if (gtk_widget_get_opacity(widget) != alpha_) gtk_widget_set_opacity(widget, alpha_);
  update();
}

void WindowShape::shapeInput() {
  const Region nothing(cairo_region_create());
  gtk_widget_input_shape_combine_region(GTK_WIDGET(toplevel_), ignoresMouse_ ? nothing.get() : nullptr);
}

void WindowShape::update() {
  Region next = wanted();
  const bool same = (next == nullptr) == (shown_ == nullptr) &&
                    (next == nullptr || cairo_region_equal(next.get(), shown_.get()) != FALSE);
  if (same) return;
  gtk_widget_shape_combine_region(GTK_WIDGET(toplevel_), next.get());
  shown_ = std::move(next);
}

WindowShape::Region WindowShape::wanted() const {
  if (isComposited(toplevel_) || (window_.isOpaque() && alpha_ > 0)) return nullptr;
  return alpha_ > 0 ? drawn() : Region(cairo_region_create());
}

WindowShape::Region WindowShape::drawn() const {
  View* const content = window_.contentView();
  if (content == nullptr) return Region(cairo_region_create());
  const Size size = window_.frame().size;
  const auto width = static_cast<int>(std::ceil(size.width));
  const auto height = static_cast<int>(std::ceil(size.height));
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_ARGB32, width, height);
  const auto context = Cairo::Context::create(surface);
  context->translate(0, size.height);
  context->scale(1, -1);
  content->render(context);
  context->set_source_rgb(0, 0, 0);
  fillNative(*content, context);
  return Region(gdk_cairo_region_create_from_surface(surface->cobj()));
}

gboolean WindowShape::onDraw(GtkWidget*, cairo_t*, gpointer self) {
  guarded([&] { static_cast<WindowShape*>(self)->update(); });
  return FALSE;
}

/// Once more, because a window manager's frame learns of a window's input shape only when it changes.
gboolean WindowShape::onMap(GtkWidget*, GdkEvent*, gpointer self) {
  auto* const shape = static_cast<WindowShape*>(self);
  if (shape->ignoresMouse_) shape->shapeInput();
  return FALSE;
}

void WindowShape::onCompositedChanged(GdkScreen*, gpointer self) {
  guarded([&] { static_cast<WindowShape*>(self)->update(); });
}

}  // namespace velto
