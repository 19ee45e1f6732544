#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Url.h"
#include "platform/ui/Event.h"
#include "platform/ui/View.h"

namespace velto {

/// A window's control bar, as the window and its commands use it.
class ControlBarView : public View {
 public:
  using View::View;

  /// The page's zoom changed; the bar shows its address accordingly.
  virtual void setPageZoom(double zoom) = 0;
  /// A page began to load.
  virtual void loadStarted() = 0;
  /// The page at this address is there.
  virtual void setPageAddress(const Url& url) = 0;
  virtual void setPrivate(bool isPrivate) = 0;
  /// Down to the toggle button, or back.
  virtual void setControlsCollapsed(bool collapsed) = 0;
  /// Only the toggle button stays when the pointer is elsewhere.
  [[nodiscard]] virtual bool controlsCollapsed() const = 0;
  virtual void expandControls() = 0;
  /// Opens the address field, with this text if there is one, and asks for the keyboard. True when it got it.
  virtual bool openAddressField(const std::optional<std::string>& text) = 0;
  /// True when the bar used the key.
  virtual bool takeKeyEquivalent(const KeyEvent& event) = 0;
  /// Shown in full at once, for tests that look at it.
  virtual void forceExpandedPresentation() = 0;
};

}  // namespace velto
