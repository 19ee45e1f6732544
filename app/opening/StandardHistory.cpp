#include "app/opening/StandardHistory.h"

#include "browsing/history/HistoryPage.h"

namespace velto {
namespace {

std::shared_ptr<HistoryStore> makeStore(const Platform& platform, const char* fileName, bool prettyPrinted) {
  return std::make_shared<HistoryStore>(platform.files, platform.environment.applicationSupportDirectory,
                                        fileName, prettyPrinted);
}

}  // namespace

StandardHistory::StandardHistory(const Platform& platform)
    : primary_(makeStore(platform, HistoryStore::kPrimaryFileName, true)),
      safariImports_(makeStore(platform, HistoryStore::kSafariImportsFileName, false)),
      manager_(primary_, platform.clock, platform.mainQueue, platform.backgroundQueue,
               platform.notifications) {}

void StandardHistory::show(const std::optional<std::string>& domain) {
  if (opener_) opener_->openWindow(HistoryPage::url(domain), {});
}

}  // namespace velto
