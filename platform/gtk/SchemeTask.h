#pragma once

#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/web/UrlScheme.h"

namespace velto {

/// A request of the engine for a URL of an own scheme.
class SchemeTask final : public UrlSchemeTask {
 public:
  SchemeTask(GObjectPtr<WebKitURISchemeRequest> request, std::optional<Url> mainDocumentUrl)
      : request_(std::move(request)), mainDocumentUrl_(std::move(mainDocumentUrl)) {}
  SchemeTask(const SchemeTask&) = delete;
  SchemeTask& operator=(const SchemeTask&) = delete;
  ~SchemeTask() override;

  [[nodiscard]] std::optional<Url> url() const override;
  [[nodiscard]] std::optional<Url> mainDocumentUrl() const override { return mainDocumentUrl_; }
  [[nodiscard]] bool isStopped() const override;
  void respond(int status, const std::map<std::string, std::string>& headers, std::string body) override;
  void fail(std::string_view reason) override;

 private:
  /// Empty once it is answered.
  GObjectPtr<WebKitURISchemeRequest> request_;
  std::optional<Url> mainDocumentUrl_;
};

/// Makes the context send requests of these schemes to the web views that they come from. Pages of the
/// schemes count as secure and may be fetched from.
void registerOwnSchemes(WebKitWebContext* context, const std::vector<std::string>& schemes);

}  // namespace velto
