#pragma once

#include <optional>
#include <string>

#include "platform/web/WebTypes.h"

namespace velto {

/// Tells which navigation each report of the engine belongs to. The engine has no object for a navigation; it
/// reports, in this order, that one is to be decided on, that it started, that its page was committed, that
/// it finished; after a failure it goes on to report that it finished.
///
/// What the application asks for is numbered when it is asked, what a page does when it starts. The engine's
/// own error page is reported like a navigation and is none.
class NavigationTracker {
 public:
  enum class Kind { load, substitute, reload, history };
  enum class Phase { started, committed };
  struct Attempt {
    Navigation navigation;
    Phase phase = Phase::started;
    /// The address that the application asked for; absent when a page started it.
    std::optional<std::string> requestedUri;
    bool isSubstitute = false;
  };

  /// Takes the place of a request that has not started; gives that one.
  std::optional<Attempt> request(Navigation navigation, Kind kind, std::string uri);
  /// Calls off a request that has not started.
  std::optional<Attempt> withdraw();
  [[nodiscard]] bool hasRequest() const { return requested_.has_value(); }
  /// Empty without a request.
  [[nodiscard]] std::string requestedUri() const { return requested_ ? requested_->uri : std::string(); }

  /// The engine has been asked for it.
  void asked();
  /// The engine asks whether to go to the address, in whatever frame.
  void deciding(const std::string& uri, Kind kind);
  /// The request that the engine has decided on and that has not started, which a page may still refuse.
  [[nodiscard]] std::optional<Navigation> awaitedRequest() const;

  /// Absent for the engine's error page. `fresh` becomes the number of what a page started.
  std::optional<Navigation> started(Navigation fresh);
  std::optional<Attempt> committed();
  /// Absent for the engine's error page and for what had failed.
  std::optional<Navigation> finished();
  /// The attempt is over. Absent when nothing was under way.
  std::optional<Attempt> ended();
  [[nodiscard]] const std::optional<Attempt>& current() const { return current_; }

  /// The engine will now show its own error page.
  void expectErrorPage() { errorPage_ = ErrorPage::expected; }
  [[nodiscard]] bool isErrorPageOnItsWay() const { return errorPage_ != ErrorPage::none; }
  /// The process is gone, and all that was asked of it.
  void processGone();

 private:
  struct Request {
    Navigation navigation;
    Kind kind = Kind::load;
    std::string uri;
    bool decided = false;
  };
  enum class ErrorPage { none, expected, showing };

  std::optional<Request> requested_;
  std::optional<Attempt> current_;
  ErrorPage errorPage_ = ErrorPage::none;
};

}  // namespace velto
