#pragma once

#include <gtk/gtk.h>

namespace velto {

/// A view that brings a widget of its own instead of being drawn. The view owns the widget (its floating
/// reference is sunk); the view tree only puts it into its place and takes it out again.
class NativeWidgetView {
 public:
  virtual ~NativeWidgetView() = default;
  /// The same widget for the view's whole life.
  virtual GtkWidget* nativeWidget() = 0;
};

}  // namespace velto
