#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "browsing/safari/CookieKey.h"
#include "browsing/safari/SafariSiteFilter.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// What a domain still has to lose comes off the next time: it never becomes another one of its length.
void checkNormalForm(const std::string& domain) {
  require(!domain.empty() && domain.find('/') == std::string::npos);
  const std::string again = velto::normalizeSite(domain);
  require(again == domain || again.size() < domain.size());
}

}  // namespace

/// The input is a list of sites, and behind the first line end a host that is looked for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string_view list = text.substr(0, text.find('\n'));
  const std::string_view host = text.substr(std::min(list.size() + 1, text.size()));

  const auto filter = velto::SafariSiteFilter::parse(list);
  for (const std::string& domain : filter.domains) checkNormalForm(domain);
  if (filter.domains.empty()) require(filter.matches(host));
  const std::string normal = velto::normalizeSite(host);
  for (const std::string& domain : filter.domains) {
    if (normal == domain) require(filter.matches(host));
    if (normal.ends_with("." + domain)) require(filter.matches(host));
  }
  const auto key = velto::cookieKey(host, "/", list);
  require(velto::cookieKey("." + key.domain, key.path, key.name) == key);
  return 0;
}
