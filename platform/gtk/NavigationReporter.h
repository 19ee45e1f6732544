#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/foundation/WeakPtr.h"
#include "platform/gtk/GObject.h"
#include "platform/gtk/NavigationTracker.h"
#include "platform/gtk/TitleWait.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebView.h"

namespace velto {

class GtkWebEngine;

/// Listens to what an engine view reports of its loads and its process, and tells the web view's delegates.
/// Of what pages ask it passes on only whether they may be left, because that decides what becomes of a load.
class NavigationReporter final : public Weakable {
 public:
  /// All three outlive it.
  NavigationReporter(GtkWebEngine& engine, WebView& webView, WebKitWebView* view);
  NavigationReporter(const NavigationReporter&) = delete;
  NavigationReporter& operator=(const NavigationReporter&) = delete;
  ~NavigationReporter() { disconnect(); }

  /// Reports nothing from now on.
  void disconnect();

  /// Numbers what the engine will be asked next. A request that has not started yet fails as cancelled,
  /// later.
  Navigation request(NavigationTracker::Kind kind, const std::string& uri);
  /// Asks the engine for it: the first time when it is this view's turn to start a process. While the
  /// engine's error page is on its way it would lose what it is asked, so that is asked afterwards. A later
  /// one takes the place of one that waits.
  void ask(std::function<void()> engineCall);
  /// Fails the navigation, in whatever state it is, when its page has not begun after `seconds`. Without it
  /// a navigation has the default time from its start.
  void limit(Navigation navigation, double seconds, const std::optional<Url>& url);
  /// Calls off what was requested and has not started.
  void withdraw();

  /// Whether the engine would go to the address within the page that is shown, which loads nothing.
  [[nodiscard]] bool staysInDocument(const std::string& uri) const;
  /// The address of what is shown or on its way; while a page is told to have finished, that of this page.
  [[nodiscard]] std::string uri() const;
  /// Whether a page has begun to show.
  [[nodiscard]] bool hasPage() const { return !committedUri_.empty(); }
  /// Whether the first process of the view is still to come or to begin with a page.
  [[nodiscard]] bool awaitsProcess() const { return awaitsProcess_; }
  /// Whether the engine has not been asked yet for what was requested.
  [[nodiscard]] bool isWaiting() const { return askedLater_ && navigations_.hasRequest(); }
  [[nodiscard]] bool isResponsive() const { return responsive_ && !processGone_; }
  /// The page that asks for an address of an own scheme, or whose place it is to take.
  [[nodiscard]] std::optional<Url> documentThatAsksFor(const std::string& uri) const;

 private:
  void askNow(const std::function<void()>& engineCall);
  void connectSignals();
  void loadChanged(WebKitLoadEvent event);
  void loadStarted();
  void loadCommitted();
  void loadFinished();
  bool loadFailed(const char* uri, const GError& error);
  void timedOut(Navigation navigation, const std::optional<Url>& url);
  [[nodiscard]] std::optional<WebError> errorOfBlankPage(const NavigationTracker::Attempt& attempt) const;
  void reportFailure(const NavigationTracker::Attempt& attempt, const WebError& error);
  void reportFinished(Navigation navigation);
  void reportUnstarted(const NavigationTracker::Attempt& attempt, const WebError& error);
  void reportSuperseded(const std::optional<NavigationTracker::Attempt>& attempt);
  void reportRefused(const NavigationTracker::Attempt& attempt);

  bool decidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
  bool decideNavigation(WebKitNavigationPolicyDecision* decision);
  bool runScriptDialog(WebKitScriptDialog* dialog);
  void refusedToLeave(NavigationTracker::Attempt attempt);

  void processTerminated();
  void responsivenessChanged();

  GtkWebEngine& engine_;
  WebView& webView_;
  WebKitWebView* view_;
  NavigationTracker navigations_;
  WorkItem timeout_;
  /// What `timeout_` is or was for.
  Navigation limited_;
  std::function<void()> askedLater_;
  /// Where the latest navigation that the engine asked about leads, in whatever frame.
  std::string decidedUri_;
  std::string committedUri_;
  TitleWait titleWait_;
  /// What the page would not be left for.
  std::optional<NavigationTracker::Attempt> refused_;
  /// The page stands in for the one at its address, which it is not a part of.
  bool showsSubstitute_ = false;
  bool nextPageBegan_ = false;
  bool tellsOfCommitted_ = false;
  bool processGone_ = false;
  bool wasAsked_ = false;
  bool awaitsProcess_;
  bool responsive_ = true;
  std::vector<SignalConnection> connections_;
};

}  // namespace velto
