#include "app/pages/MessageFields.h"

#include <cmath>
#include <cstdint>

namespace velto {

namespace {

template <class T>
const T* field(const JsonValue& body, std::string_view key) {
  const JsonValue* value = body.member(key);
  return value != nullptr ? value->as<T>() : nullptr;
}

}  // namespace

std::optional<double> numberField(const JsonValue& body, std::string_view key) {
  if (const auto* whole = field<std::int64_t>(body, key)) return static_cast<double>(*whole);
  const auto* number = field<double>(body, key);
  return number != nullptr && std::isfinite(*number) ? std::optional(*number) : std::nullopt;
}

std::optional<bool> booleanField(const JsonValue& body, std::string_view key) {
  const auto* value = field<bool>(body, key);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<std::string> textField(const JsonValue& body, std::string_view key) {
  const auto* value = field<std::string>(body, key);
  return value != nullptr ? std::optional(*value) : std::nullopt;
}

}  // namespace velto
