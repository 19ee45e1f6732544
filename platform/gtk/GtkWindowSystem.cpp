#include "platform/gtk/GtkWindowSystem.h"

#include <algorithm>
#include <utility>

#include "platform/gtk/GObject.h"
#include "platform/gtk/GtkWindowPeer.h"

namespace velto {

namespace {

/// GTK keeps all events from a window whose alert is open, also the wish to close it. A page that shows one
/// alert after the other must not keep its window that way.
void deliver(GdkEvent* event, gpointer) {
  gpointer widget = nullptr;
  if (event->type == GDK_DELETE) gdk_window_get_user_data(event->any.window, &widget);
  if (widget == nullptr || !GTK_IS_WINDOW(widget)) return gtk_main_do_event(event);
  const auto window = GObjectPtr<GtkWidget>::retain(GTK_WIDGET(widget));
  if (gtk_widget_event(window.get(), event) == FALSE) gtk_widget_destroy(window.get());
}

}  // namespace

GtkWindowSystem::GtkWindowSystem(GdkDisplay* display, const Clock& clock, MainQueue& queue,
                                 std::function<void()> stop)
    : display_(display),
      clock_(clock),
      queue_(queue),
      stop_(std::move(stop)),
      focus_(queue),
      screens_(display, [this] {
        for (GtkWindowPeer* peer : peers_) peer->screensChanged();
      }) {
  gdk_event_handler_set(deliver, nullptr, nullptr);
}

GtkWindowSystem::~GtkWindowSystem() {
  gdk_event_handler_set([](GdkEvent* event, gpointer) { gtk_main_do_event(event); }, nullptr, nullptr);
}

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

GtkSheet::Place GtkWindowSystem::placeOf(const Window* window) {
  if (window == nullptr || !window->isVisible() || window->isClosed()) return {};
  return {static_cast<GtkWindowPeer*>(window->peer())->toplevel(), window->level() >= kFloatingWindowLevel,
          window->isKey() || !window->isNonactivating()};
}

template <class Sheet, class Question, class Answer>
SheetId GtkWindowSystem::show(const Question& question, const WeakPtr<Window>& sheetOn,
                              std::function<void(Answer)> completion) {
  const auto open = sheets_.insert(sheets_.end(), {++lastSheet_, nullptr, sheetOn.get()});
  const auto answered = [this, open, done = std::move(completion)](Answer answer) {
    // The dialog is in the middle of its own signal, so it goes later.
    std::shared_ptr<GtkSheet> sheet = std::move(open->sheet);
    sheets_.erase(open);
    queue_.async([sheet, answer, done] {
      if (done) done(answer);
    });
  };
  open->sheet = std::make_unique<Sheet>(question, placeOf(sheetOn.get()), answered);
  return open->id;
}

SheetId GtkWindowSystem::showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) {
  return show<GtkAlert>(alert, sheetOn, std::move(completion));
}

SheetId GtkWindowSystem::showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn,
                                       OpenPanelCompletion completion) {
  return show<GtkOpenPanel>(panel, sheetOn, std::move(completion));
}

void GtkWindowSystem::dismissSheet(SheetId sheet) {
  const auto found = std::find_if(sheets_.begin(), sheets_.end(),
                                  [sheet](const OpenSheet& open) { return open.id == sheet; });
  if (found != sheets_.end()) found->sheet->dismiss();
}

void GtkWindowSystem::windowGone(const Window& window) {
  std::vector<GtkSheet*> over;
  for (const OpenSheet& open : sheets_) {
    if (open.window == &window) over.push_back(open.sheet.get());
  }
  for (GtkSheet* sheet : over) sheet->dismiss();
}

bool GtkWindowSystem::prefersReducedMotion() const {
  gboolean animations = TRUE;
  g_object_get(gtk_settings_get_for_screen(gdk_display_get_default_screen(display_)), "gtk-enable-animations",
               &animations, nullptr);
  return animations == FALSE;
}

}  // namespace velto
