#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/windows/Toasts.h"
#include "app/windows/WindowOpening.h"
#include "browsing/VisitRecording.h"
#include "browsing/safari/SafariImport.h"
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
  virtual void setOpener(LayoutWindowOpening& opener) = 0;
  virtual void prepare(UserDefaults& defaults) = 0;
  /// The newest visit of a page of the web (http or https). It may read the whole history.
  [[nodiscard]] virtual std::optional<Url> newestWebPage() const = 0;
  virtual void show(const std::optional<std::string>& domain) = 0;
  /// Returns when every visit is written.
  virtual void finishRecording() = 0;
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
