#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Url.h"
#include "platform/foundation/WeakPtr.h"

namespace velto {

class WebView;

/// One request for a URL of an own scheme. It is answered once, by `respond` or `fail`; one that is dropped
/// without an answer fails.
class UrlSchemeTask {
 public:
  virtual ~UrlSchemeTask() = default;
  /// Absent when the text that the page asked for is no URL.
  [[nodiscard]] virtual std::optional<Url> url() const = 0;
  /// The page that is shown, which may have asked; the one that is being loaded while none is shown.
  [[nodiscard]] virtual std::optional<Url> mainDocumentUrl() const = 0;
  /// Whoever asked has gone: an answer would reach nobody.
  [[nodiscard]] virtual bool isStopped() const = 0;
  virtual void respond(int status, const std::map<std::string, std::string>& headers, std::string body) = 0;
  virtual void fail(std::string_view reason) = 0;
};

/// Answers the requests of one web view for one scheme. Main thread only.
class UrlSchemeHandler {
 public:
  virtual ~UrlSchemeHandler() = default;
  virtual void startTask(WebView& webView, std::unique_ptr<UrlSchemeTask> task) = 0;
};

}  // namespace velto
