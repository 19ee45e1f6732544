#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/headless/ScriptedPage.h"
#include "platform/web/UrlScheme.h"

namespace velto {

/// Passes the first answer on; being dropped without one is an answer too.
class HeadlessSchemeTask final : public UrlSchemeTask {
 public:
  using Answer = std::function<void(SchemeResponse)>;
  /// Asked as often as somebody wants to know.
  using IsStopped = std::function<bool()>;
  HeadlessSchemeTask(std::string_view urlText, std::optional<Url> mainDocumentUrl, Answer answer,
                     IsStopped isStopped);
  ~HeadlessSchemeTask() override;
  HeadlessSchemeTask(const HeadlessSchemeTask&) = delete;
  HeadlessSchemeTask& operator=(const HeadlessSchemeTask&) = delete;

  [[nodiscard]] std::optional<Url> url() const override { return url_; }
  [[nodiscard]] std::optional<Url> mainDocumentUrl() const override { return mainDocumentUrl_; }
  [[nodiscard]] bool isStopped() const override { return isStopped_(); }
  void respond(int status, const std::map<std::string, std::string>& headers, std::string body) override;
  void fail(std::string_view reason) override;

 private:
  void answer(SchemeResponse response);

  std::optional<Url> url_;
  std::optional<Url> mainDocumentUrl_;
  Answer answer_;
  IsStopped isStopped_;
};

}  // namespace velto
