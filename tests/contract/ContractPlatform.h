#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#ifdef VELTO_CONTRACT_HEADLESS
#include "platform/headless/HeadlessPlatform.h"
#else
#include <stdlib.h>

#include "platform/gtk/GtkPlatform.h"
#include "platform/gtk/GtkWindowPeer.h"
#endif

namespace velto::test {

#ifdef VELTO_CONTRACT_HEADLESS

/// The platform of one test, and the hands of a person. Headless: in virtual time.
class ContractPlatform {
 public:
  ContractPlatform() {
    headless_.onFailure = [](const std::string& failure) { ADD_FAILURE() << failure; };
  }

  [[nodiscard]] Platform& platform() { return headless_.platform(); }

  /// False when the time is over first.
  bool runUntil(const std::function<bool()>& condition, double timeoutSeconds = 10) {
    constexpr double kStep = 0.005;
    for (double waited = 0; waited <= timeoutSeconds; waited += kStep) {
      headless_.loop().drain();
      if (condition()) return true;
      headless_.advance(kStep);
    }
    return condition();
  }

  /// Gives what should not happen the time to happen.
  void letPass(double seconds) {
    static_cast<void>(runUntil([] { return false; }, seconds));
  }

  /// The thread does something else; callable from within work.
  void beBusy(double seconds) { headless_.loop().jump(seconds); }

  /// Answers the alert that was shown first.
  void answerAlert(std::size_t button, const std::optional<std::string>& text = std::nullopt) {
    headless_.windowSystem().answerAlert(button, text);
  }

  /// Answers the question for files that was shown first; without files it is cancelled.
  void answerOpenPanel(const std::optional<std::vector<std::filesystem::path>>& files) {
    headless_.windowSystem().answerOpenPanel(files);
  }

  /// The point is in the window's content.
  void movePointer(Window& window, Point point) { headless_.input().moveMouse(window, point); }
  /// Of the button; the window's content gets it.
  void press(Window& window, Point point, int button) {
    headless_.input().press(window, point, {button, 1, {}});
  }
  void release(Window& window, Point point, int) { headless_.input().release(window, point); }

 private:
  HeadlessPlatform headless_;
};

#else

/// The button goes down or up over the widget.
inline void sendButton(GtkWidget* widget, Point point, int button, GdkEventType type) {
  GdkEvent* const event = gdk_event_new(type);
  event->button.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(widget)));
  event->button.send_event = TRUE;
  event->button.x = point.x;
  event->button.y = point.y;
  event->button.button = static_cast<guint>(button);
  gdk_event_set_device(event, gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default())));
  gtk_widget_event(widget, event);
  gdk_event_free(event);
}

/// The platform of all tests of the process, and the hands of a person. It needs a display with a window
/// manager.
class ContractPlatform {
 public:
  [[nodiscard]] Platform& platform() { return gtk().platform(); }

  /// False when the time is over first.
  bool runUntil(const std::function<bool()>& condition, double timeoutSeconds = 10) {
    bool late = false;
    WorkItem deadline = platform().mainQueue.after(timeoutSeconds, [&late] { late = true; });
    while (!condition() && !late) gtk().runOnce();
    deadline.cancel();
    return condition();
  }

  /// Gives what should not happen the time to happen.
  void letPass(double seconds) {
    static_cast<void>(runUntil([] { return false; }, seconds));
  }

  /// The thread does something else; callable from within work.
  void beBusy(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

  /// Answers the alert that was shown first.
  void answerAlert(std::size_t button, const std::optional<std::string>& text = std::nullopt) {
    GtkAlert* const alert = gtk().windowSystem().oldestAlert();
    ASSERT_NE(alert, nullptr) << "no alert is shown";
    if (text) alert->type(*text);
    ASSERT_TRUE(alert->click(button)) << "no button " << button;
  }

  /// Answers the question for files that was shown first; without files it is cancelled.
  void answerOpenPanel(const std::optional<std::vector<std::filesystem::path>>& files) {
    GtkOpenPanel* const panel = gtk().windowSystem().oldestOpenPanel();
    ASSERT_NE(panel, nullptr) << "no question for files is shown";
    if (files) {
      panel->choose(*files);
    } else {
      panel->dismiss();
    }
  }

  /// The point is in the window's content.
  void movePointer(Window& window, Point point) {
    const Rect screen = platform().application.mainScreen()->frame;
    GdkDisplay* const display = gdk_display_get_default();
    gdk_device_warp(gdk_seat_get_pointer(gdk_display_get_default_seat(display)),
                    gdk_display_get_default_screen(display),
                    static_cast<int>(window.frame().minX() + point.x),
                    static_cast<int>(screen.maxY() - window.frame().minY() - point.y));
  }
  /// Of the button; the window's content gets it.
  void press(Window& window, Point point, int button) { click(window, point, button, GDK_BUTTON_PRESS); }
  void release(Window& window, Point point, int button) { click(window, point, button, GDK_BUTTON_RELEASE); }

 private:
  static void click(Window& window, Point point, int button, GdkEventType type) {
    GtkWindow* const toplevel = static_cast<GtkWindowPeer*>(window.peer())->toplevel();
    const Point inWidget{point.x, window.frame().size.height - point.y};
    sendButton(gtk_bin_get_child(GTK_BIN(toplevel)), inWidget, button, type);
  }

  /// Folders that go when the process ends, whatever the engine's processes still do there.
  class TemporaryHome {
   public:
    TemporaryHome() {
      std::string name = (std::filesystem::temp_directory_path() / "velto-contract-XXXXXX").string();
      if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
      path = name;
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    ~TemporaryHome() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path path;
  };

  /// Never destroyed: the toolkit cannot be started twice in a process, nor ended.
  static GtkPlatform& gtk() {
    static const TemporaryHome home;
    static GtkPlatform& only = *new GtkPlatform(environment(home.path), {"velto-player", "velto-history"});
    return only;
  }

  static Environment environment(const std::filesystem::path& home) {
    Environment made = readEnvironment(0, nullptr);
    made.resourcesDirectory = std::filesystem::path(VELTO_SOURCE_DIR) / "resources";
    made.applicationSupportDirectory = home / "data";
    made.preferencesDirectory = home / "preferences";
    made.cacheDirectory = home / "cache";
    for (const auto& folder :
         {made.applicationSupportDirectory, made.preferencesDirectory, made.cacheDirectory}) {
      std::filesystem::create_directory(folder);
    }
    return made;
  }
};

#endif

}  // namespace velto::test
