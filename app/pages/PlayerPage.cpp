#include "app/pages/PlayerPage.h"

#include <utility>
#include <vector>

#include "app/launch/PlayerUrl.h"
#include "app/pages/AdBlocker.h"
#include "platform/foundation/Text.h"

namespace velto {

namespace {

std::optional<std::string> videoIdOf(const Url& url) {
  auto id = url.queryValue("v");
  return id && isVideoId(*id) ? id : std::nullopt;
}

bool isPlaying(const Url& url) { return lowercased(url.queryValue("playing").value_or("")) == "true"; }

std::optional<std::int64_t> startOf(const Url& url) { return parseInteger(url.queryValue("t").value_or("")); }

UserScript atStart(std::string source) {
  return {.source = std::move(source),
          .time = UserScript::Time::documentStart,
          .mainFrameOnly = true,
          .world = {}};
}

}  // namespace

std::optional<Url> playerWebURL(const Url& url, std::string_view webHost) {
  const auto id = videoIdOf(url);
  if (!isPlayerURL(url) || !id) return std::nullopt;
  std::vector<QueryItem> items{{"v", *id}};
  if (isPlaying(url)) items.push_back({"playing", "true"});
  const auto start = startOf(url);
  if (start && *start >= 1) items.push_back({"t", std::to_string(*start)});
  return Url::parse("https://" + std::string(webHost) + "/player?" + encodeQuery(items));
}

std::optional<std::string> playerConfigScript(const Url& url) {
  const auto id = videoIdOf(url);
  if (!id) return std::nullopt;
  return "window.__VELTO_PLAYER_CONFIG__ = { v: \"" + *id +
         "\", playing: " + (isPlaying(url) ? "true" : "false") +
         ", t: " + std::to_string(startOf(url).value_or(0)) + " };";
}

PlayerPage::PlayerPage(const FileManager& files, std::filesystem::path resources,
                       const UserDefaults& defaults, std::string webHost)
    : files_(files), resources_(std::move(resources)), defaults_(defaults), webHost_(std::move(webHost)) {}

void PlayerPage::load(WebView& webView, const Url& url) const {
  const auto html = files_.readIfPossible(resources_ / kResource);
  const auto config = playerConfigScript(url);
  const auto base = playerWebURL(url, webHost_);
  if (!html || !isValidUtf8(*html) || !config || !base) {
    webView.load({url});
    return;
  }
  UserContentController& content = *webView.configuration().userContentController;
  content.addUserScript(atStart(*config));
  if (isAdBlockerEnabled(defaults_)) content.addUserScript(atStart("window.__VELTO_AD_BLOCKER__ = true;"));
  webView.loadHtml(*html, base);
}

}  // namespace velto
