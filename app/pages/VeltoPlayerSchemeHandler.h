#pragma once

#include <filesystem>
#include <memory>
#include <utility>

#include "platform/foundation/FileManager.h"
#include "platform/web/UrlScheme.h"

namespace velto {

/// Answers player URLs with the player page, for windows that could not be given it directly.
class VeltoPlayerSchemeHandler : public UrlSchemeHandler {
 public:
  VeltoPlayerSchemeHandler(const FileManager& files, std::filesystem::path resources)
      : files_(files), resources_(std::move(resources)) {}

  void startTask(WebView& webView, std::unique_ptr<UrlSchemeTask> task) override;

 private:
  const FileManager& files_;
  std::filesystem::path resources_;
};

}  // namespace velto
