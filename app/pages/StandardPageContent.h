#pragma once

#include <map>
#include <memory>
#include <optional>
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
  std::optional<Navigation> loadPlayer(WebView& webView, const Url& url) override {
    return player_.load(webView, url);
  }
  [[nodiscard]] std::optional<Url> playerAt(const Url& url) const override { return player_.playerAt(url); }

 private:
  const Platform& platform_;
  PageChannels channels_;
  PlayerPage player_;
};

}  // namespace velto
