#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"

namespace velto {

/// A window that a page opens, for as long as it takes to learn how large the page wants it: the engine sets
/// that in the new engine view when it has got it. Nothing is loaded or shown in it, and it has none of the
/// opener's channels. To the page it is a window that was closed when this goes.
class PopupProbe {
 public:
  /// In points; 0 for what the page does not ask for.
  struct WantedSize {
    int width = 0;
    int height = 0;
  };
  /// Called once, in the next turn of the main loop, unless the probe goes before. It may destroy the probe.
  using Found = std::function<void(PopupProbe&, WantedSize)>;

  PopupProbe(WebKitWebView* opener, Found found);
  PopupProbe(const PopupProbe&) = delete;
  PopupProbe& operator=(const PopupProbe&) = delete;
  ~PopupProbe();

  [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

 private:
  static gboolean nextTurn(gpointer self);

  GObjectPtr<WebKitWebView> view_;
  Found found_;
  SignalConnection policy_;
  guint nextTurn_;
};

}  // namespace velto
