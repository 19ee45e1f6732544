#pragma once

#include <memory>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/foundation/WeakPtr.h"
#include "platform/gtk/GObject.h"
#include "platform/gtk/PopupProbe.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebView.h"

namespace velto {

/// Puts what a page asks of the person or of the desktop to the web view's UI delegate: its dialogs, windows
/// and files. The camera and other devices, notifications and printing are refused. Whether a page may be
/// left is the `NavigationReporter`'s question.
class PageRequests final : public Weakable {
 public:
  /// All three outlive it.
  PageRequests(MainQueue& queue, WebView& webView, WebKitWebView* view);
  PageRequests(const PageRequests&) = delete;
  PageRequests& operator=(const PageRequests&) = delete;
  ~PageRequests() { disconnect(); }

  /// Asks nothing from now on.
  void disconnect();

 private:
  void refuseTheRest();
  bool runScriptDialog(WebKitScriptDialog* dialog);
  void confirm(WebKitScriptDialog* dialog);
  void prompt(WebKitScriptDialog* dialog);
  /// The engine view of a window that is closed soon, or null for none at all.
  GtkWidget* openWindow(WebKitNavigationAction* action);
  [[nodiscard]] bool mayProbe();
  void tellOfWindow(const PageWindowRequest& request);
  void chooseFiles(WebKitFileChooserRequest* request);

  MainQueue& queue_;
  WebView& webView_;
  WebKitWebView* view_;
  std::vector<std::unique_ptr<PopupProbe>> probes_;
  /// Since `nextSecond_` was queued.
  int probesMade_ = 0;
  WorkItem nextSecond_;
  std::vector<SignalConnection> connections_;
};

}  // namespace velto
