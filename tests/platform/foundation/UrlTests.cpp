#include <string>
#include <utility>
#include <vector>

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
  for (const char* text :
       {"http://a/b%20c", "HTTP://EXAMPLE.Com/Path", "http://h", "http://a_b/", "http://a..b/", "http://a,b/",
        "http://*/", "http://a%20b/", "http://[::1]:8080/x", "http://[v1.x]/", "http://a:", "http://a:080/",
        "http://a:99999999999999999999", "http://@h", "http://:@h", "http://u:p@h/", "http://h?", "http://h#",
        "http://h/../a/./b//c", "http://h/?a?b/c#d?e/f", "http://h/%00",
        // Without a host, or without an authority at all.
        "http://", "http:////x", "http:", "http:x", "http:/x", "file:///x", "localhost:80", "about:blank",
        "mailto:a@b", "javascript:x", "data:text/plain,a", "a+b-c.d:x"}) {
    const auto parsed = Url::parse(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->absoluteString(), text);
  }
}

TEST(UrlParse, EncodesWhatTheGrammarDoesNotAllow) {
  const std::pair<const char*, const char*> cases[] = {
      {"http://a/?a[]=1", "http://a/?a%5B%5D=1"},
      {"http://a/{x}|^`\"<>\\", "http://a/%7Bx%7D%7C%5E%60%22%3C%3E%5C"},
      {"http://a/?q=\"<>\"#`", "http://a/?q=%22%3C%3E%22#%60"},
      {"http://a/#c#d", "http://a/#c%23d"},
      {"http://a/100%", "http://a/100%25"},
      {"http://a/%zz", "http://a/%25zz"},
      {"http://a/%4", "http://a/%254"},
      {"http://a/%%41", "http://a/%25%41"},
      {"http://u:p@h@i", "http://u:p%40h@i"},
      {"http://u[%@h/", "http://u%5B%25@h/"},
      {"http://ü@h/", "http://%C3%BC@h/"},
      {"http://h/é?é#😀", "http://h/%C3%A9?%C3%A9#%F0%9F%98%80"},
      {"http://h/a\u00a0b\u3000\u2028", "http://h/a%C2%A0b%E3%80%80%E2%80%A8"},
      {"http://Bücher.DE:80/", "http://xn--bcher-kva.de:80/"},
      {"http://faß.de", "http://xn--fa-hia.de"},
      {"http://\u2603.net/", "http://xn--n3h.net/"},
      {"http://\uff25\uff38\uff0ecom/", "http://ex.com/"},
      {"data:text/html,<b>", "data:text/html,%3Cb%3E"},
      {"mailto:é@b[]", "mailto:%C3%A9@b%5B%5D"},
  };
  for (const auto& [text, expected] : cases) {
    const auto parsed = Url::parse(text);
    ASSERT_TRUE(parsed) << text;
    EXPECT_EQ(parsed->absoluteString(), expected);
  }
}

TEST(UrlParse, RefusesWhatIsNoUrl) {
  for (const std::string& text :
       {""s, "example.com"s, "/path"s, "//h/p"s, "?a:b"s, ":x"s, "1http://a"s, "ht_tp://a"s, "h\xc3\xa9:x"s,
        "a b"s, " http://a"s, "http://a "s, "http://a/\n"s, "http://a/\0b"s, "http://a/\x7f"s, "http://a b/"s,
        "http://a/?q=\t"s, "http://<a>/"s, "http://a%4/"s, "http://a\\b"s, "http://a[b/"s, "http://::1]/"s,
        "http://a:b:80"s, "http://a:abc"s, "http://a:-1"s, "http://a:80x/"s, "http://[::1"s,
        "http://[::1]x/"s, "http://x[::1]/"s, "http://a/\xff"s, "http://a/\xed\xa0\x80"s,
        "http://\xc3\xa9%41/"s,
        // The conversion of the host turns these into delimiters; the last one it does not know.
        "http://a\uff0fb/"s, "http://a\u2100b/"s, "http://a\uff20b/"s, "http://a\u3000b/"s,
        "http://xn--a\u00e9..\u202e/"s}) {
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
  for (int i = 0; i < 200000; ++i) host += "é";
  EXPECT_FALSE(Url::parse("http://" + host + "/"));
}

TEST(UrlAccessors, TellThePartsAndEmptyFromMissing) {
  const Url full = url("HTTP://Us%20er:pw@Ex.COM:080/a%2fb/?q=1&r#F%20");
  EXPECT_EQ(full.lowercasedScheme(), "http");
  EXPECT_EQ(full.user(), "Us er");
  EXPECT_EQ(full.host(), "Ex.COM");
  EXPECT_EQ(full.port(), 80);
  EXPECT_EQ(full.encodedPath(), "/a%2fb/");
  EXPECT_EQ(full.query(), "q=1&r");
  EXPECT_EQ(full.fragment(), "F%20");

  const Url bare = url("about:blank");
  EXPECT_EQ(bare.encodedPath(), "blank");
  EXPECT_FALSE(bare.user() || bare.host() || bare.port() || bare.query() || bare.fragment());

  const Url empty = url("http://@h?#");
  EXPECT_EQ(empty.user(), "");
  EXPECT_EQ(empty.encodedPath(), "");
  EXPECT_EQ(empty.query(), "");
  EXPECT_EQ(empty.fragment(), "");
  EXPECT_EQ(url("file:///x").host(), std::nullopt);
  EXPECT_EQ(url("http://a:").port(), std::nullopt);
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
      {"x:y?=b", {{"", "b"}}},
      {"x:y?&", {{"", std::nullopt}, {"", std::nullopt}}},
      {"x:y?a&&b=&", {{"a", std::nullopt}, {"", std::nullopt}, {"b", ""}, {"", std::nullopt}}},
      {"x:y?a=b=c", {{"a", "b=c"}}},
      {"x:y?a=1;b=2", {{"a", "1;b=2"}}},
      {"x:y?a+b=c+d", {{"a+b", "c+d"}}},
      {"x:y?a=%2B%20%26%3D", {{"a", "+ &="}}},
      {"x:y?a=%FF&%FF=1", {{"a", std::nullopt}, {"", "1"}}},
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
