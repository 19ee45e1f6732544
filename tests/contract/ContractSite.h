#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tests/contract/ContractPlatform.h"

namespace velto::test {

/// What a web view finds at a path of a `ContractSite`.
struct ContractPage {
  enum class Answer { whole, never, cutOff };

  std::string title = {};
  Answer answer = Answer::whole;
  /// The page asks before it is left. The engines do so only for pages that the person has touched.
  bool beforeUnload = false;
  /// Another path that the server sends the load to.
  std::string redirectTo = {};
  /// More of the page; for engines.
  std::string html = {};
};

/// A web site for both backends, and what its visitors and their pages do. Headless it is scripted pages,
/// else a server on the loopback interface.
class ContractSite {
 public:
  explicit ContractSite(ContractPlatform& contract);
  ~ContractSite();
  ContractSite(const ContractSite&) = delete;
  ContractSite& operator=(const ContractSite&) = delete;

  /// The path's address.
  Url add(const std::string& path, const ContractPage& page);
  /// An address where nothing listens.
  Url refused();

  /// The person clicks into the page.
  void touch(WebView& webView);
  /// The page goes to the address by itself.
  void follow(WebView& webView, const Url& url);
  void crash(WebView& webView);
  /// The page posts the JSON text.
  void post(WebView& webView, const std::string& name, const std::string& json);
  /// The same for a handler that replies; the reply once it is there.
  std::optional<ScriptReply> ask(WebView& webView, const std::string& name, const std::string& json);
  /// What the page's script gives. Headless pages know the scripts of the contract only.
  std::optional<JsonValue> evaluate(WebView& webView, const std::string& script);

 private:
  class Server;
  ContractPlatform& contract_;
  std::unique_ptr<Server> server_;
};

inline std::optional<JsonValue> ContractSite::evaluate(WebView& webView, const std::string& script) {
  bool answered = false;
  std::optional<JsonValue> result;
  webView.evaluateJavaScript(script, [&](std::optional<JsonValue> value) {
    result = std::move(value);
    answered = true;
  });
  EXPECT_TRUE(contract_.runUntil([&] { return answered; })) << script;
  return result;
}

}  // namespace velto::test
