#include "app/pages/FailurePresenter.h"

#include <string>
#include <utility>

#include "app/pages/FailurePage.h"

namespace velto {

namespace {

/// Seconds within which a second death of a window's process is of one kind with the first.
constexpr double kRepeatedDeath = 5;

}  // namespace

std::string FailurePresenter::pageTemplate(const char* name, const char* ifMissing) const {
  return files_.readIfPossible(environment_.resourcesDirectory / name).value_or(ifMissing);
}

void FailurePresenter::showFailure(HovrelPanel& panel, WebView& webView, const std::optional<Url>& url,
                                   const WebError& error) const {
  const std::string text =
      pageTemplate("FailurePage.html", "<title>{{heading}}</title><p>{{body}}</p>{{retry}}");
  const std::string html = failurePage(text, url, error);
  panel.failurePageNavigation = url ? webView.loadSubstitute(html, *url) : webView.loadHtml(html, url);
  if (environment_.isTestMode()) return;
  const auto host = url ? url->host() : std::nullopt;
  panel.setTitle(host.value_or("Velto"));
}

void FailurePresenter::showCrash(HovrelPanel& panel, WebView& webView) const {
  const Uptime now = clock_.uptime();
  const auto previous = std::exchange(panel.lastProcessDeath, now);
  if (panel.failurePageNavigation && previous && now.seconds - previous->seconds < kRepeatedDeath) return;
  const auto url = webView.url();
  const std::string text = pageTemplate("PageCrashed.html", "<a href=\"{{url}}\">Reload</a>");
  panel.failurePageNavigation = webView.loadHtml(crashPage(text, url), url);
}

}  // namespace velto
