#pragma once

#include "platform/ui/Application.h"
#include "platform/web/WebView.h"

namespace velto {

/// UI delegate of every page: asks the person on the page's behalf, in sheets on the page's window.
class PageDialogs : public UIDelegate {
 public:
  explicit PageDialogs(Application& application) : application_(application) {}

  void runBeforeUnloadConfirmPanel(WebView& webView, const std::optional<Url>& page,
                                   std::function<void(bool)> completion) override;

 private:
  Application& application_;
};

}  // namespace velto
