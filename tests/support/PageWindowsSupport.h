#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/pages/PageWindows.h"
#include "platform/headless/HeadlessPlatform.h"

namespace velto::test {

/// `PageWindows` with what it needs of the application, and an opener that only writes down what it is asked.
class PageWindowsSupport : public SessionRecording, public LayoutWindowOpening {
 public:
  explicit PageWindowsSupport(HeadlessPlatform& headless) : headless_(headless) {
    pageWindows.setOpener(*this);
  }

  void scheduleSessionRecording() override { ++recordings; }
  void pageChanged() override {}
  void openWindow(const Url& target, const WindowOptions& options) override {
    opened.push_back(target.absoluteString());
    lastOptions = options;
  }

 private:
  HeadlessPlatform& headless_;

 public:
  int recordings = 0;
  std::vector<std::string> opened;
  WindowOptions lastOptions;
  OpenWindows windows{headless_.application()};
  PageQuestions questions{headless_.application()};
  WindowLife windowLife{windows, questions, *this, headless_.loop()};
  DebugLog log{headless_.files(), headless_.loop(), std::nullopt};
  PageWindows pageWindows{windows, windowLife, log, headless_.loop(), headless_.loop()};
};

}  // namespace velto::test
