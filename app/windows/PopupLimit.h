#pragma once

#include <optional>

#include "platform/foundation/Date.h"

namespace velto {

/// How many windows the page of one window may open. Each time the person touches the page it starts again.
class PopupLimit {
 public:
  static constexpr int kMostPerGesture = 5;
  static constexpr int kMostUnasked = 5;
  enum class Verdict { refused, asked, unasked };

  /// For a window that was itself opened unasked: it opens none, until the person touches its page.
  static PopupLimit ofUnaskedWindow();

  /// The page, which the person last touched at `lastGesture`, wants to open a window, in answer to that
  /// when `isUserGesture`. What one touch has too many counts as unasked.
  Verdict admit(bool isUserGesture, std::optional<Uptime> lastGesture);

 private:
  std::optional<Uptime> lastGesture_;
  int askedLeft_ = kMostPerGesture;
  int unaskedLeft_ = kMostUnasked;
};

}  // namespace velto
