#include "platform/headless/EngineUrl.h"

#include <algorithm>
#include <string>

namespace velto {

Url engineUrl(const Url& url) {
  const std::string scheme = url.lowercasedScheme();
  const auto host = url.lowercasedHost();
  if ((scheme != "http" && scheme != "https") || !host) return url;
  std::string text = scheme + "://";
  const std::string& given = url.absoluteString();
  const std::size_t start = scheme.size() + 3;
  const std::size_t end = std::min(given.find_first_of("/?#", start), given.size());
  const std::string authority = given.substr(start, end - start);
  if (const std::size_t at = authority.rfind('@'); at != std::string::npos)
    text += authority.substr(0, at + 1);
  text += host->find(':') == std::string::npos ? *host : "[" + *host + "]";
  const auto port = url.port();
  if (port && *port != (scheme == "http" ? 80 : 443)) text += ":" + std::to_string(*port);
  if (end == given.size() || given[end] != '/') text += "/";
  return Url::parse(text + given.substr(end)).value_or(url);
}

}  // namespace velto
