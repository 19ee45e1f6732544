#include "app/pages/FailurePresenter.h"

#include <string>

#include "app/pages/FailurePage.h"

namespace velto {

std::string FailurePresenter::pageTemplate(const char* name, const char* ifMissing) const {
  return files_.readIfPossible(environment_.resourcesDirectory / name).value_or(ifMissing);
}

void FailurePresenter::showFailure(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url,
                                   const WebError& error) const {
  const std::string text =
      pageTemplate("FailurePage.html", "<title>{{heading}}</title><p>{{body}}</p>{{retry}}");
  const std::string html = failurePage(text, url, error);
  panel.failurePageNavigation =
      url && canBeRetried(*url) ? webView.loadSubstitute(html, *url) : webView.loadHtml(html, {});
  if (environment_.isTestMode()) return;
  const auto host = url ? url->host() : std::nullopt;
  panel.setTitle(host.value_or("Velto"));
}

void FailurePresenter::showCrash(HovrelPanel& panel, WebView& webView) const {
  if (panel.failurePageNavigation && !panel.failurePageDeaths.admit(clock_.uptime())) return;
  const auto url = webView.url();
  const std::string text = pageTemplate("PageCrashed.html", "<a href=\"{{url}}\">Reload</a>");
  const std::string html = crashPage(text, url);
  panel.failurePageNavigation = url ? webView.loadSubstitute(html, *url) : webView.loadHtml(html, url);
}

}  // namespace velto
