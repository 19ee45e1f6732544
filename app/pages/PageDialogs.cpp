#include "app/pages/PageDialogs.h"

namespace velto {

void PageDialogs::runBeforeUnloadConfirmPanel(WebView& webView, const std::optional<Url>& page,
                                              std::function<void(bool)> completion) {
  const auto host = page ? page->host() : std::nullopt;
  Alert alert;
  alert.style = Alert::Style::warning;
  alert.messageText = "Are you sure you want to leave this page?";
  alert.informativeText = host ? "From “" + *host + "”: changes you made may not be saved."
                               : "Changes you made may not be saved.";
  alert.buttons = {"Leave Page", "Stay on Page"};
  application_.showAlert(
      alert, webView.window(),
      [completion = std::move(completion)](const AlertAnswer& answer) { completion(answer.button == 0); });
}

}  // namespace velto
