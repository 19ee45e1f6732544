#pragma once

#include <stdexcept>
#include <string>
#include <system_error>

namespace velto {

/// Why arguments could not be handed over, or the right to take them could not be claimed: one line for the
/// person, beginning in lower case and without a full stop, so that it reads well after a program's name.
class HandoffError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// "`what`: the system's word for `code`".
  static HandoffError fromErrno(const std::string& what, int code) {
    return HandoffError(what + ": " + std::generic_category().message(code));
  }
};

}  // namespace velto
