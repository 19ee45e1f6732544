#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "app/pages/PageWindows.h"
#include "platform/web/WebView.h"

namespace velto {

/// What a window's pages are given besides the web: message channels and scripts, pages of the application's
/// own schemes, and the video player.
class PageContent {
 public:
  virtual ~PageContent() = default;
  /// `pageWindows` opens what pages ask for by message.
  virtual std::shared_ptr<UserContentController> makeUserContentController(PageWindows& pageWindows) = 0;
  virtual std::map<std::string, std::shared_ptr<UrlSchemeHandler>> makeUrlSchemeHandlers() = 0;
  /// Gives the load that it started, if the engine took it.
  virtual std::optional<Navigation> loadPlayer(WebView& webView, const Url& url) = 0;
  /// The player URL that the web address stands for. Absent for every other page.
  [[nodiscard]] virtual std::optional<Url> playerAt(const Url& url) const = 0;
};

}  // namespace velto
