#include "platform/gtk/ViewWidget.h"

#include <algorithm>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

struct ViewWidget {
  GtkContainer container;
  ViewWidgetOwner* owner;
  std::vector<GtkWidget*>* children;
};

struct ViewWidgetClass {
  GtkContainerClass container;
};

ViewWidget* self(gpointer widget) { return static_cast<ViewWidget*>(widget); }

constexpr int kEvents = GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_POINTER_MOTION_MASK |
                        GDK_ENTER_NOTIFY_MASK | GDK_LEAVE_NOTIFY_MASK;

G_DEFINE_TYPE(ViewWidget, view_widget, GTK_TYPE_CONTAINER)

GtkWidgetClass* parentClass() { return GTK_WIDGET_CLASS(view_widget_parent_class); }

void onRealize(GtkWidget* widget) {
  GtkAllocation place;
  gtk_widget_get_allocation(widget, &place);
  GdkWindowAttr attributes{};
  attributes.window_type = GDK_WINDOW_CHILD;
  attributes.wclass = GDK_INPUT_OUTPUT;
  attributes.visual = gtk_widget_get_visual(widget);
  attributes.event_mask = gtk_widget_get_events(widget) | kEvents;
  attributes.x = place.x;
  attributes.y = place.y;
  attributes.width = place.width;
  attributes.height = place.height;
  GdkWindow* const window =
      gdk_window_new(gtk_widget_get_parent_window(widget), &attributes, GDK_WA_X | GDK_WA_Y | GDK_WA_VISUAL);
  gtk_widget_set_realized(widget, TRUE);
  gtk_widget_set_window(widget, window);
  gtk_widget_register_window(widget, window);
  if (ViewWidgetOwner* owner = self(widget)->owner) guarded([&] { owner->widgetRealized(); });
}

/// Keeps the stacking of the children's windows the same as the order of the children.
void restack(GtkWidget* widget) {
  for (GtkWidget* child : *self(widget)->children) {
    if (gtk_widget_get_mapped(child) != FALSE) gdk_window_raise(gtk_widget_get_window(child));
  }
}

void onMap(GtkWidget* widget) {
  parentClass()->map(widget);
  restack(widget);
}

void onSizeAllocate(GtkWidget* widget, GtkAllocation* place) {
  gtk_widget_set_allocation(widget, place);
  if (gtk_widget_get_realized(widget) != FALSE) {
    gdk_window_move_resize(gtk_widget_get_window(widget), place->x, place->y, place->width, place->height);
  }
  ViewWidgetOwner* const owner = self(widget)->owner;
  if (owner == nullptr) return;
  for (GtkWidget* child : *self(widget)->children) {
    // GTK wants to be asked for a size before it is given one; the answer does not matter here.
    gtk_widget_get_preferred_size(child, nullptr, nullptr);
    guarded([&] {
      GtkAllocation at = owner->placeOf(child);
      gtk_widget_set_child_visible(child, at.width > 0 && at.height > 0 ? TRUE : FALSE);
      at.width = std::max(at.width, 1);
      at.height = std::max(at.height, 1);
      gtk_widget_size_allocate(child, &at);
    });
  }
}

void onPreferredSize(GtkWidget*, int* least, int* natural) {
  *least = 1;
  *natural = 1;
}

gboolean onDraw(GtkWidget* widget, cairo_t* context) {
  ViewWidgetOwner* const owner = self(widget)->owner;
  if (owner != nullptr) guarded([&] { owner->drawWidget(context); });
  for (GtkWidget* child : *self(widget)->children) {
    gtk_container_propagate_draw(GTK_CONTAINER(widget), child, context);
  }
  return FALSE;
}

/// Views ask their superviews themselves, so the event must not climb the widgets as well.
/// What a child let pass is in the child's coordinates, and its view was asked already.
gboolean onPointer(GtkWidget* widget, const GdkEvent* event) {
  if (event->any.window != gtk_widget_get_window(widget)) return TRUE;
  if (ViewWidgetOwner* owner = self(widget)->owner) guarded([&] { owner->pointerEvent(*event); });
  return TRUE;
}

gboolean onButton(GtkWidget* widget, GdkEventButton* event) {
  return onPointer(widget, reinterpret_cast<GdkEvent*>(event));
}

gboolean onMotion(GtkWidget* widget, GdkEventMotion* event) {
  return onPointer(widget, reinterpret_cast<GdkEvent*>(event));
}

gboolean onCrossing(GtkWidget* widget, GdkEventCrossing* event) {
  return onPointer(widget, reinterpret_cast<GdkEvent*>(event));
}

void onAdd(GtkContainer* container, GtkWidget* child) {
  self(container)->children->push_back(child);
  gtk_widget_set_parent(child, GTK_WIDGET(container));
}

void onRemove(GtkContainer* container, GtkWidget* child) {
  if (std::erase(*self(container)->children, child) > 0) gtk_widget_unparent(child);
}

void onForAll(GtkContainer* container, gboolean, GtkCallback callback, gpointer data) {
  // The callback may remove the child.
  const auto children = *self(container)->children;
  for (GtkWidget* child : children) callback(child, data);
}

GType onChildType(GtkContainer*) { return GTK_TYPE_WIDGET; }

void onFinalize(GObject* object) {
  delete self(object)->children;
  G_OBJECT_CLASS(view_widget_parent_class)->finalize(object);
}

void view_widget_init(ViewWidget* widget) {
  widget->owner = nullptr;
  widget->children = new std::vector<GtkWidget*>;
  gtk_widget_set_has_window(GTK_WIDGET(widget), TRUE);
}

void view_widget_class_init(ViewWidgetClass* klass) {
  G_OBJECT_CLASS(klass)->finalize = onFinalize;
  GtkWidgetClass* const widget = GTK_WIDGET_CLASS(klass);
  widget->realize = onRealize;
  widget->map = onMap;
  widget->size_allocate = onSizeAllocate;
  widget->get_preferred_width = onPreferredSize;
  widget->get_preferred_height = onPreferredSize;
  widget->draw = onDraw;
  widget->button_press_event = onButton;
  widget->button_release_event = onButton;
  widget->motion_notify_event = onMotion;
  widget->enter_notify_event = onCrossing;
  widget->leave_notify_event = onCrossing;
  GtkContainerClass* const container = GTK_CONTAINER_CLASS(klass);
  container->add = onAdd;
  container->remove = onRemove;
  container->forall = onForAll;
  container->child_type = onChildType;
}

}  // namespace

GObjectPtr<GtkWidget> view_widget::make(ViewWidgetOwner& owner) {
  auto* const widget = static_cast<ViewWidget*>(g_object_new(view_widget_get_type(), nullptr));
  widget->owner = &owner;
  return GObjectPtr<GtkWidget>::sink(GTK_WIDGET(widget));
}

void view_widget::forgetOwner(GtkWidget* widget) {
  self(widget)->owner = nullptr;
  setChildren(widget, {});
}

void view_widget::setChildren(GtkWidget* widget, const std::vector<GtkWidget*>& children) {
  const auto present = *self(widget)->children;
  const auto has = [](const std::vector<GtkWidget*>& list, GtkWidget* w) {
    return std::find(list.begin(), list.end(), w) != list.end();
  };
  for (GtkWidget* child : present) {
    if (!has(children, child)) gtk_container_remove(GTK_CONTAINER(widget), child);
  }
  for (GtkWidget* child : children) {
    if (!has(present, child)) gtk_container_add(GTK_CONTAINER(widget), child);
  }
  *self(widget)->children = children;
  restack(widget);
  gtk_widget_queue_allocate(widget);
  gtk_widget_queue_draw(widget);
}

}  // namespace velto
