#pragma once

#include <string>

#include "platform/foundation/Url.h"

namespace velto {

/// Whoever remembers which pages were visited.
class VisitRecording {
 public:
  virtual ~VisitRecording() = default;
  /// The title may be empty. Private windows are never reported here.
  virtual void recordVisit(const Url& url, const std::string& title) = 0;
};

}  // namespace velto
