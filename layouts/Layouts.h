#pragma once

#include "app/windows/WindowOpening.h"
#include "platform/foundation/Url.h"

namespace velto {

/// Named layouts of windows, as the launch of the application and its requests use them.
class Layouts {
 public:
  virtual ~Layouts() = default;
  virtual void setOpener(LayoutWindowOpening& opener) = 0;
  virtual void prepareStore() = 0;
  /// Carries out a `velto://layout?…` URL. Whatever goes wrong is told to the person in an alert.
  virtual void handleCommand(const Url& url) = 0;
};

}  // namespace velto
