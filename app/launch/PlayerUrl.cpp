#include "app/launch/PlayerUrl.h"

#include <algorithm>
#include <string>
#include <vector>

namespace velto {
namespace {

constexpr std::size_t kVideoIdLength = 11;

bool isVideoIdCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

}  // namespace

bool isVideoId(std::string_view text) {
  return text.size() == kVideoIdLength && std::all_of(text.begin(), text.end(), isVideoIdCharacter);
}

std::optional<Url> playerLaunchURL(std::string_view videoId, bool playing,
                                   std::optional<std::int64_t> startSeconds) {
  if (!isVideoId(videoId)) return std::nullopt;
  std::vector<QueryItem> items{{"v", std::string(videoId)}};
  if (playing) items.push_back({"playing", "true"});
  if (startSeconds && *startSeconds >= 1) items.push_back({"t", std::to_string(*startSeconds)});
  return Url::parse("velto-player://youtube?" + encodeQuery(items));
}

bool isPlayerURL(const Url& url) {
  return url.lowercasedScheme() == "velto-player" && url.lowercasedHost() == "youtube";
}

}  // namespace velto
