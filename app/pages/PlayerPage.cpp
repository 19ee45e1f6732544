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

/// What the page finds under the name. Scripts stay with their web view, so a value is added only when the
/// one that was set last is another.
void setGlobal(UserContentController& content, const std::string& name, const std::string& value) {
  const std::string beginning = "window." + name + " = ";
  const std::string source = beginning + value + ";";
  const UserScript* last = nullptr;
  for (const UserScript& script : content.userScripts()) {
    if (script.source.starts_with(beginning)) last = &script;
  }
  if (last != nullptr && last->source == source) return;
  content.addUserScript(
      {.source = source, .time = UserScript::Time::documentStart, .mainFrameOnly = true, .world = {}});
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

std::optional<std::string> playerConfig(const Url& url) {
  const auto id = videoIdOf(url);
  if (!id) return std::nullopt;
  return "{ v: \"" + *id + "\", playing: " + (isPlaying(url) ? "true" : "false") +
         ", t: " + std::to_string(startOf(url).value_or(0)) + " }";
}

PlayerPage::PlayerPage(const FileManager& files, std::filesystem::path resources,
                       const UserDefaults& defaults, std::string webHost)
    : files_(files), resources_(std::move(resources)), defaults_(defaults), webHost_(std::move(webHost)) {}

std::optional<Navigation> PlayerPage::load(WebView& webView, const Url& url) const {
  const auto html = files_.readIfPossible(resources_ / kResource);
  const auto config = playerConfig(url);
  const auto base = playerWebURL(url, webHost_);
  if (!html || !isValidUtf8(*html) || !config || !base) return webView.load({url});
  UserContentController& content = *webView.configuration().userContentController;
  setGlobal(content, "__VELTO_PLAYER_CONFIG__", *config);
  setGlobal(content, "__VELTO_AD_BLOCKER__", isAdBlockerEnabled(defaults_) ? "true" : "false");
  return webView.loadHtml(*html, base);
}

std::optional<Url> PlayerPage::playerAt(const Url& webUrl) const {
  const bool isItsAddress = webUrl.lowercasedScheme() == "https" &&
                            webUrl.lowercasedHost() == lowercased(webHost_) && !webUrl.port() &&
                            webUrl.encodedPath() == "/player";
  const auto id = videoIdOf(webUrl);
  return isItsAddress && id ? playerLaunchURL(*id, isPlaying(webUrl), startOf(webUrl)) : std::nullopt;
}

}  // namespace velto
