#include "platform/gtk/GtkWebView.h"

#include <utility>

#include "platform/gtk/GtkWebEngine.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/PageSettings.h"
#include "platform/gtk/SchemeTask.h"
#include "platform/gtk/ScriptValue.h"
#include "platform/gtk/Snapshot.h"

namespace velto {

namespace {

constexpr const char* kOwnerKey = "velto-web-view";

/// The address as the engine writes it.
std::string engineSpelling(const std::string& uri) {
  const auto request = GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(uri.c_str()));
  return textOf(webkit_uri_request_get_uri(request.get()));
}

void scriptEvaluated(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<WebView::ScriptCompletion> completion(static_cast<WebView::ScriptCompletion*>(data));
  GErrorPtr error;
  const auto value = GObjectPtr<JSCValue>::adopt(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, error.out()));
  guarded([&] { (*completion)(readScriptValue(value.get()).json); });
}

struct PendingSnapshot {
  double width = 0;
  std::function<void(std::optional<std::string>)> completion;
};

void snapshotTaken(GObject* view, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<PendingSnapshot> pending(static_cast<PendingSnapshot*>(data));
  GErrorPtr error;
  cairo_surface_t* picture = webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, error.out());
  guarded([&] { pending->completion(picture == nullptr ? std::nullopt : pngOf(picture, pending->width)); });
  if (picture != nullptr) cairo_surface_destroy(picture);
}

}  // namespace

GtkWebView::GtkWebView(GtkWebEngine& engine, std::shared_ptr<GtkDataStore> store,
                       GObjectPtr<WebKitWebView> engineView, const Rect& frame,
                       WebViewConfiguration configuration)
    : WebView(frame),
      clock_(engine.clock()),
      queue_(engine.queue()),
      store_(std::move(store)),
      view_(std::move(engineView)),
      configuration_(std::move(configuration)),
      navigations_(engine, *this, view_.get()),
      requests_(engine.queue(), *this, view_.get()),
      scripts_(engine, *this, view_.get(), configuration_.userContentController),
      eventReceived_(view_.get(), "event", G_CALLBACK(eventReceived), this),
      drawAsked_(view_.get(), "draw", G_CALLBACK(drawAsked), this) {
  g_object_set_data(G_OBJECT(view_.get()), kOwnerKey, this);
  applySettings(view_.get(), configuration_);
  gtk_widget_show(nativeWidget());
}

GtkWebView::~GtkWebView() {
  invalidateWeakReferences();
  navigations_.disconnect();
  requests_.disconnect();
  g_object_set_data(G_OBJECT(view_.get()), kOwnerKey, nullptr);
  // Ends the page, which answers what is still asked of it.
  gtk_widget_destroy(nativeWidget());
}

GtkWebView* GtkWebView::of(WebKitWebView* engineView) {
  if (engineView == nullptr) return nullptr;
  return static_cast<GtkWebView*>(g_object_get_data(G_OBJECT(engineView), kOwnerKey));
}

gboolean GtkWebView::eventReceived(GtkWidget*, GdkEvent* event, gpointer data) {
  if (event->type == GDK_BUTTON_PRESS || event->type == GDK_KEY_PRESS || event->type == GDK_TOUCH_BEGIN) {
    auto* const self = static_cast<GtkWebView*>(data);
    self->lastUserGesture_ = self->clock_.uptime();
  }
  return FALSE;
}

/// While the page's process starts the engine would wait for it, half a second, with everything else. There
/// is nothing to draw yet but the white of an empty page.
gboolean GtkWebView::drawAsked(GtkWidget*, cairo_t* context, gpointer data) {
  if (!static_cast<GtkWebView*>(data)->navigations_.awaitsProcess()) return FALSE;
  cairo_set_source_rgb(context, 1, 1, 1);
  cairo_paint(context);
  return TRUE;
}

std::optional<Navigation> GtkWebView::load(const UrlRequest& request) {
  // A script is no page to go to.
  if (request.url.lowercasedScheme() == "javascript") return std::nullopt;
  const auto engineRequest =
      GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.absoluteString().c_str()));
  const std::string uri = textOf(webkit_uri_request_get_uri(engineRequest.get()));
  std::optional<Navigation> navigation;
  if (!navigations_.staysInDocument(uri)) {
    navigation = navigations_.request(NavigationTracker::Kind::load, uri);
    navigations_.limit(*navigation, request.timeout, request.url);
  }
  navigations_.ask(
      [view = view_, engineRequest] { webkit_web_view_load_request(view.get(), engineRequest.get()); });
  return navigation;
}

std::optional<Navigation> GtkWebView::loadHtml(std::string_view html, const std::optional<Url>& baseUrl) {
  const std::string base = baseUrl ? baseUrl->absoluteString() : "about:blank";
  const auto navigation = navigations_.request(NavigationTracker::Kind::load, engineSpelling(base));
  navigations_.ask([view = view_, text = std::string(html), base] {
    webkit_web_view_load_html(view.get(), text.c_str(), base.c_str());
  });
  return navigation;
}

std::optional<Navigation> GtkWebView::loadSubstitute(std::string_view html, const Url& address) {
  const std::string& uri = address.absoluteString();
  const auto navigation = navigations_.request(NavigationTracker::Kind::substitute, uri);
  navigations_.ask([view = view_, text = std::string(html), uri] {
    // Without a base a link to the address leads out of the text, also one with a fragment.
    webkit_web_view_load_alternate_html(view.get(), text.c_str(), uri.c_str(), nullptr);
  });
  return navigation;
}

std::optional<Navigation> GtkWebView::reload() {
  const std::string uri = textOf(webkit_web_view_get_uri(view_.get()));
  if (uri.empty()) return std::nullopt;
  const auto navigation = navigations_.request(NavigationTracker::Kind::reload, uri);
  navigations_.ask([view = view_] { webkit_web_view_reload(view.get()); });
  return navigation;
}

std::optional<Navigation> GtkWebView::goBack() { return goTo(-1); }

std::optional<Navigation> GtkWebView::goForward() { return goTo(1); }

std::optional<Navigation> GtkWebView::goTo(int distance) {
  WebKitBackForwardList* list = webkit_web_view_get_back_forward_list(view_.get());
  WebKitBackForwardListItem* item = webkit_back_forward_list_get_nth_item(list, distance);
  if (item == nullptr) return std::nullopt;
  const std::string uri = textOf(webkit_back_forward_list_item_get_uri(item));
  std::optional<Navigation> navigation;
  if (!navigations_.staysInDocument(uri))
    navigation = navigations_.request(NavigationTracker::Kind::history, uri);
  navigations_.ask([view = view_, item = GObjectPtr<WebKitBackForwardListItem>::retain(item)] {
    webkit_web_view_go_to_back_forward_list_item(view.get(), item.get());
  });
  return navigation;
}

void GtkWebView::stopLoading() {
  navigations_.withdraw();
  webkit_web_view_stop_loading(view_.get());
}

std::optional<Url> GtkWebView::url() const { return Url::parse(navigations_.uri()); }

std::string GtkWebView::title() const { return textOf(webkit_web_view_get_title(view_.get())); }

void GtkWebView::evaluateJavaScript(std::string_view script, ScriptCompletion completion) {
  auto* pending = completion ? new ScriptCompletion(std::move(completion)) : nullptr;
  webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr,
                                      nullptr, nullptr, pending == nullptr ? nullptr : scriptEvaluated,
                                      pending);
}

void GtkWebView::takeSnapshot(double width, std::function<void(std::optional<std::string>)> completion) {
  if (!navigations_.hasPage()) {
    queue_.async([completion = std::move(completion)] { completion(std::nullopt); });
    return;
  }
  auto pending = std::make_unique<PendingSnapshot>(PendingSnapshot{width, std::move(completion)});
  webkit_web_view_get_snapshot(view_.get(), WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE,
                               nullptr, snapshotTaken, pending.release());
}

bool GtkWebView::startSchemeTask(WebKitURISchemeRequest* request) {
  const auto found =
      configuration_.urlSchemeHandlers.find(textOf(webkit_uri_scheme_request_get_scheme(request)));
  if (found == configuration_.urlSchemeHandlers.end()) return false;
  // The handler may close the web view.
  const std::shared_ptr<UrlSchemeHandler> handler = found->second;
  auto mainDocument = navigations_.documentThatAsksFor(textOf(webkit_uri_scheme_request_get_uri(request)));
  handler->startTask(*this, std::make_unique<SchemeTask>(GObjectPtr<WebKitURISchemeRequest>::retain(request),
                                                         std::move(mainDocument)));
  return true;
}

}  // namespace velto
