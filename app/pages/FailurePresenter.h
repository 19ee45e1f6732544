#pragma once

#include "app/windows/HovrelPanel.h"
#include "platform/foundation/Environment.h"
#include "platform/foundation/FileManager.h"
#include "platform/loop/Clock.h"
#include "platform/web/WebView.h"

namespace velto {

/// Shows in a window what became of its page.
class FailurePresenter {
 public:
  FailurePresenter(const FileManager& files, const Clock& clock, const Environment& environment)
      : files_(files), clock_(clock), environment_(environment) {}

  /// The page at the address could not be loaded.
  void showFailure(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url,
                   const WebError& error) const;
  /// The page's process died. When the processes that tell of it die too, one soon after the other, the
  /// window stays as it is, so that none is started over and over.
  void showCrash(HovrelPanel& panel, WebView& webView) const;

 private:
  [[nodiscard]] std::string pageTemplate(const char* name, const char* ifMissing) const;

  const FileManager& files_;
  const Clock& clock_;
  const Environment& environment_;
};

}  // namespace velto
