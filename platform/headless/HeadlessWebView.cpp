#include "platform/headless/HeadlessWebView.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include <cairomm/surface.h>

#include "platform/foundation/Text.h"
#include "platform/headless/EngineUrl.h"
#include "platform/headless/HeadlessSchemeTask.h"
#include "platform/ui/Window.h"
#include "platform/web/PendingAnswer.h"

namespace velto {

namespace {

constexpr int kMostRedirects = 20;

WebError cancelled(const Url& url) {
  return {WebError::kUrlDomain, WebError::kCancelled, "The load was cancelled.", url};
}
WebError timedOut(const Url& url) { return {WebError::kUrlDomain, -1001, "The request timed out.", url}; }

std::string titleOf(std::string_view html) {
  constexpr std::string_view kOpen = "<title>";
  const std::size_t open = html.find(kOpen);
  if (open == std::string_view::npos) return "";
  const std::string_view rest = html.substr(open + kOpen.size());
  return std::string(rest.substr(0, rest.find("</title>")));
}

/// A white PNG.
std::string blankPicture(int width, int height) {
  const auto surface = Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, width, height);
  const auto context = Cairo::Context::create(surface);
  context->set_source_rgb(1, 1, 1);
  context->paint();
  std::string png;
  const auto append = [](void* to, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
  };
  cairo_surface_write_to_png_stream(surface->cobj(), append, &png);
  return png;
}

}  // namespace

HeadlessWebView::HeadlessWebView(HeadlessWebEngine& engine, const Rect& frame,
                                 WebViewConfiguration configuration)
    : WebView(frame), engine_(engine), configuration_(std::move(configuration)) {}

HeadlessWebView::~HeadlessWebView() {
  invalidateWeakReferences();
  wakeUp_.cancel();
  dropHeldScripts();
  engine_.webViewGone(*this);
}

void HeadlessWebView::post(std::function<void(HeadlessWebView&)> work) {
  engine_.loop().async([weak = WeakPtr<HeadlessWebView>(*this), work = std::move(work)] {
    if (weak) work(*weak);
  });
}

// What is asked of it

std::optional<Navigation> HeadlessWebView::load(const UrlRequest& request) {
  engine_.note("load " + request.url.absoluteString());
  return begin({.url = engineUrl(request.url), .timeout = request.timeout});
}

std::optional<Navigation> HeadlessWebView::clickLink(std::string_view urlText) {
  const auto url = Url::parse(urlText);
  if (!url || crashed_) return std::nullopt;
  return begin({.url = engineUrl(*url)});
}

std::optional<Navigation> HeadlessWebView::loadHtml(std::string_view html,
                                                    const std::optional<Url>& baseUrl) {
  const Url url = baseUrl ? engineUrl(*baseUrl) : *Url::parse("about:blank");
  engine_.note("loadHtml " + url.absoluteString());
  Page page;
  page.html = html;
  page.script.title = titleOf(html);
  return begin({.url = url, .isText = true, .hasPlaceInHistory = false, .found = std::move(page)});
}

std::optional<Navigation> HeadlessWebView::loadSubstitute(std::string_view html, const Url& address) {
  const Url url = engineUrl(address);
  engine_.note("loadSubstitute " + url.absoluteString());
  Page page;
  page.html = html;
  page.script.title = titleOf(html);
  return begin({.url = url, .isText = true, .found = std::move(page)});
}

std::optional<Navigation> HeadlessWebView::reload() {
  engine_.note("reload");
  if (!pageUrl_) return std::nullopt;
  return begin({.url = *pageUrl_});
}

std::optional<Navigation> HeadlessWebView::goBack() {
  engine_.note("goBack");
  return canGoBack() ? goTo(current_ - 1) : std::nullopt;
}

std::optional<Navigation> HeadlessWebView::goForward() {
  engine_.note("goForward");
  return canGoForward() ? goTo(current_ + 1) : std::nullopt;
}

std::optional<Navigation> HeadlessWebView::goTo(std::size_t place) {
  return begin({.url = history_[place], .place = place});
}

void HeadlessWebView::stopLoading() {
  engine_.note("stopLoading");
  cancelLoad();
}

std::optional<Url> HeadlessWebView::url() const {
  return load_ && load_->phase != Phase::committed ? load_->url : pageUrl_;
}

HeadlessDataStore& HeadlessWebView::dataStore() const {
  if (!configuration_.dataStore) return engine_.defaultStore();
  return dynamic_cast<HeadlessDataStore&>(*configuration_.dataStore);
}

// A load, step by step

std::optional<Navigation> HeadlessWebView::begin(Load load) {
  cancelLoad();
  if (std::exchange(crashed_, false)) responsive_ = true;
  stalled_ = false;
  load.navigation = engine_.nextNavigation();
  load_ = std::move(load);
  queueStep();
  return load_->navigation;
}

void HeadlessWebView::cancelLoad() {
  if (!load_) return;
  wakeUp_.cancel();
  const Load ended = *std::exchange(load_, std::nullopt);
  post([ended](HeadlessWebView& self) {
    const WeakPtr<HeadlessWebView> weak = self;
    auto* delegate = self.navigationDelegate();
    if (delegate != nullptr && ended.phase == Phase::waiting) {
      delegate->didStartProvisionalNavigation(self, ended.navigation);
    }
    if (weak) self.tellFailed(ended, cancelled(ended.url));
  });
}

void HeadlessWebView::queueStep(double delay) {
  const Navigation navigation = load_->navigation;
  if (delay > 0) {
    wakeUp_ = engine_.loop().after(delay, [this, navigation] { step(navigation); });
  } else {
    post([navigation](HeadlessWebView& self) { self.step(navigation); });
  }
}

void HeadlessWebView::step(Navigation navigation) {
  if (!isUnderWay(navigation) || asking_) return;
  if (!responsive_) {
    stalled_ = true;
    return;
  }
  switch (load_->phase) {
    case Phase::waiting:
      return leavePage();
    case Phase::started:
      return receivePage();
    case Phase::committed:
      return finish();
  }
}

void HeadlessWebView::leavePage() {
  UIDelegate* person = uiDelegate();
  if (!page_ || !page_->script.beforeUnload || person == nullptr) return start();
  asking_ = load_->navigation;
  person->runBeforeUnloadConfirmPanel(
      *this, pageUrl_, [weak = WeakPtr<HeadlessWebView>(*this), navigation = *asking_](bool leave) {
        if (!weak) return;
        weak->post(
            [navigation, leave](HeadlessWebView& self) { self.answeredBeforeUnload(navigation, leave); });
      });
}

void HeadlessWebView::answeredBeforeUnload(Navigation navigation, bool leave) {
  if (asking_ != navigation) return;
  asking_.reset();
  if (!load_) return;
  // A load that came meanwhile has to ask for itself.
  if (!isUnderWay(navigation)) return queueStep();
  if (leave) return start();
  fail(cancelled(load_->url));
}

void HeadlessWebView::start() {
  const WeakPtr<HeadlessWebView> weak = *this;
  const Navigation navigation = load_->navigation;
  load_->phase = Phase::started;
  if (auto* delegate = navigationDelegate()) delegate->didStartProvisionalNavigation(*this, navigation);
  if (weak && isUnderWay(navigation)) seekPage();
}

void HeadlessWebView::seekPage() {
  if (load_->isText) return queueStep();
  if (const auto handler = handlerFor(load_->url.absoluteString())) return askHandler(*handler);
  ScriptedPage page = engine_.pageAt(load_->url);
  double delay = page.loadDelay;
  for (int redirects = 0; !page.redirectTo.empty(); ++redirects) {
    if (redirects == kMostRedirects) {
      page = {};
      page.error = WebError{WebError::kUrlDomain, -1007, "Too many redirects.", load_->url};
      break;
    }
    load_->url = engineUrl(Url::parse(page.redirectTo).value());
    page = engine_.pageAt(load_->url);
    delay += page.loadDelay;
  }
  if (delay > load_->timeout) {
    delay = load_->timeout;
    page = {};
    page.error = timedOut(load_->url);
  }
  load_->found.script = std::move(page);
  queueStep(delay);
}

void HeadlessWebView::askHandler(UrlSchemeHandler& handler) {
  const auto answer = [weak = WeakPtr<HeadlessWebView>(*this),
                       navigation = load_->navigation](SchemeResponse response) {
    if (!weak || !weak->isUnderWay(navigation)) return;
    weak->wakeUp_.cancel();
    Page& found = weak->load_->found;
    found.script.error.reset();
    found.html = response.body;
    found.script.title = titleOf(response.body);
    if (response.failure)
      found.script.error = WebError{WebError::kUrlDomain, -1, *response.failure, weak->load_->url};
    found.response = std::move(response);
    weak->queueStep();
  };
  const auto isStopped = [weak = WeakPtr<HeadlessWebView>(*this), navigation = load_->navigation] {
    return !weak || !weak->isUnderWay(navigation);
  };
  load_->found.script.error = timedOut(load_->url);
  queueStep(load_->timeout);
  handler.startTask(*this, std::make_unique<HeadlessSchemeTask>(load_->url.absoluteString(), load_->url,
                                                                answer, isStopped));
}

void HeadlessWebView::receivePage() {
  const ScriptedPage& script = load_->found.script;
  if (script.error && !script.failsAfterCommit) return fail(*script.error);
  const WeakPtr<HeadlessWebView> weak = *this;
  const Navigation navigation = load_->navigation;
  dropHeldScripts();
  ++generation_;
  remember(*load_);
  load_->phase = Phase::committed;
  page_ = load_->found;
  pageUrl_ = load_->url;
  const double finishDelay = script.finishDelay;
  if (auto* delegate = navigationDelegate()) delegate->didCommitNavigation(*this, navigation);
  if (weak && isUnderWay(navigation)) queueStep(finishDelay);
}

void HeadlessWebView::remember(const Load& load) {
  if (!load.hasPlaceInHistory) return;
  if (load.place) {
    current_ = *load.place;
    history_[current_] = load.url;
    return;
  }
  if (!history_.empty() && history_[current_] == load.url) return;
  if (!history_.empty()) history_.resize(current_ + 1, load.url);
  history_.push_back(load.url);
  current_ = history_.size() - 1;
}

void HeadlessWebView::finish() {
  if (load_->found.script.error) return fail(*load_->found.script.error);
  const Navigation navigation = std::exchange(load_, std::nullopt)->navigation;
  if (auto* delegate = navigationDelegate()) delegate->didFinishNavigation(*this, navigation);
}

void HeadlessWebView::fail(WebError error) {
  if (!error.failingUrl) error.failingUrl = load_->url;
  const Load failed = *std::exchange(load_, std::nullopt);
  tellFailed(failed, error);
}

void HeadlessWebView::tellFailed(const Load& load, const WebError& error) {
  auto* delegate = navigationDelegate();
  if (delegate == nullptr) return;
  if (load.phase == Phase::committed) {
    delegate->didFailNavigation(*this, load.navigation, error);
  } else {
    delegate->didFailProvisionalNavigation(*this, load.navigation, error);
  }
}

// The page and its process

void HeadlessWebView::crash() {
  wakeUp_.cancel();
  load_.reset();
  asking_.reset();
  stalled_ = false;
  crashed_ = true;
  ++generation_;
  dropHeldScripts();
  if (page_) page_->script.beforeUnload = false;
  post([](HeadlessWebView& self) {
    if (auto* delegate = self.navigationDelegate()) delegate->webContentProcessDidTerminate(self);
  });
}

void HeadlessWebView::setResponsive(bool responsive) {
  if (std::exchange(responsive_, responsive) == responsive) return;
  post([responsive](HeadlessWebView& self) {
    if (auto* delegate = self.navigationDelegate())
      delegate->webContentResponsivenessChanged(self, responsive);
  });
  if (!responsive) return;
  if (std::exchange(stalled_, false) && load_) queueStep();
  for (HeldScript& held : std::exchange(heldScripts_, {})) runScript(std::move(held));
  for (HeldSnapshot& held : std::exchange(heldSnapshots_, {}))
    takeSnapshot(held.width, std::move(held.completion));
}

bool HeadlessWebView::mouseDown(const MouseEvent&) {
  lastUserGesture_ = engine_.loop().uptime();
  return true;
}

void HeadlessWebView::keyReceived(const KeyEvent& event) {
  lastUserGesture_ = engine_.loop().uptime();
  keysReceived_.push_back(event);
}

void HeadlessWebView::setScriptAnswer(std::function<std::optional<JsonValue>(std::string_view)> answer) {
  scriptAnswer_ = std::move(answer);
}

void HeadlessWebView::evaluateJavaScript(std::string_view script, ScriptCompletion completion) {
  scripts_.emplace_back(script);
  runScript({std::string(script), std::move(completion), generation_});
}

void HeadlessWebView::runScript(HeldScript held) {
  engine_.loop().async([weak = WeakPtr<HeadlessWebView>(*this), held = std::move(held)]() mutable {
    std::optional<JsonValue> result;
    if (weak && weak->generation_ == held.generation && !weak->crashed_) {
      if (!weak->responsive_) return weak->heldScripts_.push_back(std::move(held));
      const auto answer =
          weak->scriptAnswer_ || !weak->page_ ? weak->scriptAnswer_ : weak->page_->script.answerScript;
      if (answer) result = answer(held.script);
    }
    if (held.completion) held.completion(std::move(result));
  });
}

void HeadlessWebView::dropHeldScripts() {
  for (HeldSnapshot& held : std::exchange(heldSnapshots_, {})) {
    engine_.loop().async([completion = std::move(held.completion)] { completion(std::nullopt); });
  }
  for (HeldScript& held : std::exchange(heldScripts_, {})) {
    if (held.completion)
      engine_.loop().async([completion = std::move(held.completion)] { completion(std::nullopt); });
  }
}

void HeadlessWebView::postMessage(const std::string& name, const JsonValue& body, const ContentWorld& world,
                                  std::function<void(ScriptReply)> reply, bool isMainFrame) {
  post([message = ScriptMessage{name, body, isMainFrame}, world,
        reply = std::move(reply)](HeadlessWebView& self) {
    const auto controller = self.configuration_.userContentController;
    controller->receive(self, message, world, reply);
  });
}

template <class T>
void HeadlessWebView::askPerson(T cancelled, std::function<void(T)> done,
                                std::function<void(UIDelegate&, std::function<void(T)>)> ask) {
  const auto answered = [weak = WeakPtr<HeadlessWebView>(*this), done = std::move(done)](T value) {
    if (!weak || !done) return;
    weak->post([done, value = std::move(value)](HeadlessWebView&) { done(value); });
  };
  post([pending = std::make_shared<PendingAnswer<T>>(std::move(cancelled), answered),
        ask = std::move(ask)](HeadlessWebView& self) {
    UIDelegate* person = self.uiDelegate();
    if (person != nullptr) ask(*person, [pending](T value) { pending->answer(std::move(value)); });
  });
}

void HeadlessWebView::alert(const std::string& text, std::function<void()> done) {
  const auto closed = [done = std::move(done)](bool) {
    if (done) done();
  };
  askPerson<bool>(false, closed, [this, text](UIDelegate& person, const std::function<void(bool)>& answer) {
    person.runJavaScriptAlertPanel(*this, text, [answer] { answer(true); });
  });
}

void HeadlessWebView::confirm(const std::string& text, std::function<void(bool)> done) {
  askPerson<bool>(false, std::move(done), [this, text](UIDelegate& person, auto answer) {
    person.runJavaScriptConfirmPanel(*this, text, std::move(answer));
  });
}

void HeadlessWebView::prompt(const std::string& text, const std::string& defaultText,
                             std::function<void(std::optional<std::string>)> done) {
  askPerson<std::optional<std::string>>(
      std::nullopt, std::move(done), [this, text, defaultText](UIDelegate& person, auto answer) {
        person.runJavaScriptTextInputPanel(*this, text, defaultText, std::move(answer));
      });
}

void HeadlessWebView::chooseFiles(const OpenPanel& parameters, OpenPanelCompletion done) {
  askPerson<std::optional<std::vector<std::filesystem::path>>>(
      std::nullopt, std::move(done), [this, parameters](UIDelegate& person, auto answer) {
        person.runOpenPanel(*this, parameters, std::move(answer));
      });
}

void HeadlessWebView::openWindow(const PageWindowRequest& request) {
  post([request](HeadlessWebView& self) {
    if (UIDelegate* person = self.uiDelegate()) person->createWebView(self, request);
  });
}

std::shared_ptr<UrlSchemeHandler> HeadlessWebView::handlerFor(std::string_view urlText) const {
  const auto found = configuration_.urlSchemeHandlers.find(lowercased(urlText.substr(0, urlText.find(':'))));
  return found == configuration_.urlSchemeHandlers.end() ? nullptr : found->second;
}

void HeadlessWebView::fetch(const std::string& urlText,
                            std::function<void(const SchemeResponse&)> completion) {
  const auto handler = handlerFor(urlText);
  if (!handler) throw std::logic_error("Nobody answers for the scheme of \"" + urlText + "\"");
  post([handler, urlText, completion = std::move(completion)](HeadlessWebView& self) {
    const auto answer = [&loop = self.engine_.loop(), completion](const SchemeResponse& response) {
      loop.async([completion, response] { completion(response); });
    };
    const auto isStopped = [weak = WeakPtr<HeadlessWebView>(self), page = self.generation_] {
      return !weak || weak->generation_ != page;
    };
    handler->startTask(self, std::make_unique<HeadlessSchemeTask>(urlText, self.pageUrl_, answer, isStopped));
  });
}

void HeadlessWebView::takeSnapshot(double width, std::function<void(std::optional<std::string>)> completion) {
  if (!responsive_ && !crashed_) return heldSnapshots_.push_back({width, std::move(completion)});
  const Size shown = frame().size;
  std::optional<std::string> picture;
  if (page_ && !crashed_ && !bounds().isEmpty() && width >= 1 && width <= Window::kMaximumSide) {
    const double height =
        std::clamp(std::round(width * shown.height / shown.width), 1.0, Window::kMaximumSide);
    picture = blankPicture(static_cast<int>(width), static_cast<int>(height));
  }
  engine_.loop().async([completion = std::move(completion), picture] { completion(picture); });
}

}  // namespace velto
