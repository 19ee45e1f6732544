#pragma once

#include <string>

#include "platform/ui/Window.h"

namespace velto {

/// The short message on the screen, for what needs no answer.
class Toasts {
 public:
  virtual ~Toasts() = default;
  /// Over the screen of the window, else of the key window. From any thread; off the main thread the window
  /// is ignored, since it may be gone before the text is shown.
  virtual void show(const std::string& text, const Window* window) = 0;
  void show(const std::string& text) { show(text, nullptr); }
};

}  // namespace velto
