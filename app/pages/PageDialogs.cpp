#include "app/pages/PageDialogs.h"

#include <string>
#include <utility>

#include "platform/web/PendingAnswer.h"

namespace velto {

namespace {

/// A page's words, as they are.
Alert alertSaying(const std::string& message, std::vector<std::string> buttons) {
  Alert alert;
  alert.messageText = message;
  alert.buttons = std::move(buttons);
  return alert;
}

}  // namespace

PageDialogs::PageDialogs(Application& application, OpenWindows& windows, WindowLife& windowLife,
                         PageWindows& pageWindows, DebugLog& log, const Clock& clock)
    : application_(application),
      windows_(windows),
      windowLife_(windowLife),
      pageWindows_(pageWindows),
      log_(log),
      clock_(clock) {
  windowLife_.setClosingObserver([self = WeakPtr<PageDialogs>(*this)](WebView& webView) {
    if (self) self->cancelOpen(webView);
  });
}

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

void PageDialogs::runJavaScriptAlertPanel(WebView& webView, const std::string& message,
                                          std::function<void()> completion) {
  const auto done = [completion = std::move(completion)](bool) { completion(); };
  ask<bool>(webView, false, done, [&](std::function<void(bool)> answer) {
    application_.showAlert(alertSaying(message, {"OK"}), webView.window(),
                           [answer = std::move(answer)](const AlertAnswer&) { answer(true); });
  });
}

void PageDialogs::runJavaScriptConfirmPanel(WebView& webView, const std::string& message,
                                            std::function<void(bool)> completion) {
  ask<bool>(webView, false, std::move(completion), [&](std::function<void(bool)> answer) {
    application_.showAlert(
        alertSaying(message, {"OK", "Cancel"}), webView.window(),
        [answer = std::move(answer)](const AlertAnswer& given) { answer(given.button == 0); });
  });
}

void PageDialogs::runJavaScriptTextInputPanel(WebView& webView, const std::string& prompt,
                                              const std::string& defaultText,
                                              std::function<void(std::optional<std::string>)> completion) {
  using Text = std::optional<std::string>;
  ask<Text>(webView, std::nullopt, std::move(completion), [&](std::function<void(Text)> answer) {
    Alert alert = alertSaying(prompt, {"OK", "Cancel"});
    alert.textField = defaultText;
    application_.showAlert(alert, webView.window(), [answer = std::move(answer)](const AlertAnswer& given) {
      answer(given.button == 0 ? Text(given.text) : std::nullopt);
    });
  });
}

void PageDialogs::runOpenPanel(WebView& webView, const OpenPanel& parameters,
                               OpenPanelCompletion completion) {
  using Files = std::optional<std::vector<std::filesystem::path>>;
  ask<Files>(webView, std::nullopt, std::move(completion), [&](std::function<void(Files)> answer) {
    application_.showOpenPanel(parameters, webView.window(), std::move(answer));
  });
}

template <class T>
void PageDialogs::ask(WebView& webView, T cancelled, std::function<void(T)> completion,
                      const std::function<void(std::function<void(T)>)>& show) {
  const auto answer = std::make_shared<PendingAnswer<T>>(cancelled, std::move(completion));
  if (!mayShow(webView)) return;
  std::erase_if(open_, [](const Open& open) { return open.answer.expired(); });
  open_.push_back({webView, answer, [weak = std::weak_ptr(answer), cancelled] {
                     if (const auto open = weak.lock()) open->answer(cancelled);
                   }});
  show([answer](T given) { answer->answer(std::move(given)); });
}

bool PageDialogs::mayShow(WebView& webView) {
  if (windowLife_.refusesDialog(webView)) return false;
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr) return true;
  const auto verdict = panel->dialogLimit.asked(clock_.uptime());
  if (verdict == DialogLimit::Verdict::refuseAndSay) {
    const auto url = webView.url();
    log_.log("refusing the dialogs of " + (url ? url->absoluteString() : "unknown") +
             ", which shows too many");
  }
  return verdict == DialogLimit::Verdict::show;
}

void PageDialogs::cancelOpen(const WebView& webView) {
  // An answer may lead to the next question.
  for (const Open& open : std::exchange(open_, {})) {
    if (open.page.get() == &webView) {
      open.cancel();
    } else {
      open_.push_back(open);
    }
  }
}

}  // namespace velto
