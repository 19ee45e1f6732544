#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/HeadlessDataStore.h"
#include "platform/headless/ScriptedPage.h"
#include "platform/headless/VirtualLoop.h"
#include "platform/web/WebView.h"

namespace velto {

class HeadlessWebView;

/// Web views whose web is what the test wrote down. It outlives its web views.
class HeadlessWebEngine final : public WebEngine {
 public:
  explicit HeadlessWebEngine(VirtualLoop& loop);

  /// What is found at the address, with or without a fragment; an address without a page gives an empty one
  /// with the title "". Throws `std::invalid_argument` when the text is no URL.
  void setPage(std::string_view urlText, ScriptedPage page);
  [[nodiscard]] ScriptedPage pageAt(const Url& url) const;

  /// The live ones, in the order in which they were made.
  [[nodiscard]] const std::vector<HeadlessWebView*>& webViews() const { return webViews_; }
  [[nodiscard]] HeadlessDataStore& defaultStore() { return *defaultStore_; }
  /// What was asked of the engine and its web views, in order, as "makeWebView", "load http://a.example/",
  /// "loadHtml <base URL>", "loadSubstitute <address>", "reload", "goBack", "goForward", "stopLoading".
  [[nodiscard]] const std::vector<std::string>& log() const { return log_; }
  /// Called with each entry as it is made, from within the call that made it, to look at the state at that
  /// moment.
  std::function<void(const std::string& entry)> onLog;

  [[nodiscard]] std::unique_ptr<WebView> makeWebView(const Rect& frame,
                                                     WebViewConfiguration configuration) override;
  [[nodiscard]] std::shared_ptr<DataStore> defaultDataStore() override { return defaultStore_; }
  [[nodiscard]] std::shared_ptr<DataStore> makeNonPersistentDataStore() override;

  /// @name For its web views
  /// @{
  [[nodiscard]] VirtualLoop& loop() const { return loop_; }
  [[nodiscard]] Navigation nextNavigation() { return {++lastNavigation_}; }
  void note(std::string entry);
  void webViewGone(const HeadlessWebView& webView);
  /// @}

 private:
  VirtualLoop& loop_;
  std::shared_ptr<HeadlessDataStore> defaultStore_;
  std::map<std::string, ScriptedPage, std::less<>> pages_;
  std::vector<HeadlessWebView*> webViews_;
  std::vector<std::string> log_;
  std::uint64_t lastNavigation_ = 0;
};

}  // namespace velto
