#ifdef VELTO_CONTRACT_GTK

#include <mutex>

#include <webkit2/webkit2.h>

#include "platform/gtk/NativeWidget.h"
#include "tests/contract/ContractSite.h"
#include "tests/contract/LoopbackServer.h"

namespace velto::test {

namespace {

GtkWidget* widgetOf(WebView& webView) { return dynamic_cast<NativeWidgetView&>(webView).nativeWidget(); }

std::string bodyOf(const ContractPage& page) {
  const std::string asks =
      page.beforeUnload ? "<script>onbeforeunload = e => { e.preventDefault() }</script>" : "";
  return "<!doctype html><title>" + page.title + "</title>" + asks + "<p>" + page.title + page.html;
}

LoopbackServer::Response responseTo(const std::optional<ContractPage>& page) {
  const std::string end = "Connection: close\r\nContent-Length: ";
  if (!page) return {"HTTP/1.1 404 Not Found\r\n" + end + "0\r\n\r\n"};
  if (!page->redirectTo.empty()) {
    return {"HTTP/1.1 302 Found\r\nLocation: " + page->redirectTo + "\r\n" + end + "0\r\n\r\n"};
  }
  const std::string body = bodyOf(*page);
  const std::string head =
      "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\nCache-Control: no-store\r\n";
  if (page->answer == ContractPage::Answer::cutOff) {
    // Enough of a page, and for long enough, to be shown before it turns out that the rest is missing.
    const std::string shown = body + std::string(2000, ' ');
    constexpr std::chrono::milliseconds kShown{300};
    return {head + "Content-Length: " + std::to_string(shown.size() + 1) + "\r\n\r\n" + shown, kShown};
  }
  return {head + end + std::to_string(body.size()) + "\r\n\r\n" + body};
}

}  // namespace

class ContractSite::Server {
 public:
  void add(const std::string& path, const ContractPage& page) {
    const std::lock_guard lock(mutex_);
    pages_[path] = page;
  }
  [[nodiscard]] Url url(const std::string& path) const {
    return Url::parse("http://127.0.0.1:" + std::to_string(http_.port()) + path).value();
  }

 private:
  std::optional<LoopbackServer::Response> answer(const std::string& path) {
    const std::lock_guard lock(mutex_);
    const auto found = pages_.find(path);
    if (found == pages_.end()) return responseTo(std::nullopt);
    if (found->second.answer == ContractPage::Answer::never) return std::nullopt;
    return responseTo(found->second);
  }

  std::mutex mutex_;
  std::map<std::string, ContractPage> pages_;
  LoopbackServer http_{[this](const std::string& path) { return answer(path); }};
};

ContractSite::ContractSite(ContractPlatform& contract)
    : contract_(contract), server_(std::make_unique<Server>()) {}
ContractSite::~ContractSite() = default;

Url ContractSite::add(const std::string& path, const ContractPage& page) {
  server_->add(path, page);
  return server_->url(path);
}

Url ContractSite::refused() {
  return Url::parse("http://127.0.0.1:" + std::to_string(freePort()) + "/").value();
}

void ContractSite::touch(WebView& webView) {
  for (const GdkEventType type : {GDK_BUTTON_PRESS, GDK_BUTTON_RELEASE}) {
    sendButton(widgetOf(webView), {5, 5}, 1, type);
  }
  evaluate(webView, "0");
}

void ContractSite::follow(WebView& webView, const Url& url) {
  webView.evaluateJavaScript("location = '" + url.absoluteString() + "'");
}

void ContractSite::crash(WebView& webView) {
  webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(widgetOf(webView)));
}

void ContractSite::post(WebView& webView, const std::string& name, const std::string& json) {
  webView.evaluateJavaScript("webkit.messageHandlers." + name + ".postMessage(" + json + "); 0");
}

std::optional<ScriptReply> ContractSite::ask(WebView& webView, const std::string& name,
                                             const std::string& json) {
  evaluate(webView,
           "answer = null; webkit.messageHandlers." + name + ".postMessage(" + json +
               ").then(v => answer = {value: JSON.stringify(v)}, e => answer = {error: e.message}); 0");
  for (int attempt = 0; attempt < 100; ++attempt) {
    const auto answer = evaluate(webView, "answer");
    if (answer && answer->as<JsonValue::Object>() != nullptr) {
      ScriptReply reply;
      if (const auto* value = answer->member("value")) reply.json = *value->as<std::string>();
      if (const auto* error = answer->member("error")) reply.error = *error->as<std::string>();
      return reply;
    }
    contract_.letPass(0.02);
  }
  return std::nullopt;
}

}  // namespace velto::test

#endif
