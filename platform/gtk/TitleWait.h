#pragma once

#include <functional>
#include <optional>

#include <webkit2/webkit2.h>

#include "platform/gtk/GObject.h"
#include "platform/loop/MainQueue.h"
#include "platform/web/WebTypes.h"

namespace velto {

/// Holds back that a navigation has finished until the engine has told its page's title: a short page is
/// complete before that.
class TitleWait final {
 public:
  TitleWait(MainQueue& queue, WebKitWebView* view, std::function<void(Navigation)> finished);
  TitleWait(const TitleWait&) = delete;
  TitleWait& operator=(const TitleWait&) = delete;
  ~TitleWait() { cancel(); }

  /// Reports at once when the title is known, and in a tenth of a second at the latest.
  void begin(Navigation navigation);
  /// Reports what is held back.
  void end();
  /// Forgets what is held back, and reports nothing any more.
  void cancel();

 private:
  MainQueue& queue_;
  WebKitWebView* view_;
  std::function<void(Navigation)> finished_;
  std::optional<Navigation> navigation_;
  WorkItem deadline_;
  SignalConnection titleChanged_;
};

}  // namespace velto
