#include "app/windows/OpenWindows.h"

#include <algorithm>

namespace velto {

std::unique_ptr<HovrelPanel> OpenWindows::take(const Window& window) {
  const auto found =
      std::find_if(panels_.begin(), panels_.end(), [&](const auto& panel) { return panel.get() == &window; });
  if (found == panels_.end()) return nullptr;
  auto taken = std::move(*found);
  panels_.erase(found);
  return taken;
}

HovrelPanel* OpenWindows::find(const Window* window) const {
  for (const auto& panel : panels_) {
    if (panel.get() == window) return panel.get();
  }
  return nullptr;
}

HovrelPanel* OpenWindows::find(const WebView& webView) const { return find(webView.window()); }

}  // namespace velto
