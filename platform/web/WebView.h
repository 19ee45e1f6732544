#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/WeakPtr.h"
#include "platform/ui/OpenPanel.h"
#include "platform/ui/View.h"
#include "platform/web/DataStore.h"
#include "platform/web/UrlScheme.h"
#include "platform/web/UserContentController.h"
#include "platform/web/WebTypes.h"

namespace velto {

class WebView;

/// Told how a web view's pages load. Held weakly. The order of one navigation is: did start, did commit, did
/// finish; or did start and did fail provisionally; or did start, did commit and did fail.
///
/// A navigation that the page refused through its `beforeunload` dialog fails provisionally as cancelled.
class NavigationDelegate : public Weakable {
 public:
  virtual ~NavigationDelegate() = default;
  virtual void didStartProvisionalNavigation(WebView& webView, Navigation navigation) = 0;
  virtual void didCommitNavigation(WebView& webView, Navigation navigation) = 0;
  virtual void didFinishNavigation(WebView& webView, Navigation navigation) = 0;
  virtual void didFailProvisionalNavigation(WebView& webView, Navigation navigation,
                                            const WebError& error) = 0;
  virtual void didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) = 0;
  /// The process that ran the page is gone; nothing is shown until the next load, which gets a new process.
  virtual void webContentProcessDidTerminate(WebView& webView) = 0;
  /// The page has not answered the engine for some seconds, or does so again.
  virtual void webContentResponsivenessChanged(WebView& webView, bool responsive) = 0;
};

/// Answers what a page asks of the person or of the desktop. Held weakly. Each completion is called once, at
/// any time, also when the web view is gone by then.
class UIDelegate : public Weakable {
 public:
  virtual ~UIDelegate() = default;
  /// `page` is the page that asks, which is no longer what the web view calls its URL. True leaves it. The
  /// page's own message is not passed on.
  virtual void runBeforeUnloadConfirmPanel(WebView& webView, const std::optional<Url>& page,
                                           std::function<void(bool)> completion) = 0;
  virtual void runJavaScriptAlertPanel(WebView& webView, const std::string& message,
                                       std::function<void()> completion) = 0;
  virtual void runJavaScriptConfirmPanel(WebView& webView, const std::string& message,
                                         std::function<void(bool)> completion) = 0;
  /// An absent answer is a cancelled one.
  virtual void runJavaScriptTextInputPanel(WebView& webView, const std::string& prompt,
                                           const std::string& defaultText,
                                           std::function<void(std::optional<std::string>)> completion) = 0;
  /// The page gets a window that is closed already, and never a link to what is opened in its stead.
  virtual void createWebView(WebView& webView, const PageWindowRequest& request) = 0;
  virtual void runOpenPanel(WebView& webView, const OpenPanel& parameters,
                            OpenPanelCompletion completion) = 0;
};

/// What a web view is made with.
struct WebViewConfiguration {
  std::shared_ptr<UserContentController> userContentController = std::make_shared<UserContentController>();
  /// Null stands for the engine's default, persistent store.
  std::shared_ptr<DataStore> dataStore;
  /// By scheme, for this web view alone. Schemes must be known to the engine (see `WebEngine`).
  std::map<std::string, std::shared_ptr<UrlSchemeHandler>> urlSchemeHandlers;
  bool javaScriptCanOpenWindowsAutomatically = false;
  bool mediaPlaybackRequiresUserAction = true;
  bool allowsAirPlay = false;
  bool inspectable = false;
  bool allowsBackForwardGestures = false;
  /// Empty for the engine's own.
  std::string userAgent;
};

/// A view that shows a web page. Made by a `WebEngine`. Its state is what the engine reported last. Main
/// thread only.
class WebView : public View {
 public:
  using ScriptCompletion = std::function<void(std::optional<JsonValue>)>;
  using View::View;

  void setNavigationDelegate(WeakPtr<NavigationDelegate> delegate) { navigationDelegate_ = delegate; }
  [[nodiscard]] NavigationDelegate* navigationDelegate() const { return navigationDelegate_.get(); }
  void setUIDelegate(WeakPtr<UIDelegate> delegate) { uiDelegate_ = delegate; }
  [[nodiscard]] UIDelegate* uiDelegate() const { return uiDelegate_.get(); }

  /// Each gives the navigation that it started, or nothing when the engine did not take it.
  virtual std::optional<Navigation> load(const UrlRequest& request) = 0;
  virtual std::optional<Navigation> loadHtml(std::string_view html, const std::optional<Url>& baseUrl) = 0;
  /// Shows the text in place of the page at the address, which could not be shown. The web view has that
  /// address then, and a link to it or a reload loads it.
  virtual std::optional<Navigation> loadSubstitute(std::string_view html, const Url& address) = 0;
  virtual std::optional<Navigation> reload() = 0;
  virtual std::optional<Navigation> goBack() = 0;
  virtual std::optional<Navigation> goForward() = 0;
  virtual void stopLoading() = 0;

  [[nodiscard]] virtual std::optional<Url> url() const = 0;
  [[nodiscard]] virtual std::string title() const = 0;
  [[nodiscard]] virtual bool isLoading() const = 0;
  [[nodiscard]] virtual bool canGoBack() const = 0;
  [[nodiscard]] virtual bool canGoForward() const = 0;
  /// False while the page's process does not answer or is gone.
  [[nodiscard]] virtual bool isResponsive() const = 0;

  /// When the person last pressed a button or a key in the page.
  [[nodiscard]] virtual std::optional<Uptime> lastUserGesture() const = 0;

  [[nodiscard]] virtual double pageZoom() const = 0;
  virtual void setPageZoom(double zoom) = 0;

  /// Runs in the page's main frame. The result is what the script's last expression gives as JSON; absent
  /// when the script threw, the value has no JSON form, or the page went away.
  virtual void evaluateJavaScript(std::string_view script, ScriptCompletion completion = {}) = 0;

  /// A PNG of what is shown, `width` pixels wide; absent when there is nothing to show.
  virtual void takeSnapshot(double width, std::function<void(std::optional<std::string>)> completion) = 0;

  [[nodiscard]] virtual const WebViewConfiguration& configuration() const = 0;

 private:
  WeakPtr<NavigationDelegate> navigationDelegate_;
  WeakPtr<UIDelegate> uiDelegate_;
};

/// Makes web views and their stores.
class WebEngine {
 public:
  virtual ~WebEngine() = default;
  [[nodiscard]] virtual std::unique_ptr<WebView> makeWebView(const Rect& frame,
                                                             WebViewConfiguration configuration) = 0;
  [[nodiscard]] virtual std::shared_ptr<DataStore> defaultDataStore() = 0;
  [[nodiscard]] virtual std::shared_ptr<DataStore> makeNonPersistentDataStore() = 0;
};

}  // namespace velto
