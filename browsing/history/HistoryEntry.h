#pragma once

#include <string>

#include "platform/foundation/Date.h"

namespace velto {

/// One visit of a page. Files keep its time at whole seconds.
struct HistoryEntry {
  /// The absolute string of the page's URL.
  std::string url;
  std::string title;
  /// When the page had finished loading.
  WallTime timestamp;

  bool operator==(const HistoryEntry&) const = default;
};

}  // namespace velto
