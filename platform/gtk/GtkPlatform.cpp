#include "platform/gtk/GtkPlatform.h"

#include <clocale>
#include <csignal>
#include <stdexcept>
#include <utility>

#include <glib-unix.h>

#include "platform/gtk/Guard.h"

namespace velto {

namespace {

GdkDisplay* openDisplay(const Environment& environment) {
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
      webEngine_(queue_, environment_, std::move(ownSchemes)),
      platform_{environment_, clock_,         queue_,       pool_,     files_,
                defaults_,    notifications_, application_, webEngine_},
      signals_{g_unix_signal_add(SIGTERM, onSignal, this), g_unix_signal_add(SIGINT, onSignal, this),
               g_unix_signal_add(SIGHUP, onSignal, this)} {}

GtkPlatform::~GtkPlatform() {
  for (const guint signal : signals_) g_source_remove(signal);
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
