#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/HeadlessWebEngine.h"

namespace velto {

/// A web view that acts out scripted pages.
///
/// A load takes the address at once and everything else comes through the loop. A page that asks before it is
/// left does so before the navigation starts, so that a refused one only fails. Addresses read as engines
/// write them: "http://LocalHost:80" becomes "http://localhost/". While the page does not respond its loads,
/// scripts and pictures stand still.
class HeadlessWebView final : public WebView {
 public:
  HeadlessWebView(HeadlessWebEngine& engine, const Rect& frame, WebViewConfiguration configuration);
  ~HeadlessWebView() override;

  /// @name What the page and its process do
  /// @{
  /// The person follows a link of the page.
  std::optional<Navigation> clickLink(std::string_view urlText);
  /// Queues the message; `reply` makes it one that asks for a reply.
  void postMessage(const std::string& name, const JsonValue& body, const ContentWorld& world = {},
                   std::function<void(ScriptReply)> reply = {}, bool isMainFrame = true);
  /// The page's script asks the person; `done` comes through the loop unless the web view goes first. What
  /// nobody answers is cancelled.
  void alert(const std::string& text, std::function<void()> done = {});
  void confirm(const std::string& text, std::function<void(bool)> done = {});
  void prompt(const std::string& text, const std::string& defaultText,
              std::function<void(std::optional<std::string>)> done = {});
  void chooseFiles(const OpenPanel& parameters, OpenPanelCompletion done = {});
  void openWindow(const PageWindowRequest& request);
  /// The page asks for a resource of an own scheme. Throws `std::logic_error` when no handler has the scheme.
  void fetch(const std::string& urlText, std::function<void(const SchemeResponse&)> completion);
  /// The page's process dies. A navigation under way ends without a further word.
  void crash();
  void setResponsive(bool responsive);
  /// Instead of the page's own `answerScript`, for all pages of this web view.
  void setScriptAnswer(std::function<std::optional<JsonValue>(std::string_view)> answer);
  void keyReceived(const KeyEvent& event);
  /// @}

  /// @name What it was asked
  /// @{
  [[nodiscard]] const std::vector<std::string>& scripts() const { return scripts_; }
  [[nodiscard]] const std::vector<KeyEvent>& keysReceived() const { return keysReceived_; }
  /// The HTML of the page when it was loaded as text or came from an own scheme.
  [[nodiscard]] std::string html() const { return page_ ? page_->html : ""; }
  /// How the page's own request was answered when it is of an own scheme.
  [[nodiscard]] std::optional<SchemeResponse> response() const {
    return page_ ? page_->response : std::nullopt;
  }
  /// The store in use, be it given or the engine's default.
  [[nodiscard]] HeadlessDataStore& dataStore() const;
  /// @}

  std::optional<Navigation> load(const UrlRequest& request) override;
  std::optional<Navigation> loadHtml(std::string_view html, const std::optional<Url>& baseUrl) override;
  std::optional<Navigation> loadSubstitute(std::string_view html, const Url& address) override;
  std::optional<Navigation> reload() override;
  std::optional<Navigation> goBack() override;
  std::optional<Navigation> goForward() override;
  void stopLoading() override;

  [[nodiscard]] std::optional<Url> url() const override;
  [[nodiscard]] std::string title() const override { return page_ ? page_->script.title : ""; }
  [[nodiscard]] bool isLoading() const override { return load_.has_value(); }
  [[nodiscard]] bool canGoBack() const override { return current_ > 0; }
  [[nodiscard]] bool canGoForward() const override { return current_ + 1 < history_.size(); }
  [[nodiscard]] bool isResponsive() const override { return responsive_ && !crashed_; }
  [[nodiscard]] std::optional<Uptime> lastUserGesture() const override { return lastUserGesture_; }
  [[nodiscard]] double pageZoom() const override { return pageZoom_; }
  void setPageZoom(double zoom) override { pageZoom_ = zoom; }
  void evaluateJavaScript(std::string_view script, ScriptCompletion completion = {}) override;
  void takeSnapshot(double width, std::function<void(std::optional<std::string>)> completion) override;
  [[nodiscard]] const WebViewConfiguration& configuration() const override { return configuration_; }

  /// The page takes what is pressed on it.
  bool mouseDown(const MouseEvent& event) override;

 private:
  enum class Phase { waiting, started, committed };
  struct Page {
    ScriptedPage script;
    std::string html;
    std::optional<SchemeResponse> response;
  };
  struct Load {
    Url url;
    double timeout = UrlRequest::kDefaultTimeout;
    Navigation navigation = {};
    /// Where in the history the page goes; absent for a new place after the present one.
    std::optional<std::size_t> place = std::nullopt;
    /// The page was handed over as text.
    bool isText = false;
    bool hasPlaceInHistory = true;
    /// What was found, once the load has started.
    Page found = {};
    Phase phase = Phase::waiting;
  };
  struct HeldScript {
    std::string script;
    ScriptCompletion completion;
    /// Of the page that it is for.
    std::uint64_t generation = 0;
  };
  struct HeldSnapshot {
    double width = 0;
    std::function<void(std::optional<std::string>)> completion;
  };

  std::optional<Navigation> begin(Load load);
  std::optional<Navigation> goTo(std::size_t place);
  /// Another load, or the person, cuts off the one under way.
  void cancelLoad();
  [[nodiscard]] bool isUnderWay(Navigation navigation) const {
    return load_ && load_->navigation == navigation;
  }
  void queueStep(double delay = 0);
  void step(Navigation navigation);
  void leavePage();
  void answeredBeforeUnload(Navigation navigation, bool leave);
  void start();
  void seekPage();
  void askHandler(UrlSchemeHandler& handler);
  void receivePage();
  void remember(const Load& load);
  void finish();
  void fail(WebError error);
  void tellFailed(const Load& load, const WebError& error);
  void runScript(HeldScript held);
  void dropHeldScripts();
  /// Asks the delegate for an answer to pass on to `done`.
  template <class T>
  void askPerson(T cancelled, std::function<void(T)> done,
                 std::function<void(UIDelegate&, std::function<void(T)>)> ask);
  /// Queues work that is dropped when the web view is gone by then.
  void post(std::function<void(HeadlessWebView&)> work);
  [[nodiscard]] std::shared_ptr<UrlSchemeHandler> handlerFor(std::string_view urlText) const;

  HeadlessWebEngine& engine_;
  WebViewConfiguration configuration_;
  std::optional<Page> page_;
  std::optional<Url> pageUrl_;
  /// Counts the pages that were here; a crash ends one too.
  std::uint64_t generation_ = 0;
  std::vector<Url> history_;
  std::size_t current_ = 0;
  std::optional<Load> load_;
  /// The next step of the load under way.
  WorkItem wakeUp_;
  /// The navigation whose page is being asked whether it may be left.
  std::optional<Navigation> asking_;
  /// A step came while the page did not respond.
  bool stalled_ = false;
  bool responsive_ = true;
  bool crashed_ = false;
  std::optional<Uptime> lastUserGesture_;
  double pageZoom_ = 1;
  std::function<std::optional<JsonValue>(std::string_view)> scriptAnswer_;
  std::vector<HeldScript> heldScripts_;
  std::vector<HeldSnapshot> heldSnapshots_;
  std::vector<std::string> scripts_;
  std::vector<KeyEvent> keysReceived_;
};

}  // namespace velto
