#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/pages/FailurePage.h"
#include "app/pages/LoopbackCandidates.h"
#include "tests/support/UrlSupport.h"

namespace velto {
namespace {

using test::url;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

WebError urlError(int code, std::string text = "") {
  return {WebError::kUrlDomain, code, std::move(text), {}};
}

std::string installedTemplate() {
  std::ifstream stream(VELTO_SOURCE_DIR "/resources/FailurePage.html");
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(FailurePage, saysWhatIsWrong) {
  const std::string cannotOpen = "Velto can’t open the page “localhost:3000/a” because ";
  const struct {
    std::vector<int> codes;
    std::string heading, body;
  } cases[] = {
      {{-1005, -1004},
       "Velto can’t connect to the server",
       cannotOpen + "Velto can’t connect to the server “localhost”."},
      {{-1003}, "Velto can’t find the server", cannotOpen + "Velto can’t find the server “localhost”."},
      {{-1001}, "The server stopped responding", cannotOpen + "the server “localhost” stopped responding."},
      {{-1204, -1203, -1202, -1201, -1200},
       "Velto can’t establish a secure connection",
       cannotOpen + "Velto can’t verify the identity of the server “localhost”."},
      {{-1009},
       "You are not connected to the Internet",
       cannotOpen + "your computer is not connected to the Internet."},
      {{-1102, -1100},
       "Velto can’t open that file",
       "Velto runs in the macOS sandbox and can’t read “localhost:3000/a”. Serve the folder over http and "
       "open "
       "the port instead."},
      {{-1002, -1000}, "Velto can’t open the page", "“localhost:3000/a” isn’t an address Velto can open."},
      {{-1, -998, -1006, -1007, -1101, -1103, -1199, -1205, 0},
       "Velto can’t open the page",
       cannotOpen + "too many redirects."},
  };
  for (const auto& c : cases) {
    for (const int code : c.codes) {
      EXPECT_EQ(failurePage("{{heading}}|{{body}}", url("http://localhost:3000/a"),
                            urlError(code, "Too many redirects.")),
                c.heading + "|" + c.body)
          << code;
    }
  }
}

TEST(FailurePage, givesTheReasonOfOtherErrors) {
  const struct {
    std::string domain, description, reason;
  } cases[] = {
      {WebError::kWebKitDomain, "Not allowed", "not allowed"},
      {"G_IO_ERROR", "ÄRGER", "äRGER"},
      {"x", "Ωmega", "ωmega"},
      {"x", "already", "already"},
      {"x", "<b> & \"c\"", "&lt;b&gt; &amp; &quot;c&quot;"},
      {"x", "Not \xFF UTF-8", "not \xEF\xBF\xBD UTF-8"},
      {"x", "", "of an unknown error."},
      {"x", " \n", "of an unknown error."},
  };
  for (const auto& c : cases) {
    // A code of another domain means something else.
    EXPECT_EQ(failurePage("{{body}}", url("https://a/"), {c.domain, -1004, c.description, {}}),
              "Velto can’t open the page “https://a/” because " + c.reason);
  }
}

TEST(FailurePage, namesTheAddressAsItCan) {
  const struct {
    std::optional<Url> address;
    std::string page;
  } cases[] = {
      {url("http://a.example/?x=1&y='2'"),
       "a.example/?x=1&amp;y='2'|the server “a.example”|<p class=\"retry\"><a "
       "href=\"http://a.example/?x=1&amp;y='2'\">Try Again</a></p>"},
      {url("https://[::1]:3000/"),
       "https://[::1]:3000/|the server “::1”|<p class=\"retry\"><a href=\"https://[::1]:3000/\">Try "
       "Again</a></p>"},
      {url("about:blank"),
       "about:blank|the server “the server”|<p class=\"retry\"><a href=\"about:blank\">Try Again</a></p>"},
      {std::nullopt, "that address|the server “the server”|"},
      {url("javascript:x()"), "javascript:x()|the server “the server”|"},
      {url("DATA:text/html,x"), "DATA:text/html,x|the server “the server”|"},
      {url("blob:https://a.example/1"), "blob:https://a.example/1|the server “the server”|"},
  };
  for (const auto& c : cases) {
    const std::string text = failurePage("{{body}}{{retry}}", c.address, urlError(-1001));
    const auto bar = c.page.find('|');
    const auto second = c.page.find('|', bar + 1);
    EXPECT_THAT(text, HasSubstr("“" + c.page.substr(0, bar) + "”"));
    EXPECT_THAT(text, HasSubstr(c.page.substr(bar + 1, second - bar - 1) + " stopped"));
    EXPECT_THAT(text, testing::EndsWith("responding." + c.page.substr(second + 1)));
  }
}

TEST(FailurePage, fillsEachMarkOnceAndLeavesTheRest) {
  const auto filled = [](std::string_view text) {
    return failurePage(text, url("http://a/"), {"x", 1, "{{retry}} {{heading}}", {}});
  };
  EXPECT_THAT(filled("{{body}}"), testing::EndsWith("because {{retry}} {{heading}}"));
  EXPECT_EQ(filled("{{other}} {{ {{heading}} {{{heading}} {{"),
            "{{other}} {{ Velto can’t open the page {{{heading}} {{");
}

TEST(FailurePage, theInstalledOneIsWhole) {
  const std::string page = failurePage(installedTemplate(), url("https://a.example/"), urlError(-1003));
  EXPECT_THAT(page,
              testing::StartsWith("<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"));
  EXPECT_THAT(page, HasSubstr("<title>Velto can’t find the server</title>\n<style>"));
  EXPECT_THAT(page,
              testing::EndsWith("</style></head>\n<body><main>\n<h1>Velto can’t find the server</h1>\n"
                                "<p>Velto can’t open the page “https://a.example/” because Velto can’t "
                                "find the server “a.example”.</p>\n<p class=\"retry\"><a "
                                "href=\"https://a.example/\">Try Again</a></p>\n</main></body></html>"));
  EXPECT_THAT(page, Not(HasSubstr("{{")));
}

TEST(WebErrors, areToldApart) {
  const struct {
    const char* domain;
    int code;
    bool worthShowing, connection;
  } cases[] = {{WebError::kUrlDomain, -999, false, false},
               {WebError::kUrlDomain, 102, true, false},
               {WebError::kWebKitDomain, 102, false, false},
               {WebError::kWebKitDomain, -999, true, false},
               {"other", -999, true, false},
               {"other", 102, true, false},
               {WebError::kUrlDomain, -1005, true, true},
               {WebError::kUrlDomain, -1004, true, true},
               {WebError::kUrlDomain, -1003, true, true},
               {WebError::kUrlDomain, -1001, true, true},
               {WebError::kUrlDomain, -1002, true, false},
               {WebError::kUrlDomain, -1009, true, false},
               {WebError::kWebKitDomain, -1004, true, false}};
  for (const auto& c : cases) {
    const WebError error{c.domain, c.code, "", {}};
    EXPECT_EQ(isFailureWorthShowing(error), c.worthShowing) << c.domain << c.code;
    EXPECT_EQ(isConnectionFailure(error), c.connection) << c.domain << c.code;
  }
}

TEST(LoopbackCandidates, areTriedInOrder) {
  const struct {
    const char* asked;
    std::vector<std::string> candidates;
  } cases[] = {
      {"http://localhost:3000/a?b#c", {"http://127.0.0.1:3000/a?b#c", "http://[::1]:3000/a?b#c"}},
      {"https://u@LocalHost/", {"https://u@127.0.0.1/", "https://u@[::1]/"}},
      {"http://127.0.0.1:3000/", {}},
      {"http://localhost.example/", {}},
      {"http://app.localhost/", {}},
      {"file:///localhost", {}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> candidates;
    std::optional<LoopbackAttempt> attempt;
    while (const auto step = nextLoopbackCandidate(attempt, url(c.asked))) {
      candidates.push_back(step->candidate.absoluteString());
      EXPECT_EQ(step->attempt.original, url(c.asked));
      attempt = step->attempt;
    }
    EXPECT_EQ(candidates, c.candidates) << c.asked;
  }
  // The failing address of a later attempt is not where the search began.
  EXPECT_EQ(nextLoopbackCandidate(LoopbackAttempt{url("http://localhost/"), 1}, url("http://127.0.0.1/"))
                ->candidate.absoluteString(),
            "http://[::1]/");
}

}  // namespace
}  // namespace velto
