#include "app/pages/PageDialogs.h"

#include <string>
#include <utility>

#include "app/pages/LoggedPage.h"

namespace velto {

namespace {

/// A page's words, as they are.
Alert alertSaying(const std::string& message, std::vector<std::string> buttons) {
  Alert alert;
  alert.messageText = message;
  alert.buttons = std::move(buttons);
  return alert;
}

Alert leaveAlert(const std::optional<Url>& page) {
  const auto host = page ? page->host() : std::nullopt;
  Alert alert;
  alert.style = Alert::Style::warning;
  alert.messageText = "Are you sure you want to leave this page?";
  alert.informativeText = host ? "From “" + *host + "”: changes you made may not be saved."
                               : "Changes you made may not be saved.";
  alert.buttons = {"Leave Page", "Stay on Page"};
  return alert;
}

}  // namespace

PageDialogs::PageDialogs(const Platform& platform, OpenWindows& windows, PageQuestions& questions,
                         WindowLife& windowLife, PageWindows& pageWindows, DebugLog& log)
    : application_(platform.application),
      mainQueue_(platform.mainQueue),
      clock_(platform.clock),
      windows_(windows),
      questions_(questions),
      windowLife_(windowLife),
      pageWindows_(pageWindows),
      log_(log) {}

void PageDialogs::runBeforeUnloadConfirmPanel(WebView& webView, const std::optional<Url>& page,
                                              std::function<void(bool)> completion) {
  const PageQuestions::Show<bool> show = [&](std::function<void(bool)> answer) {
    return application_.showAlert(
        leaveAlert(page), webView.window(),
        [answer = std::move(answer)](const AlertAnswer& given) { answer(given.button == 0); });
  };
  // Whether the window may close is asked on the person's behalf, not on the page's.
  if (windowLife_.isClosing(webView)) {
    questions_.ask<bool>(webView, false, std::move(completion), show);
  } else {
    ask<bool>(webView, false, std::move(completion), show);
  }
}

void PageDialogs::runJavaScriptAlertPanel(WebView& webView, const std::string& message,
                                          std::function<void()> completion) {
  confirm(webView, alertSaying(message, {"OK"}),
          [completion = std::move(completion)](bool) { completion(); });
}

void PageDialogs::runJavaScriptConfirmPanel(WebView& webView, const std::string& message,
                                            std::function<void(bool)> completion) {
  confirm(webView, alertSaying(message, {"OK", "Cancel"}), std::move(completion));
}

void PageDialogs::confirm(WebView& webView, const Alert& alert, std::function<void(bool)> completion) {
  ask<bool>(webView, false, std::move(completion), [&](std::function<void(bool)> answer) {
    return application_.showAlert(
        alert, webView.window(),
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
    return application_.showAlert(alert, webView.window(),
                                  [answer = std::move(answer)](const AlertAnswer& given) {
                                    answer(given.button == 0 ? Text(given.text) : std::nullopt);
                                  });
  });
}

void PageDialogs::runOpenPanel(WebView& webView, const OpenPanel& parameters,
                               OpenPanelCompletion completion) {
  using Files = std::optional<std::vector<std::filesystem::path>>;
  ask<Files>(webView, std::nullopt, std::move(completion), [&](std::function<void(Files)> answer) {
    return application_.showOpenPanel(parameters, webView.window(), std::move(answer));
  });
}

template <class T>
void PageDialogs::ask(WebView& webView, T cancelled, std::function<void(T)> completion,
                      const PageQuestions::Show<T>& show) {
  if (windowLife_.refusesDialog(webView)) return completion(cancelled);
  HovrelPanel* panel = windows_.find(webView);
  if (panel == nullptr) return questions_.ask<T>(webView, cancelled, std::move(completion), show);
  if (!mayShow(webView, *panel)) {
    return questions_.ask<T>(webView, cancelled, std::move(completion), [&](std::function<void(T)> answer) {
      mainQueue_.after(kRefusalDelay, [answer = std::move(answer), cancelled] { answer(cancelled); });
      return std::nullopt;
    });
  }
  auto answered = [page = WeakPtr<HovrelPanel>(*panel), &clock = clock_,
                   completion = std::move(completion)](T answer) {
    if (page) page->dialogLimit.answered(clock.uptime());
    completion(std::move(answer));
  };
  questions_.ask<T>(webView, cancelled, std::move(answered), show);
}

bool PageDialogs::mayShow(const WebView& webView, HovrelPanel& panel) {
  const auto verdict = panel.dialogLimit.asked(clock_.uptime(), webView.lastUserGesture());
  if (verdict == DialogLimit::Verdict::refuseAndSay) {
    log_.log("refusing the dialogs of " + loggedPage(webView) + ", which shows too many");
  }
  return verdict == DialogLimit::Verdict::show;
}

}  // namespace velto
