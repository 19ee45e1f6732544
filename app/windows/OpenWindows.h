#pragma once

#include <memory>
#include <vector>

#include "app/windows/HovrelPanel.h"
#include "platform/ui/Application.h"

namespace velto {

/// The open windows, oldest first, and their one owner.
class OpenWindows {
 public:
  explicit OpenWindows(const Application& application) : application_(application) {}

  [[nodiscard]] const std::vector<std::unique_ptr<HovrelPanel>>& panels() const { return panels_; }
  [[nodiscard]] bool isEmpty() const { return panels_.empty(); }
  void append(std::unique_ptr<HovrelPanel> panel) { panels_.push_back(std::move(panel)); }
  /// Gives the panel to the caller; null when it is not one of these.
  std::unique_ptr<HovrelPanel> take(const Window& window);

  /// The window that has the keyboard, if it is one of these.
  [[nodiscard]] HovrelPanel* keyPanel() const { return find(application_.keyWindow()); }
  [[nodiscard]] HovrelPanel* find(const Window* window) const;
  /// The panel that shows this web view, or null.
  [[nodiscard]] HovrelPanel* find(const WebView& webView) const;

 private:
  const Application& application_;
  std::vector<std::unique_ptr<HovrelPanel>> panels_;
};

}  // namespace velto
