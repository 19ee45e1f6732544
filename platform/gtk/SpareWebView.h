#pragma once

#include <functional>

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/loop/MainQueue.h"

namespace velto {

/// One engine view whose process has started and has painted an empty page, so that the next window need not
/// wait for either. When it is taken it has no parent, and nothing to go back to.
///
/// The painting is done in a window off the screen. The spare is made while nothing else is going on: some
/// time after the last of the events that this is told of.
class SpareWebView {
 public:
  SpareWebView(MainQueue& queue, std::function<GObjectPtr<WebKitWebView>()> make);
  SpareWebView(const SpareWebView&) = delete;
  SpareWebView& operator=(const SpareWebView&) = delete;
  ~SpareWebView();

  /// Makes one when there has been no such call for `seconds`, unless there is one.
  void prepareAfter(double seconds);
  /// The spare, or null when there is none that is ready.
  [[nodiscard]] GObjectPtr<WebKitWebView> take();

 private:
  [[nodiscard]] GObjectPtr<WebKitWebView> release();
  void prepare();
  static void processTerminated(WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self);

  MainQueue& queue_;
  std::function<GObjectPtr<WebKitWebView>()> make_;
  GObjectPtr<WebKitWebView> view_;
  GObjectPtr<GtkWidget> offscreen_;
  SignalConnection terminated_;
  WorkItem wakeUp_;
};

}  // namespace velto
