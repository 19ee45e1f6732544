#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "platform/gtk/GObject.h"
#include "platform/ui/Window.h"

namespace velto {

/// How much of a window is seen and takes the pointer: its alpha, what shows through it, and whether the
/// pointer does.
///
/// A compositor mixes windows. Without one a window that is not opaque is cut down to what its views draw,
/// and every window at alpha 0 to nothing. Whether a window is opaque is settled when it is first shown.
class WindowShape {
 public:
  WindowShape(GtkWindow* toplevel, Window& window);
  WindowShape(const WindowShape&) = delete;
  WindowShape& operator=(const WindowShape&) = delete;

  /// The window's attributes changed.
  void attributesChanged();
  /// The window's size or what it draws changed, or it is about to be shown.
  void update();

 private:
  struct FreeRegion {
    void operator()(cairo_region_t* region) const { cairo_region_destroy(region); }
  };
  using Region = std::unique_ptr<cairo_region_t, FreeRegion>;

  static gboolean onMap(GtkWidget*, GdkEvent*, gpointer self);
  static gboolean onDraw(GtkWidget*, cairo_t*, gpointer self);
  static void onCompositedChanged(GdkScreen*, gpointer self);
  void prepare();
  void shapeInput();
  /// Null for the whole window.
  [[nodiscard]] Region wanted() const;
  [[nodiscard]] Region drawn() const;

  GtkWindow* toplevel_;
  Window& window_;
  Region shown_;
  double alpha_ = 1;
  bool ignoresMouse_ = false;
  SignalConnection draw_;
  SignalConnection map_;
  SignalConnection composited_;
};

}  // namespace velto
