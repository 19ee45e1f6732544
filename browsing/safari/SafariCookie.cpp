#include "browsing/safari/SafariCookie.h"

namespace velto {

CookieProperties SafariCookie::httpProperties() const {
  CookieProperties properties = {
      {"Domain", domain}, {"Path", path}, {"Name", name}, {"Value", value}, {"Expires", expires}};
  if (isSecure) properties.emplace("Secure", "TRUE");
  if (isHTTPOnly) properties.emplace("HttpOnly", "TRUE");
  if (sameSite == SafariCookieSameSite::lax) properties.emplace("SameSite", "lax");
  if (sameSite == SafariCookieSameSite::strict) properties.emplace("SameSite", "strict");
  if (created) properties.emplace("Created", secondsSinceReferenceDate(*created));
  return properties;
}

}  // namespace velto
