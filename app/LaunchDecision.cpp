#include "app/LaunchDecision.h"

namespace velto {

AppLaunchRestorationAction decideLaunchRestoration(const LaunchCircumstances& now) {
  namespace action = launch_restoration;
  if (now.hasPendingExplicitLaunchTarget) return action::None{};
  if (now.hasOpenWindows) return action::FocusExisting{};
  if (now.pendingSessionHasWindows) {
    if (*now.pendingSessionHasWindows) return action::RestoreSession{};
    return action::None{};
  }
  if (auto page = now.newestWebPage()) return action::Open{*page, true};
  return action::None{};
}

}  // namespace velto
