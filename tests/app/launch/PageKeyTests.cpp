#include <gtest/gtest.h>

#include "app/launch/PageKey.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;

TEST(PageKey, foldsWhatDoesNotMakeAnotherPage) {
  const struct {
    const char* text;
    const char* key;
  } cases[] = {
      {"http://a", "http://a/"},
      {"http://a/#top", "http://a/"},
      {"http://a#top", "http://a/"},
      {"HTTPS://Example.COM/Path?Q=A#F", "https://example.com/Path?Q=A"},
      {"http://user:secret@a/", "http://a/"},
      {"http://a:80/", "http://a:80/"},
      {"http://a:080/", "http://a:80/"},
      {"http://a:/", "http://a/"},
      {"http://a?q", "http://a/?q"},
      {"http://a/?", "http://a/?"},
      {"http://a//b/../c%2f/", "http://a//b/../c%2f/"},
      {"http://[::1]:3000", "http://[::1]:3000/"},
      {"velto-player://youtube?v=abcdefghijk", "velto-player://youtube/?v=abcdefghijk"},
  };
  for (const auto& c : cases) EXPECT_EQ(canonicalPageKey(url(c.text)), c.key) << c.text;
}

TEST(PageKey, needsAHost) {
  for (const char* text : {"about:blank", "file:///a", "http:///a", "data:text/plain,x", "mailto:a@b"}) {
    EXPECT_EQ(canonicalPageKey(url(text)), std::nullopt) << text;
  }
}

TEST(PageKey, doesNotMistakeAnAddressForAPort) {
  EXPECT_NE(canonicalPageKey(url("http://[1::2]:80/")), canonicalPageKey(url("http://[1::2:80]/")));
}

}  // namespace
}  // namespace velto
