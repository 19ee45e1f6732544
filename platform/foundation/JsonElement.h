#pragma once

#include <simdjson.h>

#include "platform/foundation/JsonParser.h"

namespace velto {

/// Only for the sources that read JSON: all others see `JsonElement` by name.
class JsonElement {
 public:
  simdjson::dom::element dom;
};

/// As deep as a text may be nested.
constexpr std::size_t kMaximumJsonDepth = 512;

}  // namespace velto
