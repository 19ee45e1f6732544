#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/launch/Address.h"
#include "platform/foundation/HttpCookie.h"
#include "platform/foundation/Url.h"

namespace velto {

/// A page asked for from outside, and how its window is to open. Numbers are as they were given, without
/// limits.
struct LaunchRequest {
  Url target;
  /// Content size in points.
  std::optional<std::int64_t> width = {};
  std::optional<std::int64_t> height = {};
  /// Distance from the left and, downwards, from the top edge of the screen's visible area.
  std::optional<std::int64_t> x = {};
  std::optional<std::int64_t> y = {};
  /// A multiplier, already clamped.
  std::optional<double> zoom = {};
  /// Raise an open window with this page rather than open another.
  bool reuse = false;
  /// Leave the application as it is: do not activate it.
  bool background = false;
  /// Pinned above other windows.
  bool onTop = false;
  /// The window never takes the focus when it is shown.
  bool noFocus = false;
  /// Start with the control bar collapsed to its toggle button.
  bool hide = false;
  /// Private, with a data store that is forgotten.
  bool incognito = false;
  /// What a private window starts with.
  std::vector<HttpCookie> cookies = {};

  bool operator==(const LaunchRequest&) const = default;
};

/// What a pop-out URL says. A ticket is exchanged for the cookies of a private window; only a private request
/// has one.
struct ParsedLaunch {
  LaunchRequest request;
  std::optional<std::string> cookieTicket = {};

  bool operator==(const ParsedLaunch&) const = default;
};

/// Reads `velto://open?url=...` and its like; scheme, host and path are not looked at. Keys that cannot be
/// understood count as missing. Absent when the URL names no page.
std::optional<ParsedLaunch> parseLaunchRequest(const Url& url, const LocalDomainPorts& ports);

}  // namespace velto
