#include "platform/gtk/ScriptValue.h"

#include <cstddef>
#include <string_view>

#include "platform/gtk/GObject.h"

namespace velto {

std::optional<JsonValue> jsonFrom(JSCValue* value) {
  constexpr std::size_t kLongestText = 1024 * 1024;
  if (value == nullptr || jsc_value_is_undefined(value) != FALSE) return std::nullopt;
  const GCharPtr text(jsc_value_to_json(value, 0));
  // A value that refers to itself leaves its exception in a context that all web views share.
  jsc_context_clear_exception(jsc_value_get_context(value));
  if (!text) return std::nullopt;
  const std::string_view json(text.get());
  if (json.size() > kLongestText) return std::nullopt;
  return readJson(json);
}

}  // namespace velto
