#pragma once

#include <optional>

#include <jsc/jsc.h>

#include "platform/foundation/Json.h"

namespace velto {

/// What a page's script gave, through its JSON text: absent when it has no JSON form or the text is longer
/// than a MiB. `undefined` has none either.
std::optional<JsonValue> jsonFrom(JSCValue* value);

}  // namespace velto
