#pragma once

#include "app/windows/OpenWindows.h"
#include "app/windows/WindowFurniture.h"

namespace velto {

/// The zoom commands of the key window's page.
class PageZoom {
 public:
  PageZoom(OpenWindows& windows, WindowFurniture& furniture) : windows_(windows), furniture_(furniture) {}

  void zoomIn();
  void zoomOut();
  void resetZoom();

 private:
  template <class Next>
  void change(Next next);

  OpenWindows& windows_;
  WindowFurniture& furniture_;
};

}  // namespace velto
