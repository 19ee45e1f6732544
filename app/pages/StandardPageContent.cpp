#include "app/pages/StandardPageContent.h"

#include "app/pages/VeltoPlayerSchemeHandler.h"

namespace velto {

StandardPageContent::StandardPageContent(const Platform& platform, SessionRecording& session)
    : platform_(platform),
      channels_(platform, session),
      player_(platform.files, platform.environment.resourcesDirectory, platform.defaults, VELTO_WEB_HOST) {}

std::shared_ptr<UserContentController> StandardPageContent::makeUserContentController(
    PageWindows& pageWindows) {
  return channels_.makeUserContentController(pageWindows);
}

std::map<std::string, std::shared_ptr<UrlSchemeHandler>> StandardPageContent::makeUrlSchemeHandlers() {
  return {{"velto-player", std::make_shared<VeltoPlayerSchemeHandler>(
                               platform_.files, platform_.environment.resourcesDirectory)}};
}

}  // namespace velto
