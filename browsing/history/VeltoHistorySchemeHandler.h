#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "browsing/history/HistoryStore.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/WeakPtr.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/UrlScheme.h"

namespace velto {

/// Serves the history page, and to nobody but this page the visits that it shows. Every web view has it, so
/// pages of the web can ask it too.
class VeltoHistorySchemeHandler : public UrlSchemeHandler, public Weakable {
 public:
  /// What is served. The stores are read in the background, also when the handler has gone by then.
  struct Sources {
    std::filesystem::path resources;
    std::shared_ptr<const HistoryStore> own;
    std::shared_ptr<const HistoryStore> imported;
  };

  VeltoHistorySchemeHandler(const FileManager& files, MainQueue& mainQueue, BackgroundQueue& backgroundQueue,
                            Sources sources);

  void startTask(WebView& webView, std::unique_ptr<UrlSchemeTask> task) override;

 private:
  void answerWithPage(UrlSchemeTask& task) const;
  void answerWithData(std::unique_ptr<UrlSchemeTask> task, const std::optional<std::string>& domain);
  void finish(std::uint64_t number, std::string json);

  const FileManager& files_;
  MainQueue& mainQueue_;
  BackgroundQueue& backgroundQueue_;
  Sources sources_;
  /// Those whose rows are being read. They stay here because tasks are for the main thread.
  std::map<std::uint64_t, std::unique_ptr<UrlSchemeTask>> waiting_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace velto
