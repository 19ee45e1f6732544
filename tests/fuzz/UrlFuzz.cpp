// A URL reads back as itself, its text is ASCII, and its parts and its changed copies are consistent.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/foundation/Url.h"

namespace {

using velto::Url;

void require(bool condition) {
  if (!condition) std::abort();
}

void checkParts(const Url& url) {
  require(!url.scheme().empty() && url.lowercasedScheme().size() == url.scheme().size());
  if (const auto host = url.host())
    require(!host->empty() && host->find_first_of("/?#@[]\\ ") == std::string::npos);
  require(url.lowercasedHost().has_value() == url.host().has_value());
  require(url.encodedPath().find_first_of("?#") == std::string::npos);
  if (const auto query = url.query()) {
    require(url.queryItems().empty() == query->empty());
    require(query->find('#') == std::string::npos);
  }
  if (const auto port = url.port()) require(*port >= 0);
  if (const auto path = url.filePath()) require(Url::forFile(*path).filePath() == path);
  (void)url.user();
  (void)url.queryValue("a");
}

void checkChanges(const Url& url) {
  const Url bare = url.withoutFragment();
  require(!bare.fragment() && Url::parse(bare.absoluteString()) == bare);
  if (const auto moved = url.withHostAndPort("h.example", 8080)) {
    require(moved->host() == "h.example" && moved->port() == 8080 && moved->user() == url.user());
    require(moved->encodedPath() == url.encodedPath() && moved->query() == url.query());
    require(moved->fragment() == url.fragment());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  (void)velto::percentDecode(text);
  require(Url::forFile("/" + std::string(text)).absoluteString().starts_with("file:///"));
  const std::vector<velto::QueryItem> items = {{std::string(text), std::string(text)}};
  require(Url::parse("x:?" + velto::encodeQuery(items)).has_value());
  if (const auto other = Url::parse("http://a/")->withHost(text)) require(other->encodedPath() == "/");

  const auto url = Url::parse(text);
  if (!url) return 0;
  for (const char c : url->absoluteString()) require(c > 0x20 && c < 0x7f);
  require(Url::parse(url->absoluteString()) == url);
  checkParts(*url);
  checkChanges(*url);
  return 0;
}
