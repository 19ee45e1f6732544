#ifdef VELTO_CONTRACT_HEADLESS

#include "tests/contract/ContractSite.h"

namespace velto::test {

namespace {

constexpr const char* kRoot = "http://site.example";

HeadlessWebView& headless(WebView& webView) { return dynamic_cast<HeadlessWebView&>(webView); }

JsonValue jsonOf(const std::string& text) { return readJson(text).value(); }

std::optional<JsonValue> answerOf(const std::string& title, std::string_view script) {
  if (script == "document.title") return JsonValue(title);
  if (script == "[1, 2.5, 'x', null]") return readJson(R"([1, 2.5, "x", null])");
  if (script == "null") return JsonValue(JsonValue::Storage());
  return std::nullopt;
}

}  // namespace

class ContractSite::Server {};

ContractSite::ContractSite(ContractPlatform& contract) : contract_(contract) {}
ContractSite::~ContractSite() = default;

Url ContractSite::add(const std::string& path, const ContractPage& page) {
  ScriptedPage scripted;
  scripted.title = page.title;
  scripted.beforeUnload = page.beforeUnload;
  if (page.answer == ContractPage::Answer::never) scripted.loadDelay = ScriptedPage::kNever;
  if (page.answer == ContractPage::Answer::cutOff) {
    scripted.error = WebError{WebError::kUrlDomain, -1005, "cut off", std::nullopt};
    scripted.failsAfterCommit = true;
  }
  if (!page.redirectTo.empty()) scripted.redirectTo = kRoot + page.redirectTo;
  scripted.answerScript = [title = page.title](std::string_view script) { return answerOf(title, script); };
  dynamic_cast<HeadlessWebEngine&>(contract_.platform().webEngine).setPage(kRoot + path, scripted);
  return Url::parse(kRoot + path).value();
}

Url ContractSite::refused() {
  const std::string text = "http://refused.example/";
  ScriptedPage page;
  page.error = WebError{WebError::kUrlDomain, -1004, "refused", std::nullopt};
  dynamic_cast<HeadlessWebEngine&>(contract_.platform().webEngine).setPage(text, page);
  return Url::parse(text).value();
}

void ContractSite::touch(WebView& webView) { webView.mouseDown({}); }

void ContractSite::follow(WebView& webView, const Url& url) {
  headless(webView).clickLink(url.absoluteString());
}

void ContractSite::crash(WebView& webView) { headless(webView).crash(); }

void ContractSite::post(WebView& webView, const std::string& name, const std::string& json) {
  headless(webView).postMessage(name, jsonOf(json));
}

std::optional<ScriptReply> ContractSite::ask(WebView& webView, const std::string& name,
                                             const std::string& json) {
  auto answer = std::make_shared<std::optional<ScriptReply>>();
  headless(webView).postMessage(name, jsonOf(json), {},
                                [answer](const ScriptReply& reply) { *answer = reply; });
  contract_.runUntil([answer] { return answer->has_value(); });
  return *answer;
}

}  // namespace velto::test

#endif
