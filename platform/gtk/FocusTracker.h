#pragma once

#include <gtk/gtk.h>

#include "platform/loop/MainQueue.h"
#include "platform/ui/Window.h"

namespace velto {

/// Tells the application which of its windows has the keyboard. While the keyboard wanders from one window of
/// the program to another there is a moment in which none has it; that moment is passed over. A dialog of the
/// program leaves the key window as it is.
class FocusTracker {
 public:
  explicit FocusTracker(MainQueue& queue) : queue_(queue) {}
  FocusTracker(const FocusTracker&) = delete;
  FocusTracker& operator=(const FocusTracker&) = delete;
  ~FocusTracker() { losing_.cancel(); }

  void focusIn(Window& window);
  void focusOut();
  /// The window that has the keyboard or had it last; null when it is gone.
  [[nodiscard]] Window* last() const { return last_.get(); }
  /// The person asked for this window; it is about to have the keyboard.
  void expect(Window& window) { last_ = window; }

 private:
  void checkLost();

  MainQueue& queue_;
  WeakPtr<Window> last_;
  WorkItem losing_;
};

}  // namespace velto
