#pragma once

#include <memory>
#include <string>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/gtk/GtkDataStore.h"
#include "platform/gtk/NativeWidget.h"
#include "platform/gtk/NavigationReporter.h"
#include "platform/gtk/PageRequests.h"
#include "platform/gtk/ScriptBridge.h"
#include "platform/loop/Clock.h"
#include "platform/web/WebView.h"

namespace velto {

class GtkWebEngine;

/// A web view of WebKitGTK.
class GtkWebView final : public WebView, public NativeWidgetView {
 public:
  /// `engineView` belongs to the store and has shown nothing yet.
  GtkWebView(GtkWebEngine& engine, std::shared_ptr<GtkDataStore> store, GObjectPtr<WebKitWebView> engineView,
             const Rect& frame, WebViewConfiguration configuration);
  ~GtkWebView() override;

  /// The web view that shows itself in the engine view, or null.
  static GtkWebView* of(WebKitWebView* engineView);

  GtkWidget* nativeWidget() override { return GTK_WIDGET(view_.get()); }

  std::optional<Navigation> load(const UrlRequest& request) override;
  std::optional<Navigation> loadHtml(std::string_view html, const std::optional<Url>& baseUrl) override;
  std::optional<Navigation> loadSubstitute(std::string_view html, const Url& address) override;
  std::optional<Navigation> reload() override;
  std::optional<Navigation> goBack() override;
  std::optional<Navigation> goForward() override;
  void stopLoading() override;

  [[nodiscard]] std::optional<Url> url() const override;
  [[nodiscard]] std::string title() const override;
  [[nodiscard]] bool isLoading() const override {
    return navigations_.isWaiting() || webkit_web_view_is_loading(view_.get()) != FALSE;
  }
  [[nodiscard]] bool canGoBack() const override { return webkit_web_view_can_go_back(view_.get()) != FALSE; }
  [[nodiscard]] bool canGoForward() const override {
    return webkit_web_view_can_go_forward(view_.get()) != FALSE;
  }
  [[nodiscard]] bool isResponsive() const override { return navigations_.isResponsive(); }
  [[nodiscard]] std::optional<Uptime> lastUserGesture() const override { return lastUserGesture_; }
  [[nodiscard]] double pageZoom() const override { return webkit_web_view_get_zoom_level(view_.get()); }
  void setPageZoom(double zoom) override { webkit_web_view_set_zoom_level(view_.get(), zoom); }
  void evaluateJavaScript(std::string_view script, ScriptCompletion completion) override;
  void takeSnapshot(double width, std::function<void(std::optional<std::string>)> completion) override;
  [[nodiscard]] const WebViewConfiguration& configuration() const override { return configuration_; }

  /// Hands the request to this view's handler of its scheme; false when there is none.
  bool startSchemeTask(WebKitURISchemeRequest* request);

 private:
  static gboolean eventReceived(GtkWidget*, GdkEvent* event, gpointer self);
  static gboolean drawAsked(GtkWidget*, cairo_t* context, gpointer self);
  [[nodiscard]] std::optional<Navigation> goTo(int distance);

  const Clock& clock_;
  MainQueue& queue_;
  std::shared_ptr<GtkDataStore> store_;
  GObjectPtr<WebKitWebView> view_;
  WebViewConfiguration configuration_;
  NavigationReporter navigations_;
  PageRequests requests_;
  ScriptBridge scripts_;
  std::optional<Uptime> lastUserGesture_;
  SignalConnection eventReceived_;
  SignalConnection drawAsked_;
};

}  // namespace velto
