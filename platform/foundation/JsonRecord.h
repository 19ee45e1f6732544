#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/JsonParser.h"
#include "platform/foundation/JsonWriter.h"

/// Plain records as JSON objects, both ways from one table:
///
///     template <>
///     struct JsonFields<LayoutSize> {
///       static constexpr std::array kFields = {jsonField<&LayoutSize::w>("w"),
///       jsonField<&LayoutSize::h>("h")};
///     };
///
/// A member may be a string, a double, a 64-bit whole number, a boolean, a date, such a record, a vector of
/// these, or an optional, which may be missing or null and is left out when it is empty.

namespace velto {

/// To be specialised for each record.
template <class Record>
struct JsonFields;

namespace json_detail {

template <class>
struct MemberPointer;
template <class OwnerType, class ValueType>
struct MemberPointer<ValueType OwnerType::*> {
  using Owner = OwnerType;
  using Value = ValueType;
};

template <class>
inline constexpr bool kIsOptional = false;
template <class Value>
inline constexpr bool kIsOptional<std::optional<Value>> = true;

template <std::size_t count>
constexpr std::array<std::uint8_t, count> sortedByKey(const std::array<JsonField, count>& fields) {
  static_assert(count <= JsonFieldTable::kMaximumFields);
  std::array<std::uint8_t, count> places{};
  for (std::size_t place = 0; place < count; ++place) places[place] = static_cast<std::uint8_t>(place);
  std::sort(places.begin(), places.end(),
            [&](std::uint8_t a, std::uint8_t b) { return fields[a].key < fields[b].key; });
  return places;
}

template <class Record>
constexpr auto kSorted = sortedByKey(JsonFields<Record>::kFields);

}  // namespace json_detail

template <class Record>
concept JsonRecord = requires {
  JsonFields<Record>::kFields;
};

inline void encodeJson(JsonWriter& writer, const std::string& value) { writer.string(value); }
inline void encodeJson(JsonWriter& writer, double value) { writer.number(value); }
inline void encodeJson(JsonWriter& writer, std::int64_t value) { writer.integer(value); }
inline void encodeJson(JsonWriter& writer, bool value) { writer.boolean(value); }
inline void encodeJson(JsonWriter& writer, WallTime value) { writer.string(formatIso8601(value)); }

template <JsonRecord Record>
void decodeJson(const JsonElement& element, Record& record) {
  decodeJsonObject(element, {JsonFields<Record>::kFields, json_detail::kSorted<Record>}, &record);
}

template <JsonRecord Record>
void encodeJson(JsonWriter& writer, const Record& record) {
  writer.beginObject();
  for (const std::uint8_t place : json_detail::kSorted<Record>) {
    const JsonField& field = JsonFields<Record>::kFields[place];
    field.encode(writer, field.key, &record);
  }
  writer.endObject();
}

template <class Item>
void decodeJson(const JsonElement& element, std::vector<Item>& items) {
  decodeJsonArray(
      element, &items,
      [](void* context, std::size_t count) { static_cast<std::vector<Item>*>(context)->reserve(count); },
      [](void* context, const JsonElement& each) {
        decodeJson(each, static_cast<std::vector<Item>*>(context)->emplace_back());
      });
}

template <class Item>
void encodeJson(JsonWriter& writer, const std::vector<Item>& items) {
  writer.beginArray();
  for (const Item& item : items) encodeJson(writer, item);
  writer.endArray();
}

template <class Value>
void decodeJson(const JsonElement& element, std::optional<Value>& value) {
  value.reset();
  if (!isJsonNull(element)) decodeJson(element, value.emplace());
}

/// The member that stands under a key of the object.
template <auto member>
constexpr JsonField jsonField(std::string_view key) {
  using Owner = typename json_detail::MemberPointer<decltype(member)>::Owner;
  using Value = typename json_detail::MemberPointer<decltype(member)>::Value;
  JsonField field;
  field.key = key;
  field.required = !json_detail::kIsOptional<Value>;
  field.decode = [](const JsonElement& element, void* record) {
    decodeJson(element, static_cast<Owner*>(record)->*member);
  };
  field.encode = [](JsonWriter& writer, std::string_view name, const void* record) {
    const Value& value = static_cast<const Owner*>(record)->*member;
    if constexpr (json_detail::kIsOptional<Value>) {
      if (!value) return;
      writer.key(name);
      encodeJson(writer, *value);
    } else {
      writer.key(name);
      encodeJson(writer, value);
    }
  };
  return field;
}

/// The record that the text holds. Throws `JsonError`.
template <JsonRecord Record>
Record decodeJson(const JsonElement& element) {
  Record record;
  decodeJson(element, record);
  return record;
}

/// The whole text of a file that holds the record. Throws `JsonError` for a number that is not finite.
template <JsonRecord Record>
std::string encodeJson(const Record& record) {
  JsonWriter writer;
  encodeJson(writer, record);
  return writer.text();
}

}  // namespace velto
