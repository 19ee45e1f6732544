#include "layouts/Layout.h"

#include <algorithm>

namespace velto {

const LayoutDisplay* Layout::displayOf(const LayoutWindow& window) const {
  if (displays.empty()) return nullptr;
  auto found = std::find_if(displays.begin(), displays.end(),
                            [&](const LayoutDisplay& display) { return display.key == window.displayKey; });
  if (found == displays.end()) {
    found = std::find_if(displays.begin(), displays.end(),
                         [](const LayoutDisplay& display) { return display.isMain; });
  }
  return found == displays.end() ? &displays.front() : &*found;
}

}  // namespace velto
