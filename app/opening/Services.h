#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/windows/Toasts.h"
#include "browsing/VisitRecording.h"
#include "layouts/Layouts.h"
#include "layouts/Sessions.h"
#include "platform/foundation/Date.h"
#include "platform/foundation/HttpCookie.h"
#include "platform/foundation/Url.h"
#include "platform/foundation/UserDefaults.h"

namespace velto {

/// The pages that were visited.
class History : public VisitRecording {
 public:
  virtual void prepare(UserDefaults& defaults) = 0;
  virtual void show(const std::optional<std::string>& domain) = 0;
};

/// Cookies handed over by the command for one private window.
class SignInHandoff {
 public:
  virtual ~SignInHandoff() = default;
  virtual void sweep(WallTime now) = 0;
  /// Absent when the ticket yields nothing.
  virtual std::optional<std::vector<HttpCookie>> redeem(const std::string& ticket) = 0;
};

/// Sign-ins kept the same as Safari's.
class SignInSync {
 public:
  virtual ~SignInSync() = default;
  virtual void startIfEnabled() = 0;
  virtual void runCommand() = 0;
};

/// The window that imports from Safari.
class SafariImport {
 public:
  virtual ~SafariImport() = default;
  /// With the site field set to the text, when there is one.
  virtual void show(const std::optional<std::string>& sites) = 0;
};

/// Menus, offers and checks that belong to the installation rather than to a window.
class Maintenance {
 public:
  virtual ~Maintenance() = default;
  virtual void buildMainMenu() = 0;
  virtual void checkSafariExtension() = 0;
  virtual void applyStoredUpdateChoice(UserDefaults& defaults) = 0;
  virtual void offerCommandLineTool() = 0;
};

/// The other subsystems, as the launch of the application and its requests call on them.
struct Services {
  Sessions& sessions;
  Layouts& layouts;
  History& history;
  SignInHandoff& signInHandoff;
  SignInSync& signInSync;
  SafariImport& safariImport;
  Maintenance& maintenance;
  Toasts& toasts;
};

}  // namespace velto
