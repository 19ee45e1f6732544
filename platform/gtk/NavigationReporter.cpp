#include "platform/gtk/NavigationReporter.h"

#include <memory>
#include <string_view>
#include <utility>

#include "platform/gtk/GtkWebEngine.h"
#include "platform/gtk/Guard.h"
#include "platform/gtk/PageSettings.h"
#include "platform/gtk/ScriptDialog.h"
#include "platform/gtk/WebErrors.h"

namespace velto {

namespace {

constexpr const char* kBlank = "about:blank";
/// Where nothing ever goes: it is asked for in order to be ignored.
constexpr const char* kNowhere = "about:blank#nowhere";

NavigationReporter& reporterOf(gpointer self) { return *static_cast<NavigationReporter*>(self); }

std::string_view withoutFragment(std::string_view uri) { return uri.substr(0, uri.find('#')); }

NavigationTracker::Kind kindOf(WebKitNavigationType type) {
  if (type == WEBKIT_NAVIGATION_TYPE_RELOAD) return NavigationTracker::Kind::reload;
  if (type == WEBKIT_NAVIGATION_TYPE_BACK_FORWARD) return NavigationTracker::Kind::history;
  return NavigationTracker::Kind::load;
}

/// The engine shows a page of its own for all other failures.
bool leavesPageAsItWas(const GError& error) {
  return g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE ||
         g_error_matches(&error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) != FALSE;
}

}  // namespace

NavigationReporter::NavigationReporter(GtkWebEngine& engine, WebView& webView, WebKitWebView* view)
    : engine_(engine),
      webView_(webView),
      view_(view),
      titleWait_(engine.queue(), view, [this](Navigation navigation) { reportFinished(navigation); }),
      awaitsProcess_(textOf(webkit_web_view_get_uri(view)).empty()) {
  connectSignals();
}

void NavigationReporter::disconnect() {
  invalidateWeakReferences();
  timeout_.cancel();
  titleWait_.cancel();
  connections_.clear();
}

void NavigationReporter::connectSignals() {
  const auto connect = [this](const char* signal, GCallback callback) {
    connections_.emplace_back(view_, signal, callback, this);
  };
  connect("load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
            guarded([&] { reporterOf(self).loadChanged(event); });
          }));
  connect("load-failed",
          G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, char* uri, GError* error, gpointer self) {
            bool handled = false;
            guarded([&] { handled = reporterOf(self).loadFailed(uri, *error); });
            return handled ? TRUE : FALSE;
          }));
  connect("decide-policy", G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision,
                                          WebKitPolicyDecisionType type, gpointer self) {
            bool handled = false;
            guarded([&] { handled = reporterOf(self).decidePolicy(decision, type); });
            return handled ? TRUE : FALSE;
          }));
  connect("script-dialog", G_CALLBACK(+[](WebKitWebView*, WebKitScriptDialog* dialog, gpointer self) {
            bool handled = false;
            guarded([&] { handled = reporterOf(self).runScriptDialog(dialog); });
            return handled ? TRUE : FALSE;
          }));
  connect("web-process-terminated",
          G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) {
            guarded([&] { reporterOf(self).processTerminated(); });
          }));
  connect("notify::is-web-process-responsive", G_CALLBACK(+[](WebKitWebView*, GParamSpec*, gpointer self) {
            guarded([&] { reporterOf(self).responsivenessChanged(); });
          }));
}

Navigation NavigationReporter::request(NavigationTracker::Kind kind, const std::string& uri) {
  timeout_.cancel();
  const Navigation navigation = engine_.nextNavigation();
  reportSuperseded(navigations_.request(navigation, kind, uri));
  return navigation;
}

void NavigationReporter::ask(std::function<void()> engineCall) {
  if (navigations_.isErrorPageOnItsWay()) {
    askedLater_ = std::move(engineCall);
    return;
  }
  if (std::exchange(wasAsked_, true)) {
    askNow(engineCall);
    return;
  }
  askedLater_ = std::move(engineCall);
  engine_.firstLoads().begin(!awaitsProcess_, [self = WeakPtr<NavigationReporter>(*this)] {
    if (!self || !self->askedLater_) return false;
    self->askNow(std::exchange(self->askedLater_, nullptr));
    return true;
  });
}

void NavigationReporter::askNow(const std::function<void()>& engineCall) {
  askedLater_ = nullptr;
  engineCall();
  navigations_.asked();
}

void NavigationReporter::limit(Navigation navigation, double seconds, const std::optional<Url>& url) {
  timeout_.cancel();
  limited_ = navigation;
  timeout_ = engine_.queue().after(seconds, [self = WeakPtr<NavigationReporter>(*this), navigation, url] {
    if (self) self->timedOut(navigation, url);
  });
}

void NavigationReporter::withdraw() {
  timeout_.cancel();
  askedLater_ = nullptr;
  reportSuperseded(navigations_.withdraw());
}

bool NavigationReporter::staysInDocument(const std::string& uri) const {
  if (navigations_.hasRequest() || navigations_.current() || processGone_ || showsSubstitute_) return false;
  const std::string shown = textOf(webkit_web_view_get_uri(view_));
  return shown != uri && uri.find('#') != std::string::npos && withoutFragment(shown) == withoutFragment(uri);
}

std::optional<Url> NavigationReporter::documentThatAsksFor(const std::string& uri) const {
  // While the next page is on its way the engine view has its address already, but the one before still runs
  // and may ask for that very address: only where no page is shown yet the next one asks for itself.
  const auto& attempt = navigations_.current();
  const bool isFirstPage = committedUri_.empty() && attempt && decidedUri_ == uri;
  return Url::parse(isFirstPage ? uri : committedUri_);
}

void NavigationReporter::loadChanged(WebKitLoadEvent event) {
  if (event == WEBKIT_LOAD_STARTED) loadStarted();
  if (event == WEBKIT_LOAD_COMMITTED) loadCommitted();
  if (event == WEBKIT_LOAD_FINISHED) loadFinished();
}

void NavigationReporter::loadStarted() {
  processGone_ = false;
  const WeakPtr<NavigationReporter> self(*this);
  nextPageBegan_ = true;
  titleWait_.end();
  if (!self) return;
  nextPageBegan_ = false;
  const auto navigation = navigations_.started(engine_.nextNavigation());
  // What was asked for meanwhile has a limit of its own.
  if (navigation && limited_ != *navigation && !navigations_.hasRequest()) {
    limit(*navigation, UrlRequest::kDefaultTimeout, Url::parse(textOf(webkit_web_view_get_uri(view_))));
  }
  NavigationDelegate* delegate = webView_.navigationDelegate();
  if (navigation && delegate != nullptr) delegate->didStartProvisionalNavigation(webView_, *navigation);
}

void NavigationReporter::loadCommitted() {
  // What was not drawn until now holds up the frames that follow.
  if (std::exchange(awaitsProcess_, false)) gtk_widget_queue_draw(GTK_WIDGET(view_));
  committedUri_ = textOf(webkit_web_view_get_uri(view_));
  const auto attempt = navigations_.committed();
  showsSubstitute_ = attempt && attempt->isSubstitute;
  if (!attempt) return;
  timeout_.cancel();
  if (const auto error = errorOfBlankPage(*attempt)) {
    navigations_.ended();
    reportFailure({attempt->navigation, NavigationTracker::Phase::started, {}}, *error);
    return;
  }
  if (NavigationDelegate* delegate = webView_.navigationDelegate()) {
    delegate->didCommitNavigation(webView_, attempt->navigation);
  }
}

/// The engine shows an empty page instead of failing where it does not go.
std::optional<WebError> NavigationReporter::errorOfBlankPage(
    const NavigationTracker::Attempt& attempt) const {
  if (!attempt.requestedUri || *attempt.requestedUri == kBlank || committedUri_ != kBlank)
    return std::nullopt;
  const auto url = Url::parse(*attempt.requestedUri);
  if (url && isRestrictedPort(*url)) return restrictedPortError(url);
  return refusedRedirectError(url);
}

void NavigationReporter::loadFinished() {
  engine_.pageCameToRest();
  const auto navigation = navigations_.finished();
  if (askedLater_) ask(std::exchange(askedLater_, nullptr));
  if (navigation) titleWait_.begin(*navigation);
}

void NavigationReporter::reportFinished(Navigation navigation) {
  NavigationDelegate* delegate = webView_.navigationDelegate();
  if (delegate == nullptr) return;
  const WeakPtr<NavigationReporter> self(*this);
  tellsOfCommitted_ = nextPageBegan_ || navigations_.hasRequest();
  delegate->didFinishNavigation(webView_, navigation);
  if (self) tellsOfCommitted_ = false;
}

std::string NavigationReporter::uri() const {
  if (tellsOfCommitted_) return committedUri_;
  std::string uri = textOf(webkit_web_view_get_uri(view_));
  return uri.empty() ? navigations_.requestedUri() : uri;
}

/// True keeps the engine from showing a page of its own about the failure.
bool NavigationReporter::loadFailed(const char* uri, const GError& engineError) {
  const auto attempt = navigations_.ended();
  if (!attempt) return true;
  timeout_.cancel();
  // What was asked for since then takes its place, whatever kept this one from being shown.
  const WebError error =
      navigations_.hasRequest() ? cancelledError(Url::parse(textOf(uri))) : webErrorFrom(engineError, uri);
  const WeakPtr<NavigationReporter> self(*this);
  reportFailure(*attempt, error);
  // The delegate may have closed the web view, or started what is to be shown instead.
  if (!self || navigations_.hasRequest()) return true;
  if (!leavesPageAsItWas(engineError)) navigations_.expectErrorPage();
  return false;
}

void NavigationReporter::timedOut(Navigation navigation, const std::optional<Url>& url) {
  const auto error = timedOutError(url);
  const auto& current = navigations_.current();
  const bool started = current && current->navigation == navigation;
  const auto attempt = started ? navigations_.ended() : navigations_.withdraw();
  askedLater_ = nullptr;
  webkit_web_view_stop_loading(view_);
  if (!attempt) return;
  if (started) {
    reportFailure(*attempt, error);
  } else {
    reportUnstarted(*attempt, error);
  }
}

void NavigationReporter::reportFailure(const NavigationTracker::Attempt& attempt, const WebError& error) {
  NavigationDelegate* delegate = webView_.navigationDelegate();
  if (delegate == nullptr) return;
  if (attempt.phase == NavigationTracker::Phase::committed) {
    delegate->didFailNavigation(webView_, attempt.navigation, error);
  } else {
    delegate->didFailProvisionalNavigation(webView_, attempt.navigation, error);
  }
}

/// The engine never began with it, so it starts and ends here.
void NavigationReporter::reportUnstarted(const NavigationTracker::Attempt& attempt, const WebError& error) {
  const WeakPtr<NavigationReporter> self(*this);
  NavigationDelegate* delegate = webView_.navigationDelegate();
  if (delegate != nullptr) delegate->didStartProvisionalNavigation(webView_, attempt.navigation);
  if (self) reportFailure(attempt, error);
}

/// From the main queue, because the application is in the middle of a call.
void NavigationReporter::reportSuperseded(const std::optional<NavigationTracker::Attempt>& attempt) {
  if (!attempt) return;
  engine_.queue().async([self = WeakPtr<NavigationReporter>(*this), attempt = *attempt] {
    if (self) self->reportUnstarted(attempt, cancelledError(Url::parse(attempt.requestedUri.value_or(""))));
  });
}

void NavigationReporter::reportRefused(const NavigationTracker::Attempt& attempt) {
  engine_.queue().async([self = WeakPtr<NavigationReporter>(*this), attempt] {
    if (self) self->reportFailure(attempt, cancelledError(Url::parse(attempt.requestedUri.value_or(""))));
  });
}

bool NavigationReporter::decidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
    return decideNavigation(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  }
  if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return false;
  auto* response = WEBKIT_RESPONSE_POLICY_DECISION(decision);
  if (webkit_response_policy_decision_is_mime_type_supported(response) != FALSE) return false;
  webkit_policy_decision_ignore(decision);
  return true;
}

bool NavigationReporter::decideNavigation(WebKitNavigationPolicyDecision* decision) {
  WebKitNavigationAction* action = webkit_navigation_policy_decision_get_navigation_action(decision);
  const std::string uri = textOf(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
  if (refused_ && uri == kNowhere) {
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
    reportRefused(*std::exchange(refused_, std::nullopt));
    return true;
  }
  decidedUri_ = uri;
  if (webkit_navigation_action_is_redirect(action) == FALSE) {
    navigations_.deciding(uri, kindOf(webkit_navigation_action_get_navigation_type(action)));
  }
  allowNavigation(WEBKIT_POLICY_DECISION(decision), webView_.configuration());
  return true;
}

bool NavigationReporter::runScriptDialog(WebKitScriptDialog* dialog) {
  if (webkit_script_dialog_get_dialog_type(dialog) != WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
    return false;
  const auto awaited = navigations_.awaitedRequest();
  const Navigation navigation = awaited ? *awaited : engine_.nextNavigation();
  const auto give = [](WebKitScriptDialog* asked, bool leave) {
    webkit_script_dialog_confirm_set_confirmed(asked, leave ? TRUE : FALSE);
  };
  const auto answer = scriptDialogAnswer<bool>(
      dialog, engine_.queue(), false, give,
      [self = WeakPtr<NavigationReporter>(*this), navigation, uri = decidedUri_](bool leave) {
        if (self && !leave) self->refusedToLeave({navigation, NavigationTracker::Phase::started, uri});
      });
  if (UIDelegate* delegate = webView_.uiDelegate()) {
    delegate->runBeforeUnloadConfirmPanel(webView_, Url::parse(committedUri_), answer);
  } else {
    answer(true);
  }
  return true;
}

/// The engine says nothing of a navigation that was refused and goes on to take it for the one under way.
/// Another one that is not allowed puts that right, and is not asked about.
void NavigationReporter::refusedToLeave(NavigationTracker::Attempt attempt) {
  timeout_.cancel();
  if (navigations_.awaitedRequest() == attempt.navigation) navigations_.withdraw();
  if (navigations_.hasRequest()) {
    reportRefused(attempt);
    return;
  }
  refused_ = std::move(attempt);
  webkit_web_view_load_uri(view_, kNowhere);
}

void NavigationReporter::processTerminated() {
  const WeakPtr<NavigationReporter> self(*this);
  titleWait_.end();
  if (!self) return;
  timeout_.cancel();
  navigations_.processGone();
  processGone_ = true;
  responsive_ = true;
  refused_.reset();
  askedLater_ = nullptr;
  committedUri_.clear();
  engine_.pageCameToRest();
  if (NavigationDelegate* delegate = webView_.navigationDelegate()) {
    delegate->webContentProcessDidTerminate(webView_);
  }
}

void NavigationReporter::responsivenessChanged() {
  const bool responsive = webkit_web_view_get_is_web_process_responsive(view_) != FALSE;
  if (processGone_ || std::exchange(responsive_, responsive) == responsive) return;
  if (NavigationDelegate* delegate = webView_.navigationDelegate()) {
    delegate->webContentResponsivenessChanged(webView_, responsive);
  }
}

}  // namespace velto
