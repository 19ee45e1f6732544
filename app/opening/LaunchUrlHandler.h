#pragma once

#include <string>
#include <vector>

#include "app/opening/Services.h"
#include "app/opening/WindowOpener.h"
#include "platform/Platform.h"

namespace velto {

/// Whether something was asked for that is still on its way, so that nothing must be restored instead.
struct PendingLaunch {
  bool hasPendingExplicitLaunchTarget = false;
};

/// Carries out URLs and arguments that come from outside. Nothing is reported back: what cannot be used is
/// skipped.
class LaunchUrlHandler : public Weakable {
 public:
  LaunchUrlHandler(const Platform& platform, WindowOpener& opener, const Services& services,
                   PendingLaunch& pending);

  /// The one entry for URLs of the application's own schemes, in order. Window work is queued on the main
  /// queue.
  void handleLaunchURLs(const std::vector<Url>& urls);
  /// One argument of the process; `scheme` is in lower case.
  void handleCommandLineTarget(const std::string& scheme, const Url& url);

 private:
  void handle(const Url& url);
  void queue(ParsedLaunch launch);
  /// Queues the step on the main queue; it is dropped when this handler is gone by then.
  void onMainQueue(Task step);

  const Platform& platform_;
  WindowOpener& opener_;
  Services services_;
  PendingLaunch& pending_;
};

}  // namespace velto
