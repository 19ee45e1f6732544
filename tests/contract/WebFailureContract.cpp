#ifdef VELTO_CONTRACT_GTK

#include "tests/contract/GtkTlsServer.h"
#include "tests/contract/LoopbackServer.h"
#include "tests/contract/WebContract.h"

namespace velto::test {
namespace {

/// The codes of what the engine reports, class by class.
class WebFailureContract : public WebContract {};

TEST_F(WebFailureContract, tellsWhyAPageCouldNotBeShown) {
  const TlsServer unknown;
  const std::string head = "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: ";
  LoopbackServer redirects([head](const std::string& path) {
    std::string to = path + "x";
    if (path.starts_with("/data")) to = "data:text/html,hello";
    if (path.starts_with("/script")) to = "javascript:alert(1)";
    return LoopbackServer::Response{head + to + "\r\n\r\n"};
  });
  LoopbackServer breaksOff([](const std::string&) { return LoopbackServer::Response{}; });
  LoopbackServer noHttp([](const std::string&) { return LoopbackServer::Response{"hello\r\n\r\n"}; });
  const auto at = [](const LoopbackServer& server, const char* path) {
    return "http://127.0.0.1:" + std::to_string(server.port()) + path;
  };
  struct Case {
    std::string url;
    int code;
    const char* domain = WebError::kUrlDomain;
  };
  const std::vector<Case> cases = {
      {site.refused().absoluteString(), -1004},
      {"http://[::1]:" + std::to_string(freePort()) + "/", -1004},
      {"http://nothing.invalid/", -1003},
      {site.add("/slow", {.answer = ContractPage::Answer::never}).absoluteString(), -1001},
      {site.add("/cut", {.title = "Cut", .answer = ContractPage::Answer::cutOff}).absoluteString(), -1005},
      {at(breaksOff, "/"), -1005},
      {at(noHttp, "/"), -1},
      {"https://127.0.0.1:" + std::to_string(unknown.port()) + "/", -1202},
      {"file:///nothing/here", -1100},
      {"file:///proc/self/mem", -1102},
      {"unknown-scheme://a.example/", -1002},
      {"http://256.256.256.256/", -1002},
      {"http://127.0.0.1:70000/", -1002},
      {"http:///", -1002},
      {"http://127.0.0.1:22/", 103, WebError::kWebKitDomain},
      {"http://127.0.0.1:10080/", 103, WebError::kWebKitDomain},
      {at(redirects, "/data"), -1002},
      {at(redirects, "/script"), -1002},
      {at(redirects, "/on"), -1007},
      {"blob:nothing", -1},
  };
  for (const Case& c : cases) {
    recorder.take();
    recorder.lastError = {};
    const Url url = Url::parse(c.url).value();
    load(url, 1.5);
    const auto failed = [&] { return !recorder.log.empty() && recorder.log.back().starts_with("fail"); };
    ASSERT_TRUE(contract.runUntil(failed)) << c.url;
    const WebError& error = recorder.lastError;
    EXPECT_EQ(error.domain, c.domain) << c.url;
    // The engine does not always see why.
    const bool isSecure = url.lowercasedScheme() == "https" && error.code == -1200;
    EXPECT_TRUE(isSecure || error.code == c.code)
        << error.code << " " << c.url << " " << error.localizedDescription;
    const bool wentOn = c.url.starts_with(at(redirects, "/"));
    EXPECT_TRUE(wentOn || error.failingUrl == url) << c.url;
    // A sentence, which the failure page goes on with.
    EXPECT_THAT(error.localizedDescription, testing::ContainsRegex("^[A-Z][a-z]+ .*[a-z)]\\.$")) << c.url;
  }
}

TEST_F(WebFailureContract, aServerThatGivesAPageByTheByteHoldsUpNobody) {
  const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 1000\r\n\r\n";
  LoopbackServer drips([head](const std::string&) {
    return LoopbackServer::Response{head + "<title>Drip</title>", std::chrono::seconds(3)};
  });
  load(Url::parse("http://127.0.0.1:" + std::to_string(drips.port()) + "/").value());
  contract.letPass(0.3);
  PageRecorder others;
  const auto other = contract.platform().webEngine.makeWebView({{0, 0}, {100, 100}}, {});
  other->setNavigationDelegate(static_cast<NavigationDelegate*>(&others));
  other->load({site.add("/a", {.title = "First"}), 60});
  EXPECT_TRUE(contract.runUntil([&] { return others.log.size() == 3; }, 2));
}

}  // namespace
}  // namespace velto::test

#endif
