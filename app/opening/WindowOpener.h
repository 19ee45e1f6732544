#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/launch/LaunchRequest.h"
#include "app/opening/Services.h"
#include "app/pages/PageContent.h"
#include "app/pages/PageWindows.h"
#include "app/windows/OpenWindows.h"
#include "app/windows/WindowFurniture.h"
#include "app/windows/WindowOpening.h"
#include "platform/Platform.h"

namespace velto {

/// The one place where a window is put together.
class WindowOpener : public LayoutWindowOpening {
 public:
  struct Delegates {
    WindowDelegate& window;
    NavigationDelegate& navigation;
    UIDelegate& ui;
  };

  WindowOpener(const Platform& platform, OpenWindows& windows, WindowFurniture& furniture,
               PageContent& content, PageWindows& pageWindows, SessionRecording& session, Toasts& toasts,
               Delegates delegates);

  /// Never fails; the new panel is the last of the open windows.
  void openWindow(const Url& address, const WindowOptions& options) override;
  /// Raises a window that shows the page already, if the request allows it; otherwise opens one.
  void applyLaunchRequest(const LaunchRequest& request);
  /// A second window on the key window's page, else on what `fallback` gives, else an empty one.
  void newWindow(const std::function<std::optional<Url>()>& fallback);
  /// A private window on the key window's page if that is a web page, else an empty one.
  void newPrivateWindow();

 private:
  [[nodiscard]] HovrelPanel* reusableWindow(const LaunchRequest& request) const;
  void raise(HovrelPanel& panel, const LaunchRequest& request);
  [[nodiscard]] std::unique_ptr<HovrelPanel> makePanel(const Url& url, const WindowOptions& options) const;
  [[nodiscard]] std::unique_ptr<WebView> makeWebView(const Rect& frame, HovrelPanel& panel,
                                                     const WindowOptions& options);
  void startLoad(HovrelPanel& panel, WebView& webView, const Url& url, const WindowOptions& options);
  void addFurniture(HovrelPanel& panel, View& container, const WindowOptions& options);
  /// The standard preferences, or in test mode a suite of this process's own that starts empty.
  [[nodiscard]] UserDefaults& controlBarPreferences();
  void place(HovrelPanel& panel, const WindowOptions& options) const;
  void show(HovrelPanel& panel, const WindowOptions& options);
  [[nodiscard]] std::optional<Url> pageOfKeyWindow() const;
  /// An absent URL opens an empty page with the address field ready for typing.
  void openBeside(const std::optional<Url>& url, bool incognito);

  const Platform& platform_;
  OpenWindows& windows_;
  WindowFurniture& furniture_;
  PageContent& content_;
  PageWindows& pageWindows_;
  SessionRecording& session_;
  Toasts& toasts_;
  Delegates delegates_;
  /// Made once: it reads a file.
  std::optional<std::string> userAgent_;
  std::optional<UserDefaults> testPreferences_;
};

}  // namespace velto
