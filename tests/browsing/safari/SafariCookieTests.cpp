#include <gtest/gtest.h>

#include "browsing/safari/SafariCookie.h"

namespace velto {
namespace {

SafariCookie fullCookie() {
  return {.domain = ".Example.com",
          .name = "SID",
          .path = "/",
          .value = "",
          .expires = {978307200},
          .isSecure = true,
          .isHTTPOnly = true,
          .sameSite = SafariCookieSameSite::strict,
          .created = WallTime{978307200.5}};
}

TEST(SafariCookie, NamesItsProperties) {
  const CookieProperties expected = {{"Domain", ".Example.com"},
                                     {"Path", "/"},
                                     {"Name", "SID"},
                                     {"Value", ""},
                                     {"Expires", WallTime{978307200}},
                                     {"Secure", "TRUE"},
                                     {"HttpOnly", "TRUE"},
                                     {"SameSite", "strict"},
                                     {"Created", 0.5}};
  EXPECT_EQ(fullCookie().httpProperties(), expected);
  const SafariCookie bare = {.domain = "a", .name = "b", .path = "/", .value = "c"};
  EXPECT_EQ(bare.httpProperties().size(), 5U);
}

TEST(SafariCookie, BecomesACookieOfTheStore) {
  const HttpCookie cookie = makeHttpCookie(fullCookie().httpProperties()).value();
  EXPECT_EQ(cookie, (HttpCookie{.name = "SID",
                                .value = "",
                                .domain = ".example.com",
                                .path = "/",
                                .expires = WallTime{978307200},
                                .secure = true,
                                .httpOnly = true,
                                .sameSite = HttpCookie::SameSite::strict,
                                .created = WallTime{978307200.5}}));
  SafariCookie unspecified = fullCookie();
  for (const auto sameSite : {SafariCookieSameSite::none, SafariCookieSameSite::unspecified}) {
    unspecified.sameSite = sameSite;
    EXPECT_EQ(makeHttpCookie(unspecified.httpProperties())->sameSite, std::nullopt);
  }
}

TEST(HttpCookie, PropertiesThatMakeNone) {
  const CookieProperties least = {{"Name", "n"}, {"Value", ""}, {"Path", "/"}, {"Domain", "a"}};
  ASSERT_TRUE(makeHttpCookie(least));
  EXPECT_EQ(makeHttpCookie(least)->expires, std::nullopt);
  for (const char* name : {"Name", "Value", "Path", "Domain"}) {
    CookieProperties properties = least;
    properties.erase(name);
    EXPECT_FALSE(makeHttpCookie(properties)) << name;
    properties.emplace(name, 1);
    EXPECT_FALSE(makeHttpCookie(properties)) << name << " is no text";
  }
  CookieProperties odd = least;
  odd.insert_or_assign("Name", "");
  EXPECT_FALSE(makeHttpCookie(odd));
  odd = least;
  odd.erase("Domain");
  odd.emplace("OriginURL", "https://Origin.example/x");
  EXPECT_EQ(makeHttpCookie(odd)->domain, "origin.example");
  odd.insert_or_assign("Secure", "FALSE");
  odd.insert_or_assign("Created", "100.5");
  EXPECT_TRUE(makeHttpCookie(odd)->secure) << "that it stands there is what counts";
  EXPECT_EQ(makeHttpCookie(odd)->created, WallTime{978307300.5});
}

}  // namespace
}  // namespace velto
