#include "platform/foundation/JsonParser.h"

#include <array>
#include <cmath>

#include "platform/foundation/JsonElement.h"

namespace velto {
namespace {

using Type = simdjson::dom::element_type;

constexpr std::string_view kByteOrderMark = "\ufeff";

[[noreturn]] void refuse(const JsonElement& element) {
  throw JsonError(element.dom.is_null() ? JsonError::Kind::missing : JsonError::Kind::malformed);
}

/// Throws unless the element is what `type` names.
void require(const JsonElement& element, Type type) {
  if (element.dom.type() != type) refuse(element);
}

std::string_view text(const JsonElement& element) {
  require(element, Type::STRING);
  return element.dom.get_string().value_unsafe();
}

/// The keys are a few letters long, for which this is faster than a call of memcmp.
bool isSame(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t at = 0; at < a.size(); ++at) {
    if (a[at] != b[at]) return false;
  }
  return true;
}

/// Finds the fields that the keys of an object name. Files are written in the order of the keys, so it looks
/// first at the field after the one that was found last.
class FieldSearch {
 public:
  explicit FieldSearch(const JsonFieldTable& table) : table_(table) {}

  /// The place in the table, or the number of its fields.
  std::size_t find(std::string_view key) {
    for (std::size_t tried = 0; tried < table_.sorted.size(); ++tried) {
      if (next_ == table_.sorted.size()) next_ = 0;
      const std::size_t place = table_.sorted[next_++];
      if (isSame(table_.fields[place].key, key)) return place;
    }
    return table_.fields.size();
  }

 private:
  const JsonFieldTable& table_;
  std::size_t next_ = 0;
};

}  // namespace

struct JsonParser::State {
  simdjson::dom::parser parser;
  std::string padded;
  JsonElement root;
};

JsonParser::JsonParser() : state_(std::make_unique<State>()) {}
JsonParser::~JsonParser() = default;

const JsonElement& JsonParser::parse(std::string_view text) {
  auto& [parser, padded, root] = *state_;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (parser.capacity() < text.size() || parser.max_depth() != kMaximumJsonDepth) {
    if (parser.allocate(text.size(), kMaximumJsonDepth) != simdjson::SUCCESS) {
      throw JsonError(JsonError::Kind::malformed);
    }
  }
  padded.reserve(text.size() + simdjson::SIMDJSON_PADDING);
  padded.assign(text);
  if (parser.parse(padded.data(), padded.size(), false).get(root.dom) != simdjson::SUCCESS) {
    throw JsonError(JsonError::Kind::malformed);
  }
  return root;
}

void decodeJson(const JsonElement& element, std::string& value) { value.assign(text(element)); }

void decodeJson(const JsonElement& element, double& value) {
  if (element.dom.get_double().get(value) != simdjson::SUCCESS) refuse(element);
}

void decodeJson(const JsonElement& element, std::int64_t& value) {
  if (element.dom.get_int64().get(value) == simdjson::SUCCESS) return;
  require(element, Type::DOUBLE);
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  const double number = element.dom.get_double().value_unsafe();
  if (number < -kLimit || number >= kLimit || number != std::trunc(number)) refuse(element);
  value = static_cast<std::int64_t>(number);
}

void decodeJson(const JsonElement& element, bool& value) {
  if (element.dom.get_bool().get(value) != simdjson::SUCCESS) throw JsonError(JsonError::Kind::malformed);
}

void decodeJson(const JsonElement& element, WallTime& value) {
  // 0000-01-01 and 9999-12-31: what lies beyond, as an offset can make it, could not be read again once
  // written.
  constexpr double kEarliest = -62167392000;
  constexpr double kLatest = 253402300799;
  const auto time = parseIso8601(text(element));
  if (!time || time->secondsSince1970 < kEarliest || time->secondsSince1970 > kLatest)
    throw JsonError(JsonError::Kind::malformed);
  value = *time;
}

bool isJsonNull(const JsonElement& element) { return element.dom.is_null(); }

void decodeJsonObject(const JsonElement& element, const JsonFieldTable& table, void* record) {
  require(element, Type::OBJECT);
  std::array<JsonElement, JsonFieldTable::kMaximumFields> values;
  std::array<bool, JsonFieldTable::kMaximumFields> present{};
  FieldSearch search(table);
  const simdjson::dom::object object = element.dom.get_object().value_unsafe();
  for (auto member = object.begin(); member != object.end(); ++member) {
    const std::size_t place = search.find(member.key());
    if (place == table.fields.size() || present[place]) continue;
    values[place].dom = member.value();
    present[place] = true;
  }
  for (std::size_t place = 0; place < table.fields.size(); ++place) {
    const JsonField& field = table.fields[place];
    if (present[place]) {
      field.decode(values[place], record);
    } else if (field.required) {
      throw JsonError(JsonError::Kind::missing);
    }
  }
}

void decodeJsonArray(const JsonElement& element, void* context,
                     void (*begin)(void* context, std::size_t count),
                     void (*item)(void* context, const JsonElement& element)) {
  require(element, Type::ARRAY);
  const simdjson::dom::array array = element.dom.get_array().value_unsafe();
  begin(context, array.size());
  for (const simdjson::dom::element each : array) item(context, JsonElement{each});
}

}  // namespace velto
