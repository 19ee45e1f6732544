#pragma once

#include <map>
#include <memory>
#include <string>

#include "app/pages/PageChannels.h"
#include "app/pages/PageContent.h"
#include "app/pages/PlayerPage.h"
#include "platform/Platform.h"

namespace velto {

/// What this application gives its pages.
class StandardPageContent : public PageContent {
 public:
  StandardPageContent(const Platform& platform, SessionRecording& session);

  std::shared_ptr<UserContentController> makeUserContentController(PageWindows& pageWindows) override;
  std::map<std::string, std::shared_ptr<UrlSchemeHandler>> makeUrlSchemeHandlers() override;
  void loadPlayer(WebView& webView, const Url& url) override { player_.load(webView, url); }

 private:
  const Platform& platform_;
  PageChannels channels_;
  PlayerPage player_;
};

}  // namespace velto
