#include "app/opening/WindowOpener.h"

#include <utility>

#include "app/launch/PageKey.h"
#include "app/launch/PlayerUrl.h"
#include "app/launch/Zoom.h"
#include "app/pages/UserAgent.h"
#include "app/windows/Placement.h"
#include "app/windows/WindowPinning.h"
#include "platform/loop/DispatchGroup.h"

namespace velto {

namespace {

constexpr Size kDefaultSize{900, 700};
constexpr Size kPlayerSize{960, 540};
constexpr Size kMinimumSize{25, 25};
constexpr Size kPlayerMinimumSize{320, 180};
constexpr Size kPlayerAspectRatio{16, 9};
constexpr const char* kWindowIdentifier = "hovrel-window";

bool isWebPage(const Url& url) {
  const std::string scheme = url.lowercasedScheme();
  return scheme == "http" || scheme == "https";
}

std::string joined(const std::vector<HttpCookie>& cookies) {
  std::string names;
  for (const HttpCookie& cookie : cookies) names += (names.empty() ? "" : ", ") + cookie.name;
  return names;
}

}  // namespace

WindowOpener::WindowOpener(const Platform& platform, OpenWindows& windows, WindowFurniture& furniture,
                           PageContent& content, PageWindows& pageWindows, SessionRecording& session,
                           Toasts& toasts, Delegates delegates)
    : platform_(platform),
      windows_(windows),
      furniture_(furniture),
      content_(content),
      pageWindows_(pageWindows),
      session_(session),
      toasts_(toasts),
      delegates_(delegates) {}

void WindowOpener::applyLaunchRequest(const LaunchRequest& request) {
  if (HovrelPanel* panel = reusableWindow(request)) {
    raise(*panel, request);
    return;
  }
  openWindow(request.target, {.width = request.width,
                              .height = request.height,
                              .x = request.x,
                              .y = request.y,
                              .hide = request.hide,
                              .zoom = request.zoom,
                              .incognito = request.incognito,
                              .cookies = request.cookies,
                              .activate = !request.background,
                              .onTop = request.onTop,
                              .noFocus = request.noFocus});
}

HovrelPanel* WindowOpener::reusableWindow(const LaunchRequest& request) const {
  const auto key = canonicalPageKey(request.target);
  if (!request.reuse || request.incognito || !key) return nullptr;
  for (const auto& panel : windows_.panels()) {
    if (panel->isPrivate || panel->contentView() == nullptr) continue;
    const auto* webView = firstSubview<WebView>(*panel->contentView());
    const auto url = webView != nullptr ? webView->url() : std::nullopt;
    if (url && canonicalPageKey(*url) == key) return panel.get();
  }
  return nullptr;
}

void WindowOpener::raise(HovrelPanel& panel, const LaunchRequest& request) {
  panel.deminiaturize();
  if (request.onTop) {
    panel.unpinnedByPerson = false;
    WindowPinning::setPinned(panel, true);
  }
  if (request.noFocus) {
    panel.orderFrontRegardless();
  } else {
    panel.makeKeyAndOrderFront();
    platform_.application.activate();
  }
}

void WindowOpener::openWindow(const Url& address, const WindowOptions& options) {
  // A player's page is known by its web address where windows are written down.
  const Url url = content_.playerAt(address).value_or(address);
  auto owned = makePanel(url, options);
  HovrelPanel& panel = *owned;

  auto ownedContainer = std::make_unique<View>(Rect{{0, 0}, panel.frame().size});
  View& container = *ownedContainer;
  container.autoresizing = {.width = true, .height = true};
  container.setIdentifier("hovrel-container");

  auto ownedWebView = makeWebView(container.bounds(), panel, options);
  WebView& webView = *ownedWebView;
  startLoad(panel, webView, url, options);

  container.addSubview(std::move(ownedWebView));
  panel.webView = webView;
  addFurniture(panel, container, options);

  if (options.scroll && options.scroll != LayoutScroll{}) panel.pendingScrollRestore = options.scroll;
  panel.setContentView(std::move(ownedContainer));
  panel.setDelegate(delegates_.window);
  if (options.focusAddress) panel.pendingInitialAddress = url.absoluteString();

  place(panel, options);
  windows_.append(std::move(owned));
  show(panel, options);
}

std::unique_ptr<HovrelPanel> WindowOpener::makePanel(const Url& url, const WindowOptions& options) const {
  const bool isPlayer = isPlayerURL(url);
  Size size = isPlayer ? kPlayerSize : kDefaultSize;
  if (options.width) size.width = static_cast<double>(*options.width);
  if (options.height) size.height = static_cast<double>(*options.height);

  unsigned style = style_mask::kTitled | style_mask::kClosable | style_mask::kMiniaturizable |
                   style_mask::kResizable | style_mask::kFullSizeContentView;
  if (options.noFocus) style |= style_mask::kNonactivatingPanel;

  auto panel = std::make_unique<HovrelPanel>(platform_.application, Rect{{0, 0}, size}, style);
  panel->setMovableByBackground(true);
  panel->setHasShadow(true);
  panel->setLevel(kNormalWindowLevel);
  panel->setCollectionBehavior(collection_behavior::kCanJoinAllSpaces |
                               collection_behavior::kFullScreenAuxiliary);
  panel->setIdentifier(kWindowIdentifier);
  if (platform_.environment.isTestMode()) {
    panel->setTitle(kWindowIdentifier);
  } else {
    panel->setTitle(isPlayer ? "Velto Video" : url.host().value_or("Velto"));
  }
  panel->setMinSize(isPlayer ? kPlayerMinimumSize : kMinimumSize);
  if (isPlayer) panel->setContentAspectRatio(kPlayerAspectRatio);
  return panel;
}

std::unique_ptr<WebView> WindowOpener::makeWebView(const Rect& frame, HovrelPanel& panel,
                                                   const WindowOptions& options) {
  if (!userAgent_) userAgent_ = userAgent(platform_.files);
  WebViewConfiguration configuration;
  configuration.userContentController = content_.makeUserContentController(pageWindows_);
  configuration.javaScriptCanOpenWindowsAutomatically = true;
  configuration.urlSchemeHandlers = content_.makeUrlSchemeHandlers();
  configuration.mediaPlaybackRequiresUserAction = false;
  configuration.allowsAirPlay = true;
  configuration.inspectable = true;
  configuration.allowsBackForwardGestures = true;
  configuration.userAgent = *userAgent_;
  if (options.incognito) {
    configuration.dataStore =
        options.dataStore ? options.dataStore : platform_.webEngine.makeNonPersistentDataStore();
    panel.isPrivate = true;
    panel.setDarkAppearance(true);
  }
  auto webView = platform_.webEngine.makeWebView(frame, std::move(configuration));
  webView->autoresizing = {.width = true, .height = true};
  webView->setIdentifier("hovrel-webview");
  webView->setNavigationDelegate(delegates_.navigation);
  webView->setUIDelegate(delegates_.ui);
  return webView;
}

void WindowOpener::startLoad(HovrelPanel& panel, WebView& webView, const Url& url,
                             const WindowOptions& options) {
  if (isPlayerURL(url)) {
    panel.playerNavigation = content_.loadPlayer(webView, url);
    return;
  }
  if (!options.incognito || options.cookies.empty()) {
    webView.load({url});
    return;
  }
  DispatchGroup cookiesSet(platform_.mainQueue);
  CookieStore& jar = webView.configuration().dataStore->cookieStore();
  for (const HttpCookie& cookie : options.cookies) {
    cookiesSet.enter();
    jar.setCookie(cookie, [cookiesSet]() mutable { cookiesSet.leave(); });
  }
  // What was asked of the page meanwhile counts more, closing its window above all.
  cookiesSet.notify([view = WeakPtr<WebView>(webView), url] {
    if (view && !view->isLoading() && !view->url()) view->load({url});
  });
}

UserDefaults& WindowOpener::controlBarPreferences() {
  const Environment& environment = platform_.environment;
  if (!environment.isTestMode()) return platform_.defaults;
  if (!testPreferences_) {
    const std::string suite = "Velto.VisibleUITests." + std::to_string(environment.processId);
    testPreferences_.emplace(platform_.files, environment.preferencesDirectory / (suite + ".plist"));
    testPreferences_->removeAll();
  }
  return *testPreferences_;
}

void WindowOpener::addFurniture(HovrelPanel& panel, View& container, const WindowOptions& options) {
  furniture_.addChrome(panel, container);
  ControlBarView* bar = furniture_.addControlBar(panel, container, controlBarPreferences());
  if (bar != nullptr) {
    panel.controlBarView = *bar;
    bar->setPrivate(panel.isPrivate);
  }
  if (panel.isPrivate && !options.cookies.empty()) {
    toasts_.show("Incognito, signed in with test cookies: " + joined(options.cookies));
  }
  if (bar != nullptr && options.hide) bar->setControlsCollapsed(true);
  furniture_.addZoomIndicator(container);
  if (!options.zoom) return;
  const double zoom = clampZoom(*options.zoom);
  panel.webView->setPageZoom(zoom);
  if (bar != nullptr) bar->setPageZoom(zoom);
  furniture_.showZoom(container, zoom);
}

void WindowOpener::place(HovrelPanel& panel, const WindowOptions& options) const {
  const Window* reference = options.referenceWindow;
  const auto mainScreen = platform_.application.mainScreen();
  const auto referenceScreen = reference != nullptr ? reference->screen() : std::nullopt;
  auto screen = options.targetScreen;
  if (!screen) screen = panel.screen();
  if (!screen) screen = referenceScreen ? referenceScreen : mainScreen;

  const Size size = panel.frame().size;
  if ((options.x || options.y) && screen) {
    panel.setFrameOrigin(requestedOrigin(screen->visibleFrame, size, options.x, options.y));
    return;
  }
  const auto cascadeScreen = referenceScreen ? referenceScreen : mainScreen;
  if (reference != nullptr && cascadeScreen) {
    panel.setFrameOrigin(cascadedOrigin(reference->frame(), cascadeScreen->visibleFrame, size));
  } else {
    panel.center();
  }
}

void WindowOpener::show(HovrelPanel& panel, const WindowOptions& options) {
  const bool takesFocus = options.activate && !options.noFocus;
  if (options.onTop) WindowPinning::setPinned(panel, true);
  if (takesFocus) {
    panel.makeKeyAndOrderFront();
  } else {
    panel.orderFrontRegardless();
  }
  session_.scheduleSessionRecording();
  if (platform_.environment.isTestMode() && panel.controlBarView) {
    panel.controlBarView->setControlsCollapsed(false);
    panel.controlBarView->forceExpandedPresentation();
  }
  if (!takesFocus) return;
  platform_.application.activate();
  if (platform_.application.isActive()) panel.focusPendingInitialAddress();
  platform_.mainQueue.async([weakPanel = WeakPtr<HovrelPanel>(panel)] {
    if (weakPanel) weakPanel->focusPendingInitialAddress();
  });
}

void WindowOpener::newWindow(const std::function<std::optional<Url>()>& fallback) {
  auto url = pageOfKeyWindow();
  if (!url) url = fallback();
  openBeside(url, false);
}

void WindowOpener::newPrivateWindow() {
  auto url = pageOfKeyWindow();
  if (url && !isWebPage(*url)) url.reset();
  openBeside(url, true);
}

std::optional<Url> WindowOpener::pageOfKeyWindow() const {
  const Window* key = platform_.application.keyWindow();
  if (key == nullptr || key->contentView() == nullptr) return std::nullopt;
  const auto* webView = findDescendant<WebView>(*key->contentView());
  return webView != nullptr ? webView->url() : std::nullopt;
}

void WindowOpener::openBeside(const std::optional<Url>& url, bool incognito) {
  const auto page = url ? url : Url::parse("about:blank");
  openWindow(
      *page,
      {.focusAddress = !url, .referenceWindow = platform_.application.keyWindow(), .incognito = incognito});
}

}  // namespace velto
