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
  /// Of every load that nothing else is said of, also one that a page starts.
  static constexpr double kDefaultTimeout = 60;

  Url url;
  /// Seconds without an answer until the load fails.
  double timeout = kDefaultTimeout;
};

/// A window that a page asks for.
struct PageWindowRequest {
  /// Absent when the page names none.
  std::optional<Url> url;
  /// In points, when the page asks for them.
  std::optional<double> width;
  std::optional<double> height;
  /// The page asks in answer to something that the person did.
  bool isUserGesture = false;
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
  /// It is proved that the script runs in the main frame of the page that the web view shows. Known for
  /// channels of the page's world that reply; false for all others.
  bool isMainFrame = false;
};

}  // namespace velto
