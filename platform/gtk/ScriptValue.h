#pragma once

#include <optional>

#include <jsc/jsc.h>

#include "platform/foundation/Json.h"

namespace velto {

/// What a page's script gave.
struct ScriptReading {
  /// Absent when it has no JSON form, as `undefined` has none, or is too big.
  std::optional<JsonValue> json;
  /// It has more than 20,000 values, or more than a MiB of text. It was not looked at any further.
  bool isTooBig = false;
  /// About how many seconds of the main thread the engine took to hand it over, at least.
  double cost = 0;
};

ScriptReading readScriptValue(JSCValue* value);

}  // namespace velto
