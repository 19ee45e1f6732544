#include "app/launch/PageKey.h"

namespace velto {

std::optional<std::string> canonicalPageKey(const Url& url) {
  const auto host = url.lowercasedHost();
  if (!host) return std::nullopt;
  const bool isIpLiteral = host->find(':') != std::string::npos;

  std::string key = url.lowercasedScheme() + "://" + (isIpLiteral ? "[" + *host + "]" : *host);
  if (const auto port = url.port()) key += ":" + std::to_string(*port);
  const std::string path = url.encodedPath();
  key += path.empty() ? "/" : path;
  if (const auto query = url.query()) key += "?" + *query;
  return key;
}

}  // namespace velto
