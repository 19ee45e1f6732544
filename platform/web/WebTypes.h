#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Json.h"
#include "platform/foundation/Url.h"

namespace velto {

/// One attempt of a web view to show a page. The web layer numbers them; no number is used twice in a run.
struct Navigation {
  std::uint64_t number = 0;
  bool operator==(const Navigation&) const = default;
};

struct UrlRequest {
  Url url;
  /// Seconds without an answer until the load fails.
  double timeout = 60;
};

/// Why a load failed, in the domains and codes that the application's rules are written in.
struct WebError {
  static constexpr const char* kUrlDomain = "NSURLErrorDomain";
  static constexpr const char* kWebKitDomain = "WebKitErrorDomain";
  static constexpr int kCancelled = -999;

  std::string domain;
  int code = 0;
  std::string localizedDescription;
  std::optional<Url> failingUrl;
};

/// Which scripts share names with each other: the page's own world, or a named one that the page cannot see
/// into.
struct ContentWorld {
  /// Empty for the page's world.
  std::string name;
  auto operator<=>(const ContentWorld&) const = default;
};

/// A script added to every page of a web view.
struct UserScript {
  enum class Time { documentStart, documentEnd };
  std::string source;
  Time time = Time::documentEnd;
  bool mainFrameOnly = false;
  ContentWorld world;
};

/// A message that a page's script posted.
struct ScriptMessage {
  std::string name;
  JsonValue body;
};

}  // namespace velto
