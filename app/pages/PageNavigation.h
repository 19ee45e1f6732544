#pragma once

#include <filesystem>

#include "app/windows/OpenWindows.h"
#include "app/windows/WindowLife.h"
#include "platform/foundation/FileManager.h"
#include "platform/loop/Clock.h"
#include "platform/web/WebView.h"

namespace velto {

/// Navigation delegate of every page.
class PageNavigation : public NavigationDelegate {
 public:
  PageNavigation(OpenWindows& windows, WindowLife& windowLife, const FileManager& files, const Clock& clock,
                 std::filesystem::path resources);

  void didStartProvisionalNavigation(WebView& webView, Navigation navigation) override;
  void didCommitNavigation(WebView&, Navigation) override {}
  void didFinishNavigation(WebView& webView, Navigation navigation) override;
  void didFailProvisionalNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  void didFailNavigation(WebView& webView, Navigation navigation, const WebError& error) override;
  /// Says so in the window, with a link that loads the page again. When the process of that page dies in turn
  /// within seconds the window stays empty, so that no process is started over and over.
  void webContentProcessDidTerminate(WebView& webView) override;
  void webContentResponsivenessChanged(WebView& webView, bool responsive) override;

 private:
  OpenWindows& windows_;
  WindowLife& windowLife_;
  const FileManager& files_;
  const Clock& clock_;
  std::filesystem::path resources_;
};

/// The page that a window shows when the process of its page has died.
std::string crashPage(std::string_view pageTemplate, const std::optional<Url>& url);

}  // namespace velto
