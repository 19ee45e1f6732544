#pragma once

#include <functional>
#include <list>
#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "platform/gtk/FocusTracker.h"
#include "platform/gtk/GtkAlert.h"
#include "platform/gtk/GtkOpenPanel.h"
#include "platform/gtk/GtkScreens.h"
#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"
#include "platform/ui/Application.h"

namespace velto {

class GtkWindowPeer;

/// All windows and alerts of the program on an X display. GTK must have been started.
class GtkWindowSystem final : public WindowSystem {
 public:
  /// `stop` ends the run of the loop.
  GtkWindowSystem(GdkDisplay* display, const Clock& clock, MainQueue& queue, std::function<void()> stop);
  ~GtkWindowSystem() override;
  GtkWindowSystem(const GtkWindowSystem&) = delete;
  GtkWindowSystem& operator=(const GtkWindowSystem&) = delete;

  [[nodiscard]] std::unique_ptr<WindowPeer> makePeer(Window& window) override;
  [[nodiscard]] std::vector<Screen> screens() const override { return screens_.all(); }
  void activate() override;
  SheetId showAlert(const Alert& alert, WeakPtr<Window> sheetOn, AlertCompletion completion) override;
  SheetId showOpenPanel(const OpenPanel& panel, WeakPtr<Window> sheetOn,
                        OpenPanelCompletion completion) override;
  void dismissSheet(SheetId sheet) override;
  [[nodiscard]] bool prefersReducedMotion() const override;
  void beep() override { gdk_display_beep(display_); }
  void stop() override { stop_(); }

  /// @name What waits for an answer and was shown first, or null. For driving the program from within.
  /// @{
  [[nodiscard]] GtkAlert* oldestAlert() const { return oldest<GtkAlert>(); }
  [[nodiscard]] GtkOpenPanel* oldestOpenPanel() const { return oldest<GtkOpenPanel>(); }
  /// @}

  /// @name For the windows' peers
  /// @{
  [[nodiscard]] const GtkScreens& gtkScreens() const { return screens_; }
  [[nodiscard]] const Clock& clock() const { return clock_; }
  [[nodiscard]] MainQueue& queue() const { return queue_; }
  [[nodiscard]] FocusTracker& focus() { return focus_; }
  void peerAdded(GtkWindowPeer& peer) { peers_.push_back(&peer); }
  void peerRemoved(GtkWindowPeer& peer, const Window& window);
  /// The window was closed: its alerts and questions for files are answered.
  void windowGone(const Window& window);
  /// @}

 private:
  struct OpenSheet {
    SheetId id;
    std::unique_ptr<GtkSheet> sheet;
    /// For comparing only.
    const Window* window;
  };
  template <class Sheet, class Question, class Answer>
  SheetId show(const Question& question, const WeakPtr<Window>& sheetOn,
               std::function<void(Answer)> completion);
  [[nodiscard]] static GtkSheet::Place placeOf(const Window* window);
  template <class Sheet>
  [[nodiscard]] Sheet* oldest() const {
    for (const OpenSheet& open : sheets_) {
      if (auto* sheet = dynamic_cast<Sheet*>(open.sheet.get())) return sheet;
    }
    return nullptr;
  }

  GdkDisplay* display_;
  const Clock& clock_;
  MainQueue& queue_;
  std::function<void()> stop_;
  std::vector<GtkWindowPeer*> peers_;
  FocusTracker focus_;
  std::list<OpenSheet> sheets_;
  SheetId lastSheet_ = 0;
  GtkScreens screens_;
};

}  // namespace velto
