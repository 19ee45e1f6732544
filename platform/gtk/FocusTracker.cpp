#include "platform/gtk/FocusTracker.h"

#include <memory>

#include "platform/gtk/GObject.h"
#include "platform/ui/Application.h"

namespace velto {

namespace {

constexpr double kPassingMoment = 0.05;

struct FreeList {
  void operator()(GList* list) const { g_list_free(list); }
};

bool anyToplevelIsActive() {
  const std::unique_ptr<GList, FreeList> toplevels(gtk_window_list_toplevels());
  for (const GList* at = toplevels.get(); at != nullptr; at = at->next) {
    if (gtk_window_is_active(GTK_WINDOW(at->data)) != FALSE) return true;
  }
  return false;
}

}  // namespace

void FocusTracker::focusIn(Window& window) {
  losing_.cancel();
  if (window.isClosed()) return;
  last_ = window;
  window.application().keyWindowChanged(&window);
}

void FocusTracker::focusOut() {
  losing_.cancel();
  losing_ = queue_.after(kPassingMoment, [this] { checkLost(); });
}

void FocusTracker::checkLost() {
  if (last_ && !anyToplevelIsActive()) last_->application().keyWindowChanged(nullptr);
}

}  // namespace velto
