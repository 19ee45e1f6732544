#include "platform/headless/HeadlessWebEngine.h"

#include <stdexcept>
#include <utility>

#include "platform/headless/EngineUrl.h"
#include "platform/headless/HeadlessWebView.h"

namespace velto {

HeadlessWebEngine::HeadlessWebEngine(VirtualLoop& loop)
    : loop_(loop), defaultStore_(std::make_shared<HeadlessDataStore>(loop, true)) {}

void HeadlessWebEngine::setPage(std::string_view urlText, ScriptedPage page) {
  const auto url = Url::parse(urlText);
  if (!url) throw std::invalid_argument("A page cannot be at \"" + std::string(urlText) + "\"");
  pages_[engineUrl(*url).absoluteString()] = std::move(page);
}

ScriptedPage HeadlessWebEngine::pageAt(const Url& url) const {
  for (const Url& address : {engineUrl(url), engineUrl(url).withoutFragment()}) {
    if (const auto found = pages_.find(address.absoluteString()); found != pages_.end()) return found->second;
  }
  return {};
}

std::unique_ptr<WebView> HeadlessWebEngine::makeWebView(const Rect& frame,
                                                        WebViewConfiguration configuration) {
  auto webView = std::make_unique<HeadlessWebView>(*this, frame, std::move(configuration));
  webViews_.push_back(webView.get());
  note("makeWebView");
  return webView;
}

std::shared_ptr<DataStore> HeadlessWebEngine::makeNonPersistentDataStore() {
  return std::make_shared<HeadlessDataStore>(loop_, false);
}

void HeadlessWebEngine::note(std::string entry) {
  log_.push_back(std::move(entry));
  if (const auto tell = onLog) tell(std::string(log_.back()));
}

void HeadlessWebEngine::webViewGone(const HeadlessWebView& webView) { std::erase(webViews_, &webView); }

}  // namespace velto
