#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/foundation/Url.h"

namespace velto {

/// Exactly eleven of A-Z, a-z, 0-9, "_" and "-".
bool isVideoId(std::string_view text);

/// `velto-player://youtube?v=ID[&playing=true][&t=SECONDS]`, the internal address of a video window. A start
/// below one second is left out. Absent when the id is none.
std::optional<Url> playerLaunchURL(std::string_view videoId, bool playing,
                                   std::optional<std::int64_t> startSeconds);

/// Whether the URL is the internal address of a video window.
bool isPlayerURL(const Url& url);

}  // namespace velto
