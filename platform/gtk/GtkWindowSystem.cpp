#include "platform/gtk/GtkWindowSystem.h"

#include <algorithm>
#include <utility>

#include "platform/gtk/GtkWindowPeer.h"

namespace velto {

GtkWindowSystem::GtkWindowSystem(GdkDisplay* display, const Clock& clock, MainQueue& queue,
                                 std::function<void()> stop)
    : display_(display),
      clock_(clock),
      queue_(queue),
      stop_(std::move(stop)),
      focus_(queue),
      screens_(display, [this] {
        for (GtkWindowPeer* peer : peers_) peer->screensChanged();
      }) {}

GtkWindowSystem::~GtkWindowSystem() = default;

std::unique_ptr<WindowPeer> GtkWindowSystem::makePeer(Window& window) {
  return std::make_unique<GtkWindowPeer>(window, *this);
}

void GtkWindowSystem::peerRemoved(GtkWindowPeer& peer, const Window& window) {
  std::erase(peers_, &peer);
  windowGone(window);
}

void GtkWindowSystem::activate() {
  Window* const last = focus_.last();
  if (last != nullptr && static_cast<GtkWindowPeer*>(last->peer())->activate()) return;
  static_cast<void>(std::any_of(peers_.rbegin(), peers_.rend(), [](GtkWindowPeer* peer) {
    return !peer->isNonactivating() && peer->activate();
  }));
}

void GtkWindowSystem::showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) {
  const Window* const window = sheetOn.get();
  const bool onScreen = window != nullptr && window->isVisible() && !window->isClosed();
  GtkWindow* const parent = onScreen ? static_cast<GtkWindowPeer*>(window->peer())->toplevel() : nullptr;
  const bool keepAbove = onScreen && window->level() >= kFloatingWindowLevel;
  const bool mayTakeFocus = !onScreen || window->isKey() || !window->isNonactivating();

  const auto open = alerts_.insert(alerts_.end(), {nullptr, window});
  const auto answered = [this, open, done = std::move(completion)](const AlertAnswer& answer) {
    finishAlert(open, answer, done);
  };
  open->alert = std::make_unique<GtkAlert>(alert, parent, keepAbove, mayTakeFocus, answered);
}

void GtkWindowSystem::finishAlert(std::list<OpenAlert>::iterator open, const AlertAnswer& answer,
                                  AlertCompletion completion) {
  // The dialog is in the middle of its own signal, so it goes later.
  std::shared_ptr<GtkAlert> dialog = std::move(open->alert);
  alerts_.erase(open);
  queue_.async([dialog, answer, done = std::move(completion)] {
    if (done) done(answer);
  });
}

void GtkWindowSystem::windowGone(const Window& window) {
  std::vector<GtkAlert*> over;
  for (const OpenAlert& open : alerts_) {
    if (open.window == &window) over.push_back(open.alert.get());
  }
  for (GtkAlert* alert : over) alert->dismiss();
}

bool GtkWindowSystem::prefersReducedMotion() const {
  gboolean animations = TRUE;
  g_object_get(gtk_settings_get_for_screen(gdk_display_get_default_screen(display_)), "gtk-enable-animations",
               &animations, nullptr);
  return animations == FALSE;
}

}  // namespace velto
