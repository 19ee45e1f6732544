#include "platform/foundation/Json.h"

#include <algorithm>

#include "platform/foundation/JsonElement.h"

namespace velto {
namespace {

JsonValue convert(simdjson::dom::element element);

JsonValue convertArray(simdjson::dom::array elements) {
  JsonValue::Array array;
  array.reserve(elements.size());
  for (const simdjson::dom::element element : elements) array.push_back(convert(element));
  return JsonValue(std::move(array));
}

JsonValue convertObject(simdjson::dom::object members) {
  JsonValue::Object object;
  object.reserve(members.size());
  for (const simdjson::dom::key_value_pair member : members) {
    object.emplace_back(std::string(member.key), convert(member.value));
  }
  return JsonValue(std::move(object));
}

JsonValue convert(simdjson::dom::element element) {
  using Type = simdjson::dom::element_type;
  switch (element.type()) {
    case Type::ARRAY:
      return convertArray(element.get_array().value_unsafe());
    case Type::OBJECT:
      return convertObject(element.get_object().value_unsafe());
    case Type::INT64:
      return JsonValue(element.get_int64().value_unsafe());
    case Type::UINT64:  // only where 64 bits with a sign are too few
    case Type::DOUBLE:
      return JsonValue(element.get_double().value_unsafe());
    case Type::STRING:
      return JsonValue(std::string(element.get_string().value_unsafe()));
    case Type::BOOL:
      return JsonValue(element.get_bool().value_unsafe());
    case Type::NULL_VALUE:
      break;
  }
  return JsonValue(std::monostate());
}

}  // namespace

const JsonValue* JsonValue::member(std::string_view name) const {
  const auto* object = as<Object>();
  if (object == nullptr) return nullptr;
  const auto found =
      std::find_if(object->begin(), object->end(), [&](const auto& member) { return member.first == name; });
  return found == object->end() ? nullptr : &found->second;
}

std::optional<JsonValue> readJson(std::string_view text) {
  JsonParser parser;
  try {
    return convert(parser.parse(text).dom);
  } catch (const JsonError&) {
    return std::nullopt;
  }
}

}  // namespace velto
