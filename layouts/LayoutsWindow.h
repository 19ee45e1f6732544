#pragma once

namespace velto {

/// Where the person sees all layouts.
class LayoutsWindow {
 public:
  virtual ~LayoutsWindow() = default;
  virtual void showLayouts() = 0;
};

}  // namespace velto
