#pragma once

#include <memory>

#include "app/windows/HovrelPanel.h"
#include "controlbar/ControlBarView.h"
#include "platform/foundation/UserDefaults.h"

namespace velto {

/// Makes what lies over a window's page. Each call may add nothing.
class WindowFurniture {
 public:
  virtual ~WindowFurniture() = default;
  /// The edges that move the window, the corners that resize it, and its close, minimise and zoom dots.
  virtual void addChrome(HovrelPanel& panel, View& container) = 0;
  /// Added to the container and placed; null for a window without a bar. What it remembers is kept in
  /// `preferences`.
  virtual ControlBarView* addControlBar(HovrelPanel& panel, View& container, UserDefaults& preferences) = 0;
  virtual void addZoomIndicator(View& container) = 0;
  /// Shows the page's zoom for a moment in the window's zoom indicator.
  virtual void showZoom(View& container, double zoom) = 0;
};

}  // namespace velto
