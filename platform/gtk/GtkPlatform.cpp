#include "platform/gtk/GtkPlatform.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <glib-unix.h>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

/// Whether there is a graphics processor to draw with.
bool hasRenderNode() {
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", none)) {
    if (entry.path().filename().string().starts_with("renderD")) return true;
  }
  return false;
}

/// Spares the engine and its processes what cannot succeed on this machine. What the person has set stays.
void tellEngineWhatIsMissing(const Environment& environment) {
  constexpr int kKeep = 0;
  // Otherwise a bus is searched for, and one is started, for as long as a person notices.
  const auto runtime = environment.variable("XDG_RUNTIME_DIR");
  std::error_code none;
  if (!runtime || !std::filesystem::exists(*runtime + "/bus", none)) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", kKeep);
    // The file chooser keeps its own settings, by way of the bus.
    setenv("GSETTINGS_BACKEND", "memory", kKeep);
  }
  // Pages are painted by the processor then; 3D transforms and WebGL go on to work.
  if (!hasRenderNode()) setenv("WEBKIT_SKIA_ENABLE_CPU_RENDERING", "1", kKeep);
}

GdkDisplay* openDisplay(const Environment& environment) {
  tellEngineWhatIsMissing(environment);
  // Only X11 lets a program place its own windows.
  gdk_set_allowed_backends("x11");
  g_set_prgname("velto");
  g_set_application_name("Velto");
  gdk_set_program_class("Velto");
  if (gtk_init_check(nullptr, nullptr) == FALSE) {
    const auto display = environment.variable("DISPLAY");
    throw std::runtime_error(
        display && !display->empty()
            ? "The display \"" + *display + "\" cannot be opened. Start Velto from a desktop session."
            : "There is no display to open a window on. Start Velto from a desktop session, or set DISPLAY.");
  }
  // GTK takes the person's locale over; numbers in files and scripts have a point all the same.
  std::setlocale(LC_NUMERIC, "C");
  gtk_window_set_default_icon_name("velto");
  return gdk_display_get_default();
}

}  // namespace

GtkPlatform::GtkPlatform(Environment environment, std::vector<std::string> ownSchemes)
    : environment_(std::move(environment)),
      display_(openDisplay(environment_)),
      loop_(g_main_loop_new(nullptr, FALSE)),
      defaults_(files_, environment_.preferencesDirectory / "com.hovrel.extension.plist"),
      windowSystem_(display_, clock_, queue_, [this] { stop(); }),
      application_(windowSystem_),
      webEngine_(clock_, queue_, pool_, files_, environment_, std::move(ownSchemes)),
      platform_{environment_, clock_,         queue_,       pool_,     files_,
                defaults_,    notifications_, application_, webEngine_},
      signals_{g_unix_signal_add(SIGTERM, onSignal, this), g_unix_signal_add(SIGINT, onSignal, this),
               g_unix_signal_add(SIGHUP, onSignal, this)} {}

GtkPlatform::~GtkPlatform() {
  for (const guint signal : signals_) g_source_remove(signal);
  queue_.discard();
}

void GtkPlatform::run() {
  if (!stopped_) g_main_loop_run(loop_.get());
}

void GtkPlatform::runOnce() { g_main_context_iteration(nullptr, TRUE); }

void GtkPlatform::stop() {
  stopped_ = true;
  g_main_loop_quit(loop_.get());
}

gboolean GtkPlatform::onSignal(gpointer self) {
  guarded([&] { static_cast<GtkPlatform*>(self)->application_.terminate(); });
  return G_SOURCE_CONTINUE;
}

}  // namespace velto
