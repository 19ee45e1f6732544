#include "platform/gtk/NavigationTracker.h"

#include <utility>

namespace velto {

std::optional<NavigationTracker::Attempt> NavigationTracker::request(Navigation navigation, Kind kind,
                                                                     std::string uri) {
  auto superseded = withdraw();
  requested_ = Request{navigation, kind, std::move(uri), false};
  return superseded;
}

std::optional<NavigationTracker::Attempt> NavigationTracker::withdraw() {
  if (!requested_) return std::nullopt;
  Request request = *std::exchange(requested_, std::nullopt);
  return Attempt{request.navigation, Phase::started, std::move(request.uri),
                 request.kind == Kind::substitute};
}

void NavigationTracker::asked() {
  // The engine goes there without a question.
  if (requested_ && requested_->kind == Kind::substitute) requested_->decided = true;
}

void NavigationTracker::deciding(const std::string& uri, Kind kind) {
  if (!requested_) return;
  // After its process died the engine loads the address anew when it is to reload or to go back.
  const bool sameKind = requested_->kind == kind && kind != Kind::load;
  if (sameKind || requested_->uri == uri) requested_->decided = true;
}

std::optional<Navigation> NavigationTracker::awaitedRequest() const {
  if (!requested_ || !requested_->decided) return std::nullopt;
  return requested_->navigation;
}

std::optional<Navigation> NavigationTracker::started(Navigation fresh) {
  if (requested_ && requested_->decided) {
    current_ = withdraw();
  } else if (errorPage_ == ErrorPage::expected) {
    errorPage_ = ErrorPage::showing;
    return std::nullopt;
  } else {
    current_ = Attempt{fresh, Phase::started, std::nullopt};
  }
  errorPage_ = ErrorPage::none;
  return current_->navigation;
}

std::optional<NavigationTracker::Attempt> NavigationTracker::committed() {
  if (!current_) return std::nullopt;
  current_->phase = Phase::committed;
  return current_;
}

std::optional<Navigation> NavigationTracker::finished() {
  if (errorPage_ == ErrorPage::showing) errorPage_ = ErrorPage::none;
  if (!current_) return std::nullopt;
  return std::exchange(current_, std::nullopt)->navigation;
}

std::optional<NavigationTracker::Attempt> NavigationTracker::ended() {
  return std::exchange(current_, std::nullopt);
}

void NavigationTracker::processGone() {
  requested_.reset();
  current_.reset();
  errorPage_ = ErrorPage::none;
}

}  // namespace velto
