#include <array>
#include <string>

#include <gtest/gtest.h>

#include "platform/foundation/Url.h"

namespace velto {
namespace {

using namespace std::string_literals;

Url url(std::string_view text) {
  const auto parsed = Url::parse(text);
  if (!parsed) throw std::invalid_argument("no URL: " + std::string(text));
  return *parsed;
}

TEST(UrlParse, KeepsWhatTheGrammarAllows) {
  for (const char* text : {
           "http://a/b%20c",
           "HTTP://EXAMPLE.Com/Path",
           "http://h",
           "http://h/",
           "http://a_b/",
           "http://a..b/",
           "http://a,b/",
           "http://*/",
           "http://a%20b/",
           "http://[::1]:8080/x",
           "http://[v1.x]/",
           "http://a:",
           "http://a:0",
           "http://a:080/",
           "http://a:65536/",
           "http://a:99999999999999999999",
           "http://@h",
           "http://:@h",
           "http://u:p@h/",
           "http://",
           "http:///x",
           "http:////x",
           "http:",
           "http:x",
           "http:/x",
           "file:///x",
           "localhost:80",
           "example.com:80/x",
           "about:blank",
           "mailto:a@b",
           "javascript:x",
           "data:text/plain,a",
           "a+b-c.d:x",
           "http://h/../a/./b//c",
           "http://h?",
           "http://h#",
           "http://h/?a?b/c#d?e/f",
           "http://h/%00",
       }) {
    const auto parsed = Url::parse(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->absoluteString(), text);
  }
}

TEST(UrlParse, EncodesWhatTheGrammarDoesNotAllow) {
  const std::array<std::array<const char*, 2>, 22> cases = {{
      {"http://a/?a[]=1", "http://a/?a%5B%5D=1"},
      {"http://a/[x]", "http://a/%5Bx%5D"},
      {"http://a/{x}|^`\"<>\\", "http://a/%7Bx%7D%7C%5E%60%22%3C%3E%5C"},
      {"http://a/?q=\"<>\"#`", "http://a/?q=%22%3C%3E%22#%60"},
      {"http://a/#c#d", "http://a/#c%23d"},
      {"http://a/100%", "http://a/100%25"},
      {"http://a/%zz", "http://a/%25zz"},
      {"http://a/%4", "http://a/%254"},
      {"http://a/%%41", "http://a/%25%41"},
      {"http://a/%20[%", "http://a/%20%5B%25"},
      {"http://u:p@h@i", "http://u:p%40h@i"},
      {"http://u[%@h/", "http://u%5B%25@h/"},
      {"http://\xc3\xbc@h/", "http://%C3%BC@h/"},
      {"http://h/\xc3\xa9?\xc3\xa9#\xf0\x9f\x98\x80", "http://h/%C3%A9?%C3%A9#%F0%9F%98%80"},
      {"http://h/a\xc2\xa0"
       "b\xe3\x80\x80\xe2\x80\xa8",
       "http://h/a%C2%A0b%E3%80%80%E2%80%A8"},
      {"http://\xc3\xa9.com/", "http://xn--9ca.com/"},
      {"http://B\xc3\xbc"
       "cher.DE:80/",
       "http://xn--bcher-kva.de:80/"},
      {"http://fa\xc3\x9f.de", "http://xn--fa-hia.de"},
      {"http://\xe2\x98\x83.net/", "http://xn--n3h.net/"},
      {"http://\xef\xbc\xa5\xef\xbc\xb8\xef\xbc\x8e"
       "com/",
       "http://ex.com/"},
      {"data:text/html,<b>", "data:text/html,%3Cb%3E"},
      {"mailto:\xc3\xa9@b[]", "mailto:%C3%A9@b%5B%5D"},
  }};
  for (const auto& [text, expected] : cases) {
    const auto parsed = Url::parse(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->absoluteString(), expected);
  }
}

TEST(UrlParse, RefusesWhatIsNoUrl) {
  for (const std::string& text : {
           ""s,
           "example.com"s,
           "/path"s,
           "//h/p"s,
           "?a:b"s,
           "://x"s,
           ":x"s,
           "1http://a"s,
           "ht_tp://a"s,
           "h\xc3\xa9:x"s,
           "a b"s,
           " http://a"s,
           "http://a "s,
           "http://a/b c"s,
           "http://a/\n"s,
           "http://a/\0b"s,
           "http://a/\x7f"s,
           "http://a b/"s,
           "http://a/?q=\t"s,
           "http://<a>/"s,
           "http://%/"s,
           "http://a%4/"s,
           "http://a\\b"s,
           "http://a[b/"s,
           "http://a{b}/"s,
           "http://::1]/"s,
           "http://a:b:80"s,
           "http://a:abc"s,
           "http://a:-1"s,
           "http://a:80x/"s,
           "http://[::1"s,
           "http://[::1]x/"s,
           "http://[::1/"s,
           "http://x[::1]/"s,
           "http://a/\xff"s,
           "http://a/\xed\xa0\x80"s,
           "http://a/\xc0\xaf"s,
           // Characters that the conversion of the host turns into delimiters, and one that it does not know.
           "http://a\xef\xbc\x8f"
           "b/"s,
           "http://a\xe2\x84\x80"
           "b/"s,
           "http://a\xef\xbc\xa0"
           "b/"s,
           "http://a\xe3\x80\x80"
           "b/"s,
           "http://\xc3\xa9%41/"s,
           "http://xn--a\xc3\xa9..\xe2\x80\xae/"s,
       }) {
    EXPECT_FALSE(Url::parse(text)) << text;
  }
}

TEST(UrlParse, RefusesMoreThanTwoMebibytes) {
  const std::string head = "http://h/";
  const std::size_t limit = 2 * 1024 * 1024;
  EXPECT_TRUE(Url::parse(head + std::string(limit - head.size(), 'a')));
  EXPECT_FALSE(Url::parse(head + std::string(limit - head.size() + 1, 'a')));
  EXPECT_FALSE(Url::parse(head + std::string(limit - head.size(), '['))) << "too long once it is encoded";
}

TEST(UrlParse, StaysQuickOnLongForeignHosts) {
  std::string host;
  for (int i = 0; i < 200000; ++i) host += "\xc3\xa9";
  EXPECT_FALSE(Url::parse("http://" + host + "/"));
}

TEST(UrlAccessors, TellTheParts) {
  const Url full = url("HTTP://Us%20er:pw@Ex.COM:080/a%2fb/?q=1&r#F%20");
  EXPECT_EQ(full.scheme(), "HTTP");
  EXPECT_EQ(full.lowercasedScheme(), "http");
  EXPECT_EQ(full.user(), "Us er");
  EXPECT_EQ(full.host(), "Ex.COM");
  EXPECT_EQ(full.lowercasedHost(), "ex.com");
  EXPECT_EQ(full.port(), 80);
  EXPECT_EQ(full.encodedPath(), "/a%2fb/");
  EXPECT_EQ(full.query(), "q=1&r");
  EXPECT_EQ(full.fragment(), "F%20");

  const Url bare = url("about:blank");
  EXPECT_EQ(bare.encodedPath(), "blank");
  EXPECT_FALSE(bare.user() || bare.host() || bare.port() || bare.query() || bare.fragment());
}

TEST(UrlAccessors, TellEmptyFromMissing) {
  EXPECT_EQ(url("http://h?#").query(), "");
  EXPECT_EQ(url("http://h?#").fragment(), "");
  EXPECT_EQ(url("http://h").encodedPath(), "");
  EXPECT_EQ(url("http://@h").user(), "");
  EXPECT_EQ(url("file:///x").host(), std::nullopt);
  EXPECT_EQ(url("http://a:").port(), std::nullopt);
  EXPECT_EQ(url("http://a:0").port(), 0);
  EXPECT_EQ(url("http://a:65536").port(), 65536);
  EXPECT_EQ(url("http://a:99999999999999999999").port(), std::nullopt);
  EXPECT_EQ(url("http://[::1]:8080/").host(), "::1");
  EXPECT_EQ(url("http://%FF@h").user(), "%FF");
}

TEST(UrlAccessors, ComparesTexts) {
  EXPECT_EQ(url("http://h/[x]"), url("http://h/%5Bx%5D"));
  EXPECT_NE(url("http://h"), url("http://h/"));
  EXPECT_EQ(url("http://h/#f").withoutFragment(), url("http://h/"));
}

TEST(UrlFile, PathsRoundTrip) {
  EXPECT_EQ(Url::forFile("/a b#?%\xc3\xa9").absoluteString(), "file:///a%20b%23%3F%25%C3%A9");
  for (const char* path : {"/", "/a b/c", "/a\nb", "/\xff[1]%20;", "//x"}) {
    EXPECT_EQ(Url::forFile(path).filePath(), path);
    EXPECT_EQ(Url::parse(Url::forFile(path).absoluteString()), Url::forFile(path));
  }
}

TEST(UrlFile, PathOnlyOfFiles) {
  EXPECT_EQ(url("FILE:/a%20b/").filePath(), "/a b");
  for (const char* text : {"http://h/a", "file:", "file:a", "file://h", "file:///a%00b", "file:///a%2Fb"}) {
    EXPECT_EQ(url(text).filePath(), std::nullopt) << text;
  }
}

TEST(UrlQuery, ReadsItems) {
  using Items = std::vector<QueryItem>;
  const std::vector<std::pair<const char*, Items>> cases = {
      {"x:y", {}},
      {"x:y?", {}},
      {"x:y?a", {{"a", std::nullopt}}},
      {"x:y?a=", {{"a", ""}}},
      {"x:y?=b", {{"", "b"}}},
      {"x:y?=", {{"", ""}}},
      {"x:y?&", {{"", std::nullopt}, {"", std::nullopt}}},
      {"x:y?a&&b&", {{"a", std::nullopt}, {"", std::nullopt}, {"b", std::nullopt}, {"", std::nullopt}}},
      {"x:y?a=b=c", {{"a", "b=c"}}},
      {"x:y?a=1;b=2", {{"a", "1;b=2"}}},
      {"x:y?a+b=c+d", {{"a+b", "c+d"}}},
      {"x:y?a=%2B%20%26%3D", {{"a", "+ &="}}},
      {"x:y?a=%FF&b=1", {{"a", std::nullopt}, {"b", "1"}}},
      {"x:y?%FF=1", {{"", "1"}}},
      {"x:y?a=%zz&b=1", {{"a", "%zz"}, {"b", "1"}}},
      {"x:y?a=1&a=2#b=3", {{"a", "1"}, {"a", "2"}}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(url(text).queryItems(), expected) << text;

  EXPECT_EQ(url("x:y?a=1&a=2").queryValue("a"), "1");
  EXPECT_EQ(url("x:y?a&a=2").queryValue("a"), std::nullopt) << "the first one counts";
  EXPECT_EQ(url("x:y?A=1").queryValue("a"), std::nullopt);
}

TEST(UrlQuery, WritesItems) {
  const std::string value =
      "https://x.y/a b/c?d=e&f=g+h#i%20j;k,l@m:n!$'()*[]{}|^\"<>\\~\xc3\xa9\xf0\x9f\x98\x80";
  EXPECT_EQ(encodeQuery({{"u", value}}),
            "u=https://x.y/a%20b/c?d%3De%26f%3Dg+h%23i%2520j;k,l@m:n!$'()*%5B%5D%7B%7D%7C%5E%22%3C%3E%5C~"
            "%C3%A9%F0%9F%98%80");
  EXPECT_EQ(encodeQuery({}), "");
  EXPECT_EQ(encodeQuery({{"a", std::nullopt}, {"b", ""}, {"c=", "1"}}), "a&b=&c%3D=1");
  const Url read = url("x:y?" + encodeQuery({{"u", value}}));
  EXPECT_EQ(read.queryValue("u"), value);
}

TEST(UrlQuery, DecodesEscapes) {
  EXPECT_EQ(percentDecode("a%20b+%C3%A9"), "a b+\xc3\xa9");
  EXPECT_EQ(percentDecode("%00"), "\0"s);
  for (const char* bad : {"%", "%4", "%4g", "%FF", "\xff", "a%C3"}) EXPECT_FALSE(percentDecode(bad)) << bad;
}

TEST(UrlChange, HostAndPort) {
  const Url full = url("HTTP://User:Pw@Ex.com:080/a%2fb?Q#F");
  EXPECT_EQ(full.withHostAndPort("h", 70000)->absoluteString(), "HTTP://User:Pw@h:70000/a%2fb?Q#F");
  EXPECT_EQ(full.withHostAndPort("h", std::nullopt)->absoluteString(), "HTTP://User:Pw@h/a%2fb?Q#F");
  EXPECT_EQ(full.withHost("h")->absoluteString(), "HTTP://User:Pw@h:080/a%2fb?Q#F");
  EXPECT_EQ(full.withHost("[::1]")->host(), "::1");
  EXPECT_EQ(url("http://[::1]:1/x").withHost("a%20b")->absoluteString(), "http://a%20b:1/x");
  EXPECT_EQ(url("http://h").withHost("\xc3\xa9")->absoluteString(), "http://xn--9ca");
  EXPECT_EQ(url("http://h?q").withHost("i")->absoluteString(), "http://i?q");
  EXPECT_EQ(url("http:/x#f").withHost("i")->absoluteString(), "http://i/x#f");
  EXPECT_EQ(url("http://h/p").withHost("")->absoluteString(), "http:///p");
}

TEST(UrlChange, RefusesImpossibleHosts) {
  for (const char* host : {"::1", "a b", "a/b", "a:80", "a@b", "[", "[::1", "[::1]x", "[zz]", "[]", "[@a/b]",
                           "[a?]", "a?b", "a#b", "a\\b", "%"}) {
    EXPECT_FALSE(url("http://h/p").withHost(host)) << host;
  }
  EXPECT_FALSE(url("http://h/p").withHostAndPort("h", -1));
  EXPECT_FALSE(url("mailto:a@b").withHost("h"));
}

}  // namespace
}  // namespace velto
