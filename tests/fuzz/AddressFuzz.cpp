#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "app/launch/Address.h"
#include "app/launch/PageKey.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

/// What comes out of the normaliser is a URL with a host and stays what it is, and so does its page key.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const velto::LocalDomainPorts ports{{"a.local", 4000}, {".local", 1}};
  const auto url = velto::normalizedAddressURL(text, ports);
  if (!url) return 0;

  require(url->host().has_value());
  require(url->absoluteString().find(' ') == std::string::npos);
  require(velto::Url::parse(url->absoluteString()) == url);
  require(velto::normalizedAddressURL(url->absoluteString(), ports) == url);
  require(velto::rewriteLocalDomain(*url, ports) == *url);
  require(url->lowercasedHost() != "a.local");

  const auto key = velto::canonicalPageKey(*url);
  require(key.has_value());
  const auto keyUrl = velto::Url::parse(*key);
  require(keyUrl.has_value());
  require(velto::canonicalPageKey(*keyUrl) == key);
  return 0;
}
