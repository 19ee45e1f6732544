#pragma once

#include <functional>
#include <optional>
#include <variant>

#include "platform/foundation/Url.h"

namespace velto {

/// What to show when nothing explicit was asked for.
namespace launch_restoration {
/// One window on that page.
struct Open {
  Url url;
  bool focusAddress = false;
  bool operator==(const Open&) const = default;
};
/// An open window comes forward.
struct FocusExisting {
  bool operator==(const FocusExisting&) const = default;
};
/// The recorded session is reopened.
struct RestoreSession {
  bool operator==(const RestoreSession&) const = default;
};
struct None {
  bool operator==(const None&) const = default;
};
}  // namespace launch_restoration

using AppLaunchRestorationAction = std::variant<launch_restoration::Open, launch_restoration::FocusExisting,
                                                launch_restoration::RestoreSession, launch_restoration::None>;

struct LaunchCircumstances {
  bool hasPendingExplicitLaunchTarget = false;
  bool hasOpenWindows = false;
  /// Whether the session that was read has windows; absent when no session was read.
  std::optional<bool> pendingSessionHasWindows;
  /// The newest web page of the history. Asked for only when it matters, since it reads a file.
  std::function<std::optional<Url>()> newestWebPage;
};

/// A session without windows means that the person closed everything on purpose: then nothing opens.
AppLaunchRestorationAction decideLaunchRestoration(const LaunchCircumstances& now);

}  // namespace velto
