// barewindow FIFO
//
// The least that shows a page in one more window with this web engine: reads URLs, one to a line, from the
// FIFO and opens each in a window, always with a web view whose web process has been started before. No part
// of Velto: it is what Velto is measured against. Ends when it is told to.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <gtk/gtk.h>
#include <unistd.h>
#include <webkit2/webkit2.h>

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr guint kSpareDelay = 300;  // milliseconds: the window that took the last one is through by then

class BareWindows {
 public:
  void makeSpare() {
    spare_ = WEBKIT_WEB_VIEW(g_object_ref_sink(webkit_web_view_new()));
    webkit_web_view_load_uri(spare_, "about:blank");
  }

  void open(const char* url) {
    if (spare_ == nullptr) makeSpare();
    webkit_web_view_load_uri(spare_, url);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(window), kWidth, kHeight);
    gtk_container_add(GTK_CONTAINER(window), GTK_WIDGET(spare_));
    gtk_widget_show_all(window);
    g_object_unref(spare_);
    spare_ = nullptr;
    g_timeout_add(kSpareDelay, spareIsDue, this);
  }

  void take(int fifo) {
    char bytes[4096];
    const ssize_t count = ::read(fifo, bytes, sizeof bytes);
    if (count <= 0) return;
    pending_.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
      open(pending_.substr(0, end).c_str());
      pending_.erase(0, end + 1);
    }
  }

 private:
  static gboolean spareIsDue(gpointer self) {
    auto* windows = static_cast<BareWindows*>(self);
    if (windows->spare_ == nullptr) windows->makeSpare();
    return G_SOURCE_REMOVE;
  }

  WebKitWebView* spare_ = nullptr;
  std::string pending_;
};

gboolean readable(GIOChannel* channel, GIOCondition, gpointer windows) {
  static_cast<BareWindows*>(windows)->take(g_io_channel_unix_get_fd(channel));
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  // Open for writing too, so that the end of a writer is no end of the file.
  const int fifo = argc == 2 ? ::open(argv[1], O_RDWR | O_CLOEXEC) : -1;
  if (fifo < 0) {
    std::fprintf(stderr, "usage: barewindow FIFO\n");
    return EXIT_FAILURE;
  }
  BareWindows windows;
  windows.makeSpare();
  g_io_add_watch(g_io_channel_unix_new(fifo), G_IO_IN, readable, &windows);
  gtk_main();
}
