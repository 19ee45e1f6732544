#include "platform/gtk/GtkViewPeer.h"

#include <cmath>
#include <memory>
#include <vector>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

const char* cssName(Cursor cursor) {
  switch (cursor) {
    case Cursor::arrow:
      return "default";
    case Cursor::pointingHand:
      return "pointer";
    case Cursor::iBeam:
      return "text";
    case Cursor::openHand:
      return "grab";
    case Cursor::closedHand:
      return "grabbing";
    case Cursor::resizeNorthWestSouthEast:
      return "nwse-resize";
    case Cursor::resizeNorthEastSouthWest:
      return "nesw-resize";
    case Cursor::crosshair:
      return "crosshair";
  }
  return "default";
}

/// Null for the arrow. What the desktop's theme lacks becomes a crosshair.
GObjectPtr<GdkCursor> makeCursor(GdkDisplay* display, Cursor cursor) {
  if (cursor == Cursor::arrow) return nullptr;
  GdkCursor* const themed = gdk_cursor_new_from_name(display, cssName(cursor));
  return GObjectPtr<GdkCursor>::adopt(themed != nullptr ? themed
                                                        : gdk_cursor_new_for_display(display, GDK_CROSSHAIR));
}

/// Rounds the edges, not the lengths, so that views that touch still touch.
GtkAllocation allocationOf(const Rect& frame, double superviewHeight) {
  const auto edge = [](double value) {
    return std::isfinite(value) ? static_cast<int>(std::lround(value)) : 0;
  };
  const int left = edge(frame.minX());
  const int top = edge(superviewHeight - frame.maxY());
  return {left, top, edge(frame.maxX()) - left, edge(superviewHeight - frame.minY()) - top};
}

}  // namespace

GtkViewPeer::GtkViewPeer(View& view, ViewEventSink& sink) : view_(view), sink_(sink) {
  if (auto* const own = dynamic_cast<NativeWidgetView*>(&view)) {
    native_ = true;
    widget_ = GObjectPtr<GtkWidget>::retain(own->nativeWidget());
    watchNativeWidget();
  } else {
    widget_ = view_widget::make(*this);
  }
}

GtkViewPeer::~GtkViewPeer() {
  GtkWidget* const widget = widget_.get();
  if (GtkWidget* parent = gtk_widget_get_parent(widget)) gtk_container_remove(GTK_CONTAINER(parent), widget);
  if (!native_) view_widget::forgetOwner(widget);
}

GtkWidget* GtkViewPeer::attach(View& view, ViewEventSink& sink) {
  auto made = std::unique_ptr<GtkViewPeer>(new GtkViewPeer(view, sink));
  GtkViewPeer& peer = *made;
  view.setPeer(std::move(made));
  peer.appearanceChanged();
  peer.subviewsChanged();
  return peer.widget_.get();
}

GtkWidget* GtkViewPeer::widgetOf(const View& view) {
  auto* const peer = static_cast<GtkViewPeer*>(view.peer());
  return peer == nullptr ? nullptr : peer->widget_.get();
}

void GtkViewPeer::watchNativeWidget() {
  GtkWidget* const widget = widget_.get();
  gtk_widget_add_events(widget, GDK_POINTER_MOTION_MASK | GDK_ENTER_NOTIFY_MASK);
  connections_ = {SignalConnection(widget, "motion-notify-event", G_CALLBACK(onNativeEvent), this),
                  SignalConnection(widget, "enter-notify-event", G_CALLBACK(onNativeEvent), this),
                  SignalConnection(widget, "button-press-event", G_CALLBACK(onNativePress), this)};
}

gboolean GtkViewPeer::onNativeEvent(GtkWidget*, GdkEvent* event, gpointer self) {
  auto* const peer = static_cast<GtkViewPeer*>(self);
  guarded([&] { peer->sink_.pointerEvent(peer->view_, *event); });
  return FALSE;
}

gboolean GtkViewPeer::onNativePress(GtkWidget*, GdkEvent* event, gpointer self) {
  guarded([&] { static_cast<GtkViewPeer*>(self)->sink_.nativeWidgetPressed(*event); });
  return FALSE;
}

void GtkViewPeer::frameChanged() {
  // The superview's widget gives the place; this one is asked again too, since its subviews hang on its
  // height.
  if (GtkWidget* parent = gtk_widget_get_parent(widget_.get())) gtk_widget_queue_allocate(parent);
  gtk_widget_queue_allocate(widget_.get());
}

void GtkViewPeer::subviewsChanged() {
  if (native_) return;
  std::vector<GtkWidget*> children;
  for (const auto& subview : view_.subviews()) {
    GtkWidget* const widget = widgetOf(*subview);
    children.push_back(widget != nullptr ? widget : attach(*subview, sink_));
  }
  view_widget::setChildren(widget_.get(), children);
}

void GtkViewPeer::appearanceChanged() {
  GtkWidget* const widget = widget_.get();
  gtk_widget_set_name(widget, view_.identifier().c_str());
  AtkObject* const accessible = gtk_widget_get_accessible(widget);
  atk_object_set_accessible_id(accessible, view_.identifier().c_str());
  if (!view_.accessibilityLabel().empty())
    atk_object_set_name(accessible, view_.accessibilityLabel().c_str());
  gtk_widget_set_opacity(widget, view_.alpha());
  gtk_widget_set_visible(widget, view_.isHidden() ? FALSE : TRUE);
  widgetRealized();
}

void GtkViewPeer::widgetRealized() {
  GdkWindow* const window = gtk_widget_get_window(widget_.get());
  if (window == nullptr || gtk_widget_get_has_window(widget_.get()) == FALSE) return;
  gdk_window_set_pass_through(window, view_.passesPointerThrough() ? TRUE : FALSE);
  // A native widget chooses its cursor itself; the arrow is what all others get from the window.
  if (native_) return;
  gdk_window_set_cursor(window, makeCursor(gdk_window_get_display(window), view_.cursor()).get());
}

void GtkViewPeer::needsDisplay() { gtk_widget_queue_draw(widget_.get()); }

void GtkViewPeer::drawWidget(cairo_t* context) {
  cairo_save(context);
  cairo_translate(context, 0, view_.frame().size.height);
  cairo_scale(context, 1, -1);
  // The wrapper borrows the context; GTK owns it.
  view_.draw(Cairo::RefPtr<Cairo::Context>(new Cairo::Context(context)));
  cairo_restore(context);
}

GtkAllocation GtkViewPeer::placeOf(GtkWidget* child) {
  for (const auto& subview : view_.subviews()) {
    if (widgetOf(*subview) == child) return allocationOf(subview->frame(), view_.frame().size.height);
  }
  return {};
}

}  // namespace velto
