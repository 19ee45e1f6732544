#pragma once

#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/web/WebTypes.h"

namespace velto {

/// What a headless web view finds at an address.
struct ScriptedPage {
  static constexpr double kNever = std::numeric_limits<double>::infinity();

  std::string title = {};
  /// The page asks before it is left.
  bool beforeUnload = false;
  /// Seconds from the start of the load until the server answers. A load that waits longer than its request's
  /// timeout fails with -1001.
  double loadDelay = 0;
  /// Seconds from the first byte until the page is complete.
  double finishDelay = 0;
  /// The load fails with this: provisionally, or after the page was committed when `failsAfterCommit`.
  std::optional<WebError> error = std::nullopt;
  bool failsAfterCommit = false;
  /// Another address that the server sends the load to.
  std::string redirectTo = {};
  /// What a script evaluated in the page gives; absent without it.
  std::function<std::optional<JsonValue>(std::string_view script)> answerScript = nullptr;
};

/// How a request of an own scheme was answered.
struct SchemeResponse {
  int status = 0;
  std::map<std::string, std::string> headers;
  std::string body;
  /// Set when the handler failed the request or dropped it; the rest is empty then.
  std::optional<std::string> failure;
};

}  // namespace velto
