#include "app/pages/StandardPageContent.h"

#include <utility>

#include "app/pages/VeltoPlayerSchemeHandler.h"
#include "browsing/history/HistoryPage.h"
#include "browsing/history/VeltoHistorySchemeHandler.h"

namespace velto {

StandardPageContent::StandardPageContent(const Platform& platform, SessionRecording& session,
                                         std::shared_ptr<const HistoryStore> history,
                                         std::shared_ptr<const HistoryStore> safariImports)
    : platform_(platform),
      channels_(platform, session),
      player_(platform.files, platform.environment.resourcesDirectory, platform.defaults, VELTO_WEB_HOST),
      history_(std::move(history)),
      safariImports_(std::move(safariImports)) {}

std::shared_ptr<UserContentController> StandardPageContent::makeUserContentController(
    PageWindows& pageWindows) {
  return channels_.makeUserContentController(pageWindows);
}

std::map<std::string, std::shared_ptr<UrlSchemeHandler>> StandardPageContent::makeUrlSchemeHandlers() {
  const auto& resources = platform_.environment.resourcesDirectory;
  return {
      {"velto-player", std::make_shared<VeltoPlayerSchemeHandler>(platform_.files, resources)},
      {HistoryPage::kScheme, std::make_shared<VeltoHistorySchemeHandler>(
                                 platform_.files, platform_.mainQueue, platform_.backgroundQueue,
                                 VeltoHistorySchemeHandler::Sources{resources, history_, safariImports_})}};
}

}  // namespace velto
