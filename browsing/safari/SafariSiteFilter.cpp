#include "browsing/safari/SafariSiteFilter.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Text.h"
#include "platform/foundation/Url.h"

namespace velto {
namespace {

constexpr std::string_view kWorldWideWeb = "www.";

bool isAtOrBelow(std::string_view host, std::string_view site) {
  if (!host.ends_with(site)) return false;
  return host.size() == site.size() || host[host.size() - site.size() - 1] == '.';
}

}  // namespace

std::string normalizeSite(std::string_view text) {
  std::string site = lowercased(trimWhitespace(text));
  if (site.find("://") != std::string::npos) {
    const auto url = Url::parse(site);
    if (auto host = url ? url->host() : std::nullopt) site = std::move(*host);
  }
  site.erase(0, site.find_first_not_of('.'));
  if (site.starts_with(kWorldWideWeb)) site.erase(0, kWorldWideWeb.size());
  if (const auto slash = site.find('/'); slash != std::string::npos) site.resize(slash);
  return site;
}

SafariSiteFilter SafariSiteFilter::parse(std::string_view text) {
  constexpr std::string_view kSeparators = ", \n";
  SafariSiteFilter filter;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(kSeparators), text.size());
    if (std::string site = normalizeSite(text.substr(0, end)); !site.empty()) {
      filter.domains.push_back(std::move(site));
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return filter;
}

bool SafariSiteFilter::matches(std::string_view host) const {
  if (domains.empty()) return true;
  const std::string site = normalizeSite(host);
  return std::any_of(domains.begin(), domains.end(),
                     [&](const std::string& domain) { return isAtOrBelow(site, domain); });
}

}  // namespace velto
