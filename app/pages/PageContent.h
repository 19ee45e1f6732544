#pragma once

#include <map>
#include <memory>
#include <string>

#include "app/windows/HovrelPanel.h"
#include "platform/web/WebView.h"

namespace velto {

/// What a window's pages are given besides the web: message channels and scripts, pages of the application's
/// own schemes, and the video player.
class PageContent {
 public:
  virtual ~PageContent() = default;
  virtual std::shared_ptr<UserContentController> makeUserContentController() = 0;
  virtual std::map<std::string, std::shared_ptr<UrlSchemeHandler>> makeUrlSchemeHandlers() = 0;
  virtual void loadPlayer(WebView& webView, const Url& url) = 0;
};

}  // namespace velto
