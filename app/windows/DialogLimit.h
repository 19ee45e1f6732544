#pragma once

#include <cstddef>
#include <optional>

#include "app/windows/RollingLimit.h"

namespace velto {

/// Keeps a page from burying the person under dialogs, and from holding them in one after the other.
class DialogLimit {
 public:
  static constexpr std::size_t kMost = 20;
  static constexpr double kSeconds = 10;
  /// A dialog within so many seconds of the answer to the last one follows it.
  static constexpr double kFollowsWithin = 1;
  /// In a row. A page that asks for more gets no dialog until the person touches it.
  static constexpr int kMostFollowing = 10;
  enum class Verdict {
    show,
    /// The first that is refused; what follows it is only refused.
    refuseAndSay,
    refuse
  };

  /// The page, which the person last touched at `lastGesture`, wants to show a dialog.
  Verdict asked(Uptime now, std::optional<Uptime> lastGesture);
  /// A dialog that was shown is gone.
  void answered(Uptime now) { lastAnswer_ = now; }
  /// Another page is there, which has shown none.
  void pageChanged() { *this = DialogLimit(); }

 private:
  bool admits(Uptime now);

  RollingLimit shown_{kMost, kSeconds};
  std::optional<Uptime> lastGesture_;
  std::optional<Uptime> lastAnswer_;
  int following_ = 0;
  bool said_ = false;
};

}  // namespace velto
