#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "app/pages/PageChannels.h"
#include "app/pages/PageContent.h"
#include "app/pages/PlayerPage.h"
#include "browsing/history/HistoryStore.h"
#include "platform/Platform.h"

namespace velto {

/// What this application gives its pages.
class StandardPageContent : public PageContent {
 public:
  /// What was visited here, and what came from Safari.
  StandardPageContent(const Platform& platform, SessionRecording& session,
                      std::shared_ptr<const HistoryStore> history,
                      std::shared_ptr<const HistoryStore> safariImports);

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
  std::shared_ptr<const HistoryStore> history_;
  std::shared_ptr<const HistoryStore> safariImports_;
};

}  // namespace velto
