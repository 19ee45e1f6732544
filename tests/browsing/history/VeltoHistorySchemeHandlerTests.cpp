#include <functional>

#include <gtest/gtest.h>

#include "browsing/history/HistoryPage.h"
#include "browsing/history/VeltoHistorySchemeHandler.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto {
namespace {

class VeltoHistorySchemeHandlerTest : public testing::Test {
 protected:
  VeltoHistorySchemeHandlerTest() {
    files.createDirectory(resources);
    files.createDirectory(support);
    files.writeAtomically(resources / HistoryPage::kResource, kPage);
    configuration.urlSchemeHandlers[HistoryPage::kScheme] = std::make_shared<VeltoHistorySchemeHandler>(
        files, headless.platform().mainQueue, headless.platform().backgroundQueue,
        VeltoHistorySchemeHandler::Sources{resources, own, imported});
    webView = headless.webEngine().makeWebView({}, configuration);
    configuration.urlSchemeHandlers.clear();
  }
  HeadlessWebView& page() { return *headless.webEngine().webViews().front(); }
  void visit(const std::string& address) {
    webView->load({Url::parse(address).value()});
    headless.advance();
  }
  /// What the page that is shown gets from the address.
  SchemeResponse fetch(const std::string& address) {
    std::vector<SchemeResponse> responses;
    page().fetch(address, [&](const SchemeResponse& response) { responses.push_back(response); });
    headless.advance();
    EXPECT_EQ(responses.size(), 1U) << address;
    return responses.empty() ? SchemeResponse{} : responses.front();
  }
  static void expectAnswer(const SchemeResponse& response, int status, const std::string& type,
                           const std::string& body) {
    EXPECT_EQ(response.status, status);
    EXPECT_EQ(response.body, body);
    EXPECT_EQ(response.headers,
              (std::map<std::string, std::string>{{"Content-Type", type}, {"Cache-Control", "no-store"}}));
  }
  static HistoryEntry at(const std::string& address) { return {address, "", {1}}; }
  static std::string rowOf(const std::string& escapedAddress, const char* source) {
    return R"({"u":")" + escapedAddress + R"(","t":"","d":1000,"s":")" + source + R"("})";
  }

  static constexpr const char* kPage = "<title>History</title>";
  static constexpr const char* kHome = "velto-history://history/";
  static constexpr const char* kData = "velto-history://history/data.json";
  static constexpr const char* kHtml = "text/html; charset=utf-8";
  HeadlessPlatform headless;
  FileManager& files = headless.platform().files;
  const std::filesystem::path resources = "/resources-of-the-test";
  const std::filesystem::path support = "/support";
  std::shared_ptr<HistoryStore> own =
      std::make_shared<HistoryStore>(files, support, HistoryStore::kPrimaryFileName, true);
  std::shared_ptr<HistoryStore> imported =
      std::make_shared<HistoryStore>(files, support, HistoryStore::kSafariImportsFileName, false);
  WebViewConfiguration configuration;
  std::unique_ptr<WebView> webView;
};

TEST_F(VeltoHistorySchemeHandlerTest, servesThePageUnderEveryPathOfItsHost) {
  visit("https://a.example/");
  for (const char* address : {kHome, "velto-history://HISTORY/", "velto-history://history/anything",
                              "velto-history://history", "velto-history://history/DATA.JSON"}) {
    expectAnswer(fetch(address), 200, kHtml, kPage);
  }
  for (const char* address : {"velto-history://other/data.json", "velto-history:///data.json",
                              "velto-history:no url", "velto-history://history.example/"}) {
    expectAnswer(fetch(address), 404, "text/plain", "Not found");
  }
  files.remove(resources / HistoryPage::kResource);
  expectAnswer(fetch(kHome), 404, "text/plain", "Not found");
}

TEST_F(VeltoHistorySchemeHandlerTest, givesTheVisitsToItsPageAlone) {
  own->save({at("https://secret.example/")});
  for (const char* address : {"https://a.example/", "about:blank", "velto-player://history/"}) {
    visit(address);
    expectAnswer(fetch(kData), 403, "text/plain", "Forbidden");
  }
  visit(kHome);
  EXPECT_EQ(webView->title(), "History");
  expectAnswer(fetch(kData), 200, "application/json",
               "[" + rowOf(R"(https:\/\/secret.example\/)", "p") + "]");
}

TEST_F(VeltoHistorySchemeHandlerTest, readsBothFilesAgainForEachRequest) {
  const auto expectRows = [this](const std::string& query, const std::string& rows) {
    expectAnswer(fetch(kData + query), 200, "application/json", "[" + rows + "]");
  };
  const std::string ownRow = rowOf(R"(http:\/\/a.example\/)", "p");
  const std::string importedRow = rowOf(R"(http:\/\/b.example\/)", "s");
  visit(kHome);
  expectRows("", "");
  own->save({at("http://a.example/")});
  imported->save({at("http://b.example/")});
  expectRows("", ownRow + "," + importedRow);
  expectRows("?domain=", ownRow + "," + importedRow);
  expectRows("?domain=b.example&domain=a.example", importedRow);
  expectRows("?Domain=b.example&domain=www.a.example%2Cc.example", ownRow);
  files.writeAtomically(imported->fileURL(), "[{\"url\" :");
  expectRows("", ownRow);
}

TEST_F(VeltoHistorySchemeHandlerTest, doesNotAnswerWhoHasGone) {
  int answers = 0;
  const auto fetchAndLeave = [&](const std::function<void()>& leave) {
    visit(kHome);
    headless.backgroundQueue().hold(true);
    page().fetch(kData, [&](const SchemeResponse& response) { answers += response.failure ? 0 : 1; });
    headless.advance();
    EXPECT_EQ(headless.backgroundQueue().heldTasks(), 1U);
    leave();
    headless.backgroundQueue().runAll();
    headless.advance();
    EXPECT_EQ(answers, 0);
  };
  fetchAndLeave([&] { visit("https://a.example/"); });
  fetchAndLeave([&] { webView.reset(); });  // with the handler
}

}  // namespace
}  // namespace velto
