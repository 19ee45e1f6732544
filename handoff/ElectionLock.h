#pragma once

#include <chrono>

#include "handoff/OwnedDescriptor.h"
#include "handoff/RuntimeDirectory.h"

namespace velto {

/// While it lives, nobody else decides who listens in the runtime directory. Held for the moment of looking
/// only, never while a message is under way. The system releases it with the process, however that ends.
class ElectionLock {
 public:
  /// Throws HandoffError when the lock cannot be made or somebody holds it longer than `patience`.
  explicit ElectionLock(const RuntimeDirectory& directory,
                        std::chrono::milliseconds patience = std::chrono::seconds(5));

 private:
  OwnedDescriptor file_;
};

}  // namespace velto
