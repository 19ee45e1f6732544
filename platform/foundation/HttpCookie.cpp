#include "platform/foundation/HttpCookie.h"

#include "platform/foundation/Text.h"
#include "platform/foundation/Url.h"

namespace velto {
namespace {

const PropertyList* find(const CookieProperties& properties, const char* name) {
  const auto found = properties.find(name);
  return found == properties.end() ? nullptr : &found->second;
}

std::optional<std::string> text(const CookieProperties& properties, const char* name) {
  const PropertyList* const value = find(properties, name);
  const std::string* const text = value == nullptr ? nullptr : value->as<std::string>();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

std::optional<std::string> domain(const CookieProperties& properties) {
  const auto given = text(properties, "Domain");
  if (given && !given->empty()) return lowercased(*given);
  const auto origin = text(properties, "OriginURL");
  const auto url = origin ? Url::parse(*origin) : std::nullopt;
  return url ? url->lowercasedHost() : std::nullopt;
}

std::optional<HttpCookie::SameSite> sameSite(const CookieProperties& properties) {
  const auto policy = text(properties, "SameSite");
  if (policy == "lax") return HttpCookie::SameSite::lax;
  if (policy == "strict") return HttpCookie::SameSite::strict;
  return std::nullopt;
}

}  // namespace

std::optional<HttpCookie> makeHttpCookie(const CookieProperties& properties) {
  const auto name = text(properties, "Name");
  const auto value = text(properties, "Value");
  const auto path = text(properties, "Path");
  const auto host = domain(properties);
  if (!name || name->empty() || !value || !path || !host) return std::nullopt;

  HttpCookie cookie{.name = *name, .value = *value, .domain = *host, .path = *path};
  cookie.secure = find(properties, "Secure") != nullptr;
  cookie.httpOnly = find(properties, "HttpOnly") != nullptr;
  cookie.sameSite = sameSite(properties);
  const PropertyList* const expires = find(properties, "Expires");
  if (const WallTime* const time = expires == nullptr ? nullptr : expires->as<WallTime>()) {
    cookie.expires = *time;
  }
  const PropertyList* const created = find(properties, "Created");
  const auto seconds = created == nullptr ? std::nullopt : created->asDouble();
  if (seconds) cookie.created = sinceReferenceDate(*seconds);
  return cookie;
}

}  // namespace velto
