#pragma once

#include <cstddef>

#include "app/windows/RollingLimit.h"

namespace velto {

/// Keeps a page from burying the person under dialogs.
class DialogLimit {
 public:
  static constexpr std::size_t kMost = 20;
  static constexpr double kSeconds = 10;
  enum class Verdict {
    show,
    /// The first that is refused; what follows it is only refused.
    refuseAndSay,
    refuse
  };

  /// The page wants to show a dialog.
  Verdict asked(Uptime now);
  /// Another page is there, which has shown none.
  void pageChanged() { *this = DialogLimit(); }

 private:
  RollingLimit shown_{kMost, kSeconds};
  bool said_ = false;
};

}  // namespace velto
