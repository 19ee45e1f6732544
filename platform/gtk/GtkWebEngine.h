#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Environment.h"
#include "platform/foundation/FileManager.h"
#include "platform/gtk/FirstLoads.h"
#include "platform/gtk/GtkDataStore.h"
#include "platform/gtk/MainFrameProof.h"
#include "platform/gtk/SpareWebView.h"
#include "platform/loop/Clock.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebView.h"

namespace velto {

/// WebKitGTK. It outlives its web views. Each of them has a process of its own, so that one page's crash or
/// endless loop is its own.
///
/// A web view of the default store is the spare one when it is there. The next spare is made when pages have
/// come to rest, so that it takes nothing from the window that the person waits for.
class GtkWebEngine final : public WebEngine {
 public:
  /// `ownSchemes` can be answered by the handlers of a web view's configuration.
  GtkWebEngine(const Clock& clock, MainQueue& queue, BackgroundQueue& background, FileManager& files,
               const Environment& environment, std::vector<std::string> ownSchemes);

  [[nodiscard]] std::unique_ptr<WebView> makeWebView(const Rect& frame,
                                                     WebViewConfiguration configuration) override;
  [[nodiscard]] std::shared_ptr<DataStore> defaultDataStore() override { return defaultStore(); }
  [[nodiscard]] std::shared_ptr<DataStore> makeNonPersistentDataStore() override;

  /// @name For its web views
  /// @{
  [[nodiscard]] const Clock& clock() const { return clock_; }
  [[nodiscard]] MainQueue& queue() const { return queue_; }
  [[nodiscard]] Navigation nextNavigation() { return {++lastNavigation_}; }
  [[nodiscard]] const MainFrameProof::Scripts& mainFrameScripts() const { return mainFrameScripts_; }
  [[nodiscard]] FirstLoads& firstLoads() { return firstLoads_; }
  /// A page is complete, or will not be.
  void pageCameToRest();
  /// @}

 private:
  const std::shared_ptr<GtkDataStore>& defaultStore();

  const Clock& clock_;
  MainQueue& queue_;
  BackgroundQueue& background_;
  FileManager& files_;
  const Environment& environment_;
  std::vector<std::string> ownSchemes_;
  MainFrameProof::Scripts mainFrameScripts_;
  /// Made when it is first needed.
  std::shared_ptr<GtkDataStore> defaultStore_;
  std::uint64_t lastNavigation_ = 0;
  SpareWebView spare_;
  FirstLoads firstLoads_;
};

}  // namespace velto
