#pragma once

#include <vector>

#include <gtk/gtk.h>

#include "platform/gtk/GObject.h"

namespace velto {

/// What a `ViewWidget` asks of the view that it stands for.
class ViewWidgetOwner {
 public:
  virtual ~ViewWidgetOwner() = default;
  /// In the widget's own coordinates, y downwards, under the children.
  virtual void drawWidget(cairo_t* context) = 0;
  /// A pointer event on the widget itself.
  virtual void pointerEvent(const GdkEvent& event) = 0;
  /// Where the child belongs, relative to the widget.
  virtual GtkAllocation placeOf(GtkWidget* child) = 0;
  /// The widget has its `GdkWindow` now.
  virtual void widgetRealized() = 0;
};

/// A container that asks for no size of its own and puts its children wherever its owner says, the later
/// above the earlier. It has a `GdkWindow` of its own, so that what lies above takes the pointer first.
namespace view_widget {

/// The owner must outlive the widget or call `forgetOwner`.
GObjectPtr<GtkWidget> make(ViewWidgetOwner& owner);
/// Lets go of the owner and of the children, which live on.
void forgetOwner(GtkWidget* widget);
void setChildren(GtkWidget* widget, const std::vector<GtkWidget*>& children);

}  // namespace view_widget

}  // namespace velto
