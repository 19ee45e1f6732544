#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "platform/Platform.h"
#include "platform/foundation/PosixFileManager.h"
#include "platform/gtk/GlibMainQueue.h"
#include "platform/gtk/GtkWebEngine.h"
#include "platform/gtk/GtkWindowSystem.h"
#include "platform/gtk/SystemClock.h"
#include "platform/gtk/ThreadPool.h"

namespace velto {

/// Everything that the application stands on, on a desktop: GTK 3 on X11, and WebKitGTK. One for each
/// process, made on the main thread; windows and web views must be gone before it.
class GtkPlatform {
 public:
  /// Throws `std::runtime_error`, worded for the person, when there is no display. For `ownSchemes` see
  /// `GtkWebEngine`.
  GtkPlatform(Environment environment, std::vector<std::string> ownSchemes);
  ~GtkPlatform();
  GtkPlatform(const GtkPlatform&) = delete;
  GtkPlatform& operator=(const GtkPlatform&) = delete;

  [[nodiscard]] Platform& platform() { return platform_; }
  [[nodiscard]] GtkWindowSystem& windowSystem() { return windowSystem_; }

  /// Runs the loop until the application terminates. The signals that ask a program to end terminate it.
  void run();
  /// One turn of the loop: waits until there is something to do, and does it.
  void runOnce();

 private:
  struct Unref {
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
  };
  static gboolean onSignal(gpointer self);
  void stop();

  Environment environment_;
  GdkDisplay* display_;
  std::unique_ptr<GMainLoop, Unref> loop_;
  bool stopped_ = false;
  SystemClock clock_;
  GlibMainQueue queue_;
  PosixFileManager files_;
  UserDefaults defaults_;
  NotificationCenter notifications_;
  GtkWindowSystem windowSystem_;
  Application application_;
  GtkWebEngine webEngine_;
  /// Ends before everything that its work may hold.
  ThreadPool pool_;
  Platform platform_;
  std::array<guint, 3> signals_;
};

}  // namespace velto
