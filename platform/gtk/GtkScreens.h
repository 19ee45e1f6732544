#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gdk/gdk.h>

#include "platform/gtk/Edid.h"
#include "platform/gtk/GObject.h"
#include "platform/gtk/ScreenGeometry.h"
#include "platform/ui/Screen.h"

namespace velto {

/// The connected monitors. GDK makes new monitor objects whenever displays change, so none is kept here.
class GtkScreens {
 public:
  /// `changed` is called after each change of the monitors.
  GtkScreens(GdkDisplay* display, std::function<void()> changed);

  /// The primary one first. Empty while all outputs are off or GDK knows of none.
  [[nodiscard]] std::vector<Screen> all() const;
  /// While there is no monitor this is the geometry of the last one.
  [[nodiscard]] ScreenGeometry geometry() const;

 private:
  static void onMonitorsChanged(GdkScreen*, gpointer self);
  [[nodiscard]] GdkMonitor* primary() const;
  [[nodiscard]] Screen describe(GdkMonitor* monitor) const;
  [[nodiscard]] const std::optional<Edid>& edidOf(GdkMonitor* monitor) const;

  GdkDisplay* display_;
  std::function<void()> changed_;
  mutable XRect lastPrimary_;
  /// By output; asking the server for it takes a while.
  mutable std::map<unsigned long, std::optional<Edid>> edids_;
  SignalConnection monitorsChanged_;
  SignalConnection sizeChanged_;
};

}  // namespace velto
