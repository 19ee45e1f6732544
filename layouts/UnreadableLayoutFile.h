#pragma once

#include <string>

#include "platform/foundation/Url.h"

namespace velto {

/// A file among the layouts that could not be used. It stays where it is.
struct UnreadableLayoutFile {
  Url url;
  /// As the person reads it.
  std::string reason;
  bool operator==(const UnreadableLayoutFile&) const = default;
};

}  // namespace velto
