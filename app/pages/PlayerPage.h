#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/Url.h"
#include "platform/foundation/UserDefaults.h"
#include "platform/web/WebView.h"

namespace velto {

/// Shows videos by the program's own player page, which embeds the video site's player.
class PlayerPage {
 public:
  static constexpr const char* kResource = "YouTubePlayer.html";

  /// `webHost` is the host under whose name the page runs, so that the embed sees a real web origin. Nothing
  /// is fetched from it.
  PlayerPage(const FileManager& files, std::filesystem::path resources, const UserDefaults& defaults,
             std::string webHost);

  /// Loads the page for the player URL. A URL without a video, or a page that cannot be read, is left to the
  /// URL's own scheme.
  std::optional<Navigation> load(WebView& webView, const Url& url) const;
  /// The player URL whose page runs under the web address, which is what the web view calls it.
  [[nodiscard]] std::optional<Url> playerAt(const Url& webUrl) const;

 private:
  const FileManager& files_;
  std::filesystem::path resources_;
  const UserDefaults& defaults_;
  std::string webHost_;
};

/// The https form of a player URL. Absent when it is none or names no video.
std::optional<Url> playerWebURL(const Url& url, std::string_view webHost);

/// What tells the page what to play: the value of its `__VELTO_PLAYER_CONFIG__`. Absent when the URL names no
/// video.
std::optional<std::string> playerConfig(const Url& url);

}  // namespace velto
